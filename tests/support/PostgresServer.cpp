#include "support/PostgresServer.h"

#include "support/ScratchHome.h"

#include <QDir>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTest>

#include <csignal>
#include <pwd.h>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Debian keeps the server's programs in a folder of their version.
QString toolPath(const QString &tool)
{
    const QDir versions(u"/usr/lib/postgresql"_s);
    for (const QString &version :
         versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed))
        if (const QString path = versions.filePath(version + u"/bin/"_s + tool);
            QFileInfo(path).isExecutable())
            return path;
    qFatal("%s: not installed", qPrintable(tool));
}

/// The server refuses to run as root; then it runs as the user that its package made for it. However the
/// test ends, it ends, too.
void runUnprivileged(QProcess &process)
{
    const passwd *user = ::geteuid() == 0 ? ::getpwnam("postgres") : nullptr;
    const uid_t uid = user ? user->pw_uid : ::geteuid();
    const gid_t gid = user ? user->pw_gid : ::getegid();
    process.setChildProcessModifier([uid, gid] {
        if (::setgid(gid) != 0 || ::setuid(uid) != 0 || ::prctl(PR_SET_PDEATHSIG, SIGQUIT) != 0)
            ::_exit(EXIT_FAILURE);
    });
}

int freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

} // namespace

PostgresServer::PostgresServer()
    : serverPort(freePort())
{
    if (const passwd *user = ::geteuid() == 0 ? ::getpwnam("postgres") : nullptr)
        if (::chown(folder.path().toUtf8().constData(), user->pw_uid, user->pw_gid) != 0)
            qFatal("the server's folder cannot be given to it");
    const QString password = folder.filePath(u"password"_s);
    writeTo(password, "admin");
    QFile::setPermissions(password, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
    QProcess initialisation;
    runUnprivileged(initialisation);
    initialisation.start(toolPath(u"initdb"_s),
                         {u"--pgdata="_s + folder.filePath(u"data"_s), u"--username=admin"_s,
                          u"--auth=scram-sha-256"_s, u"--pwfile="_s + password, u"--encoding=UTF8"_s,
                          u"--locale=C"_s, u"--no-sync"_s});
    if (!initialisation.waitForFinished() || initialisation.exitCode() != 0)
        qFatal("initdb: %s", initialisation.readAllStandardError().constData());
    start();
}

PostgresServer::~PostgresServer()
{
    stop();
}

void PostgresServer::start()
{
    runUnprivileged(server);
    server.start(toolPath(u"postgres"_s),
                 {u"-D"_s, folder.filePath(u"data"_s), u"-p"_s, QString::number(serverPort), u"-h"_s,
                  u"127.0.0.1"_s, u"-k"_s, folder.path()});
    server.setStandardErrorFile(folder.filePath(u"log"_s));
    const auto answers = [this] {
        return run(u"admin"_s, u"SELECT 'ready'"_s) == u"ready";
    };
    if (!QTest::qWaitFor(answers, 20'000))
        qFatal("the server does not start");
}

void PostgresServer::stop()
{
    if (server.state() == QProcess::NotRunning)
        return;
    ::kill(pid_t(server.processId()), SIGQUIT); // immediate shutdown, together with its processes
    server.waitForFinished();
}

QString PostgresServer::run(const QString &role, const QString &sql) const
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(toolPath(u"psql"_s),
                  {u"-XqtAw"_s, u"--dbname="_s + url(role) + u"?password="_s + role, u"--command="_s + sql});
    process.waitForFinished();
    return QString::fromUtf8(process.readAll()).trimmed();
}

QString PostgresServer::url(const QString &role) const
{
    return u"postgresql://%1@127.0.0.1:%2/postgres"_s.arg(role).arg(serverPort);
}
