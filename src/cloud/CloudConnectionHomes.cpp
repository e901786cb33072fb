#include "cloud/CloudConnection.h"
#include "cloud/SqlCloudError.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>

using namespace Qt::StringLiterals;

using Reason = CloudError::Reason;
using Value = CloudRecordType::Value;

// How the connection to each kind of home is opened.

static const QString localSocket = u"/var/run/postgresql"_s; // as Debian's libpq has it
static constexpr int standardPort = 5432;

bool CloudConnection::openEmbedded()
{
    QSqlDatabase connection = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
    connection.setDatabaseName(home.file);
    connection.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=5000"_s); // milliseconds
    QDir().mkpath(QFileInfo(home.file).path());
    if (const QFileInfo file(home.file); file.exists() && !file.isFile()) // SQLite would wait for a pipe
        return fail(CloudAccount::CouldNotDetermine, {Reason::Unreachable});
    if (!connection.open())
        return fail(CloudAccount::CouldNotDetermine, sqlCloudError(connection.lastError()));
    if (!createTable() || !prepare())
        return fail(CloudAccount::CouldNotDetermine, CloudError(lastProblem));
    state = CloudAccount::Available;
    return true;
}

bool CloudConnection::createTable()
{
    QStringList columns;
    for (const CloudRecordType::Field &field : type.fields)
        columns.append(u", \"%1\" %2"_s.arg(field.name, field.value == Value::Text   ? u"TEXT"_s
                                                        : field.value == Value::Real ? u"REAL"_s
                                                                                     : u"INTEGER"_s));
    return run(u"CREATE TABLE IF NOT EXISTS \"%1\" (seq INTEGER PRIMARY KEY AUTOINCREMENT, "
               "record_name TEXT NOT NULL UNIQUE%2)"_s.arg(type.name, columns.join(QString()))) &&
           run(u"CREATE INDEX IF NOT EXISTS \"%1_key\" ON \"%1\" (\"key\")"_s.arg(type.name));
}

bool CloudConnection::openOnServer()
{
    QSqlDatabase connection = QSqlDatabase::addDatabase(u"QPSQL"_s, name);
    connection.setHostName(home.host.isEmpty() ? localSocket : home.host);
    connection.setUserName(home.user);
    connection.setDatabaseName(home.database);
    connection.setPort(home.port > 0 ? home.port : standardPort);
    // What the address does not say must not come from libpq's variables of the environment. Seconds, and
    // milliseconds for the last time: a server that has gone away is noticed.
    connection.setConnectOptions(u"hostaddr='';sslmode=%1;connect_timeout=5;keepalives_idle=10;keepalives_"
                                 u"interval=5;keepalives_count=3;"
                                 "tcp_user_timeout=20000;application_name=quorvane"_s.arg(home.sslMode));
    if (!connection.open()) {
        // libpq tells refused credentials by their text only.
        static const QRegularExpression refusal(
            u"authentication failed|no password supplied|role \".*\" does not exist|no pg_hba.conf entry|"
            "is not permitted to log in"_s);
        const QString problem = connection.lastError().text();
        return problem.contains(refusal)
                   ? fail(CloudAccount::NoAccount, {Reason::SignedOut, problem})
                   : fail(CloudAccount::CouldNotDetermine, {Reason::Unreachable, problem});
    }
    // Whoever holds a lock must not keep the user waiting.
    run(u"SET lock_timeout = '5s'"_s);
    run(u"SET statement_timeout = '15s'"_s);
    // The planner knows nothing yet of a table that has just been filled, and would walk it for every key.
    run(u"SET enable_seqscan = off"_s);
    if (!prepare())
        return fail(lastProblem.reason == Reason::Refused ? CloudAccount::Restricted
                                                          : CloudAccount::CouldNotDetermine,
                    CloudError(lastProblem));
    state = CloudAccount::Available;
    return true;
}
