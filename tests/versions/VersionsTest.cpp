#include "platform/RedoFile.h"
#include "support/FullDisk.h"
#include "support/TestProgram.h"
#include "versions/VersionStore.h"

#include <QDir>
#include <QSignalSpy>

#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A row whose other fields are given as they stand in it.
QByteArray row(const QByteArray &key, const QByteArray &name, const QByteArray &color = "1.0|1.0|0.8",
               const QByteArray &date = "3/7/24")
{
    return date + '|' + name + "||" + color + "|1.0|3/9/24|0|0|Open|None|" + key +
           "|false|8|0|17|0|Smith|Anna^";
}

QString summaryOf(const QByteArray &before, const QByteArray &after)
{
    return VersionSummary::of(ListRows(before), ListRows(after)).text();
}

/// \param now  milliseconds since the machine's start
ClockReading at(qint64 now)
{
    const std::chrono::milliseconds sinceStart(now);
    return {Instant(472'222 * 1h + sinceStart), sinceStart}; // the start of an hour
}

} // namespace

class VersionsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { home = std::make_unique<QTemporaryDir>(); }

    void tellsWhatChanged()
    {
        const QByteArray a = row("A", "a");
        const QByteArray b = row("B", "b");
        const QByteArray c = row("C", "c");
        for (const auto &[before, after, text] : QList<std::tuple<QByteArray, QByteArray, QString>>{
                 {a + b, a + b, u"2 tasks"_s},
                 {a + b, b + c, u"1 added: c; 1 removed: a"_s},
                 {a + b + c, a + row("B", "bb") + c, u"1 changed: bb"_s},
                 {a + b + c, b + c + a, u"1 moved"_s},
                 {a + a, a, u"1 removed: a"_s}, // one of two with the same key
                 {a + row("A", "second"), a + row("A", "2nd"), u"1 changed: 2nd"_s},
                 {{}, a + b + c + row("D", " d\n"), u"4 added: a, b, c, …"_s},
                 {row("", "old") + a, a + row("K", "old"), u"1 moved"_s}, // which had no key
                 // Other texts of the same values, and a row of an early version.
                 {row("A", "a", "0.2|1|1e0"), row("A", "a", "0.19999999999999996|1.0|1.0"), u"1 task"_s},
                 {row("A", "a", "0|0|0", "03/07/2024"), row("A", "a", "0|0|0"), u"1 task"_s},
                 {a.first(a.indexOf("|false")) + '^', '\n' + a, u"1 task"_s}})
            QCOMPARE(summaryOf(before, after), text);
        const VersionDiff diff = VersionDiff::between(
            ListRows(a), ListRows(row("A", "a", "0|1|1").replace("|0|0|Open", "|1|0|Closed")));
        QCOMPARE(taskFields::titlesOf(diff.changes.first().fields), QStringList({u"Status"_s, u"Color"_s}));
    }

    /// Whatever the clock is set to, versions go by their true age or stay longer.
    void noClockThinsOut()
    {
        constexpr qint64 hour = 3'600'000; // milliseconds
        constexpr qint64 day = 24 * hour;
        constexpr qint64 year = 365 * day;
        std::mt19937 random(5);
        const auto below = [&random](qint64 limit) {
            return qint64(random()) * 1000 % limit;
        };
        for (int round = 0; round < 30; ++round) {
            QList<Version> all;
            QList<Version> kept;
            qint64 now = 0;
            qint64 setBy = 0; // how far the clock is off
            auto clock = std::make_unique<VersionClock>();
            for (int number = 1; number <= 400; ++number) {
                const qint64 step = QList<qint64>{
                    0, 1, below(hour / 6), below(hour), below(10 * day), below(60 * day)}[below(6)];
                now += step;
                if (below(20) == 0)
                    setBy = (below(3) - 1) * (2 + below(50)) * year;
                if (below(10) == 0) // another run
                    clock = std::make_unique<VersionClock>();
                ClockReading reading = at(now);
                reading.time += std::chrono::milliseconds(setBy);
                Version version{.number = number, .time = reading.time, .room = 4096};
                version.clock = clock->at(reading, kept.isEmpty() ? nullptr : &kept.last());
                QVERIFY(kept.isEmpty() ||
                        (version.clock >= kept.last().clock && version.clock - kept.last().clock <= step));
                all.append(version);
                kept.append(version);
                const std::vector<bool> staying = areStaying(kept);
                size_t place = 0;
                kept.removeIf([&](const Version &) { return !staying[place++]; });
                qsizetype young = 0;
                for (const Version &former : all) {
                    const qint64 age = version.clock - former.clock;
                    const qint64 grain = age < hour ? 1 : age < day ? hour : day;
                    young += age < hour;
                    QVERIFY(age >= year || std::ranges::any_of(kept, [&](const Version &other) {
                                return age < hour ? other.number == former.number
                                                  : other.clock / grain == former.clock / grain;
                            }));
                }
                QVERIFY(kept.size() <= young + 25 + 366);
            }
        }
    }

    void newestTakeTheRoom()
    {
        const std::vector<bool> staying = areStaying(QList<Version>(10, {.room = 20 << 20}));
        QVERIFY(staying.back() && std::ranges::count(staying, true) == 3);
    }

    void keepsAndThinsOut()
    {
        const QString folder = home->path() + u"/versions"_s;
        writeTo(folder + u"/0000000009.version.new"_s, "half");
        const QByteArray texts[] = {row("A", "a"), row("A", "b"), row("A", "b") + row("C", "c")};
        {
            VersionKeeper keeper(folder);
            for (const QByteArray &text : texts)
                QCOMPARE(keeper.keep(text, at(0)), VersionKeeper::Outcome::Kept); // within a second
            QCOMPARE(keeper.keep(texts[2], at(9)), VersionKeeper::Outcome::Same);
        }
        VersionKeeper keeper(folder);
        QCOMPARE(keeper.keep(texts[2], at(9)), VersionKeeper::Outcome::Same);
        QCOMPARE(versionFile::list(folder).versions.size(), 3);
        QCOMPARE(keeper.keep(row("D", "d"), at(7'200'000)), VersionKeeper::Outcome::Kept);
        QVERIFY(!keeper.updateSummary()); // it is compared with the one that stays
        const QList<Version> versions = versionFile::list(folder).versions;
        QCOMPARE(versions.size(), 2);
        QCOMPARE(versions[0].number, 3);
        QCOMPARE(versionFile::readText(versionFile::pathOf(folder, 3)), texts[2]);
        QCOMPARE(QFile::permissions(versionFile::pathOf(folder, 3)) & 0x77, QFile::Permissions());
        QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 2);
    }

    void tellsAgainstTheOneThatIsLeft()
    {
        constexpr qint64 minute = 60'000;
        const QString folder = home->path();
        VersionKeeper keeper(folder);
        for (const auto &[when, name] : {std::pair(0, "a"), {70, "b"}, {80, "c"}, {200, "d"}})
            keeper.keep(row("A", "same") + row("B", name) + row(name, name), at(when * minute));
        QVERIFY(keeper.updateSummary() && !keeper.updateSummary());
        const QList<Version> versions = versionFile::list(folder).versions;
        QCOMPARE(versions.size(), 3);
        QCOMPARE(versions[1].summary.text(), u"1 added: c; 1 changed: c; 1 removed: a"_s);
    }

    void damagedAndForeignFilesAreNamed()
    {
        const QString folder = home->path();
        {
            VersionKeeper keeper(folder);
            for (int number = 1; number <= 5; ++number)
                keeper.keep(row("A", QByteArray::number(number)), at(number));
        }
        const auto path = [&folder](qint64 number) {
            return versionFile::pathOf(folder, number);
        };
        const QByteArray whole = contentOf(path(1));
        writeTo(path(1), whole.chopped(1));
        writeTo(path(2), QByteArray(contentOf(path(2))).replace("~", "+"));
        writeTo(path(3), contentOf(path(4)));                            // another one's
        writeTo(path(4), contentOf(path(4)).chopped(3) + "abc");         // shows only when it is read
        writeTo(path(7), QByteArray(whole).replace("sion 1", "sion 2")); // of a later program
        writeTo(folder + u"/letter.txt"_s, "Dear");
        const versionFile::Listing listing = versionFile::list(folder);
        QCOMPARE(listing.unreadable.size(), 5);
        QCOMPARE(listing.versions.size(), 2);
        QVERIFY(!versionFile::readText(path(4)) && versionFile::readText(path(5)));
        VersionKeeper keeper(folder);
        QCOMPARE(keeper.keep(row("B", "b"), at(9)), VersionKeeper::Outcome::Kept);
        QVERIFY(versionFile::readText(path(8))); // none has been overwritten
        QCOMPARE(versionFile::list(folder).unreadable, listing.unreadable);
    }

    void aThousandInARow()
    {
        VersionStore store(home->path());
        const QByteArray large = row("A", QByteArray(9 << 20, 'x'));
        for (int number = 0; number < 1000; ++number)
            store.keep(large + row("B", QByteArray::number(number)));
        QVERIFY(store.finish(60s));
        const QList<Version> versions = versionFile::list(store.folder()).versions;
        QVERIFY(versions.size() < 100); // what the thread could not follow was left out, and not the last
        QVERIFY(versionFile::readText(versionFile::pathOf(store.folder(), versions.last().number))
                    ->contains("|999|"));
    }

    void makesRoomAndTellsOnce()
    {
        VersionStore store(home->path());
        const QSignalSpy told(&store, &VersionStore::told);
        const QString list = home->filePath(u"Documents/list.txt"_s); // in a folder that is still to be made
        QVERIFY(!store.makeRoom(list, 1));                            // nothing there
        std::mt19937 random(1);
        QByteArray noise(600'000, ' '); // which cannot be packed
        for (int number = 0; number < 4; ++number) {
            for (char &byte : noise)
                byte = char(random());
            store.keep(noise);
        }
        QVERIFY(store.finish(60s));
        QVERIFY(!store.makeRoom(u"/proc/self/list.txt"_s, 1)); // on another disk
        QVERIFY(store.makeRoom(list, 1));
        QCOMPARE(versionFile::list(store.folder()).versions.first().number, 3);
        QVERIFY(store.makeRoom(redoFile::pathFor(home->filePath(u"state"_s), list), 1));
        store.keep(noise); // again, since it is kept no longer
        QVERIFY(store.finish(60s));
        QCOMPARE(versionFile::list(store.folder()).versions.size(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(told.size(), 1);
    }

    void tellsOnceWhatCannotBeKept()
    {
        VersionStore store(home->path());
        const QSignalSpy told(&store, &VersionStore::told);
        {
            const FullDisk full(0);
            for (const char *name : {"a", "b"})
                store.keep(row("A", name));
            QVERIFY(store.finish(60s));
        }
        store.keep(row("A", "c"));
        QVERIFY(store.finish(60s));
        QCOMPARE(versionFile::list(store.folder()).versions.size(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(told.size(), 1);
    }

private:
    std::unique_ptr<QTemporaryDir> home;
};

static const TestClass<VersionsTest> registered;
#include "VersionsTest.moc"
