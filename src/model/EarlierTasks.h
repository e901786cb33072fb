#pragma once

#include "model/task.h"

#include <QHash>

#include <algorithm>

/// The list as it was before it is read anew. Tasks that have not changed since stay the same values, so that
/// whoever still holds the earlier list does not double the memory that they take.
class EarlierTasks
{
public:
    explicit EarlierTasks(const TaskList &list)
        : tasks(list)
    {
    }

    /// The earlier task that has the same key and fields as the one that was read, or that one.
    SharedTask sameAs(task read);
    /// How many of them were not read again as they were.
    qsizetype goneCount() const { return std::max<qsizetype>(tasks.size() - found, 0); }

private:
    qsizetype placeOf(const QString &key);

    TaskList tasks;
    QHash<QString, qsizetype> places; ///< filled when a task is not where it was
    qsizetype next = 0;
    qsizetype found = 0;
};
