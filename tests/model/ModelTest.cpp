#include "model/TaskManager.h"
#include "model/TaskShareText.h"
#include "model/TaskView.h"
#include "platform/Preferences.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

/// Tasks whose keys are these words, and their names, too.
QList<task> named(const QString &words, QChar separator = u' ')
{
    QList<task> entries;
    for (const QString &word : words.split(separator))
        entries.append({.key = word, .name = word});
    return entries;
}

QString keys(const TaskList &tasks, QChar separator = u' ')
{
    QStringList words;
    for (const SharedTask &entry : tasks)
        words.append(entry->key);
    return words.join(separator);
}

} // namespace

class ModelTest : public QObject
{
    Q_OBJECT

private:
    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    std::unique_ptr<TaskManager> manager;

    void fill(const QList<task> &entries) { setTasks(*manager, entries); }

private slots:
    void init() { manager = std::make_unique<TaskManager>(preferences); }

    void addedTasksGetKeysAndMoveTheDefaultTimes()
    {
        const QString key = manager->addTask({}, {}, u"a"_s, {}, {0.1, 0.2, 0.3, 0.4}, {}, 2, 3, {}, {}, true,
                                             9, 30, 11, 15, {}, {});
        QVERIFY(QRegularExpression(u"^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"_s)
                    .match(key)
                    .hasMatch());
        const task first = *manager->tasks()[0];
        QCOMPARE(first.key, key);
        task blank = manager->selectedTask();
        QVERIFY(Calendar::now() - blank.date < std::chrono::minutes(1) && blank.date == blank.due);
        blank.date = blank.due = {};
        const QString nobody = u"UnAssigned"_s;
        QVERIFY(haveEqualFields(
            blank, task({}, {}, {}, {}, nobody, nobody, {}, {}, 0, 0, {}, {}, false, 9, 30, 11, 15)));
        QCOMPARE(manager->addTask({.key = u"own"_s}), u"own"_s);
        manager->select(0);
        manager->cloneSelectedTask();
        task clone = *manager->tasks().last();
        QVERIFY(clone.key.size() == 36 && std::exchange(clone.key, key) != key);
        QVERIFY(haveEqualFields(clone, first));
        manager->editSelectedTask({}, {}, {}, {}, {}, 0, 0, {}, {}, 15, 16, 17, 18, {}, {});
        QVERIFY(manager->tasks()[0]->hidden && manager->tasks()[0]->key == key);
        manager->select(-1);
        QCOMPARE(manager->selectedTask().startHour * 100 + manager->selectedTask().endMin, 1518);
    }

    void commandsOnNoTaskChangeNothing()
    {
        for (const qint64 nowhere : {-1, 1, 2}) {
            fill(named(u"a"_s));
            manager->select(nowhere);
            manager->editSelectedTask({.name = u"other"_s});
            manager->deleteSelectedTask();
            manager->hideSelectedTask();
            manager->unhideSelectedTask();
            manager->closeSelectedTask();
            manager->moveSelectedTask(true);
            manager->moveSelectedTask(false);
            QVERIFY(!manager->isSelectedTaskHidden());
            QCOMPARE(manager->selectedTask().key, QString());
            QCOMPARE(manager->tasks().size(), 1);
            QVERIFY(haveEqualFields(*manager->tasks()[0], named(u"a"_s)[0]));
        }
    }

    void views()
    {
        // o open, c closed, n status −1, s status 5; capitals are hidden
        const Calendar calendar;
        const Calendar::Day today = calendar.day(calendar.dayOf(Calendar::now()));
        QList<task> entries = named(u"o c n s O C N S"_s);
        for (task &entry : entries) {
            const QString kind = entry.key.toLower();
            entry.hidden = kind != entry.key;
            entry.status = kind == u"o" ? 0 : kind == u"c" ? 1 : kind == u"n" ? -1 : 5;
            entry.due = kind == u"c"        ? today.begin - std::chrono::milliseconds(1)
                        : kind == u"n"      ? today.end
                        : kind == u"s"      ? today.end + std::chrono::days(30)
                        : entry.key == u"o" ? today.begin
                                            : today.end - std::chrono::milliseconds(1);
        }
        fill(entries);
        // Status 5 is also the own one of the view at 6.
        const QStringList shown = u"o c n s/o/c/O C N S/O/C/o c n s s O C N S/o O/c C/o O"_s.split(u'/');
        for (int view = -1; view <= shown.size(); ++view) {
            manager->buildTasksInView(view);
            QCOMPARE(keys(manager->tasksInView()), shown.value(view));
        }
    }

