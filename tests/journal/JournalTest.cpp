#include "journal/MessageJournal.h"
#include "journal/ViewControllerJournal.h"
#include "support/Dialogs.h"
#include "support/FullDisk.h"
#include "support/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTableView>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 day = 24LL * 60 * 60 * 1000;
constexpr qint64 noon = 1'800'014'400'000; // of a day in 2027
using enum JournalStore::Durability;

SentMessage message(qint64 id, const QString &person, const QString &text, qint64 moment = noon)
{
    return {.id = id,
            .moment = moment,
            .isTeamMember = true,
            .person = person,
            .phoneNo = u"0151 / 555"_s,
            .number = u"+49151555"_s,
            .taskKey = u"key"_s,
            .taskName = u"Mow 'the' lawn"_s,
            .taskDay = {2027, 1, 15},
            .firstDay = {2027, 1, 14},
            .lastDay = {2027, 1, 20},
            .text = text,
            .account = u"AC12"_s,
            .state = MessageState::HandedOver,
            .identifier = u"SM1"_s,
            .code = 7,
            .reason = u"why; \"not\" 🌳"_s};
}

SentMessage answered(SentMessage message, MessageState state, int code = 0)
{
    message.state = state;
    message.code = code;
    message.reason.clear();
    return message;
}

bool isSame(const SentMessage &a, const SentMessage &b)
{
    const auto values = [](const SentMessage &of) {
        return std::tie(of.id, of.moment, of.isTeamMember, of.person, of.phoneNo, of.number, of.isTest,
                        of.taskKey, of.taskName, of.taskDay, of.firstDay, of.lastDay, of.text, of.account,
                        of.state, of.identifier, of.code, of.reason);
    };
    return values(a) == values(b);
}

mode_t modeOf(const QString &path)
{
    struct stat entry = {};
    return ::stat(QFile::encodeName(path).constData(), &entry) == 0 ? entry.st_mode & 0777 : 0;
}

/// What another program does with the file.
class OtherConnection
{
public:
    explicit OtherConnection(const QString &path)
        : database(QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s))
    {
        database.setDatabaseName(path);
        if (!database.open())
            qFatal("no other connection");
    }
    ~OtherConnection()
    {
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(u"other"_s);
    }
    Q_DISABLE_COPY(OtherConnection)

    bool run(const QString &statement) const { return QSqlQuery(database).exec(statement); }

private:
    QSqlDatabase database;
};

} // namespace

