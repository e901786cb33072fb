#include "model/TaskManager.h"
#include "platform/Preferences.h"
#include "program/Program.h"
#include "support/Appearance.h"
#include "support/Dialogs.h"
#include "support/Tasks.h"
#include "support/TestProgram.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QTableView>

#include <algorithm>

using namespace Qt::StringLiterals;

class UndoTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        appearance.set(false);
        home = std::make_unique<QTemporaryDir>();
        manager = std::make_unique<TaskManager>(preferences);
        program =
            std::make_unique<Program>(*manager, systemNotices,
                                      Program::Folders{home->path(), home->path(), home->filePath(u"data"_s),
                                                       home->filePath(u"state"_s)},
                                      GatewayAddress{.host = u"127.0.0.1"_s, .port = 1});
        window = &program->mainWindow();
        window->show();
        table = window->findChild<QTableView *>(u"tblView"_s);
        states = {{}};
        at = 0;
    }

    void cleanup() { program.reset(); }

    /// Commands with undo and redo among them, a search, views and the dark appearance in between, against a
    /// list kept by hand.
    void everyStepCanBeTakenBack_data()
    {
        QTest::addColumn<quint32>("seed");
        for (const quint32 seed : {1u, 2u, 3u})
            QTest::addRow("%u", seed) << seed;
    }

    void everyStepCanBeTakenBack()
    {
        QFETCH(const quint32, seed);
        QRandomGenerator random(seed);
        for (int count = 0; count < 250; ++count) {
            const int operation = random.bounded(17);
            if (operation < 9)
                command(operation, random);
            else if (operation == 16)
                bringBack(State(states[random.bounded(states.size())]));
            else if (operation < 12)
                move(u"actionUndo"_s, random.bounded(1, 4), -1);
            else if (operation < 13)
                move(u"actionRedo"_s, random.bounded(1, 4), 1);
            else if (operation < 14)
                searchField()->setText(random.bounded(2) ? QString::number(random.bounded(10)) : QString());
            else if (operation < 15)
                chooseView(random.bounded(10));
            else
                appearance.set(!isDark(), systemNotices);
            QVERIFY2(isAsByHand(), qPrintable(u"operation %1, the %2th"_s.arg(operation).arg(count)));
        }
        move(u"actionUndo"_s, 300, -1);
        QVERIFY(at == 0 && isAsByHand());
        move(u"actionRedo"_s, 300, 1);
        QVERIFY(isAsByHand());
    }

    void anUndoShowsWhatCameBack()
    {
        for (const QString &name : {u"first"_s, u"Rake & mow"_s, u"last"_s})
            manager->addTask({.key = name, .date = day(3), .name = name, .due = day(9)});
        program->applicationNotices().post(notice::reload);
        table->selectRow(1);
        const AlertAnswer alert(u"Yes"_s);
        action(u"actionDelete"_s)->trigger();
        QCOMPARE(action(u"actionUndo"_s)->text(), u"&Undo Delete 'Rake && mow'"_s);
        chooseView(6);
        searchField()->setText(u"rake"_s);
        action(u"actionUndo"_s)->trigger();
        QCOMPARE(shownKey(), u"Rake & mow"_s);
        QVERIFY(action(u"actionEdit"_s)->isEnabled());
        searchField()->setText(u"last"_s);
        action(u"actionHide"_s)->trigger();
        action(u"actionUndo"_s)->trigger();
        auto *status = window->findChild<QLabel *>(u"statusMessageLabel"_s);
        QCOMPARE(status->text(), u"Undone: Hide 'Rake & mow'. The task is not shown in this view."_s);
        searchField()->clear();
        action(u"actionRedo"_s)->trigger();
        QVERIFY(shownKey() == u"Rake & mow"_s && status->text().isEmpty());
        QHeaderView *header = table->horizontalHeader();
        header->setSortIndicator(int(TaskColumn::Name), Qt::DescendingOrder);
        action(u"actionUndo"_s)->trigger();
        QCOMPARE(header->sortIndicatorSection(), int(TaskColumn::Date));
        QTest::keyClicks(searchField(), u"x"_s);
        QTest::keyClick(searchField(), Qt::Key_Z, Qt::ControlModifier); // the field's own
        QVERIFY(searchField()->text().isEmpty() && action(u"actionRedo"_s)->isEnabled());
    }

    void whatOthersWroteStays()
    {
        for (const QString &name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s}) {
            manager->addTask({.key = name, .date = day(3), .name = name, .due = day(9)});
            program->applicationNotices().post(notice::reload);
        }
        manager->selectTaskByKey(u"b"_s);
        manager->deleteSelectedTask();
        program->applicationNotices().post(notice::reload);
        const auto load = [this](const QStringList &names) {
            manager->load([&] {
                for (const QString &name : names)
                    manager->addTask({.key = name.first(1), .date = day(3), .name = name, .due = day(9)});
            });
        };
        load({u"a!"_s, u"e"_s, u"d"_s}); // another machine has changed a, removed c and put e before d
        action(u"actionUndo"_s)->trigger();
        QCOMPARE(namesOf(manager->tasks()).join(u' '), u"a! b e d"_s);
        action(u"actionUndo"_s)->trigger(); // of adding d
        action(u"actionUndo"_s)->trigger(); // of adding c, which has gone already
        QCOMPARE(namesOf(manager->tasks()).join(u' '), u"a! b e"_s);
        for (int count = 0; count < 3; ++count)
            action(u"actionRedo"_s)->trigger();
        QCOMPARE(namesOf(manager->tasks()).join(u' '), u"a! c d e"_s);
        load({u"a!"_s, u"c"_s, u"b"_s, u"e"_s}); // c was brought back elsewhere as well
        action(u"actionUndo"_s)->trigger();      // of deleting b, which is there
        QCOMPARE(namesOf(manager->tasks()).join(u' '), u"a! c b e"_s);
        action(u"actionRedo"_s)->trigger();
        QCOMPARE(namesOf(manager->tasks()).join(u' '), u"a! c e"_s);
        const auto *status = window->findChild<QLabel *>(u"statusMessageLabel"_s);
        for (int count = 0; count < 5; ++count)
            action(u"actionUndo"_s)->trigger(); // down to the adding of a
        QCOMPARE(status->text(), u"'a!' was changed elsewhere since and stays."_s);
        manager->selectTaskByKey(u"e"_s);
        manager->closeSelectedTask();
        program->applicationNotices().post(notice::reload);
        load({u"a!"_s, u"e!"_s});
        action(u"actionUndo"_s)->trigger();
        QCOMPARE(status->text(), u"'e!' was changed elsewhere since and stays."_s);
        action(u"actionRedo"_s)->trigger();
        QCOMPARE(namesOf(manager->tasks()).join(u' '), u"a! e!"_s);
    }

