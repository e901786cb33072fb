#include "support/TestProgram.h"

#include <QDir>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

const QString program = u"" BINARY_DIR "/bin/quorvane"_s;

/// Collects the program's lines until one begins like this; empty when it ends or stays silent before.
QString lineOf(QProcess &process, const QByteArray &beginning)
{
    while (process.canReadLine() || process.waitForReadyRead())
        while (process.canReadLine())
            if (const QByteArray line = process.readLine(); line.startsWith(beginning))
                return QString::fromUtf8(line).trimmed();
    return {};
}

} // namespace

/// The whole program, started as the desktop starts it.
class ProgramTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir home;

    void start(QProcess &process, bool withBus = true, const QString &folder = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, folder.isEmpty() ? home.path() : folder);
        for (const QString &name : {u"XDG_CONFIG_HOME"_s, u"XDG_STATE_HOME"_s, u"XDG_DATA_HOME"_s})
            environment.insert(name, home.filePath(name));
        if (!withBus)
            environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
        process.setProcessEnvironment(environment);
        process.start(program, QStringList());
    }

private slots:
    void secondStartEnds()
    {
        for (const bool withBus : {true, false}) {
            QProcess first;
            QProcess second;
            start(first, withBus);
            QVERIFY(!lineOf(first, "Number of Rows:").isEmpty());
            start(second, withBus);
            QVERIFY(second.waitForFinished());
            QCOMPARE(second.exitCode(), 0);
            QVERIFY(second.readAllStandardOutput().isEmpty()); // it opened no list
            QCOMPARE(first.state(), QProcess::Running);
            first.kill(); // the lock of a dead program is no hindrance
            QVERIFY(first.waitForFinished());
            QProcess third;
            start(third, withBus);
            QVERIFY(!lineOf(third, "Number of Rows:").isEmpty());
            third.kill();
            QVERIFY(third.waitForFinished());
        }
    }

    void deadPredecessorIsNoHindrance()
    {
        const QString state = home.filePath(u"XDG_STATE_HOME"_s);
        for (const QByteArray &lock : {QByteArray(), QByteArray("garbled\n")}) {
            writeTo(state + u"/quorvane/quorvane.lock"_s, lock);
            QProcess process;
            start(process, false);
            QVERIFY(!lineOf(process, "Number of Rows:").isEmpty());
            process.kill();
            process.waitForFinished();
        }
    }

    void startsWhateverTheHome()
    {
        const auto rowsShown = [this](const QString &folder) {
            QProcess process;
            start(process, false, folder);
            const QString rows = lineOf(process, "Number of Rows:");
            process.kill();
            process.waitForFinished();
            return rows;
        };
        QCOMPARE(rowsShown(u"/nonexistent"_s), u"Number of Rows: 0"_s);
        const QByteArray row = "3/7/24|a||1.0|1.0|1.0|1.0|3/7/24|0|0|Open|None|KEY^";
        const QTemporaryDir other;
        writeTo(other.filePath(u"Documents/zandulist.txt"_s),
                row + QByteArray(3'000'000, '\x01') + '^' + row);
        QCOMPARE(rowsShown(other.path()), u"Number of Rows: 2"_s);
        writeTo(other.filePath(u"Documents/zandulist.txt"_s), row.repeated(20'000));
        QCOMPARE(rowsShown(other.path()), u"Number of Rows: 20000"_s);
    }

    void endsOrderlyWhenTheSystemSaysSo()
    {
        QProcess process;
        process.setWorkingDirectory(u"/proc"_s); // where nobody can make a file
        start(process);
        QVERIFY(!lineOf(process, "Number of Rows:").isEmpty());
        const QString folder = QFile::symLinkTarget(u"/proc/%1/cwd"_s.arg(process.processId()));
        QCOMPARE(folder, QFileInfo(home.filePath(u"Documents"_s))
                             .canonicalFilePath()); // a home for the whiteboard's picture
        process.terminate();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
    }

    void outlivesTheReaderOfItsLines()
    {
        QProcess process;
        start(process);
        QVERIFY(!lineOf(process, "Number of Rows:").isEmpty());
        process.closeReadChannel(QProcess::StandardOutput);
        QProcess second;
        start(second); // has the first window raised and painted, which writes lines
        QVERIFY(second.waitForFinished());
        QCOMPARE(process.state(), QProcess::Running);
        process.kill();
        process.waitForFinished();
    }
};

static const TestClass<ProgramTest> registered;

#include "ProgramTest.moc"
