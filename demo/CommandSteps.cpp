#include "Steps.h"
#include "Tour.h"

#include <QMenu>

using namespace Qt::StringLiterals;

void hideAndUnhide(Tour &tour)
{
    tour.stage.step(u"A hidden task leaves the view and is found among the hidden ones"_s);
    const QString forAWhile = u"Send the October invoices"_s;
    const QString forGood = u"Order the spring bedding"_s;
    tour.showView(TaskView::All);
    tour.selectTask(forAWhile);
    tour.stage.same(tour.button(u"hide"_s).toolTip(), u"HIDE", u"what the button offers"_s);
    hand::click(tour.button(u"hide"_s));
    tour.expected.setHidden(forAWhile, true);
    tour.checkView(TaskView::All);
    tour.checkTaskButtons(false);
    tour.selectTask(forGood);
    hand::choose(tour.window, u"Task"_s, u"Hide"_s);
    tour.expected.setHidden(forGood, true);
    tour.checkView(TaskView::All);

    tour.showView(TaskView::Hidden);
    tour.checkView(TaskView::Hidden);
    tour.selectTask(forAWhile);
    tour.stage.same(tour.button(u"hide"_s).toolTip(), u"UNHIDE", u"what the button offers"_s);
    tour.takePicture(u"hidden-task"_s);
    hand::shortcut(tour.window, Qt::Key_H, Qt::ControlModifier);
    tour.expected.setHidden(forAWhile, false);
    tour.checkView(TaskView::Hidden);
    tour.showView(TaskView::All);
    tour.checkView(TaskView::All);
}

void move(Tour &tour)
{
    tour.stage.step(u"A task moves down and up in the user's own order"_s);
    tour.showView(TaskView::GlobalAll);
    const QStringList before = tour.taskNames();
    const int row = int(before.size()) / 2;
    QStringList moved = before;
    moved.swapItemsAt(row, row + 1);

    tour.selectTask(before[row]);
    hand::press(tour.table, Qt::Key_Down, Qt::AltModifier);
    tour.stage.same(tour.taskNames(), moved, u"the order after moving down"_s);
    tour.stage.same(tour.selectedRow(), row + 1, u"the selection goes with the task"_s);
    tour.takePicture(u"moved-down"_s);
    hand::click(tour.button(u"upper"_s));
    tour.stage.same(tour.taskNames(), before, u"the order after moving up again"_s);
    tour.stage.same(tour.selectedRow(), row, u"the selection goes back with the task"_s);

    tour.selectTask(before.first());
    hand::choose(tour.window, u"Task"_s, u"Move Up"_s);
    tour.stage.same(tour.taskNames(), before, u"the order after moving up at the top"_s);
    tour.selectTask(before.last());
    hand::click(tour.button(u"downer"_s));
    tour.stage.same(tour.taskNames(), before, u"the order after moving down at the bottom"_s);
}

void moveInAnotherView(Tour &tour)
{
    tour.stage.step(u"Elsewhere tasks cannot be moved, and the program says so"_s);
    tour.showView(TaskView::All);
    const QStringList before = tour.taskNames();
    tour.selectTask(u"Repair the dry-stone wall"_s);
    tour.throughAlert([&tour] { hand::click(tour.button(u"upper"_s)); },
                      u"Change to Global-All View to order Tasks."_s, u"OK"_s, u"alert-move-up"_s);
    tour.throughAlert([&tour] { hand::choose(tour.window, u"Task"_s, u"Move Down"_s); },
                      u"Change to the Global-All View to order Tasks."_s, u"OK"_s, u"alert-move-down"_s);
    tour.stage.same(tour.taskNames(), before, u"the tasks after the alerts"_s);
}

void cloneTask(Tour &tour)
{
    tour.stage.step(u"A cloned task stands at the end under a key of its own"_s);
    const QString name = u"Mend the glasshouse door"_s;
    tour.showView(TaskView::All);
    tour.selectTask(name);
    const QStringList keysBefore = tour.texts(u"Key"_s);
    hand::click(tour.button(u"clone"_s));
    const QString key = tour.texts(u"Key"_s).constLast();
    tour.stage.check(key.size() == 36 && !keysBefore.contains(key), key + u" is a key of its own"_s);
    tour.expected.rows.append(tour.expected.row(name));
    tour.expected.rows.last().fields[ListRow::Key] = key;
    tour.checkView(TaskView::All);
    tour.checkTaskButtons(false);

    const int last = tour.table.model()->rowCount() - 1;
    hand::clickCell(tour.table, tour.cell(last, u"Task"_s));
    tour.stage.same(tour.selectedRow(), last, u"the selected row"_s);
    tour.takePicture(u"cloned-task"_s);
}

void closeTask(Tour &tour)
{
    tour.stage.step(u"A task is closed, once"_s);
    const QString name = u"Fallen branch at the Bellevue car park"_s;
    tour.showView(TaskView::All);
    tour.selectTask(name);
    hand::click(tour.button(u"close"_s));
    tour.expected.row(name).fields[ListRow::Status] = u"1"_s;
    tour.expected.row(name).fields[ListRow::StatusName] = u"Closed"_s;
    tour.stage.same(tour.text(name, u"Status"_s), u"Closed", u"the status"_s);
    tour.checkTaskButtons(false);
    for (const TaskView view : {TaskView::Open, TaskView::GlobalClosed, TaskView::Closed}) {
        tour.showView(view);
        tour.checkView(view);
    }
    tour.selectTask(name);
    tour.takePicture(u"closed-task"_s);
    tour.throughAlert([&tour] { hand::choose(tour.window, u"Task"_s, u"Close"_s); }, u"Task already closed"_s,
                      u"OK"_s, u"alert-already-closed"_s);
    tour.checkView(TaskView::Closed);
}

void undoAndRedo(Tour &tour)
{
    tour.stage.step(u"What was done is taken back and made again, in light and dark"_s);
    const QString name = u"Lawn for Mrs. Okafor"_s;
    tour.showView(TaskView::All);
    const QStringList before = tour.taskNames();
    tour.selectTask(name);
    hand::click(tour.button(u"hide"_s));
    QMenu &menu = hand::openMenu(tour.window, u"Edit"_s);
    tour.stage.picture(menu, u"undo-menu"_s);
    hand::choose(menu, u"Undo Hide '%1'"_s.arg(name));
    tour.stage.same(tour.taskNames(), before, u"the tasks after the undo"_s);
    tour.stage.same(before.value(tour.selectedRow()), name, u"the task that came back is selected"_s);
    tour.takePicture(u"undone"_s);
    hand::shortcut(tour.window, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    tour.stage.check(!tour.taskNames().contains(name), u"the task is hidden again"_s);

    tour.setDark(true, tour.table);
    hand::shortcut(tour.window, Qt::Key_Z, Qt::ControlModifier);
    tour.stage.same(tour.taskNames(), before, u"the tasks after the undo in the dark"_s);
    tour.takePicture(u"undone-dark"_s);
    tour.setDark(false, tour.table);
    tour.checkView(TaskView::All);
}
