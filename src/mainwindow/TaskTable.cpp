#include "mainwindow/TaskTable.h"

#include "model/DueMark.h"
#include "model/TaskCell.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"

#include <QMimeData>

using namespace Qt::StringLiterals;

/// Of a row that is dragged; its data is the task's key.
static constexpr char16_t rowType[] = u"application/x-quorvane-task";

TaskTable::TaskTable(TaskManager &taskManager, QObject *parent)
    : QAbstractTableModel(parent)
    , manager(taskManager)
    , today(Calendar().day(QDate::currentDate()))
{
}

void TaskTable::reloadData(int view)
{
    beginResetModel();
    today = Calendar().day(QDate::currentDate());
    numberOfRows(view);
    endResetModel();
}

void TaskTable::followDay()
{
    today = Calendar().day(QDate::currentDate());
    if (rowCount() > 0)
        emit dataChanged(index(0, int(TaskColumn::Due)), index(rowCount() - 1, int(TaskColumn::Due)));
}

TaskTable::Counts TaskTable::counts() const
{
    Counts counts{.shown = rowCount()};
    for (const SharedTask &entry : manager.tasksInView()) {
        counts.open += entry->status == taskStatus::open ? 1 : 0;
        counts.overdue += dueMarkOf(*entry, today) == DueMark::Overdue ? 1 : 0;
    }
    return counts;
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
    if (index.column() == int(TaskColumn::Due))
        if (const QVariant mark = dueMarkData(entry, today, role); mark.isValid())
            return mark;
    return taskCell(entry, TaskColumn(index.column()), entry.color, role);
}

QVariant TaskTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < columnCount())
        return taskColumns()[section].title;
    return {};
}

Qt::ItemFlags TaskTable::flags(const QModelIndex &index) const
{
    return index.isValid() ? QAbstractTableModel::flags(index) | Qt::ItemIsDragEnabled
                           : Qt::ItemIsDropEnabled;
}

QStringList TaskTable::mimeTypes() const
{
    return {QString::fromUtf16(rowType)};
}

QMimeData *TaskTable::mimeData(const QModelIndexList &indexes) const
{
    auto *data = new QMimeData;
    if (!indexes.isEmpty())
        data->setData(QString::fromUtf16(rowType), keyOfRow(indexes.constFirst().row()).toUtf8());
    return data;
}
