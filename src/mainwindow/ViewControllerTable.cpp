#include "mainwindow/ViewController.h"
#include "model/TaskManager.h"
#include "model/TaskView.h"
#include "platform/Diagnostics.h"
#include "ui_ViewController.h"

#include <QClipboard>
#include <QMenu>

using namespace Qt::StringLiterals;

// What the table shows: the view, the search, the order and the selection.

void ViewController::tableViewSelectionDidChange()
{
    diagnostics::line("Selection changed");
    const int row = ui->tblView->selectedRow();
    diagnostics::line("Selected Row:", row);
    if (row < 0)
        return;
    const QString key = table.keyOfRow(row);
    diagnostics::line(key);
    const qint64 index = manager.selectTaskByKey(key);
    diagnostics::line("Index:", index);
    const bool hidden = manager.isSelectedTaskHidden();
    diagnostics::line("Hidden:", hidden);
    taskCommands.showHideState(hidden);
    if (index < 0)
        taskCommands.disable();
    else
        taskCommands.enable();
    diagnostics::line("Row:", row);
}

void ViewController::sortDescriptorsDidChange()
{
    const QHeaderView *header = ui->tblView->horizontalHeader();
    const int section = header->sortIndicatorSection();
    if (section < 0 || section >= table.columnCount())
        return;
    const SortDescriptor descriptor{.key = taskColumns()[section].sortKey,
                                    .ascending = header->sortIndicatorOrder() == Qt::AscendingOrder};
    diagnostics::line("Sorting:", descriptor);
    const QString selectedKey = manager.selectedTask().key;
    const QString shownKey = ui->tblView->keyOfSelectedRow();
    manager.sortByColumn(descriptor);
    manager.endStep();
    if (manager.selected() >= 0)
        manager.selectTaskByKey(selectedKey); // the same task, at its new place
    reloadTable();
    ui->tblView->selectRowOfKey(shownKey);
    keptState.saveOrder(*header);
}

/// Marks the column that the list is sorted by.
void ViewController::showOrder()
{
    const std::optional<SortDescriptor> &order = manager.sortedBy();
    const std::optional<TaskColumn> column = order ? columnOfSortKey(order->key) : std::nullopt;
    QHeaderView *header = ui->tblView->horizontalHeader();
    const QSignalBlocker noSorting(header);
    header->setSortIndicator(column ? int(*column) : -1,
                             order && !order->ascending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void ViewController::ChangeView(QObject *)
{
    const int position = ui->viewSelection->currentIndex();
    diagnostics::line("Change View", position);
    taskCommands.disable();
    manager.refreshSearch();
    reloadTable();
}

void ViewController::chooseView(int position)
{
    ui->viewSelection->setCurrentIndex(position);
    ChangeView(ui->viewSelection);
}

void ViewController::search(QObject *)
{
    const QString text = ui->searchField->text();
    ui->searchField->setClearButtonEnabled(true); // at the start it would read the desktop's whole icon theme
    const QString shownKey = ui->tblView->keyOfSelectedRow();
    if (text.isEmpty())
        manager.endSearch();
    else
        manager.startSearch(text);
    reloadTable();
    ui->tblView->selectRowOfKey(shownKey);
    if (!text.isEmpty() && ui->tblView->selectedRow() < 0)
        ui->tblView->scrollToTop(); // where the first hit is
}

/// Brings the view that depends on the day up to date, or the marks; what is selected in it stays selected.
void ViewController::showToday()
{
    if (ui->viewSelection->currentIndex() == int(TaskView::DueToday)) {
        showListAgain();
        return;
    }
    table.followDay();
    showCounts();
}

void ViewController::showListAgain()
{
    const QString shownKey = ui->tblView->keyOfSelectedRow();
    showOrder();
    reloadTable();
    ui->tblView->selectRowOfKey(shownKey);
    if (ui->tblView->selectedRow() < 0 && manager.selected() < 0)
        taskCommands.disable();
}

void ViewController::reloadTableData()
{
    manager.refreshSearch();
    if (!manager.sortedBy() && ui->tblView->horizontalHeader()->sortIndicatorSection() >= 0) {
        showOrder(); // the list has another order now
        keptState.saveOrder(*ui->tblView->horizontalHeader());
    }
    reloadTable();
    taskCommands.disable();
    writeList();
}

void ViewController::reloadTable()
{
    const int view = ui->viewSelection->currentIndex();
    ui->tblView->reloadData(view);
    ui->tblView->setRowsMovable(view == int(TaskView::GlobalAll) && !manager.isSearching());
    ui->menuView->actions().at(view)->setChecked(true);
    explainEmptyTable();
    showCounts();
}

void ViewController::showCounts()
{
    const TaskTable::Counts counts = table.counts();
    ui->countsLabel->setText(
        tr("%1 shown, %2 open, %3 overdue").arg(counts.shown).arg(counts.open).arg(counts.overdue));
}

/// Says why nothing is shown, and what to do about it.
void ViewController::explainEmptyTable()
{
    if (table.rowCount() > 0)
        return;
    const QString view = ui->viewSelection->currentText();
    if (manager.workingList().isEmpty())
        emptyNote.tell(tr("Your tasks stand here: what there is to do, when, for whom and by whom."),
                       tr("New Task"));
    else if (manager.isSearching())
        emptyNote.tell(
            tr("No task in the view “%1” holds “%2”.").arg(view, manager.searchTerm().simplified()),
            tr("Clear the Search"));
    else
        emptyNote.tell(tr("No task belongs to the view “%1” at present.").arg(view), tr("Show All"));
}

/// The first step out of an empty table.
void ViewController::leaveEmptyTable()
{
    if (manager.workingList().isEmpty()) {
        ui->actionAdd->trigger();
        return;
    }
    if (manager.isSearching())
        ui->searchField->clear();
    else
        chooseView(int(ui->viewSelection->currentIndex() == int(TaskView::All) ? TaskView::GlobalAll
                                                                               : TaskView::All));
    ui->tblView->setFocus();
}

/// What can be done with the row that was right-clicked, which is selected by that, or with the list.
void ViewController::showTableMenu(const QPoint &place)
{
    QMenu menu;
    if (ui->tblView->selectedRow() >= 0) {
        menu.addActions({ui->actionEdit, ui->actionCopy, ui->actionShare, ui->actionClone, ui->actionClose,
                         ui->actionHide});
        menu.addSeparator();
        menu.addActions({ui->actionUp, ui->actionDown});
        menu.addSeparator();
        menu.addAction(ui->actionDelete);
        menu.addSeparator();
    }
    menu.addAction(ui->actionAdd);
    menu.exec(place);
}

void ViewController::copyRow()
{
    const QString text = ui->tblView->textOfSelectedRow();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}
