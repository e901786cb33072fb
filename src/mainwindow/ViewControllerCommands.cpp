#include "app/UIUtil.h"
#include "cloud/CloudSync.h"
#include "mainwindow/Screens.h"
#include "mainwindow/ViewController.h"
#include "model/TaskManager.h"
#include "model/TaskView.h"
#include "platform/Diagnostics.h"
#include "ui_ViewController.h"
#include "widgets/Alert.h"

#include <algorithm>

using namespace Qt::StringLiterals;

// What the buttons and menu entries of the main window do with the selected task and with the list.

void ViewController::hideClicked(QObject *)
{
    if (manager.selected() < 0) {
        diagnostics::line(manager.selected());
        return;
    }
    diagnostics::line("Hide Pressed!");
    const bool hide = !manager.isSelectedTaskHidden();
    taskCommands.showHideState(hide);
    if (hide)
        manager.hideSelectedTask();
    else
        manager.unhideSelectedTask();
    reloadTableData();
    diagnostics::line(manager.selected());
}

void ViewController::upper(QObject *)
{
    moveTask(true, u"Change to Global-All View to order Tasks."_s);
}

void ViewController::downer(QObject *)
{
    moveTask(false, u"Change to the Global-All View to order Tasks."_s);
}

void ViewController::moveTask(bool up, const QString &wrongViewMessage)
{
    const QString key = manager.selectedTask().key;
    const bool inGlobalView = ui->viewSelection->currentIndex() == int(TaskView::GlobalAll);
    if (ui->tblView->selectedRow() < 0 || manager.selected() < 0 || !inGlobalView) {
        alertMessage(this, inGlobalView ? u"Select a Task."_s : wrongViewMessage);
        return;
    }
    const qint64 before = manager.changeCount();
    manager.moveSelectedTask(up);
    showMoved(key, before);
}

/// Drops the selected task at this row of a view that shows all.
void ViewController::moveTaskTo(int row)
{
    const QString key = ui->tblView->keyOfSelectedRow();
    if (manager.selectTaskByKey(key) < 0)
        return;
    const qint64 before = manager.changeCount();
    manager.moveSelectedTaskTo(row);
    showMoved(key, before);
}

void ViewController::showMoved(const QString &key, qint64 changesBefore)
{
    if (manager.changeCount() != changesBefore) { // the order is the user's own now, and no column's
        showOrder();
        keptState.saveOrder(*ui->tblView->horizontalHeader());
    }
    reloadTable();
    taskCommands.disable();
    manager.selectTaskByKey(key);
    ui->tblView->selectRowOfKey(key);
    writeList();
}

void ViewController::cloneTask(QObject *)
{
    manager.cloneSelectedTask();
    reloadTableData();
    ui->tblView->pointOut(manager.workingList().constLast()->key);
}

void ViewController::closeTask(QObject *)
{
    if (manager.selectedTask().status != taskStatus::open) {
        alertMessage(this, u"Task already closed"_s);
        return;
    }
    if (player)
        player->play();
    diagnostics::line("Close Task");
    manager.closeSelectedTask();
    reloadTableData();
}

void ViewController::btnDeleteTask_ClickWithSender(QObject *)
{
    if (manager.selected() < 0) {
        diagnostics::line(manager.selected());
        return;
    }
    const task selected = manager.selectedTask();
    if (util().askYesNo(
            u"The task will be deleted locally as well as from the Cloud if present. Are you sure you "
            "want to delete ?"_s,
            selected.name)) {
        diagnostics::line("Ok Pressed!");
        manager.selectAgain(selected.key);
        cloud.deleteTaskFromCloud(selected.key);
        manager.deleteSelectedTask();
    }
    diagnostics::line("Tasks:", manager.tasks().size());
    reloadTableData();
    diagnostics::line(manager.selected());
}

void ViewController::UpdateToCloud(QObject *)
{
    cloud.syncAllToCloud();
}

void ViewController::UpdateFromCoud(QObject *)
{
    diagnostics::line("Update from Cloud");
    if (!util().askYesNo(
            u"Do you want to update from the Cloud?"_s,
            u"Your eventual changes on existing tasks will be overwritten. For security reasons, the "
            "extra tasks you may have saved locally vs what is saved in the Cloud will not be deleted. "
            "Please delete these manually as needed."_s))
        return;
    diagnostics::line("Ok Pressed!");
    cloud.updateFromCloud();
}

void ViewController::sharingTask(QObject *)
{
    manager.shareSelectedTask(*ui->shareButton);
}

/// The last task with this key, if there is one.
static const SharedTask *taskOfKey(const TaskList &tasks, const QString &key)
{
    const auto hasKey = [&key](const SharedTask &entry) {
        return entry->key == key;
    };
    const auto found = std::find_if(tasks.crbegin(), tasks.crend(), hasKey);
    return found == tasks.crend() ? nullptr : &*found;
}

void ViewController::undo(QObject *)
{
    showStep(manager.undo());
}

void ViewController::redo(QObject *)
{
    showStep(manager.redo());
}

/// What there is to know of it that the list does not show.
static QString noteOn(const TaskStep &step, bool isSeen)
{
    constexpr qsizetype most = 40;
    const TaskList &others = step.changedElsewhere;
    if (others.size() > 1)
        return u"%1 tasks were changed elsewhere since and stay."_s.arg(others.size());
    if (others.size() == 1)
        return u"'%1' was changed elsewhere since and stays."_s.arg(
            others.first()->name.simplified().left(most));
    return isSeen ? QString()
                  : u"%1: %2. The task is not shown in this view."_s.arg(
                        step.isUndone ? u"Undone"_s : u"Redone"_s, step.name);
}

/// Shows what has become of the list by a step that was taken back or made again.
void ViewController::showStep(const std::optional<TaskStep> &step)
{
    if (!step)
        return;
    const QString shownKey = ui->tblView->keyOfSelectedRow();
    if (step->sortedBefore != step->sortedAfter) {
        showOrder();
        keptState.saveOrder(*ui->tblView->horizontalHeader());
    }
    reloadTableData();
    const QStringList keys = step->keysToShow();
    const bool isShown = ui->tblView->selectFirstOf(keys);
    if (!isShown)
        ui->tblView->selectRowOfKey(shownKey);
    const bool isInList = !keys.isEmpty() && taskOfKey(manager.workingList(), keys.constFirst());
    const QString note = noteOn(*step, isShown || !isInList);
    ui->statusMessageLabel->setText(note.isEmpty() ? manager.lastMessage : note);
    const SharedTask *entry = taskOfKey(manager.workingList(), step->key);
    if (step->isDelete && !step->isUndone && step->changedElsewhere.isEmpty())
        cloud.deleteTaskFromCloud(step->key);
    else if (step->isDelete && step->isUndone && entry)
        cloud.restoreTaskInCloud(*entry);
}

void ViewController::doubleClickTable(QObject *)
{
    diagnostics::line("Double Click");
    const int row = ui->tblView->clickedRow();
    if (row >= 0)
        screens.openEditForm(*this);
    diagnostics::line("doubleClickOnResultRow ", row);
}

void ViewController::addEnhancement(QObject *)
{
    screens.openGuide(*this);
}
