#pragma once

#include "model/task.h"

#include <QStringList>

/// What has become of one part of a list: the tasks that stood there before, and those that stand there
/// since. They share their values with the list, so a task costs no more than a pointer. Two tasks of the
/// same value are those that share it, not those that look alike.
class ListChange
{
public:
    /// The smallest part in which the two lists differ, or all of them where that is most.
    /// \param inverted  their colours are those of the dark appearance
    static ListChange between(const TaskList &before, const TaskList &after, bool inverted);

    /// How many tasks it holds on to.
    qsizetype taskCount() const { return before.size() + after.size(); }
    bool isEmpty() const { return before.isEmpty() && after.isEmpty(); }
    /// The way back.
    ListChange reversed() const;
    /// The keys of the tasks that the change brings or replaces, in the order of the list; those that only
    /// change places are none of them.
    QStringList changedKeys() const;

    /// Makes the change in a list. Where that list is no longer the one that was changed, the tasks are found
    /// by their keys, and those that the change is not about stay as they are.
    /// \param inverted    the list's colours are those of the dark appearance
    /// \param isReadAnew  the list was read from its file since
    /// \return the tasks that others have changed since: they stay as well
    TaskList applyTo(TaskList &list, bool inverted, bool isReadAnew) const;

private:
    bool fits(const TaskList &list) const;
    void replacePart(TaskList &list, bool inverted) const;
    TaskList removeAndReplace(TaskList &list, bool inverted, bool isReadAnew) const;
    void reorder(TaskList &list) const;
    void insert(TaskList &list, bool inverted) const;
    SharedTask held(SharedTask entry, bool inverted) const;

    bool isInverted = false;
    qsizetype place = 0;
    qsizetype sizeBefore = 0; ///< of the whole list
    qsizetype sizeAfter = 0;
    TaskList before;
    TaskList after;
};
