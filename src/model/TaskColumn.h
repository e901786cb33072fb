#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <variant>

struct task;

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

/// All that is to be known of a column.
struct TaskColumnInfo
{
    /// What tasks are sorted by: numbers, or texts that compare by Unicode code points after canonical
    /// composition, case-sensitive.
    using SortValue = std::variant<qint64 (*)(const task &), QString (*)(const task &)>;

    TaskColumn column;
    QString sortKey;
    QString title;
    int width; ///< at a first start, in pixels
    QString (*cellText)(const task &);
    SortValue sortValue;
};

/// The table of columns, indexed by column.
const QList<TaskColumnInfo> &taskColumns();

inline const TaskColumnInfo &infoOf(TaskColumn column)
{
    return taskColumns()[int(column)];
}

std::optional<TaskColumn> columnOfSortKey(const QString &sortKey);

/// What a table is to be sorted by: a column's sort key and a direction.
struct SortDescriptor
{
    QString key;
    bool ascending = true;

    bool operator==(const SortDescriptor &) const = default;
};

/// In a diagnostic line: the key and the direction.
void appendItem(QByteArray &line, const SortDescriptor &descriptor);
