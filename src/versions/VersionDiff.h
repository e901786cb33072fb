#pragma once

#include "model/TaskColumn.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

/// The rows of a task list's text, without their ends. What follows the last end is no row.
class ListRows
{
public:
    explicit ListRows(const QByteArray &text = {});

    qsizetype size() const { return rows.size(); }
    QByteArrayView operator[](qsizetype index) const { return rows[index]; }
    /// The row for a reader of its text.
    QString textOf(qsizetype index) const { return QString::fromUtf8(rows[index]); }
    /// The name in the row, on one line.
    QString nameOf(qsizetype index) const;

private:
    QByteArray text; ///< that the rows are parts of
    QList<QByteArrayView> rows;
};

/// What became of one task from one list to a later one.
struct TaskChange
{
    enum class Kind : char { Added = '+', Changed = '~', Removed = '-' };

    Kind kind;
    qsizetype before;   ///< its row in the earlier list, or −1
    qsizetype after;    ///< its row in the later list, or −1
    quint32 fields = 0; ///< of a changed one, as bits by their position in the row
};

/// What became of a list. Tasks are the same when their keys are or, where the earlier one has none, their
/// names; of several such tasks, the first goes with the first, and so on.
struct VersionDiff
{
    static VersionDiff between(const ListRows &before, const ListRows &after);

    QList<TaskChange> changes; ///< added and changed tasks in the later order, then the removed ones
    qsizetype moved = 0;       ///< how many tasks, at the fewest, were moved among the others

    bool isEmpty() const { return changes.isEmpty() && moved == 0; }
    qsizetype count(TaskChange::Kind kind) const;
};

namespace taskFields {

/// What people call the fields of a row, in the order of the table's columns.
QStringList titlesOf(quint32 fields);
/// Whether one of the fields stands in the column.
bool areIn(TaskColumn column, quint32 fields);

} // namespace taskFields
