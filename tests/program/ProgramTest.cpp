#include "platform/Folders.h"
#include "platform/SessionBus.h"
#include "program/Application.h"
#include "program/StartCheck.h"
#include "support/Dialogs.h"
#include "support/FakePortal.h"
#include "support/TestProgram.h"
#include "widgets/Palettes.h"

#include <QDBusMessage>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QSysInfo>
#include <QThread>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int limit = 30'000; // milliseconds

/// The whole program in a home folder, as the desktop starts it; is killed at the end.
class Running : public QProcess
{
public:
    explicit Running(const QString &home)
    {
        setProgram(u"" BINARY_DIR "/bin/quorvane"_s);
        setProcessEnvironment(QProcessEnvironment::systemEnvironment());
        setVariable(u"HOME"_s, home);
        for (const QString &name : {u"XDG_CONFIG_HOME"_s, u"XDG_STATE_HOME"_s, u"XDG_DATA_HOME"_s})
            setVariable(name, {});
    }
    ~Running() override
    {
        kill();
        waitForFinished(limit);
    }

    void setVariable(const QString &name, const QString &value)
    {
        QProcessEnvironment variables = processEnvironment();
        variables.insert(name, value);
        setProcessEnvironment(variables);
    }

    /// Waits for a line that begins so; what follows, or nothing when it ends or stays silent before.
    std::optional<QByteArray> waitFor(QByteArrayView beginning)
    {
        while (canReadLine() || waitForReadyRead(limit))
            while (canReadLine())
                if (const QByteArray line = readLine(); line.startsWith(beginning))
                    return line.sliced(beginning.size()).trimmed();
                else
                    passed += line;
        return std::nullopt;
    }
    QByteArray passed; ///< the lines before

    /// Starts it and waits for its list; the number of rows shown, or -1 when it ends or stays silent before.
    int rowsShown()
    {
        start();
        return waitFor("Number of Rows: ").value_or("-1").toInt();
    }
};

} // namespace

class ProgramTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir home;
    const QString state = home.filePath(u".local/state/quorvane/"_s);

