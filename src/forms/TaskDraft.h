#pragma once

#include "model/task.h"

#include <optional>

/// The task that was begun in the form of a new one and not added. It is kept in a file of the user's own,
/// so that it is there after the program has ended as well.
class TaskDraft
{
public:
    explicit TaskDraft(const QString &path)
        : filePath(path)
    {
    }

    /// The task, in the colours of the present appearance; nothing when there is none.
    std::optional<task> begun();
    void keep(const task &entry);
    void discard();

private:
    QString filePath;
    std::optional<task> kept; ///< its colour as stored
    bool isRead = false;
};
