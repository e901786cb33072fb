#pragma once

#include <QString>

#include <array>
#include <optional>

/// The columns of the task table, in their order from left to right.
enum class TaskColumn {
    Date,
    StartTime,
    EndTime,
    Name,
    Client,
    TeamMember,
    Description,
    Status,
    Priority,
    Due,
    Key
};

struct TaskColumnInfo
{
    TaskColumn column;
    QString sortKey;
    QString title;
};

/// The table of columns, indexed by column.
const std::array<TaskColumnInfo, 11> &taskColumns();

std::optional<TaskColumn> columnOfSortKey(const QString &sortKey);

/// What a table is to be sorted by: a column's sort key and a direction.
struct SortDescriptor
{
    QString key;
    bool ascending = true;
};

/// In a diagnostic line: the key and the direction.
void appendItem(QByteArray &line, const SortDescriptor &descriptor);
