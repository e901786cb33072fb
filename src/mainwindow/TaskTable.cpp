#include "mainwindow/TaskTable.h"

#include "model/TaskCell.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"

TaskTable::TaskTable(TaskManager &taskManager, QObject *parent)
    : QAbstractTableModel(parent)
    , manager(taskManager)
{
}

void TaskTable::reloadData(int view)
{
    beginResetModel();
    numberOfRows(view);
    endResetModel();
}

void TaskTable::numberOfRows(int view)
{
    diagnostics::line("Index of Selected:", view);
    manager.buildTasksInView(view);
    diagnostics::line("Number of Rows:", manager.tasksInView().size());
}

int TaskTable::rowOfKey(const QString &key) const
{
    int row = rowCount() - 1;
    while (row >= 0 && manager.tasksInView()[row]->key != key)
        --row;
    return row;
}

int TaskTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(manager.tasksInView().size());
}

int TaskTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(taskColumns().size());
}

QString TaskTable::cellText(qsizetype row, TaskColumn column) const
{
    return infoOf(column).cellText(*manager.tasksInView()[row]);
}

QVariant TaskTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const task &entry = *manager.tasksInView()[index.row()];
    if (role == Qt::BackgroundRole && index.column() == 0)
        diagnostics::line("Row:", index.row());
    return taskCell(entry, TaskColumn(index.column()), entry.color, role);
}

QVariant TaskTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < columnCount())
        return taskColumns()[section].title;
    return {};
}
