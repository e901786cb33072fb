#include "model/TaskManager.h"
#include "model/TaskShareText.h"
#include "model/TaskView.h"
#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"

using namespace Qt::StringLiterals;

namespace {

task named(const QString &name)
{
    task entry;
    entry.key = name;
    entry.name = name;
    return entry;
}

QStringList keys(const TaskList &tasks)
{
    QStringList names;
    for (const SharedTask &entry : tasks)
        names.append(entry->key);
    return names;
}

} // namespace

class ModelTest : public QObject
{
    Q_OBJECT

private:
    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    std::unique_ptr<TaskManager> manager;

    QString add(const QString &key, const QString &name)
    {
        return manager->addTask(key, {}, name, {}, {}, {}, 0, 0, {}, {}, false, 9, 30, 11, 15, {}, {});
    }
    void fill(std::initializer_list<task> entries) { setTasks(*manager, entries); }

private slots:
    void init() { manager = std::make_unique<TaskManager>(preferences); }

    void addedTasksGetKeysAndMoveTheDefaultTimes()
    {
        CapturedOutput output;
        const QString key = add({}, u"a"_s);
        QVERIFY(QRegularExpression(u"^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"_s)
                    .match(key)
                    .hasMatch());
        QVERIFY(add({}, u"a"_s) != key);
        QCOMPARE(add(u"own"_s, u"b"_s), u"own"_s);
        QCOMPARE(manager->tasks()[0]->key, key);
        QCOMPARE(output.takeLines().first(), u"Add Task, hidden: false"_s);
        const task blank = manager->selectedTask();
        QCOMPARE(blank.key, QString());
        QCOMPARE(blank.client, u"UnAssigned"_s);
        QCOMPARE(blank.teamMember, u"UnAssigned"_s);
        QCOMPARE(blank.startHour * 1000000 + blank.startMin * 10000 + blank.endHour * 100 + blank.endMin,
                 9301115);
        QVERIFY(Calendar::now() - blank.date < std::chrono::minutes(1) && blank.date == blank.due);
        manager->select(0);
        manager->hideSelectedTask();
        changeTask(*manager, key, [](task &entry) {
            entry.color = {0.1, 0.2, 0.3, 0.4};
            entry.due = Instant(std::chrono::hours(30));
        });
        manager->cloneSelectedTask();
        task clone = *manager->tasks().last();
        QVERIFY(clone.key.size() == 36 && std::exchange(clone.key, key) != key);
        QVERIFY(haveEqualFields(clone, *manager->tasks()[0]));
        manager->editSelectedTask({}, {}, {}, {}, {}, 0, 0, {}, {}, 15, 16, 17, 18, {}, {});
        QVERIFY(manager->tasks()[0]->hidden && manager->tasks()[0]->key == key);
        manager->select(-1);
        QCOMPARE(manager->selectedTask().startHour * 100 + manager->selectedTask().endMin, 1518);
    }

    void selectionTakesTheLastOfEqualKeys()
    {
        fill({named(u"x"_s), named(u"y"_s), named(u"k"_s), named(u"z"_s), named(u"Y"_s), named(u"k"_s)});
        QCOMPARE(manager->selectTaskByKey(u"k"_s), 5);
        QCOMPARE(manager->selectTaskByKey(u"y"_s), 1);
        QCOMPARE(manager->selectTaskByKey(u""_s), -1);
    }

    void commandsOnNoTaskChangeNothing()
    {
        for (const qint64 nowhere : {-1, 1, 2}) {
            fill({named(u"a"_s)});
            manager->select(nowhere);
            manager->deleteSelectedTask();
            manager->hideSelectedTask();
            manager->unhideSelectedTask();
            manager->closeSelectedTask();
            manager->moveSelectedTask(true);
            manager->moveSelectedTask(false);
            QVERIFY(!manager->isSelectedTaskHidden());
            QCOMPARE(manager->selectedTask().key, QString());
            QCOMPARE(keys(manager->tasks()), QStringList(u"a"_s));
            QCOMPARE(manager->tasks()[0]->status, 0);
        }
    }

