#include "taskfile/TaskListFile.h"
#include "model/TaskManager.h"
#include "support/Appearance.h"
#include "support/FullDisk.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QTemporaryDir>

#include <functional>
#include <random>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray fenceRow = "3/7/24|Paint fence|Two coats|1.0|0.5|0.0|1.0|3/9/24|0|1|Open|High|"
                            "3F2504E0-4F89-41D3-9A0C-0305E82C3301|false|8|0|17|0|Smith|Anna^";
/// The first twelve fields of a row, which every version has written.
const QString head = u"3/7/24|old|desc|0.1|0.2|0.3|1.0|3/9/24|-1|2|Open|High"_s;

Instant startOf(int year, int month, int day)
{
    return Calendar().startOfDay(QDate(year, month, day));
}

} // namespace

class TaskListFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        reopen();
    }

    void writesWhatItReads()
    {
        // Without a row; two rows; with what separates them within.
        for (const QByteArray &text :
             {QByteArray(), fenceRow + fenceRow, QByteArray(fenceRow).replace("fence", "\x1f \x1e \n\r\n")}) {
            load(text);
            QCOMPARE(manager->backupTasks().size(), text.count('^'));
            QCOMPARE(written(), text);
        }
        load(fenceRow + '\n' + fenceRow + "\r\n"); // rows that an editor has put on lines of their own
        QCOMPARE(written(), fenceRow + fenceRow);
    }

    void realNumbers()
    {
        for (const QByteArray &text :
             QByteArray("1.0 0.0 0.25098039215686274 0.19999999999999996 0.0001 1e-05 1.25e-07 "
                        "1234567890123456.0 1e+16 -0.25 nan -inf")
                 .split(' ')) {
            init();
            const QByteArray expected = std::isfinite(text.toDouble()) ? text : "0.0";
            manager->addTask({.color = {.red = text.toDouble()}});
            QCOMPARE(written().split('|')[3], expected);
            reopen();
            QCOMPARE(firstTask().color.red, expected.toDouble());
        }
    }

    void dates()
    {
        const int year = QDate::currentDate().year();
        const auto firstDay = [](int ofWhich, int digits) {
            return u"1/1/%1 %2-01-01 1/1/%1"_s.arg(QString::number(ofWhich).last(digits)).arg(ofWhich);
        };
        for (const QString &textDayWritten :
             {u"03/07/24 2024-03-07 3/7/24"_s, u"2/29/24 2024-02-29 2/29/24"_s,
              u"1/1/2024 2024-01-01 1/1/24"_s, u"1/2/0050 0050-01-02 1/2/0050"_s, firstDay(year - 80, 2),
              firstDay(year + 19, 2), firstDay(year + 20, 4), u"1/2/-0044 -0044-01-02 1/2/-0044"_s,
              u"1/2/12024 12024-01-02 1/2/12024"_s}) {
            const QStringList parts = textDayWritten.split(u' ');
            load(parts[0].toUtf8() + fenceRow.sliced(6));
            QCOMPARE(manager->tasks().size(), 1);
            QCOMPARE(Calendar().dayOf(firstTask().date).toString(u"yyyy-MM-dd"), parts[1]);
            QCOMPARE(QString::fromUtf8(written().split('|')[0]), parts[2]);
        }
    }

    void marksWithinATextAreLeftOut()
    {
        manager->addTask({.name = u"a mark \u001f and \u001e within"_s});
        QCOMPARE(written().count('|'), 19);
        reopen();
        QCOMPARE(firstTask().name, u"a mark  and  within"_s);
    }

    void randomListsComeBack()
    {
        std::mt19937 random(7);
        const QStringList bits = {u"\n"_s, u"|"_s,    u"^"_s,  u"🌱"_s,    u"é"_s,
                                  u" "_s,  u"\r\n"_s, u"\""_s, u"true"_s, u"0"_s};
        const auto number = [&random](int limit) {
            return qint64(random() % unsigned(limit));
        };
        const auto made = [&] {
            QString text;
            for (qint64 left = number(6); left > 0; --left)
                text += bits[number(int(bits.size()))];
            return text;
        };
        for (int i = 0; i < 500; ++i)
            manager->addTask(task(made() + QString::number(i % 100), startOf(int(1990 + number(50)), 5, 28),
                                  made(), made(), made(), made(), Color(0.1 * i, 1.0 / (i + 3), i, 1e-5 * i),
                                  startOf(int(1900 + number(300)), 11, 3), number(4) - 1, number(5) - 1,
                                  made(), made(), number(2) == 1, number(24), number(60), number(24),
                                  number(60)));
        const TaskList before = manager->tasks();
        const QByteArray text = written();
        reopen();
        QCOMPARE(manager->tasks().size(), before.size());
        for (qsizetype i = 0; i < before.size(); ++i)
            QVERIFY(haveEqualFields(*manager->tasks()[i], *before[i]));
        QCOMPARE(written(), text);
        // Whatever is done to the list, it is written as by one that is written for the first time.
        const std::function<void()> changes[] = {
            [&] { manager->deleteSelectedTask(); },
            [&] { manager->cloneSelectedTask(); },
            [&] { manager->moveSelectedTask(number(2) == 1); },
            [&] { manager->hideSelectedTask(); },
            [&] { manager->invertColors(); },
            [&] {
                manager->sortByColumn({.key = number(2) == 1 ? u"name"_s : u"date"_s, .ascending = true});
            }};
        for (int i = 0; i < 200; ++i) {
            manager->select(number(int(manager->tasks().size())));
            changes[number(6)]();
            QCOMPARE(written(), TaskListFile(*manager, QString(), QString()).text());
        }
    }

    void otherProgramsWriteTheFile()
    {
        load(fenceRow);
        manager->startSearch(u"paint"_s);
        QVERIFY(!file->followFile());
        const QByteArray others = QByteArray(fenceRow).replace("Anna", "Bert") + fenceRow;
        writeTo(filePath(), others);
        QVERIFY(file->followFile() && !file->followFile());
        QCOMPARE(manager->tasks().size(), 2);
        QCOMPARE(firstTask().teamMember, u"Bert"_s);
        for (const QByteArray &unfinished : {QByteArray(), others.chopped(30)}) {
            writeTo(filePath(), unfinished); // by whoever is not done yet
            QVERIFY(!file->followFile());
            file->followAppearance();
            QCOMPARE(manager->tasks().size(), 2);
        }
        writeTo(filePath(), others);
        {
            const FullDisk full(10);
            QVERIFY(!file->writeFile());
        }
        writeTo(filePath(), fenceRow); // while the list is not saved
        QVERIFY(!file->followFile());
        QCOMPARE(written(), others);
        QCOMPARE(copiesIn(home->filePath(u"Documents"_s)), QByteArrayList{fenceRow});
    }

    void aFileOutOfReachIsNotReplaced()
    {
        // A disk that is not mounted, or a file that cannot be read.
        for (const bool isLink : {true, false}) {
            init();
            const QString real = home->filePath(u"disk/list.txt"_s);
            QDir(home->path()).mkpath(u"Documents"_s);
            QVERIFY(isLink ? QFile::link(real, filePath())
                           : ::mkfifo(QFile::encodeName(filePath()).constData(), 0600) == 0);
            reopen();
            QVERIFY(!file->readProblem().isEmpty());
            manager->addTask({.key = u"new"_s, .name = u"new"_s});
            manager->addTask({.key = u"3F2504E0-4F89-41D3-9A0C-0305E82C3301"_s, .name = u"changed"_s});
            QVERIFY(!file->writeFile() && !file->isSaved() && !file->followFile());
            QVERIFY(isLink || QFile::remove(filePath()));
            writeTo(isLink ? real : filePath(), QByteArray(fenceRow).replace("3F", "4F") + fenceRow);
            QVERIFY(file->followFile() && file->isSaved());
            QCOMPARE(namesOf(manager->tasks()), QStringList({u"Paint fence"_s, u"changed"_s, u"new"_s}));
            QCOMPARE(contentOf(filePath()).count('^'), 3);
            const QByteArrayList copies = copiesIn(home->filePath(u"Documents"_s)); // of what was replaced
            QVERIFY(copies.size() == 1 && copies[0].count("Paint fence") == 2);
        }
    }

    void aListThatHadGoneComesBack()
    {
        QVERIFY(!file->isGone()); // there never was one
        load(fenceRow);
        QVERIFY(QFile::remove(filePath()));
        reopen();
        QVERIFY(file->isGone());
        manager->addTask({.name = u"new"_s});
        QVERIFY(file->writeFile());
        for (const qsizetype count : {2, 1}) { // with its disk; and what is written there later is taken over
            writeTo(filePath(), fenceRow);
            if (count == 2)
                file->followAppearance(); // before the window is looked at again
            QVERIFY(file->followFile() && !file->isGone());
            QCOMPARE(namesOf(manager->tasks()), QStringList({u"Paint fence"_s, u"new"_s}).first(count));
            QCOMPARE(contentOf(filePath()).count('^'), count);
        }
    }

    void olderRows()
    {
        // What follows the twelve fields; key, hidden, times, client and team member that it gives.
        for (const auto &[rest, expected] : {std::pair(u""_s, u"new 0 8:0-17:0 "_s),
                                             {u"|"_s, u"new 0 8:0-17:0 "_s},
                                             {u"|KEY"_s, u"KEY 0 8:0-17:0 "_s},
                                             {u"|KEY|true"_s, u"KEY 1 8:0-17:0 "_s},
                                             {u"|KEY|True"_s, u"KEY 0 8:0-17:0 "_s},
                                             {u"|KEY|1"_s, u"KEY 0 8:0-17:0 "_s},
                                             {u"|KEY|true|9|5|11|45"_s, u"KEY 1 9:5-11:45 "_s},
                                             {u"|KEY|false|9|5|11|45|x"_s, u"KEY 0 9:5-11:45 "_s},
                                             {u"|KEY|true|9|5|11|45|c|t"_s, u"KEY 1 9:5-11:45 ct"_s},
                                             {u"|KEY|true|9|5|11|45|c|t|"_s, u"new 0 8:0-17:0 "_s}}) {
            load((head + rest + u"^"_s + head + u"^"_s).toUtf8());
            QCOMPARE(manager->tasks().size(), 2);
            const task &entry = firstTask();
            QCOMPARE(manager->tasks()[1]->endMin, entry.endMin); // old rows take the times of the row before
            const QString found = QString::asprintf(" %d %lld:%lld-%lld:%lld ", entry.hidden, entry.startHour,
                                                    entry.startMin, entry.endHour, entry.endMin);
            QCOMPARE((entry.key.size() == 36 ? u"new"_s : entry.key) + found + entry.client +
                         entry.teamMember,
                     expected);
            const auto keys = [this] {
                return QStringList{firstTask().key, manager->tasks()[1]->key};
            };
            const QStringList before = keys();
            file->followAppearance(); // which reads the file again
            QVERIFY(keys() == before && before[0] != before[1]);
        }
        const QByteArray row = (head + u"^"_s).toUtf8();
        load(row);
        writeTo(filePath(), row + written()); // which somebody adds once more
        QVERIFY(file->followFile() && firstTask().key != manager->tasks()[1]->key);
    }

    void skippedRows()
    {
        QStringList rows{QString(), head.section(u'|', 0, 10), head + u"|K|true|9h|5|11|45"_s,
                         QString(1000, QChar(0))};
        for (const int fields : {15, 16, 17})
            rows.append(head + u"|K|true|9|5|11"_s.section(u'|', 0, fields - 12));
        const auto with = [](int field, const QString &text) {
            QStringList fields = head.split(u'|');
            fields[field - 1] = text;
            return fields.join(u'|');
        };
        for (const QString &date :
             {u""_s, u"7.3.2024"_s, u"2/30/24"_s, u"3/7/4"_s, u"3/7/024"_s, u"3/7/24 "_s, u"003/7/24"_s,
              u"13/1/24"_s, u"3/7"_s, u"3/7/24 x"_s, u"3-7-24"_s, u"3/7/-24"_s, u"٣/٧/٢٤"_s})
            rows << with(1, date) << with(8, date);
        for (const QString &real :
             {u""_s, u"red"_s, u" 1.0"_s, u"1,0"_s, u"nan"_s, u"inf"_s, u"0x1p3"_s, u"-"_s, u"+-1.0"_s})
            rows << with(5, real);
        for (const QString &integer : {u""_s, u"1.0"_s, u"one"_s, u"99999999999999999999"_s, u"1 "_s})
            rows << with(9, integer);
        for (const QString &row : rows) {
            const QByteArray text = (head + u"|A^"_s + row + u"^"_s + head + u"|B^"_s).toUtf8();
            load(text);
            QVERIFY2(manager->tasks().size() == 2, qPrintable(row));
            QCOMPARE(firstTask().key + manager->tasks()[1]->key, u"AB"_s);
            QVERIFY(file->writeFile());
            QCOMPARE(copiesIn(home->filePath(u"Documents"_s)).join(), text);
        }
        for (const auto &[text, isWhole] : {std::pair(fenceRow + fenceRow.first(30), false),
                                            {fenceRow.chopped(1) + "|more^", false}, // a field is left out
                                            {fenceRow + " \n", true},
                                            {QByteArray(fenceRow).replace("|1.0|", "|+1.0|"), true}}) {
            load(text);
            QCOMPARE(manager->tasks().size(), 1);
            QVERIFY(file->writeFile());
            QCOMPARE(copiesIn(home->filePath(u"Documents"_s)).join(), isWhole ? QByteArray() : text);
        }
    }

    /// Whatever happens between two switches, memory holds the appearance's colours and the file the light
    /// ones, no task is lost, and the search and the selection stay.
    void everyListFollowsTheAppearance()
    {
        const Color light{0.25, 0.5, 0.75, 0.5};
        bool isDark = true; // with a list that begins empty
        Appearance appearance(isDark);
        load({});
        qsizetype count = 0;
        const auto add = [&](const QString &name) {
            manager->addTask(
                {.key = QString::number(++count), .name = name, .color = isDark ? light.inverted() : light});
            return file->writeFile();
        };
        add(u"pond"_s);
        add(u"fence"_s);
        add(u"pond"_s);
        manager->selectTaskByKey(u"3"_s);
        std::mt19937 random(7);
        const std::function<void()> happenings[] = {
            [&] { manager->startSearch(u"POND"_s); },
            [&] { manager->endSearch(); },
            [&] { QFile::remove(filePath()); },
            [&] { QVERIFY(add(u"fence"_s)); },
            [&] {
                const FullDisk full(10);
                QVERIFY(!add(u"fence"_s));
            },
            [&] {
                appearance.set(isDark = random() % 2 == 0);
                file->followAppearance();
            },
        };
        for (int step = 0; step < 300; ++step) {
            happenings[random() % std::size(happenings)]();
            QCOMPARE(manager->workingList().size(), count);
            QCOMPARE(manager->tasks().size(), manager->isSearching() ? 2 : count);
            for (const TaskList *list : {&manager->tasks(), &manager->workingList()})
                for (const SharedTask &entry : *list)
                    QVERIFY(entry->color == (isDark ? light.inverted() : light));
            QCOMPARE(manager->selectedTask().key, u"3"_s);
            const QByteArray filed = contentOf(filePath());
            QCOMPARE(filed.count("|0.25|0.5|0.75|0.5|"), filed.count('^'));
        }
        QCOMPARE(written().count('^'), count);
    }

private:
    /// Starts anew with this file, and with no copies of it.
    void load(const QByteArray &text)
    {
        init();
        writeTo(filePath(), text);
        file->parseFile(file->readFile());
    }

    /// Reads the file as another start does.
    void reopen()
    {
        manager = std::make_unique<TaskManager>(preferences);
        file = std::make_unique<TaskListFile>(*manager, home->filePath(u"Documents"_s),
                                              home->filePath(u"state"_s));
        file->parseFile(file->readFile());
    }

    /// What the file holds after a write; nothing where that failed.
    QByteArray written() { return file->writeFile() ? contentOf(filePath()) : QByteArray(); }

    const task &firstTask() const { return *manager->tasks()[0]; }

    QString filePath() const { return home->filePath(QStringLiteral("Documents/zandulist.txt")); }

    std::unique_ptr<QTemporaryDir> home;
    Preferences preferences{QStringLiteral("/nonexistent/preferences.ini")};
    std::unique_ptr<TaskManager> manager;
    std::unique_ptr<TaskListFile> file;
};

static const TestClass<TaskListFileTest> registered;
#include "TaskListFileTest.moc"
