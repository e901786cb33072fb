#pragma once

#include "model/task.h"

#include <optional>
#include <utility>

/// The tasks that were begun in the form of a new one and not added. They are kept in a file of the user's
/// own, so that they are there after the program has ended as well.
///
/// Format: for each task the number 2, its fields as a byte array and the CRC-32 of that, as QDataStream of
/// Qt 6.4 writes them. In version 1 the fields follow the number 1 as they are.
class TaskDraft
{
public:
    explicit TaskDraft(const QString &path)
        : filePath(path)
    {
    }

    /// The one begun last, in the colours of the present appearance; nothing when there is none.
    std::optional<task> begun();
    /// Keeps a task instead of the one that was taken up. False when it could not be written, for the reason
    /// in `problem`: it is kept until the program ends.
    bool keep(const task &entry);
    /// Gives out the one begun last. It stays in the file, without being offered, until it is kept again or
    /// let go.
    /// \param instead  is to be kept in its place; when that cannot be written, for the reason in `problem`,
    /// nothing is given out and all is as before
    std::optional<task> takeUp(const std::optional<task> &instead = {});
    /// What was taken up has been added, or is no longer wanted.
    void letGo();
    /// Writes again what could not be written.
    bool store();
    /// Forgets the one begun last.
    void discard();

    const QString &path() const { return filePath; }
    /// Why it could not be written, in the words of the operating system.
    const QString &problem() const { return error; }
    /// Where the file is now of which not all could be read, since this was last asked; empty for none.
    QString takeSetAside() { return std::exchange(asidePath, {}); }

private:
    void read();
    void append(const task &entry);

    QString filePath;
    QString error;
    QString asidePath;
    QList<task> kept;           ///< their colours as stored
    std::optional<task> inHand; ///< that was taken up
    bool isRead = false;
};
