#include "MainWindowCommandSteps.h"

#include "ExpectedList.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Stage.h"

#include <QMessageBox>
#include <QTableView>
#include <QToolButton>

using namespace Qt::StringLiterals;

MainWindowCommandSteps::MainWindowCommandSteps(Stage &tourStage, const MainWindowHandle &mainWindow,
                                               ExpectedList &expectedList)
    : stage(tourStage)
    , main(mainWindow)
    , expected(expectedList)
{
}

void MainWindowCommandSteps::hideAndUnhide()
{
    stage.step(u"A hidden task leaves the view and is found among the hidden ones"_s);
    const QString forAWhile = u"Send the October invoices"_s;
    const QString forGood = u"Order the spring bedding"_s;
    main.showView(TaskView::All);
    for (const QString &name : {forAWhile, forGood}) {
        main.selectTask(name);
        stage.same(main.hideButton.toolTip(), u"HIDE", u"what the button offers"_s);
        hand::click(main.hideButton);
        expected.setHidden(name, true);
        stage.check(!main.taskNames().contains(name), name + u" has left the view"_s);
        main.checkView(stage, expected, TaskView::All);
        main.checkTaskButtons(stage, false);
    }
    main.showView(TaskView::Hidden);
    main.checkView(stage, expected, TaskView::Hidden);
    main.selectTask(forAWhile);
    stage.same(main.hideButton.toolTip(), u"UNHIDE", u"what the button offers"_s);
    stage.picture(main.window, u"hidden-task"_s);

    hand::shortcut(main.window, Qt::Key_H, Qt::ControlModifier);
    expected.setHidden(forAWhile, false);
    main.checkView(stage, expected, TaskView::Hidden);
    main.showView(TaskView::All);
    main.checkView(stage, expected, TaskView::All);
}

void MainWindowCommandSteps::move()
{
    stage.step(u"A task moves down and up in the user's own order"_s);
    main.showView(TaskView::GlobalAll);
    const QStringList before = main.taskNames();
    const int row = int(before.size()) / 2;
    QStringList moved = before;
    moved.swapItemsAt(row, row + 1);

    main.selectTask(before[row]);
    hand::press(main.table, Qt::Key_Down, Qt::AltModifier);
    stage.same(main.taskNames(), moved, u"the order after moving down"_s);
    stage.same(main.selectedRow(), row + 1, u"the selection goes with the task"_s);
    stage.picture(main.window, u"moved-down"_s);
    hand::click(main.upperButton);
    stage.same(main.taskNames(), before, u"the order after moving up again"_s);
    stage.same(main.selectedRow(), row, u"the selection goes back with the task"_s);

    main.selectTask(before.first());
    hand::press(main.table, Qt::Key_Up, Qt::AltModifier);
    stage.same(main.taskNames(), before, u"the order after moving up at the top"_s);
    main.selectTask(before.last());
    hand::click(main.downerButton);
    stage.same(main.taskNames(), before, u"the order after moving down at the bottom"_s);
}

void MainWindowCommandSteps::expectAlert(QWidget &button, const QString &message, const QString &pictureName)
{
    const QStringList before = main.taskNames();
    hand::throughDialog([&] { hand::click(button); },
                        [&](QDialog &dialog) {
                            const auto *alert = qobject_cast<QMessageBox *>(&dialog);
                            stage.check(alert != nullptr, u"the dialog is an alert"_s);
                            stage.same(alert->informativeText(), message, u"the alert"_s);
                            stage.picture(dialog, pictureName);
                            QWidget *ok = alert->button(QMessageBox::Ok);
                            stage.check(ok != nullptr, u"the alert has an OK button"_s);
                            hand::click(*ok);
                        });
    stage.same(main.taskNames(), before, u"the tasks after the alert"_s);
}

void MainWindowCommandSteps::moveInAnotherView()
{
    stage.step(u"Elsewhere tasks cannot be moved, and the program says so"_s);
    main.showView(TaskView::All);
    main.selectTask(u"Repair the dry-stone wall"_s);
    expectAlert(main.upperButton, u"Change to Global-All View to order Tasks."_s, u"alert-move-up"_s);
    expectAlert(main.downerButton, u"Change to the Global-All View to order Tasks."_s, u"alert-move-down"_s);
}

void MainWindowCommandSteps::cloneTask()
{
    stage.step(u"A cloned task stands at the end under a key of its own"_s);
    const QString name = u"Mend the glasshouse door"_s;
    main.showView(TaskView::All);
    main.selectTask(name);
    const QStringList keysBefore = main.texts(u"Key"_s);
    hand::click(main.cloneButton);
    const QString key = main.texts(u"Key"_s).constLast();
    stage.check(key.size() == 36 && !keysBefore.contains(key), key + u" is a key of its own"_s);
    expected.clone(name, key);
    main.checkView(stage, expected, TaskView::All);
    main.checkTaskButtons(stage, false);

    const int last = main.table.model()->rowCount() - 1;
    for (const QString &column :
         {u"Start Date"_s, u"Start"_s, u"End"_s, u"Task"_s, u"Client"_s, u"Team Member"_s, u"Description"_s,
          u"Status"_s, u"Priority"_s, u"Due Date"_s})
        stage.same(main.text(last, column), main.text(main.rowOf(name), column), column + u" of the clone"_s);
    hand::clickCell(main.table, main.table.model()->index(last, main.column(u"Task"_s)));
    stage.same(main.selectedRow(), last, u"the selected row"_s);
    stage.picture(main.window, u"cloned-task"_s);
}

void MainWindowCommandSteps::closeTask()
{
    stage.step(u"A task is closed, once"_s);
    const QString name = u"Fallen branch at the Bellevue car park"_s;
    main.showView(TaskView::All);
    main.selectTask(name);
    stage.same(main.text(main.rowOf(name), u"Status"_s), u"Open", u"the status before"_s);
    hand::click(main.closeButton);
    expected.close(name);
    stage.same(main.text(main.rowOf(name), u"Status"_s), u"Closed", u"the status after"_s);
    main.checkTaskButtons(stage, false);
    for (const TaskView view : {TaskView::Open, TaskView::GlobalClosed, TaskView::Closed}) {
        main.showView(view);
        main.checkView(stage, expected, view);
    }
    main.selectTask(name);
    stage.picture(main.window, u"closed-task"_s);
    expectAlert(main.closeButton, u"Task already closed"_s, u"alert-already-closed"_s);
}