    void searchIgnoresCase()
    {
        for (const auto &[field, term, isFound] :
             {std::tuple(u"GRÜNER Garten"_s, u"grün"_s, true),
              {u"grüner Garten"_s, u"ÜNER"_s, true},
              {u"gruner"_s, u"ü"_s, false},
              {u"STRASSE"_s, u"straße"_s, false},
              {u"ÞÓR 3×4"_s, u"þór 3×"_s, true},
              {u"3×4"_s, u"3÷"_s, false}, // no letters: the multiplication sign
              {u"ΑΘΗΝΑ"_s, u"αθηνα"_s, true},
              {u"ΟΔΟΣ"_s, u"οδος"_s, true},
              {u"𐐀 x"_s, u"𐐨"_s, true},          // beyond the basic plane
              {u"20 \u212A"_s, u"20 k"_s, true}, // the Kelvin sign
              {u"[@`{"_s, u"{"_s, true},         // neighbours of letters in ASCII
              {u"@[`{"_s, u"`[@"_s, false},
              {u"["_s, u"{"_s, false},
              {u"ab"_s, u"abc"_s, false}}) {
            fill({{.name = field}});
            manager->startSearch(term);
            QVERIFY2((manager->tasks().size() == 1) == isFound, qPrintable(term));
            manager->endSearch();
        }
    }

    void changesDuringASearchReachTheMasterList()
    {
        fill(named(u"ab b abc"_s));
        manager->startSearch(u"abc"_s);
        manager->startSearch(u"A"_s); // of the whole list, not of the last hits
        manager->addTask({.key = u"new"_s, .name = u"a new one"_s});
        QCOMPARE(keys(manager->tasks()), u"ab abc"_s);
        manager->refreshSearch();
        QCOMPARE(keys(manager->tasks()), u"ab abc new"_s);

        manager->startSearch(u"abc"_s);
        QCOMPARE(manager->selectTaskByKey(u"abc"_s), 2); // its place in the master list
        manager->hideSelectedTask();
        QVERIFY(manager->isSelectedTaskHidden());
        manager->closeSelectedTask();
        manager->selectTaskByKey(u"ab"_s);
        manager->deleteSelectedTask();
        QCOMPARE(manager->selected(), 0);
        manager->endSearch();
        QCOMPARE(keys(manager->tasks()), u"b abc new"_s);
        QVERIFY(manager->tasks()[1]->hidden);
        QCOMPARE(manager->tasks()[1]->status, taskStatus::closed);
        fill(named(u"x y k k"_s));
        manager->endSearch(); // not searching: nothing comes back
        QCOMPARE(keys(manager->tasks()), u"x y k k"_s);
        QCOMPARE(manager->selectTaskByKey(u"k"_s), 3); // the last of equal keys
        QCOMPARE(manager->selectTaskByKey(u"Y"_s), -1);
    }

    void sortsTexts()
    {
        // Composed and decomposed é are one text; the emoji's code point is above the private use
        // character's.
        QStringList expected =
            u"empty|Zoe|Zoe |adam|soil\ue000|soil🌱|\u00e9a|e\u0301b|\ue000|🌱"_s.split(u'|');
        QList<task> entries =
            named(u"🌱|adam|\ue000|Zoe|e\u0301b|soil🌱|Zoe |\u00e9a|soil\ue000|empty"_s, u'|');
        entries.last().name.clear();
        fill(entries);
        manager->sortByColumn({u"NameCellID"_s, true});
        QCOMPARE(keys(manager->tasks(), u'|'), expected.join(u'|'));
        manager->sortByColumn({u"NameCellID"_s, false});
        manager->sortByColumn({u"UnknownID"_s, true});
        std::ranges::reverse(expected);
        QCOMPARE(keys(manager->tasks(), u'|'), expected.join(u'|'));
    }

