#pragma once

#include "model/task.h"

#include <optional>

/// The tasks that were begun in the form of a new one and not added. They are kept in a file of the user's
/// own, so that they are there after the program has ended as well.
class TaskDraft
{
public:
    explicit TaskDraft(const QString &path)
        : filePath(path)
    {
    }

    /// The one begun last, in the colours of the present appearance; nothing when there is none.
    std::optional<task> begun();
    void keep(const task &entry);
    /// Forgets the one begun last.
    void discard();

private:
    void store() const;

    QString filePath;
    QList<task> kept; ///< their colours as stored
    bool isRead = false;
};
