#pragma once

#include "model/task.h"
#include "versions/VersionDiff.h"

#include <optional>

/// An earlier version of the list beside today's list. Its tasks have their colours as stored.
class ComparedVersion
{
public:
    struct Row
    {
        SharedTask entry;                               ///< as it was or, if it was added since, as it is
        std::optional<TaskChange::Kind> sinceThen = {}; ///< what became of it until today
        quint32 fields = 0;                             ///< of a changed one
        qsizetype today = -1;                           ///< its place in today's list, if it is there

        bool wasThere() const { return sinceThen != TaskChange::Kind::Added; }
        /// Whether bringing it back does something.
        bool isDifferent() const { return sinceThen && wasThere(); }
    };

    ComparedVersion() = default;
    /// \param text    of the version
    /// \param today   the list as it is held
    /// \param isDark  today's colours are those of the dark appearance
    ComparedVersion(const QByteArray &text, const TaskList &today, bool isDark);

    const QList<Row> &rows() const { return allRows; }
    /// Today's tasks, by their places.
    const TaskList &todaysList() const { return today; }
    qsizetype skippedRows() const { return skipped; } ///< that could not be read
    qsizetype count(TaskChange::Kind kind) const { return diff.count(kind); }
    bool isToday() const { return diff.isEmpty(); }

    /// Today's list with these rows as they were. A task that is gone comes to the end.
    TaskList withTasks(const QList<Row> &chosen, bool isDark) const;
    /// The whole list as it was.
    TaskList wholeList(bool isDark) const;

private:
    SharedTask broughtBack(const Row &row, bool isDark) const;

    TaskList today;
    VersionDiff diff;
    QList<Row> allRows; ///< in the version's order, and then those that were added since
    qsizetype skipped = 0;
};