/// The journal's file, and the real screen over it.
class JournalTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { home = std::make_unique<QTemporaryDir>(); }

    void keepsEverythingForTheUserAlone()
    {
        writeTo(file(), {});
        QFile::setPermissions(file(), QFile::Permissions(0x6644)); // as restored from elsewhere
        JournalStore store(home->path());
        const SentMessage sent = message(1, u"Ann Öz"_s, u"11/6/26 Mow"_s);
        QVERIFY(store.write({sent, message(2, u"Bob"_s, u"Trim"_s, noon + 1)}, {}, Machine));
        for (const char *ending : {"", "-wal", "-shm"})
            QCOMPARE(modeOf(file() + QString::fromLatin1(ending)), mode_t(0600));
        QVERIFY(isSame(JournalStore(home->path()).messages({1}).at(0), sent));
        QCOMPARE(store.find({}), (std::vector<qint64>{2, 1}));
        QCOMPARE(store.people(), (QStringList{u"Ann Öz"_s, u"Bob"_s}));

        const SentMessage accepted = answered(sent, MessageState::Accepted);
        QVERIFY(
            store.write({}, {accepted, answered(message(2, {}, {}), MessageState::Refused, 21610)}, Process));
        QVERIFY(isSame(store.messages({1}).at(0), accepted));
        QCOMPARE(store.sentFor({2027, 1, 20}, {2027, 1, 30}).size(), 1);
        QVERIFY(store.sentFor({2027, 1, 21}, {2027, 1, 30}).empty());
        QCOMPARE(store.declinedNumbers(), QSet<QString>{sent.number});
        QVERIFY(store.write({}, {accepted}, Process)); // so the owner wants them again
        QVERIFY(store.declinedNumbers().isEmpty());
    }

    void finds_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("person");
        QTest::addColumn<QDate>("day");
        QTest::addColumn<std::vector<qint64>>("found");
        using Found = std::vector<qint64>;
        QTest::newRow("everything") << u""_s << u""_s << QDate() << Found{3, 2, 1};
        QTest::newRow("any case, beyond ASCII") << u"ÖL"_s << u""_s << QDate() << Found{2, 1};
        QTest::newRow("number") << u"4915155"_s << u"Bob"_s << QDate() << Found{3};
        QTest::newRow("no pattern") << u"%"_s << u""_s << QDate() << Found{};
        QTest::newRow("person's day") << u""_s << u"Ann"_s << QDate(2027, 1, 15) << Found{1};
        QTest::newRow("next day") << u""_s << u""_s << QDate(2027, 1, 16) << Found{3, 2};
    }

    void finds()
    {
        QFETCH(const QString, words);
        QFETCH(const QString, person);
        QFETCH(const QDate, day);
        JournalStore store(home->path());
        const qint64 midnight = QDate(2027, 1, 16).startOfDay().toMSecsSinceEpoch();
        QVERIFY(store.write({message(1, u"Ann"_s, u"Öl 1"_s, midnight - 1),
                             message(2, u"Ann"_s, u"öl 2"_s, midnight),
                             message(3, u"Bob"_s, u""_s, midnight + 1)},
                            {}, Machine));
        QTEST(store.find({words, person, day.isValid() ? std::optional(day) : std::nullopt}), "found");
        QCOMPARE(store.days(), (QList<QDate>{{2027, 1, 16}, {2027, 1, 15}}));
    }

    void badFilesAreToldOf_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("problem");
        QTest::newRow("newer") << u"newer"_s << u"it was written by a newer version of the program"_s;
        QTest::newRow("locked") << u"locked"_s << u"another program keeps it to itself"_s;
        QTest::newRow("folder") << u""_s << u"something else is in place of Messages.sqlite"_s;
        for (const QString &ending : {u"-wal"_s, u"-shm"_s, u"-journal"_s})
            QTest::addRow("pipe %s", qPrintable(ending))
                << ending << u"something else is in place of Messages.sqlite"_s + ending;
        QTest::newRow("full disk") << u"full"_s << u""_s;
    }

    void badFilesAreToldOf()
    {
        QFETCH(const QString, what);
        QFETCH(const QString, problem);
        std::unique_ptr<OtherConnection> other;
        std::unique_ptr<FullDisk> disk;
        if (what.isEmpty()) {
            QVERIFY(QDir().mkdir(file()));
        } else {
            QVERIFY(JournalStore(home->path()).write({message(1, u"Ann"_s, u"a"_s)}, {}, Machine));
            if (what.startsWith(u'-')) {
                QCOMPARE(::mkfifo(QFile::encodeName(file() + what).constData(), 0600), 0);
            } else {
                other = std::make_unique<OtherConnection>(file());
                QVERIFY(other->run(what == u"newer" ? u"PRAGMA user_version = 2"_s : u"BEGIN IMMEDIATE"_s));
            }
        }
        if (what == u"full") {
            other.reset();
            disk = std::make_unique<FullDisk>(40'000);
        }
        MessageJournal journal(home->path());
        const QSignalSpy told(&journal, &MessageJournal::told);
        QString recordedProblem;
        QSemaphore recorded;
        journal.record({message(2, u"Ann"_s, QString(40'000, u'x'))}, [&](const QString &reason) {
            recordedProblem = reason;
            recorded.release();
        });
        recorded.acquire();
        disk.reset();
        QVERIFY(!recordedProblem.isEmpty() && (problem.isEmpty() || recordedProblem == problem));
        QTRY_COMPARE(told.size(), 1);
        QVERIFY(told[0][0].toString().contains(recordedProblem) && !journal.isUnderWay(2));
        other.reset();
        if (what == u"locked" || what == u"full") {
            JournalStore store(home->path());
            QCOMPARE(store.find({}), std::vector<qint64>{1});
            QVERIFY(store.write({message(2, u"Ann"_s, u"b"_s)}, {}, Machine)); // as soon as it can be
        }
    }

    void damagedFilesArePutAside_data()
    {
        QTest::addColumn<int>("from");
        QTest::newRow("no database") << 0;
        QTest::newRow("beyond its first page") << 4096;
    }

    void damagedFilesArePutAside()
    {
        QFETCH(const int, from);
        {
            std::vector<SentMessage> messages;
            for (int id = 1; id <= 200; ++id)
                messages.push_back(message(id, u"Ann"_s, u"text"_s));
            QVERIFY(JournalStore(home->path()).write(messages, {}, Machine));
        }
        const QByteArray damaged = contentOf(file()).first(from) + QByteArray(20'000, 'x');
        writeTo(file(), damaged);
        MessageJournal journal(home->path());
        ViewControllerJournal screen(journal);
        screen.show();
        QVERIFY(toldIn(screen).contains(u"the file is damaged. It is kept"_s) || from > 0);
        JournalStore store(home->path());
        QVERIFY(store.write({message(300, u"Ann"_s, u"new"_s)}, {}, Machine));
        const QString aside = store.takeAsidePath();
        QCOMPARE(contentOf(aside), damaged);
        journal.record({message(301, u"Bob"_s, u"in the same one"_s)}, {});
        QTRY_COMPARE(rows(screen), u"Bob Ann"_s);
        QCOMPARE(toldIn(screen), QString());
    }

    void othersMayComeAndGo()
    {
        JournalStore store(home->path());
        QVERIFY(store.write({message(1, u"Ann"_s, u"a"_s)}, {}, Machine));
        QCOMPARE(JournalStore(home->path()).find({}).size(), 1U); // without a loss of the first one's locks
        const QStringList arguments{u"journal"_s, home->path(), u"-1"_s, u"kill"_s}; // writes number 2
        QProcess other;
        other.start(u"" BINARY_DIR "/bin/saver"_s, arguments);
        QVERIFY(other.waitForFinished() && other.exitCode() == EXIT_SUCCESS);
        QVERIFY2(QFile::exists(file() + u"-wal"_s), "the other one took itself for the last");
        QVERIFY(store.write({message(3, u"Ann"_s, u"a"_s, noon + 1)}, {}, Machine));
        QCOMPARE(JournalStore(home->path()).find({}), (std::vector<qint64>{3, 1, 2}));
    }

    void isKeptForAYear()
    {
        JournalStore store(home->path());
        const auto count = [&] {
            return store.find({}).size();
        };
        std::vector<SentMessage> messages;
        for (int number = 0; number < 500; ++number)
            messages.push_back(message(number + 1, u"Ann"_s, u"a"_s, noon + number * day));
        QVERIFY(store.write(messages, {}, Machine));
        const qint64 now = messages.back().moment;
        QVERIFY(store.removeOld(now - 10'000 * day)); // by clocks that are wrong
        QVERIFY(store.removeOld(now + 10'000 * day));
        QVERIFY2(count() > 330, "a wrong clock costs more than a month");
        QVERIFY(store.write({message(1000, u"Ann"_s, u"a"_s, now + 10'000 * day)}, {}, Machine));
        QVERIFY(store.removeOld(now + 10'001 * day));
        QVERIFY(count() > 330);
        QVERIFY(store.removeOld(now + 20 * day));
        QVERIFY2(count() >= 336 && count() < 350, QByteArray::number(count()));
    }

    void nothingIsLeftOfWhatIsForgotten()
    {
        const auto isInFiles = [this](const QByteArray &text) {
            const QStringList names = QDir(home->path()).entryList(QDir::Files);
            return std::ranges::any_of(
                names, [&](const QString &name) { return contentOf(home->filePath(name)).contains(text); });
        };
        MessageJournal journal(home->path());
        QSemaphore recorded;
        const auto record = [&](const SentMessage &begun) {
            journal.record({begun}, [&](const QString &) { recorded.release(); });
            recorded.acquire();
        };
        record(message(1, u"Ann"_s, u"first secret"_s));
        journal.note(answered(message(1, u"Ann"_s, {}), MessageState::Accepted));
        record(message(2, u"Bob"_s, u"second secret"_s));
        QTRY_VERIFY(!journal.isUnderWay(1) && journal.isUnderWay(2));
        const QSignalSpy forgotten(&journal, &MessageJournal::forgotten);
        journal.forget(std::nullopt);
        QTRY_COMPARE(forgotten.size(), 1);
        QCOMPARE(forgotten[0][0].toString(), QString());
        QVERIFY(!isInFiles("first secret") && !isInFiles("Ann") && isInFiles("second secret"));
        journal.note(answered(message(2, u"Bob"_s, {}), MessageState::Accepted));
        QTRY_VERIFY(!journal.isUnderWay(2));
        {
            const OtherConnection other(file()); // which still reads
            QVERIFY(other.run(u"BEGIN"_s) && other.run(u"SELECT count(*) FROM message"_s));
            journal.forget(u"Bob"_s);
            QTRY_COMPARE_WITH_TIMEOUT(forgotten.size(), 2, 20'000);
            QVERIFY(forgotten[1][0].toString().startsWith(u"they are no longer shown"));
        }
        journal.forget(u"Bob"_s);
        QTRY_COMPARE(forgotten.size(), 3);
        QVERIFY(forgotten[2][0].toString().isEmpty() && !isInFiles("second secret"));
    }

    void showsFindsAndForgets()
    {
        MessageJournal journal(home->path());
        ViewControllerJournal screen(journal);
        const QAbstractItemModelTester tester(child<QTableView>(screen, "table")->model());
        screen.show();
        QVERIFY(child<QLabel>(screen, "emptyLabel")->text().startsWith(u"No messages yet."));
        QVERIFY(!child<QPushButton>(screen, "forgetAllButton")->isEnabled());
        QSemaphore recorded;
        journal.record({message(1, u"Ann & Co"_s, u"all of\nthe text"_s, noon - day),
                        message(2, u"Bob"_s, u"b"_s), message(3, u"Bob"_s, u"c"_s, noon + 1)},
                       [&](const QString &) { recorded.release(); });
        recorded.acquire();
        QTRY_COMPARE(rows(screen), u"Bob Bob Ann & Co"_s); // by itself
        journal.note(answered(message(2, u"Bob"_s, {}), MessageState::Undelivered));
        QTRY_COMPARE(cell(screen, 1, JournalTable::State), u"Not delivered"_s);
        QCOMPARE(cell(screen, 0, JournalTable::State), u"Being sent"_s);
        auto *table = child<QTableView>(screen, "table");
        QVERIFY(table->model()->index(1, JournalTable::State).data(Qt::DecorationRole).isValid());
        QCOMPARE(child<QLabel>(screen, "countLabel")->text(), u"3 messages"_s);

        child<QLineEdit>(screen, "searchField")->setText(u"THE TEXT"_s);
        QCOMPARE(rows(screen), u"Ann & Co"_s);
        QCOMPARE(child<QPlainTextEdit>(screen, "textView")->toPlainText(), u"all of\nthe text"_s);
        QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
        QVERIFY(
            QGuiApplication::clipboard()->text().contains(u"\tAnn & Co\t+49151555\tall of\nthe text\t"_s));
        child<QComboBox>(screen, "personBox")->setCurrentIndex(2);
        QVERIFY(child<QLabel>(screen, "emptyLabel")->isVisible());
        child<QLineEdit>(screen, "searchField")->setFocus();
        QTest::keyClick(child<QLineEdit>(screen, "searchField"), Qt::Key_Escape);
        QCOMPARE(rows(screen), u"Bob Bob"_s);
        child<QComboBox>(screen, "dayBox")->setCurrentIndex(2);
        QCOMPARE(rows(screen), QString());
        child<QComboBox>(screen, "personBox")->setCurrentIndex(0);
        QCOMPARE(rows(screen), u"Ann & Co"_s);

        child<QComboBox>(screen, "dayBox")->setCurrentIndex(0);
        QCOMPARE(table->currentIndex().row(), 2); // still that one
        table->selectRow(1);
        journal.note(answered(message(3, u"Bob"_s, {}), MessageState::Delivered));
        QTRY_COMPARE(cell(screen, 0, JournalTable::State), u"Delivered"_s);
        for (const auto &[button, question, left] :
             {std::tuple("forgetPersonButton", u"Forget 2 messages to Bob?"_s, u"Ann & Co"_s),
              {"forgetAllButton", u"Forget everything: 1 message?"_s,
               u"Ann & Co"_s}}) { // which is being sent
            const AlertAnswer answer(u"Yes"_s);
            child<QPushButton>(screen, button)->click();
            QCOMPARE(answer.text, question);
            QTRY_COMPARE(rows(screen), left);
            QTRY_VERIFY(child<QPushButton>(screen, "forgetAllButton")->isEnabled());
        }
        screen.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        QTest::keyClick(&screen, Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!screen.isVisible());
        MessageJournal next(home->path()); // of the program after a crash
        const ViewControllerJournal after(next);
        QCOMPARE(rows(after), u"Ann & Co"_s);
        QVERIFY(cell(after, 0, JournalTable::State).startsWith(u"No answer: may have arrived"_s));
    }

private:
    QString file() const { return home->filePath(u"Messages.sqlite"_s); }

    template <typename Widget>
    static Widget *child(const QWidget &screen, const char *name)
    {
        return screen.findChild<Widget *>(QString::fromLatin1(name));
    }
    static QString cell(const QWidget &screen, int row, int column)
    {
        return child<QTableView>(screen, "table")->model()->index(row, column).data().toString();
    }
    static QString rows(const QWidget &screen)
    {
        QStringList people;
        for (int row = 0; row < child<QTableView>(screen, "table")->model()->rowCount(); ++row)
            people.append(cell(screen, row, JournalTable::Person));
        return people.join(u' ');
    }

    std::unique_ptr<QTemporaryDir> home;
};

static const TestClass<JournalTest> registered;
#include "JournalTest.moc"
