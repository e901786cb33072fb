#include "cloud/CloudConnection.h"
#include "cloud/CloudMerge.h"
#include "cloud/CloudSync.h"
#include "cloud/SqlCloudContainer.h"
#include "cloud/TaskRecord.h"
#include "model/TaskManager.h"
#include "support/Appearance.h"
#include "support/CapturedOutput.h"
#include "support/FullDisk.h"
#include "support/PostgresServer.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"

#include <QRegularExpression>

#include <latch>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Tasks that are numbered, and named after their key.
QList<task> samples(int count, const QString &prefix = {})
{
    QList<task> tasks;
    for (int number = 0; number < count; ++number) {
        const QString key = prefix + QString::number(number);
        tasks.append(sampleTask(key, key));
    }
    return tasks;
}

CloudRecord recordOf(const task &entry)
{
    CloudRecord record = newTaskRecord();
    fillRecord(record, entry, true);
    return record;
}

/// One running program, as far as the cloud is concerned.
class Program
{
public:
    explicit Program(const CloudHome &home, const QList<task> &tasks = {})
        : container(home, taskRecordType())
    {
        fill(tasks);
        notices.observe(notice::reload, &notices, [this] { events += u'r'; });
        notices.observe(notice::update, &notices, [this] { events += u'u'; });
    }

    // What a user does, and all that follows from it.
    void fill(const QList<task> &tasks) { setTasks(manager, tasks); }
    void update() { settle(sync.updateFromCloud()); }
    void copy() { settle(sync.syncAllToCloud()); }
    void save(const task &entry) { settle(sync.saveTaskToCloud(entry)); }
    void remove(const QString &key) { settle(sync.deleteTaskFromCloud(key)); }
    void settle(bool isStarted = true) { QVERIFY(isStarted && sync.finish(60s)); }

    QStringList names() const { return namesOf(manager.tasks()); }

    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    TaskManager manager{preferences};
    NotificationCenter notices;
    SqlCloudContainer container;
    CloudSync sync{manager, notices, container};
    QString events;

    /// Lets the user do something after a request has been sent and before the cloud gets to it.
    void meanwhile(const std::function<void()> &doIt)
    {
        std::latch isHeld(1);
        container.accountStatus([&](const auto &) { isHeld.wait(); });
        doIt();
        isHeld.count_down();
        settle();
    }
};

/// What somebody else gets from there.
QStringList namesIn(const CloudHome &home)
{
    Program reader(home);
    reader.update();
    return reader.names();
}

} // namespace

class CloudTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        server = std::make_unique<PostgresServer>();
        // Whoever keeps the table may make roles, but need not be a superuser.
        QCOMPARE(server->run(u"admin"_s, u"CREATE ROLE keeper LOGIN CREATEROLE PASSWORD 'keeper';"
                                         "CREATE ROLE anna LOGIN PASSWORD 'anna';"
                                         "CREATE ROLE bert LOGIN PASSWORD 'bert';"
                                         "CREATE ROLE guest LOGIN PASSWORD 'guest';"
                                         "GRANT CREATE ON SCHEMA public TO keeper"_s),
                 QString());
        const QString script =
            QString::fromUtf8(contentOf(u"" SOURCE_DIR "/resources/cloud/postgresql.sql"_s));
        QCOMPARE(server->run(u"keeper"_s, script), QString());
        QVERIFY(!server->run(u"keeper"_s, script).contains(u"ERROR")); // it may be run again
        QCOMPARE(server->run(u"admin"_s, u"GRANT quorvane TO anna, bert"_s), QString());
        const QString passwords = folder.filePath(u"pgpass"_s);
        writeTo(passwords, "*:*:*:anna:anna\n*:*:*:bert:bert\n*:*:*:guest:guest\n*:*:*:nobody:nobody\n");
        QFile::setPermissions(passwords, QFile::ReadOwner | QFile::WriteOwner);
        qputenv("PGPASSFILE", passwords.toUtf8());
    }

    void cleanup() { server->run(u"admin"_s, u"TRUNCATE \"Task\""_s); }

    void accountFileTellsTheHome()
    {
        for (const auto &[url, description] : std::initializer_list<std::pair<QByteArray, QString>>{
                 {"", u"embedded /data/Cloud.sqlite"_s},
                 {"none", u"none"_s},
                 {"postgresql://anna@localhost:5433/p", u"://anna@localhost:5433/p?sslmode=prefer"_s},
                 {"postgresql://anna@db.example/p", u"://anna@db.example/p?sslmode=verify-full"_s},
                 {"postgresql://db/p?sslmode=require", u"://@db/p?sslmode=require"_s},
                 {"postgresql://anna:x@db/p", u"the password belongs in libpq's password file"_s},
                 {"postgresql://anna@db/p?options=-c", u"the address has an unknown part: options=-c"_s},
                 {"mysql://anna@db/p", u"the address is neither postgresql:"_s}})
            QVERIFY2(readHome(url).description().contains(description), url.constData());
    }

    void copiesUpdatesAndDeletes()
    {
        for (const CloudHome &home : homes()) {
            Program first(home);
            QVERIFY(first.sync.syncAllToCloud()); // nothing to copy
            first.fill({sampleTask(u"a"_s, u"A"_s), sampleTask(u"b"_s, u"B"_s)});
            first.copy();
            QCOMPARE(first.events,
                     u"uuuuuu"_s); // for each the edit and the addition that it becomes; two ends

            Appearance appearance(true);
            Program second(home, {sampleTask(u"local"_s, u"L"_s), task{.key = u"b"_s, .name = u"old"_s}});
            second.update();
            QCOMPARE(second.names(), QStringList({u"L"_s, u"B"_s, u"A"_s}));
            QCOMPARE(second.events, u"uru"_s);
            QCOMPARE(second.manager.lastMessage, u"----iCloud:Update Complete!----"_s);
            task expected = sampleTask(u"b"_s, u"B"_s);
            expected.color = expected.color.inverted();
            QVERIFY(haveEqualFields(*second.manager.tasks()[1], expected));
            second.copy(); // from the dark
            appearance.set(false);
            first.update();
            QCOMPARE(first.names(), QStringList({u"A"_s, u"B"_s, u"L"_s}));
            const Color shown = first.manager.tasks()[0]->color;
            QVERIFY(std::abs(shown.green - 1.0 / 3.0) < 1e-15 && shown.alpha == 0.25098039215686274);

            first.remove(u"a"_s);
            QCOMPARE(namesIn(home), QStringList({u"B"_s, u"L"_s}));
        }
    }

    void recordsOfOneKey()
    {
        for (const CloudHome &home : homes()) {
            Program program(home, {sampleTask(u"a"_s, u"local"_s)});
            program.sync.saveTaskToCloud(sampleTask(u"a"_s, u"first"_s));
            program.save(sampleTask(u"a"_s, u"last"_s));
            // A search with no hits: what is merged goes to the whole list.
            program.manager.startSearch(u"nowhere to be found"_s);
            program.update();
            program.manager.endSearch();
            QCOMPARE(program.names(), QStringList(u"last"_s));
            program.remove(u"a"_s);
            program.events.clear();
            program.manager.lastMessage = u"before"_s;
            program.update(); // of an empty cloud
            QCOMPARE(program.names(), QStringList(u"last"_s));
            QCOMPARE(program.events + program.manager.lastMessage, u"ubefore"_s);
        }
    }

    void recordsWithUnusableFields()
    {
        Program program(newFile());
        CloudRecord record = newTaskRecord();
        const CloudRecord whole = recordOf(sampleTask(u"a"_s, u"A"_s));
        for (const auto &[field, value] : whole.fields())
            if (field != u"client" && field != u"startHour")
                record.setValue(field, field == u"status" ? u"x"_s : value);
        program.container.privateCloudDatabase().saveRecord(record, {}, [](const auto &) {});
        CapturedOutput output;
        program.update();
        task expected = sampleTask(u"a"_s, u"A"_s);
        expected.client = u"UnAssigned"_s;
        expected.status = 0;
        expected.startHour = 8;
        QVERIFY(haveEqualFields(*program.manager.tasks().value(0, task()), expected));
        QCOMPARE(output.takeLines().filter(u"without a usable field"_s).size(), 3);
    }

    void accountStates()
    {
        const QString isOut = u"----iCloud:User is NOT Logged In----"_s;
        const QString isUnknown =
            u"----iCloud:Cannot Login (Unknown)---- Nothing was fetched from the cloud, since %1."_s;
        const QString isUnreachable = isUnknown.arg(u"the cloud cannot be reached"_s);
        const CloudHome damaged = newFile();
        writeTo(damaged.file, QByteArray(8192, 'x'));
        qputenv("PGHOST", "127.0.0.1");
        qputenv("PGHOSTADDR", "127.0.0.1");
        CloudHome hostless = homeOnServer(u"anna"_s);
        hostless.host.clear();
        for (const auto &[home, state] :
             {std::pair(CloudHome{.kind = CloudHome::Kind::SignedOut}, isOut),
              {homeOnServer(u"admin"_s), isOut}, // has another password
              {homeOnServer(u"nobody"_s), isOut},
              {homeOnServer(u"guest"_s), u"----iCloud:Cannot Login (Restricted)----"_s},
              {damaged, isUnknown.arg(u"the cloud's database is damaged"_s)},
              {hostless, isUnreachable}, // for nobody listens at the local socket
              {readHome("postgresql://127.0.0.1:1/planner"), isUnreachable}}) {
            Program program(home, samples(1));
            CapturedOutput output;
            program.update();
            QCOMPARE(program.manager.lastMessage, state);
            QVERIFY(!program.events.contains(u'r'));
            program.save(*program.manager.tasks()[0]);
            QVERIFY(output.takeLines().contains(u"----CloudKit:Save Error----"_s));
            QCOMPARE(program.names(), QStringList(u"0"_s));
        }
    }

    void rolesSeeTheirOwnRecordsOnly()
    {
        Program anna(homeOnServer(u"anna"_s));
        Program bert(homeOnServer(u"bert"_s));
        anna.save(sampleTask(u"a"_s, u"Anna's"_s));
        bert.save(sampleTask(u"a"_s, u"Bert's"_s));
        bert.update();
        QCOMPARE(bert.names(), QStringList(u"Bert's"_s));
        bert.remove(u"a"_s);
        const QString count = u"SELECT count(*) FROM \"Task\""_s;
        for (const QString &role : {u"bert"_s, u"keeper"_s})
            QCOMPARE(server->run(role, count), u"0"_s);
        for (const QString &attempt : {u"UPDATE \"Task\" SET name = 'x'"_s, u"DELETE FROM \"Task\""_s})
            QCOMPARE(server->run(u"bert"_s, attempt), QString());
        for (const QString &attempt : {u"INSERT INTO \"Task\" (owner, record_name) VALUES ('anna', 'x')"_s,
                                       u"ALTER TABLE \"Task\" DISABLE ROW LEVEL SECURITY"_s,
                                       u"SET ROLE anna"_s, u"TRUNCATE \"Task\""_s})
            QVERIFY2(server->run(u"bert"_s, attempt).contains(u"ERROR"), qPrintable(attempt));
        QVERIFY(server->run(u"guest"_s, count).contains(u"permission denied"));

        // Nor can anybody take the numbers that the server gives to new records.
        const QString last = server->run(u"admin"_s, u"SELECT max(seq) FROM \"Task\""_s);
        QCOMPARE(server->run(u"bert"_s, u"INSERT INTO \"Task\" (seq, record_name) OVERRIDING SYSTEM VALUE "
                                        "SELECT n, n FROM generate_series(%1, %1 + 99) n"_s.arg(last)),
                 QString());
        anna.save(sampleTask(u"b"_s, u"Anna's, too"_s));

        // Who may still read is told that not all is well.
        server->run(u"keeper"_s, u"REVOKE DELETE ON \"Task\" FROM quorvane"_s);
        anna.update();
        server->run(u"keeper"_s, u"GRANT DELETE ON \"Task\" TO quorvane"_s);
        QCOMPARE(anna.names(), QStringList({u"Anna's"_s, u"Anna's, too"_s}));
        QCOMPARE(anna.manager.lastMessage, u"----iCloud:Cannot Login (Restricted)----"_s);
    }

    void theUserGoesOnDuringATransfer()
    {
        for (const CloudHome &home : homes()) {
            Program program(home, samples(3));
            program.save(sampleTask(u"2"_s, u"before"_s));
            program.meanwhile([&] {
                QVERIFY(program.sync.syncAllToCloud());
                QVERIFY(!program.sync.updateFromCloud()); // one at a time
                program.sync.deleteTaskFromCloud(u"1"_s);
                program.sync.deleteTaskFromCloud(u"2"_s);
            });
            QCOMPARE(namesIn(home), QStringList(u"0"_s));
            QCOMPARE(program.manager.lastMessage, u"1 task was copied to the cloud."_s);
            program.meanwhile([&] {
                program.sync.syncAllToCloud();
                program.sync.stopTransfer();
                program.sync.deleteTaskFromCloud(u"0"_s); // not a part of what is stopped
            });
            QCOMPARE(namesIn(home), QStringList());
            QCOMPARE(program.manager.lastMessage, u"Stopped: 0 of 3 tasks were copied to the cloud."_s);
            program.copy();
            program.fill({});
            program.meanwhile([&] {
                program.sync.updateFromCloud();
                program.sync.deleteTaskFromCloud(u"1"_s);
            });
            QCOMPARE(program.names(), QStringList({u"0"_s, u"2"_s}));
            program.meanwhile([&] {
                program.sync.deleteTaskFromCloud(u"2"_s);
                program.fill({});
                program.sync.updateFromCloud();
            });
            QCOMPARE(program.names(), QStringList(u"0"_s));

            program.fill(samples(250)); // some of them are being saved when one is stored
            connect(&program.sync, &CloudSync::transferProgressed, &program.sync,
                    [&, isDeleted = false]() mutable {
                        if (program.sync.transfer()->done > 0 && !std::exchange(isDeleted, true))
                            for (const SharedTask &entry : program.manager.tasks())
                                program.sync.deleteTaskFromCloud(entry->key);
                    });
            program.copy();
            QCOMPARE(namesIn(home), QStringList());
        }
    }

    void whatIsBroughtBackIsInTheCloudAgain()
    {
        for (const CloudHome &home : homes()) {
            Program program(home, samples(1));
            program.copy();
            const SharedTask gone = program.manager.tasks()[0];
            const auto remove = [&] {
                program.sync.deleteTaskFromCloud(u"0"_s);
            };
            const auto restore = [&] {
                program.sync.restoreTaskInCloud(gone);
            };
            restore(); // nothing was removed
            program.settle();
            program.meanwhile([&] {
                remove();
                restore();
                QVERIFY(program.sync.syncAllToCloud());
            });
            QCOMPARE(namesIn(home), QStringList(u"0"_s));
            program.meanwhile([&] {
                remove();
                restore();
                remove();
            });
            QCOMPARE(namesIn(home), QStringList());
            program.meanwhile([&] {
                restore();
                remove();
                restore();
            });
            QCOMPARE(namesIn(home), QStringList(u"0"_s));
            program.copy();
            QCOMPARE(program.manager.lastMessage, u"1 task was copied to the cloud."_s);
            program.sync.restoreTaskInCloud(SharedTask(sampleTask(u"never"_s, u"there"_s)));
            program.settle();
            QCOMPARE(namesIn(home), QStringList(u"0"_s));
        }
    }

    void aLockedRecordIsTold()
    {
        Program program(homeOnServer(u"anna"_s), samples(20));
        program.copy();
        CloudConnection other(homeOnServer(u"anna"_s), taskRecordType());
        QVERIFY(other.open() && other.begin());
        const auto held = std::get<0>(other.find({taskRecordType().name}));
        for (const CloudRecord &record : held)
            other.save(record);
        program.copy();
        QCOMPARE(
            program.manager.lastMessage,
            u"Nothing was copied to the cloud, since another program keeps the cloud's database busy."_s);
    }

    void commitsAreSmall()
    {
        const CloudHome home = newFile();
        Program program(home, samples(250));
        size_t stored = 0;
        program.meanwhile([&] {
            for (const SharedTask &entry : program.manager.tasks())
                program.container.privateCloudDatabase().saveRecord(recordOf(*entry), {}, [&](const auto &) {
                    CloudConnection other(home, taskRecordType());
                    if (stored == 0 && other.open())
                        stored = std::get<0>(other.find({taskRecordType().name})).size();
                });
        });
        QVERIFY(stored > 0 && stored <= 100);
    }

    void aLostServerIsFoundAgain()
    {
        Program program(homeOnServer(u"anna"_s));
        program.save(sampleTask(u"0"_s, u"0"_s));
        server->run(
            u"admin"_s,
            u"SELECT pg_terminate_backend(pid, 20000) FROM pg_stat_activity WHERE usename = 'anna'"_s);
        program.update(); // a connection that is lost while idle is not missed
        QCOMPARE(program.names(), QStringList(u"0"_s));
        QCOMPARE(program.events, u"uuru"_s);
        program.fill(samples(3000));
        CapturedOutput output;
        program.sync.syncAllToCloud();
        QVERIFY(QTest::qWaitFor(
            [&] { return output.takeLines().contains(u"----CloudKit:Save Success----"_s); }, 30'000));
        server->stop();
        program.settle();
        static const QRegularExpression told(
            u"(\\d+) of 3000 tasks were copied to the cloud; the others were not, since (the connection to "
            "the cloud was lost|the cloud cannot be reached)\\.$"_s);
        const QString outcome = program.manager.lastMessage;
        const int copied = told.match(outcome).captured(1).toInt();
        program.copy();
        server->start();
        QCOMPARE(program.manager.lastMessage,
                 u"----iCloud:Cannot Login (Unknown)---- Nothing was copied to the "
                 "cloud, since the cloud cannot be reached."_s);
        const int stored = server->run(u"anna"_s, u"SELECT count(*) FROM \"Task\""_s).toInt();
        QVERIFY2(copied > 0 && copied <= stored && stored <= copied + 100,
                 qPrintable(outcome + QString::number(stored)));
        program.copy();
        QCOMPARE(server->run(u"anna"_s, u"SELECT count(DISTINCT key), count(*) >= 3000 FROM \"Task\""_s),
                 u"3000|t"_s);
    }

    void aSpoiltRequestSpoilsNoOther()
    {
        QList<task> tasks = samples(9);
        tasks[5].name = QChar(0); // no text of the server's can hold it
        Program program(homeOnServer(u"anna"_s), tasks);
        CapturedOutput output;
        program.copy();
        QCOMPARE(output.takeLines().count(u"----CloudKit:Save Error----"_s), 1);
        QCOMPARE(program.manager.lastMessage,
                 u"8 of 9 tasks were copied to the cloud; the others were not, since "
                 "the cloud's database cannot hold it."_s);
        program.remove(u"8"_s);
        QCOMPARE(program.manager.lastMessage, QString());
        QCOMPARE(namesIn(homeOnServer(u"anna"_s)).size(), 7);
    }

    void aFullDiskFailsAndSpoilsNothing()
    {
        const CloudHome home = newFile();
        int saved = 0;
        int failed = 0;
        {
            const FullDisk full(500'000);
            Program program(home);
            for (const task &entry : samples(100, QString(2000, u'x')))
                program.container.privateCloudDatabase().saveRecord(
                    recordOf(entry), {},
                    [&](const auto &answer) { ++(answer.index() == 0 ? saved : failed); });
            program.settle();
        }
        QVERIFY(saved > 0 && failed > 0);
        QCOMPARE(namesIn(home).size(), saved);
    }

    void twoProgramsWriteAtOnce()
    {
        for (const CloudHome &home : homes()) {
            Program first(home, samples(501, u"a"_s));
            Program second(home, samples(501, u"b"_s));
            first.sync.syncAllToCloud();
            second.copy();
            first.settle();
            QCOMPARE(namesIn(home).size(), 1002);
        }
    }

    void muchMayHappenDuringAMerge()
    {
        Program program(newFile(), samples(200));
        TaskManager &manager = program.manager;
        std::vector<CloudRecord> records;
        for (const SharedTask &entry : manager.tasks())
            records.push_back(recordOf(task{.key = entry->key, .name = u'n' + entry->key}));

        // Between its parts the user moves a task up.
        CloudMerge merge(manager, records);
        qint64 chosen = manager.selectTaskByKey(u"199"_s);
        while (merge.mergeSome({})) {
            QCOMPARE(manager.selected(), chosen);
            manager.moveSelectedTask(true);
            chosen = manager.selectTaskByKey(u"199"_s);
        }
        QVERIFY(chosen < 199);
        for (const SharedTask &entry : manager.tasks())
            QVERIFY(entry->name == u'n' + entry->key && !entry->hidden);

        // The user's moves are steps between the parts of the merge.
        int steps = 0;
        while (manager.undo())
            ++steps;
        QCOMPARE(steps, 7);
        for (qint64 number = 0; number < 200; ++number)
            QVERIFY(haveEqualFields(*manager.tasks()[number], samples(200)[number]));
        while (manager.redo())
            continue;
        QCOMPARE(program.names()[chosen], u"n199"_s);
        manager.history().clear();
        CloudMerge same(manager, records); // which changes nothing
        while (same.mergeSome({}))
            continue;
        QVERIFY(!manager.undo());

        // The window reads its file, which is empty, anew; the second time since the desktop has turned dark.
        for (const bool isDark : {false, true}) {
            program.fill({});
            CloudMerge again(manager, records);
            QVERIFY(again.mergeSome({}));
            const Appearance appearance(isDark);
            program.fill({});
            while (again.mergeSome({}))
                continue;
            QCOMPARE(manager.undo()->name, u"Update from Cloud"_s); // all of it in one step
            QVERIFY(manager.tasks().isEmpty());
            manager.redo();
            QCOMPARE(manager.tasks().size(), 200);
            for (const SharedTask &entry : manager.tasks())
                QCOMPARE(entry->color.red, isDark ? 0.0 : 1.0);
        }
    }

    void everyRequestIsAnsweredWhoeverGoesFirst()
    {
        std::atomic<int> answers = 0;
        std::latch isHeld(1);
        {
            Program program(newFile());
            program.container.accountStatus([&](const auto &) { isHeld.wait(); });
            CloudSync(program.manager, program.notices, program.container).updateFromCloud();
            const bool isFinished = program.sync.finish(0ms);
            isHeld.count_down();
            QVERIFY(!isFinished);
            program.settle();
            QCoreApplication::processEvents();
            QCOMPARE(program.events, QString()); // whom the answers were for is gone

            CloudDatabase &database = program.container.privateCloudDatabase();
            const auto count = [&](auto) {
                answers += QThread::currentThread() != thread();
            };
            for (int number = 0; number < 3000; ++number)
                database.performQuery({taskRecordType().name}, {}, [&](const auto &answer) {
                    count(answer);
                    database.performQuery({taskRecordType().name}, {}, count);
                });
        }
        QCOMPARE(answers.load(), 6000);
    }

private:
    /// A home in a file of its own.
    CloudHome newFile() { return {.file = folder.filePath(u"%1/Cloud.sqlite"_s.arg(++files))}; }
    QList<CloudHome> homes() { return {newFile(), homeOnServer(u"anna"_s)}; }

    static CloudHome readHome(const QByteArray &url)
    {
        const QTemporaryDir own;
        writeTo(own.filePath(u"cloud.ini"_s), url.isEmpty() ? "\n" : "url=" + url + '\n');
        return CloudHome::read(own.filePath(u"cloud.ini"_s), u"/data"_s);
    }

    CloudHome homeOnServer(const QString &role) const { return readHome(server->url(role).toUtf8()); }

    QTemporaryDir folder;
    int files = 0;
    std::unique_ptr<PostgresServer> server;
};

static const TestClass<CloudTest> registered;
#include "CloudTest.moc"