private:
    using State = QList<task>;

    static Instant day(int number) { return Calendar().startOfDay(QDate(2026, 5, number)); }
    QAction *action(const QString &name) const { return window->findChild<QAction *>(name); }
    QLineEdit *searchField() const { return window->findChild<QLineEdit *>(u"searchField"_s); }
    bool isDark() const { return manager->history().isInverted(); }

    QString shownKey() const
    {
        const QModelIndexList rows = table->selectionModel()->selectedRows(int(TaskColumn::Key));
        return rows.isEmpty() ? QString() : rows.constFirst().data().toString();
    }

    void chooseView(int view) const
    {
        auto *chooser = window->findChild<QComboBox *>(u"viewSelection"_s);
        chooser->setCurrentIndex(view);
        emit chooser->activated(view);
    }

    task randomTask(QRandomGenerator &random) const
    {
        const auto part = [&random] {
            return random.bounded(9) / 8.0; // whose inverse is exact
        };
        return {.date = day(random.bounded(1, 29)),
                .name = QString::number(random.bounded(100)),
                .desc = u"<%1>"_s.arg(random.bounded(100)),
                .color = {part(), part(), part(), part()},
                .due = day(random.bounded(1, 29)),
                .statusName = u"Open"_s,
                .priorityName = u"None"_s,
                .endHour = random.bounded(24)};
    }

    /// Gives one command to the program and does the same by hand.
    void command(int operation, QRandomGenerator &random)
    {
        State next = states[at];
        const int rows = table->model()->rowCount();
        if (operation > 1 && rows == 0)
            return;
        if (operation == 0) {
            task added = randomTask(random);
            next.append(added);
            added.color = heldColor(added.color);
            next.last().key = manager->addTask(added);
            program->applicationNotices().post(notice::reload);
        } else if (operation == 1) {
            table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
            table->horizontalHeader()->setSortIndicator(int(TaskColumn::Name), Qt::AscendingOrder);
            if (!manager->isSearching())
                std::ranges::stable_sort(next, {}, &task::name);
            program->applicationNotices().post(notice::reload); // which files it
        } else {
            table->clearSelection();
            table->selectRow(random.bounded(rows));
            onSelected(operation, next, random);
        }
        if (!haveEqualTasks(next, states[at])) {
            states.resize(++at);
            states.append(next);
        }
    }

    /// As an earlier version of the list.
    void bringBack(const State &earlier)
    {
        TaskList list;
        for (task entry : earlier) {
            entry.color = heldColor(entry.color);
            list.append(SharedTask(entry));
        }
        if (haveEqualTasks(earlier, states[at]))
            return;
        manager->replaceList(list, u"Bring Back the List"_s);
        program->applicationNotices().post(notice::reload);
        states.resize(++at);
        states.append(earlier);
    }

    void onSelected(int operation, State &next, QRandomGenerator &random)
    {
        const qsizetype place = manager->selected();
        const bool isGlobal = window->findChild<QComboBox *>(u"viewSelection"_s)->currentIndex() == 6;
        const qsizetype other = operation == 7 ? place - 1 : place + 1;
        task &entry = next[place];
        if (operation == 2) {
            task edited = randomTask(random);
            edited.key = entry.key;
            edited.hidden = entry.hidden;
            entry = edited;
            edited.color = heldColor(edited.color);
            manager->editSelectedTask(edited);
            program->applicationNotices().post(notice::reload);
        } else if (operation == 3) {
            const AlertAnswer alert(u"Yes"_s);
            action(u"actionDelete"_s)->trigger();
            next.removeAt(place);
        } else if (operation == 4) {
            action(u"actionHide"_s)->trigger();
            entry.hidden = !entry.hidden;
        } else if (operation == 5 && entry.status == taskStatus::open && !manager->isSearching()) {
            action(u"actionClose"_s)->trigger();
            entry.status = taskStatus::closed;
            entry.statusName = taskStatus::closedName;
        } else if (operation == 6) {
            action(u"actionClone"_s)->trigger();
            task clone = entry;
            clone.key = manager->workingList().constLast()->key;
            next.append(clone);
        } else if (operation > 6 && isGlobal && !manager->isSearching() && other >= 0 &&
                   other < next.size()) {
            action(operation == 7 ? u"actionUp"_s : u"actionDown"_s)->trigger();
            next.swapItemsAt(place, other);
        }
    }

    void move(const QString &name, int times, int by)
    {
        for (; times > 0; --times) {
            const qsizetype next = at + by;
            QCOMPARE(action(name)->isEnabled(), next >= 0 && next < states.size());
            action(name)->trigger();
            at = std::clamp<qsizetype>(next, 0, states.size() - 1);
        }
    }

    Color heldColor(const Color &color) const { return isDark() ? color.inverted() : color; }

    static bool haveEqualTasks(const State &a, const State &b)
    {
        return std::ranges::equal(a, b, haveEqualFields);
    }

    /// Whether the list, and the file, are what was kept by hand.
    bool isAsByHand() const
    {
        State shown;
        for (const SharedTask &entry : manager->workingList()) {
            shown.append(*entry);
            shown.last().color = heldColor(entry->color);
        }
        const QByteArray file = contentOf(home->filePath(u"zandulist.txt"_s));
        QByteArrayList keys;
        for (const QByteArray &row : file.split('^'))
            keys.append(row.split('|').value(12));
        QByteArrayList expected;
        for (const task &entry : states[at])
            expected.append(entry.key.toUtf8());
        expected.append(QByteArray());
        return haveEqualTasks(shown, states[at]) && (keys == expected || states.size() == 1);
    }

    Appearance appearance;
    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    NotificationCenter systemNotices;
    std::unique_ptr<QTemporaryDir> home;
    std::unique_ptr<TaskManager> manager;
    std::unique_ptr<Program> program;
    ViewController *window = nullptr;
    QTableView *table = nullptr;
    QList<State> states; ///< after each step; the first is the empty list
    qsizetype at = 0;
};

static const TestClass<UndoTest> registered;
#include "UndoTest.moc"