private slots:
    void secondStartShowsTheFirst()
    {
        const QString bus = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
        QLocalServer silent;
        QLocalServer hangingUp;
        QVERIFY(silent.listen(home.filePath(u"bus"_s)) && hangingUp.listen(home.filePath(u"hasty"_s)));
        connect(&hangingUp, &QLocalServer::newConnection, &hangingUp,
                [&hangingUp] { hangingUp.nextPendingConnection()->deleteLater(); });
        QThread thread;
        hangingUp.moveToThread(&thread);
        const auto end = qScopeGuard([&thread] {
            thread.quit();
            thread.wait();
        });
        thread.start();
        // Without a bus it can only say what is there; without a lock file it asks the bus.
        for (const auto &[address, own] : {std::pair(bus, home.path()),
                                           {u"unix:path=/none"_s, home.path()},
                                           {u"unix:path="_s + silent.fullServerName(), home.path()},
                                           {u"unix:path="_s + hangingUp.fullServerName(), home.path()},
                                           {bus, u"/proc/nowhere"_s}}) {
            Running first(own);
            Running second(own);
            for (Running *process : {&first, &second})
                process->setVariable(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
            QCOMPARE(first.rowsShown(), 0); // although a dead program has left its lock
            QByteArray complaints;          // the platform without a screen says what it cannot do
            if (address == bus) {
                QCOMPARE(second.rowsShown(), -1);
                QTRY_VERIFY_WITH_TIMEOUT((complaints += first.readAllStandardError()).contains("raise()"),
                                         limit);
            } else {
                second.start();
                const QByteArray sentence = "as process " + QByteArray::number(first.processId());
                QTRY_VERIFY_WITH_TIMEOUT((complaints += second.readAllStandardError()).contains(sentence),
                                         limit);
                second.terminate(); // which its window does not prevent
            }
            QVERIFY(second.state() == QProcess::NotRunning || second.waitForFinished(limit));
            QCOMPARE(second.exitStatus(), QProcess::NormalExit);
            QCOMPARE(second.exitCode(), address == bus ? EXIT_SUCCESS : EXIT_FAILURE);
            QCOMPARE(first.state(), QProcess::Running);
        }
    }

    void doesWhatTheDesktopAsksFor()
    {
        const QTemporaryDir own;
        writeTo(own.filePath(u"Documents/zandunotes.txt"_s), "buy twine");
        Running first(own.path());
        QCOMPARE(first.rowsShown(), 0);
        const auto call = [](const QString &method, const QVariantList &arguments) {
            QDBusMessage message = QDBusMessage::createMethodCall(u"example.quorvane.Quorvane"_s,
                                                                  u"/example/quorvane/Quorvane"_s,
                                                                  u"org.freedesktop.Application"_s, method);
            message.setArguments(arguments);
            return sessionBus::open().call(message).type();
        };
        QCOMPARE(call(u"Activate"_s, {QVariantMap()}), QDBusMessage::ReplyMessage);
        for (const QString &action : {u"notes"_s, u"new-task"_s}) {
            Running second(own.path());
            second.setArguments({u"--"_s + action});
            second.start();
            QVERIFY(
                first.waitFor(action == u"notes" ? "Read File buy twine" : "Mngd Context:")); // of the form
            QVERIFY(second.waitForFinished(limit) && second.exitCode() == EXIT_SUCCESS);
        }
        QVERIFY(!first.passed.contains("Mngd Context:")); // opened before it was asked for
        QCOMPARE(call(u"ActivateAction"_s, {u"messages"_s, QVariantList(), QVariantMap()}),
                 QDBusMessage::ReplyMessage);
        QVERIFY(first.waitFor("---Persistent Store---:"));
        first.terminate();
        QVERIFY(first.waitForFinished(limit));
        Running third(own.path());
        third.setArguments({u"--new-task"_s});
        third.start();
        QVERIFY(third.waitFor("Mngd Context:"));
    }

    void answersOnTheCommandLine()
    {
        const QTemporaryDir own;
        const QString list = own.filePath(u"Documents/zandulist.txt"_s);
        const QByteArray open = "3/7/24|mow\x1b[2J||1|1|1|1|3/9/24|0|0|Open|None|A|false|8|5|17|0|Peña|Weiß^";
        const QByteArray closed = "3/8/24|sow||1|1|1|1|3/8/24|1|2|Closed|High|B|true|8|0|9|0||^";
        const QByteArray title = "Start Date  Start  End    Task     Client  Team Member  Description  "
                                 "Status  Priority  Due Date\n";
        const QByteArray mow =
            "3/7/24      08:05  17:00  mow [2J  Peña    Weiß                      Open    None      3/9/24\n";
        const QByteArray sow = R"([{"client":"","description":"","dueDate":"2024-03-08","endTime":"09:00",)"
                               R"("hidden":true,"key":"B","priority":"High","startDate":"2024-03-08",)"
                               R"("startTime":"08:00","status":"Closed","task":"sow","teamMember":""}])";
        for (const auto &[arguments, content, code, output, complaint] :
             std::initializer_list<std::tuple<QStringList, QByteArray, int, QByteArray, QByteArray>>{
                 {{u"--list"_s, u"open"_s}, open + closed, 0, title + mow, ""},
                 {{u"--list=hidden-CLOSED"_s, u"--json"_s}, open + closed, 0, sow, ""},
                 {{u"--list"_s, u"Global-All"_s, u"--json"_s}, "", 0, "[]", ""},
                 {{u"--list"_s, u"All"_s}, open + "x^", 1, title + mow, "missing here: 1"},
                 {{u"--list"_s, u"All"_s}, "\xff", 1, "", "not UTF-8"},
                 {{u"--list"_s, u"due"_s}, open, 2, "", "The views are: All, "},
                 {{u"--notes"_s, u"--messages"_s}, open, 2, "", "exclude each other"},
                 {{u"--nets"_s}, open, 2, "", "Unknown option 'nets'"},
                 {{u"-platform"_s, u"offscreen"_s, u"list.txt"_s}, open, 2, "", "Unexpected argument"},
                 {{u"--version"_s}, open, 0, "quorvane 0.", ""},
                 {{u"-h"_s}, open, 0, "Usage: quorvane [options]\n", ""}}) {
            writeTo(list, content);
            Running process(own.path());
            process.setArguments(arguments);
            process.setVariable(u"LC_ALL"_s, u"en_US.UTF-8"_s);
            process.setVariable(u"QT_QPA_PLATFORM"_s, u"none"_s); // no window is to be had
            process.start();
            QVERIFY(process.waitForFinished(limit));
            QByteArray written = process.readAllStandardOutput();
            if (arguments.contains(u"--json"_s) && code == 0)
                written = QJsonDocument::fromJson(written).toJson(QJsonDocument::Compact);
            QVERIFY2(output.isEmpty() ? written.isEmpty() : written.startsWith(output), written);
            QVERIFY(process.readAllStandardError().contains(complaint));
            QCOMPARE(process.exitCode(), code);
            QCOMPARE(contentOf(list), content);
            QVERIFY(!QFileInfo::exists(own.filePath(u".local"_s))); // nothing is written
        }
    }

    void asksWhereAnotherOneMayRun()
    {
        const QTemporaryDir own;
        const QString path = own.filePath(u"quorvane.lock"_s);
        const QByteArray here = "12\nquorvane\n" + QSysInfo::machineHostName().toUtf8() + '\n';
        const QByteArray there = "12\nquorvane\nfar-away\n";
        for (const auto &[signature, isHeld, words, answer, starts] :
             {std::tuple<QByteArray, bool, QString, QString, bool>(here, false, {}, {}, true),
              {there, false, u"far-away"_s, u"No"_s, false},
              {there, false, u"far-away"_s, u"Yes"_s, true},
              {there, true, u"far-away"_s, u"Yes"_s, true},
              {"garbled\n", true, path, u"No"_s, false},
              {here, true, u"as process 12 on"_s, u"OK"_s, false}}) {
            writeTo(path, signature);
            const int other = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
            QCOMPARE(::flock(other, isHeld ? LOCK_EX : LOCK_UN), 0);
            {
                SingleInstance instance(own.path(), QDBusConnection(u"none"_s));
                const AlertAnswer alert(answer);
                QCOMPARE(mayStart(instance, instance.acquire()), starts);
                QVERIFY((alert.text + alert.informativeText).contains(words));
                QCOMPARE(alert.wasShown(), !answer.isEmpty());
                QCOMPARE(contentOf(path) == signature, isHeld || !starts);
            }
            QCOMPARE(contentOf(path), starts && !isHeld ? QByteArray() : signature);
            ::close(other);
        }
    }

    void dialogsWaitForNoLockOfACrash()
    {
        const QString path = folders::state() + u"/QtProject.conf"_s;
        for (const bool isStuck : {false, true}) {
            writeTo(path + (isStuck ? u".lock/in the way"_s : u".lock"_s), "12\nquorvane\nfar-away\n");
            Application::keepDialogSettings();
            QElapsedTimer timer;
            timer.start();
            QFileDialog(nullptr).show();
            QVERIFY(timer.elapsed() < limit);
            QVERIFY(QFileInfo::exists(path));
        }
    }

    void startsWhateverItFinds()
    {
        QCOMPARE(Running(u"/proc/nowhere"_s).rowsShown(), 0); // where nobody can make a folder
        const QByteArray row = "3/7/24|a||1.0|1.0|1.0|1.0|3/7/24|0|0|Open|None|KEY^";
        const QString list = home.filePath(u"Documents/zandulist.txt"_s);
        for (const auto &[path, content, rows] : std::initializer_list<std::tuple<QString, QByteArray, int>>{
                 {state + u"quorvane.lock"_s, "", 0},
                 {state + u"quorvane.lock"_s, "garbled\n", 0},
                 {state + u"window.ini.lock"_s, "1\nquorvane\nfar-away\n", 0},
                 {list, row + QByteArray(3'000'000, '\x01') + '^' + row, 2},
                 {list, row.repeated(20'000), 20'000}}) {
            writeTo(path, content);
            QCOMPARE(Running(home.path()).rowsShown(), rows);
        }
        Running process(home.path());
        process.setChildProcessModifier([] { // no room for a single byte
            std::signal(SIGXFSZ, SIG_DFL);
            const rlimit none{0, 0};
            ::setrlimit(RLIMIT_FSIZE, &none);
        });
        QCOMPARE(process.rowsShown(), 20'000);
    }

    void theJournalGetsNothingOfTheUsers()
    {
        const QTemporaryDir own;
        const QString output = own.filePath(u"output"_s);
        writeTo(own.filePath(u"Documents/zandulist.txt"_s),
                "3/7/24|secret||1.0|1.0|1.0|1.0|3/7/24|0|0|Open|None|KEY^");
        for (const bool isJournal : {false, true}) {
            writeTo(output, {});
            struct stat file = {};
            QCOMPARE(::stat(QFile::encodeName(output).constData(), &file), 0);
            Running process(own.path());
            process.setStandardOutputFile(output);
            if (isJournal)
                process.setVariable(u"JOURNAL_STREAM"_s, u"%1:%2"_s.arg(file.st_dev).arg(file.st_ino));
            process.start();
            QTRY_VERIFY_WITH_TIMEOUT(contentOf(output).contains("Number of Rows: 1"), limit);
            QCOMPARE(contentOf(output).contains("secret"), !isJournal);
        }
    }

    void endsOrderlyWhenTheSystemSaysSo()
    {
        const QByteArray pipe = QFile::encodeName(home.filePath(u".config/quorvane/preferences.ini"_s));
        QVERIFY(QDir().mkpath(QFileInfo(QFile::decodeName(pipe)).path()) &&
                ::mkfifo(pipe.constData(), 0600) == 0);
        for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
            QProcess reader;
            Running process(home.path());
            process.setWorkingDirectory(u"/proc"_s); // where nobody can make a file
            process.setStandardOutputProcess(&reader);
            process.start();
            reader.start(u"head"_s, {u"-n1"_s});
            QVERIFY(reader.waitForFinished(limit)); // the program goes on, but nobody reads its lines
            const QString folder = QFile::symLinkTarget(u"/proc/%1/cwd"_s.arg(process.processId()));
            QCOMPARE(folder, QFileInfo(home.filePath(u"Documents"_s))
                                 .canonicalFilePath()); // a home for the whiteboard's picture
            ::kill(pid_t(process.processId()), signal);
            QVERIFY(process.waitForFinished(limit));
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
            QVERIFY(QFile::remove(state + u"window.ini"_s)); // the window was closed
        }
    }

    void looksAndSoundsAsTheDesktopDoes()
    {
        FakePortal portal(1);
        const QTemporaryDir empty; // home, and the folder of the pictures
        Running process(empty.path());
        process.setWorkingDirectory(empty.path());
        process.setVariable(u"QT_QPA_PLATFORM"_s, u"minimal"_s); // which keeps what it paints
        process.setVariable(u"QT_DEBUG_BACKINGSTORE"_s, u"1"_s);
        process.start();
        auto base = [&empty, seen = QColor()]() mutable { // of the table, which has no rows
            const QDir folder(empty.path(), u"*.png"_s, QDir::Name | QDir::Reversed);
            const QByteArray picture = contentOf(folder.filePath(folder.entryList().value(0)));
            if (picture.contains("IEND")) // is whole
                seen = QImage::fromData(picture).pixelColor(300, 300);
            return seen;
        };
        QTRY_COMPARE_WITH_TIMEOUT(base(), palettes::dark().color(QPalette::Base), limit);
        portal.change(2);
        QTRY_COMPARE_WITH_TIMEOUT(base(), palettes::light().color(QPalette::Base), limit);
        QTRY_VERIFY_WITH_TIMEOUT(
            contentOf(u"/proc/%1/maps"_s.arg(process.processId())).contains("quorvanesound"), limit);
    }
};

static const TestClass<ProgramTest> registered;
#include "ProgramTest.moc"
