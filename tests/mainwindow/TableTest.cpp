#include "mainwindow/TableColumns.h"
#include "mainwindow/TaskTableView.h"
#include "model/TaskManager.h"
#include "platform/Calendar.h"
#include "platform/Preferences.h"
#include "program/Program.h"
#include "support/TestProgram.h"

#include <QClipboard>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QUndoStack>

using namespace Qt::StringLiterals;

/// The main window's table in the hands of somebody who knows tables.
class TableTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        open();
    }

    void open()
    {
        program.reset();
        manager = std::make_unique<TaskManager>(preferences);
        program =
            std::make_unique<Program>(*manager, systemNotices,
                                      Program::Folders{home->path(), home->path(), home->filePath(u"data"_s),
                                                       home->filePath(u"state"_s)});
        window = &program->mainWindow();
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window));
        table = window->findChild<TaskTableView *>();
        table->setFocus();
    }

    void cleanup() { program.reset(); }

    void keysReachEveryTask()
    {
        addTasks({u"Rake"_s, u"mow"_s, u"Raise"_s, u"Weed"_s});
        const auto current = [this](auto key) {
            QTest::keyClick(table, key);
            return manager->selectedTask().name;
        };
        QCOMPARE(current(Qt::Key_End), u"Weed"_s);
        QCOMPARE(current(Qt::Key_Home), u"Rake"_s);
        QCOMPARE(current('r'), u"Raise"_s);
        QCOMPARE(current('r'), u"Rake"_s);
        QTest::keyClicks(table, u"ais"_s);
        QCOMPARE(manager->selectedTask().name, u"Raise"_s);
        QTest::keyClicks(table, u"x"_s); // no name begins so: what is selected stays
        QCOMPARE(manager->selectedTask().name, u"Raise"_s);
        QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
        const QStringList texts = QGuiApplication::clipboard()->text().split(u'\t');
        QCOMPARE(texts.size(), int(TaskColumn::Key)); // every column that is shown
        QCOMPARE(texts.at(int(TaskColumn::Name)), u"Raise"_s);

        QTest::keyClick(table, Qt::Key_Return);
        auto *form = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        QVERIFY(form && form->objectName() == u"ViewControllerEdit"_s);
        form->reject();
    }

    void aRowThatIsDroppedIsOneStep()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
        QCOMPARE(table->dragDropMode(), QAbstractItemView::NoDragDrop); // in this view orders are not made
        chooseView(u"Global-All"_s);
        QCOMPARE(table->dragDropMode(), QAbstractItemView::InternalMove);
        const int steps = manager->history().steps().count();
        table->selectRow(3);
        emit table->rowMoved(0);
        QTRY_COMPARE(names(), u"d a b c"_s);
        QCOMPARE(manager->selectedTask().name, u"d"_s);
        emit table->rowMoved(2);
        QTRY_COMPARE(names(), u"a b d c"_s);
        QCOMPARE(manager->history().steps().count(), steps + 2);
        window->undo(nullptr);
        window->undo(nullptr);
        QCOMPARE(names(), u"a b c d"_s);
    }

    void columnsStayAsTheyWereArranged()
    {
        const QHeaderView *header = table->horizontalHeader();
        QVERIFY(header->isSectionHidden(int(TaskColumn::Key)));
        QCOMPARE(header->length(), table->viewport()->width()); // nothing is left over
        addTasks({u"a"_s});
        table->selectionModel()->setCurrentIndex(table->model()->index(0, int(TaskColumn::Client)),
                                                 QItemSelectionModel::NoUpdate);
        inColumnMenu(u"Move Towards the &End"_s);
        inColumnMenu(u"&Wider"_s);
        inColumnMenu(u"Key"_s);
        const int width = header->sectionSize(int(TaskColumn::Client));
        for (const TaskColumnInfo &info : taskColumns())
            if (info.column != TaskColumn::Client)
                inColumnMenu(info.title);
        inColumnMenu(u"Key"_s); // shown again
        inColumnMenu(u"Key"_s);
        inColumnMenu(u"Client"_s); // the only one stays
        QCOMPARE(header->hiddenSectionCount(), header->count() - 1);
        window->close();
        open();
        header = table->horizontalHeader();
        QVERIFY(!header->isSectionHidden(int(TaskColumn::Client)));
        QCOMPARE(header->sectionSize(int(TaskColumn::Client)), width);
        QCOMPARE(header->visualIndex(int(TaskColumn::Client)), int(TaskColumn::Client) + 1);
        inColumnMenu(u"&As at First"_s);
        QCOMPARE(header->hiddenSectionCount(), 1);
        QCOMPARE(header->visualIndex(int(TaskColumn::Client)), int(TaskColumn::Client));
    }

    void whatIsDueIsMarkedAndCounted()
    {
        addTasks({u"late"_s, u"today"_s, u"early"_s, u"done"_s}, {-1, 0, 1, -1});
        manager->selectTaskByKey(u"done"_s);
        manager->closeSelectedTask();
        chooseView(u"Global-All"_s);
        QCOMPARE(window->findChild<QLabel *>(u"countsLabel"_s)->text(), u"4 shown, 3 open, 1 overdue"_s);
        QStringList told;
        for (int row = 0; row < 4; ++row)
            told += table->model()->index(row, int(TaskColumn::Due)).data(Qt::ToolTipRole).toString();
        QCOMPARE(told, QStringList({u"Overdue"_s, u"Due today"_s, {}, {}}));
    }

    void anEmptyTableOffersAFirstStep()
    {
        const auto *note = table->findChild<QFrame *>(u"emptyNote"_s);
        auto *step = note->findChild<QPushButton *>();
        QVERIFY(note->isVisible());
        QCOMPARE(step->text(), u"New Task"_s);
        addTasks({u"a"_s});
        QVERIFY(!note->isVisible());
        auto *search = window->findChild<QLineEdit *>(u"searchField"_s);
        search->setText(u"%2"_s);
        QVERIFY(note->isVisible() && note->findChild<QLabel *>()->text().contains(u"“%2”"_s));
        step->click();
        QCOMPARE(search->text(), QString());
        manager->selectTaskByKey(u"a"_s);
        manager->hideSelectedTask();
        chooseView(u"All"_s);
        QVERIFY(note->isVisible());
        step->click();
        QCOMPARE(names(), u"a"_s);
    }