    void closingChangesBothLists()
    {
        fill({named(u"a"_s)});
        manager->setListAside();
        add(u"b"_s, u"b"_s);
        manager->select(1); // the stale copy is shorter
        manager->closeSelectedTask();
        QCOMPARE(manager->tasks()[1]->status, taskStatus::closed);
        QCOMPARE(manager->tasks()[1]->statusName, u"Closed"_s);
        QCOMPARE(manager->backupTasks().size(), 1);
        QCOMPARE(manager->backupTasks()[0]->status, taskStatus::open);
        QCOMPARE(manager->tasks()[0]->status, taskStatus::open);
        manager->select(0);
        manager->closeSelectedTask();
        QCOMPARE(manager->tasks()[0]->status, taskStatus::closed);
        QCOMPARE(manager->backupTasks()[0]->status, taskStatus::closed);
    }

    void views_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<QString>("shown");
        // o open, c closed, n status −1, s status 5; capitals are hidden
        QTest::newRow("All") << 0 << u"o c n s"_s;
        QTest::newRow("Hidden Open") << 4 << u"O"_s;
        QTest::newRow("Global-All") << 6 << u"o c n s s O C N S"_s; // status 5 is also this view's own
        QTest::newRow("Due Today") << 9 << u"o O"_s;
        QTest::newRow("beyond") << 10 << QString();
        QTest::newRow("before") << -1 << QString();
    }
    void views()
    {
        QFETCH(const int, view);
        QFETCH(const QString, shown);
        const Calendar calendar;
        const Calendar::Day today = calendar.day(calendar.dayOf(Calendar::now()));
        QList<task> entries;
        for (const QString &key : {u"o"_s, u"c"_s, u"n"_s, u"s"_s, u"O"_s, u"C"_s, u"N"_s, u"S"_s}) {
            task entry = named(key);
            const QString kind = key.toLower();
            entry.status = kind == u"o" ? 0 : kind == u"c" ? 1 : kind == u"n" ? -1 : 5;
            entry.hidden = kind != key;
            entry.due = kind == u"c"   ? today.begin - std::chrono::milliseconds(1)
                        : kind == u"n" ? today.end
                        : kind == u"s" ? today.end + std::chrono::days(30)
                        : key == u"o"  ? today.begin
                                       : today.end - std::chrono::milliseconds(1);
            entries.append(entry);
        }
        setTasks(*manager, entries);
        CapturedOutput output;
        manager->buildTasksInView(view);
        QCOMPARE(keys(manager->tasksInView()).join(u' '), shown);
        QStringList lines = output.takeLines();
        QCOMPARE(lines.takeLast(), u"Number if tasks in view: %1"_s.arg(manager->tasksInView().size()));
        QCOMPARE(lines.join(u' '),
                 view == int(TaskView::DueToday)
                     ? u"SAME DESCENDING ASCENDING ASCENDING SAME DESCENDING ASCENDING ASCENDING"_s
                     : QString());
    }

    void searchLooksInFourFields()
    {
        fill({{.key = u"1"_s, .name = u"Roof repair"_s},
              {.key = u"2"_s, .desc = u"new ROOF"_s},
              {.key = u"3"_s, .client = u"Roofing Ltd"_s},
              {.key = u"4"_s, .teamMember = u"Proofer"_s},
              {.key = u"5"_s, .statusName = u"roof"_s}});
        manager->startSearch(u"rOOf r"_s);
        manager->startSearch(u"rOOf"_s); // of the whole list, not of the last hits
        QCOMPARE(keys(manager->tasks()).join(u' '), u"1 2 3 4"_s);
    }

    void searchIgnoresCase()
    {
        struct Case
        {
            QString field, term;
            bool isFound;
        };
        for (const auto &[field, term, isFound] :
             std::initializer_list<Case>{{u"GRÜNER Garten"_s, u"grün"_s, true},
                                         {u"grüner Garten"_s, u"ÜNER"_s, true},
                                         {u"gruner"_s, u"ü"_s, false},
                                         {u"STRASSE"_s, u"straße"_s, false},
                                         {u"ΑΘΗΝΑ"_s, u"αθηνα"_s, true},
                                         {u"𐐀 x"_s, u"𐐨"_s, true},          // beyond the basic plane
                                         {u"20 \u212A"_s, u"20 k"_s, true}, // the Kelvin sign
                                         {u"[@`{"_s, u"{"_s, true},         // neighbours of letters in ASCII
                                         {u"@[`{"_s, u"`[@"_s, false},
                                         {u"ab"_s, u"abc"_s, false}}) {
            fill({named(field)});
            manager->startSearch(term);
            QVERIFY2((manager->tasks().size() == 1) == isFound, qPrintable(term));
            manager->endSearch();
        }
    }

    void changesDuringASearchReachTheMasterList()
    {
        fill({named(u"ab"_s), named(u"b"_s), named(u"abc"_s)});
        CapturedOutput output;
        manager->startSearch(u"A"_s);
        QCOMPARE(output.takeLines(),
                 QStringList({u"A"_s, u"Tasks: [ab, b, abc]"_s, u"Backup Tasks: [ab, b, abc]"_s}));
        add(u"new"_s, u"a new one"_s);
        QCOMPARE(manager->tasks().size(), 2);
        manager->refreshSearch();
        QCOMPARE(keys(manager->tasks()), QStringList({u"ab"_s, u"abc"_s, u"new"_s}));

        QCOMPARE(manager->selectTaskByKey(u"abc"_s), 2); // its place in the master list
        manager->hideSelectedTask();
        QVERIFY(manager->isSelectedTaskHidden());
        manager->closeSelectedTask();
        manager->selectTaskByKey(u"ab"_s);
        manager->deleteSelectedTask();
        QCOMPARE(manager->selected(), 0);
        manager->endSearch();
        QCOMPARE(keys(manager->tasks()), QStringList({u"b"_s, u"abc"_s, u"new"_s}));
        QVERIFY(manager->tasks()[1]->hidden);
        QCOMPARE(manager->tasks()[1]->status, taskStatus::closed);
        setTasks(*manager, {});
        manager->endSearch(); // not searching: nothing comes back
        QVERIFY(manager->tasks().isEmpty());
    }

    void sortsTexts()
    {
        // Composed and decomposed é are one text; the emoji's code point is above the private use
        // character's.
        fill({named(u"🌱"_s),
              named(u"adam"_s),
              named(u"\ue000"_s),
              named(u"Zoe"_s),
              named(u"e\u0301b"_s),
              named(u"Zoe "_s),
              named(u"\u00e9a"_s),
              named(u"fig"_s),
              {.key = u"empty"_s}});
        manager->sortByColumn({u"NameCellID"_s, true});
        const QStringList ascending = {u"empty"_s,   u"Zoe"_s,      u"Zoe "_s,   u"adam"_s, u"fig"_s,
                                       u"\u00e9a"_s, u"e\u0301b"_s, u"\ue000"_s, u"🌱"_s};
        QCOMPARE(keys(manager->tasks()), ascending);
        manager->sortByColumn({u"NameCellID"_s, false});
        QCOMPARE(keys(manager->tasks()), QStringList(ascending.crbegin(), ascending.crend()));
        manager->sortByColumn({u"UnknownID"_s, true});
        QCOMPARE(keys(manager->tasks()), QStringList(ascending.crbegin(), ascending.crend()));
    }

    void sortsTimesAsUnpaddedTexts()
    {
        QList<task> entries;
        for (const auto &[hour, minute] : {std::pair(8, 5), {9, 0}, {8, 30}, {12, 15}, {10, 0}, {-1, 0}}) {
            task entry = named(QString::asprintf("%d:%d", hour, minute));
            entry.startHour = hour;
            entry.startMin = minute;
            entries.append(entry);
        }
        setTasks(*manager, entries);
        manager->sortByColumn({u"StartTimeID"_s, true});
        QCOMPARE(keys(manager->tasks()).join(u' '), u"-1:0 10:0 12:15 8:30 8:5 9:0"_s);
    }

    /// Gives the column's field the value; 2 to 6, so that they sort alike as number and as text.
    static void setColumn(task &entry, TaskColumn column, int value)
    {
        using Column = TaskColumn;
        static const QHash<Column, QString task::*> texts = {{Column::Name, &task::name},
                                                             {Column::Client, &task::client},
                                                             {Column::TeamMember, &task::teamMember},
                                                             {Column::Key, &task::key},
                                                             {Column::Description, &task::desc}};
        static const QHash<Column, qint64 task::*> numbers = {{Column::StartTime, &task::startHour},
                                                              {Column::EndTime, &task::endHour},
                                                              {Column::Status, &task::status},
                                                              {Column::Priority, &task::priority}};
        if (texts.contains(column))
            entry.*texts[column] = u"a longer text "_s + QString::number(value);
        else if (numbers.contains(column))
            entry.*numbers[column] = value;
        else
            (column == Column::Date ? entry.date : entry.due) =
                Instant(std::chrono::hours(value * 1000 - 4000));
    }

    void sortsEveryColumnStably()
    {
        constexpr int count = 400;
        for (const TaskColumnInfo &column : taskColumns()) {
            QList<task> entries;
            for (int i = 0; i < count; ++i) {
                task entry;
                for (const TaskColumnInfo &other : taskColumns()) // the other columns have another order
                    setColumn(entry, other.column,
                              other.column == column.column ? i * 7919 % 5 + 2 : i * 31 % 5 + 2);
                entry.statusName = QString::number(i * 7919 % 5);
                entry.priorityName = QString::number(i);
                entries.append(entry);
            }
            setTasks(*manager, entries);
            const TaskList unsorted = manager->tasks();
            for (const bool ascending : {true, false}) {
                setTasks(*manager, entries);
                manager->sortByColumn({column.sortKey, ascending});
                for (int i = 1; i < count; ++i) {
                    const int before = manager->tasks()[i - 1]->statusName.toInt();
                    const int after = manager->tasks()[i]->statusName.toInt();
                    QVERIFY2(ascending ? before <= after : before >= after, qPrintable(column.title));
                    if (before == after)
                        QVERIFY(manager->tasks()[i - 1]->priorityName.toInt() <
                                manager->tasks()[i]->priorityName.toInt());
                }
            }
            QCOMPARE(unsorted[0]->priorityName, u"0"_s); // a list that shares the tasks keeps its order
        }
    }

    void sharesTheTaskAsText()
    {
        const Instant day = Calendar().startOfDay(QDate(2019, 3, 7));
        const task shared{.key = u"KEY"_s,
                          .date = day,
                          .name = u" Mow & rake "_s,
                          .desc = u"one\n\ntwo"_s,
                          .client = u"UnAssigned"_s,
                          .due = day + std::chrono::hours(30),
                          .startHour = 8,
                          .startMin = 5,
                          .endHour = 17};
        QCOMPARE(taskShareText(shared, u"MESSAGE"_s),
                 u"ToDo\n\nTask:  Mow & rake \nStart Date: 3/7/19\nStart Time: 08:05\nEnd Time: 17:00\n"
                 "Due Date: 3/8/19\nDescription: one\n\ntwo\n\nClient:UnAssigned\nTeam Member:\n\n"
                 "Task Key: KEY\nMessage Key: MESSAGE\n\n"
                 "Sent with Quorvane. Download from the App Store for Mac:\n\n"
                 "https://quorvane.example/download\n"_s);
    }
};

static const TestClass<ModelTest> registered;

#include "ModelTest.moc"
