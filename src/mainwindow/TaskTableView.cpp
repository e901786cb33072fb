#include "mainwindow/TaskTableView.h"

#include "mainwindow/TaskRowDelegate.h"
#include "mainwindow/TaskTable.h"

#include <QHeaderView>
#include <QMouseEvent>

void TaskTableView::setTable(TaskTable &shown)
{
    table = &shown;
    setModel(table);
    setItemDelegate(new TaskRowDelegate(this));
    for (const TaskColumnInfo &info : taskColumns())
        setColumnWidth(int(info.column), info.width);
}

void TaskTableView::setLargeRows()
{
    constexpr int largeRow = 30; // pixels
    verticalHeader()->setDefaultSectionSize(largeRow);
    setShowGrid(false); // the delegate draws the vertical lines, and there are no others
}

void TaskTableView::reloadData(int view)
{
    const QModelIndex current = currentIndex();
    table->reloadData(view);
    const int row = qMin(current.row(), table->rowCount() - 1);
    selectionModel()->setCurrentIndex(table->index(row, qMax(current.column(), 0)),
                                      QItemSelectionModel::NoUpdate);
}

int TaskTableView::selectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

QString TaskTableView::keyOfSelectedRow() const
{
    const int row = selectedRow();
    return row < 0 ? QString() : table->keyOfRow(row);
}

void TaskTableView::selectRowOfKey(const QString &key)
{
    if (const int row = key.isEmpty() ? -1 : table->rowOfKey(key); row >= 0)
        selectRow(row);
}

void TaskTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTableView::mouseDoubleClickEvent(event);
    if (event->button() != Qt::LeftButton)
        return;
    rowOfDoubleClick = indexAt(event->position().toPoint()).row();
    emit doubleAction();
}