private:
    /// Tasks whose names are their keys. \param dueIn  days from today
    void addTasks(const QStringList &names, const QList<int> &dueIn = {})
    {
        const QDateTime now = QDateTime::currentDateTime();
        for (int place = 0; place < names.size(); ++place)
            manager->addTask({.key = names[place],
                              .date = Calendar::instantOf(now),
                              .name = names[place],
                              .due = Calendar::instantOf(now.addDays(dueIn.value(place)))});
        manager->endStep();
        chooseView(u"All"_s);
    }

    void chooseView(const QString &title)
    {
        for (QAction *action : window->findChildren<QAction *>())
            if (action->text() == title && action->isCheckable())
                action->trigger();
    }

    void inColumnMenu(const QString &entry)
    {
        QMenu menu;
        window->findChild<TableColumns *>()->fill(menu);
        for (QAction *action : menu.actions())
            if (action->text() == entry)
                action->trigger();
    }

    QString names() const
    {
        QStringList names;
        for (int row = 0; row < table->model()->rowCount(); ++row)
            names += table->model()->index(row, int(TaskColumn::Name)).data().toString();
        return names.join(u' ');
    }

    std::unique_ptr<QTemporaryDir> home;
    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    NotificationCenter systemNotices;
    std::unique_ptr<TaskManager> manager;
    std::unique_ptr<Program> program;
    ViewController *window = nullptr;
    TaskTableView *table = nullptr;
};

static const TestClass<TableTest> registered;
#include "TableTest.moc"
