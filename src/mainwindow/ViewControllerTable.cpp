#include "mainwindow/ViewController.h"
#include "model/TaskManager.h"
#include "model/TaskView.h"
#include "platform/Diagnostics.h"
#include "ui_ViewController.h"

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

/// Brings the view that depends on the day up to date; what is selected in it stays selected.
void ViewController::showToday()
{
    if (ui->viewSelection->currentIndex() == int(TaskView::DueToday))
        showListAgain();
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
    ui->menuView->actions().at(view)->setChecked(true);
}