    void sortsEveryColumnStably()
    {
        // Times are sorted as texts whose numbers are not padded.
        constexpr std::pair<int, int> times[] = {{10, 0}, {12, 15}, {8, 30}, {8, 5}, {9, 0}};
        // Which sort alike as numbers and as texts.
        const auto valueIn = [](TaskColumn column, qint64 index) {
            return index / (qint64(column) + 1) % 5;
        };
        QList<task> entries;
        while (entries.size() < 400) {
            const auto number = [&](TaskColumn column) {
                return valueIn(column, entries.size());
            };
            const auto text = [number](TaskColumn column) {
                return u"a longer text "_s + QString::number(number(column));
            };
            const auto day = [number](TaskColumn column) {
                return Instant(std::chrono::hours(number(column) * 1000 - 2000));
            };
            using enum TaskColumn;
            const auto &start = times[number(StartTime)];
            const auto &end = times[number(EndTime)];
            entries.append(task(text(Key), day(Date), text(Name), text(Description), text(Client),
                                text(TeamMember), Color(), day(Due), number(Status), number(Priority),
                                QString::number(entries.size()), QString(), false, start.first, start.second,
                                end.first, end.second));
        }
        for (const TaskColumnInfo &column : taskColumns())
            for (const bool ascending : {true, false}) {
                QList<qint64> order(entries.size());
                std::iota(order.begin(), order.end(), 0);
                std::ranges::stable_sort(order, {}, [&](qint64 index) {
                    return valueIn(column.column, index) * (ascending ? 1 : -1);
                });
                fill(entries);
                manager->sortByColumn({column.sortKey, ascending});
                for (qsizetype i = 0; i < order.size(); ++i)
                    QVERIFY2(manager->tasks()[i]->statusName == QString::number(order[i]),
                             qPrintable(column.title));
            }
    }

    void oldStepsAreGivenUpForWhatIsReadAnew()
    {
        constexpr int rounds = 120;
        for (int round = 0; round < rounds; ++round) {
            manager->load([&] {
                for (int number = 0; number < 3000; ++number)
                    manager->addTask({.key = QString::number(number),
                                      .name = u"%1 of %2"_s.arg(number * 7 % 3000).arg(round)});
            });
            manager->sortByColumn({u"NameCellID"_s, round % 2 == 0});
            manager->endStep();
        }
        const int kept = manager->history().steps().count();
        QVERIFY(kept > rounds / 2 && kept < rounds); // of 300,000 tasks
        const QStringList names = namesOf(manager->tasks());
        int undone = 0;
        while (manager->undo())
            ++undone;
        QCOMPARE(undone, kept);
        while (manager->redo())
            --undone;
        QCOMPARE(undone, 0);
        QCOMPARE(namesOf(manager->tasks()), names);
    }

    void sharesTheTaskAsText()
    {
        task shared = sampleTask(u"KEY"_s, u" Mow & rake "_s);
        shared.date = Calendar().startOfDay(QDate(2019, 3, 7));
        shared.due = shared.date + std::chrono::hours(30);
        QCOMPARE(taskShareText(shared, u"MESSAGE"_s),
                 u"ToDo\n\nTask:  Mow & rake \nStart Date: 3/7/19\nStart Time: 23:59\nEnd Time: 00:01\n"
                 "Due Date: 3/8/19\nDescription: "_s +
                     shared.desc +
                     u"\n\nClient:Nobody listed\nTeam Member:Zoë\n\n"
                     "Task Key: KEY\nMessage Key: MESSAGE\n\n"
                     "Sent with Quorvane. Download from the App Store for Mac:\n\n"
                     "https://quorvane.example/download\n"_s);
    }
};

static const TestClass<ModelTest> registered;
#include "ModelTest.moc"
