#pragma once

#include "model/ListChange.h"
#include "model/TaskColumn.h"

#include <QUndoStack>

#include <optional>
#include <utility>

/// What one command of the user has done to the list.
struct TaskStep
{
    QString name;                   ///< for a person: "Delete 'Mow lawn'"
    QString key = {};               ///< of the one task that it is about; empty for none or several
    bool isDelete = false;          ///< of that task, here and in the cloud
    bool isUndone = false;          ///< it is the way back
    QList<ListChange> changes = {}; ///< one after the other
    std::optional<SortDescriptor> sortedBefore = {};
    std::optional<SortDescriptor> sortedAfter = {};

    TaskStep reversed() const;
    /// The tasks that it brings, changes or is about.
    QStringList keysToShow() const;
};

/// The steps that the user can take back, and take again.
///
/// What changes between two calls of `endStep` is one step. Changes that are made in several turns of the
/// event loop, between which the user may take other steps, are gathered into one.
class TaskHistory
{
public:
    TaskHistory();

    /// What can be undone and redone, for the commands' names and states.
    const QUndoStack &steps() const { return stack; }

    /// The list is about to be changed by this step, unless other changes of it came before.
    void willChange(const TaskList &list, const TaskStep &step);
    bool isWithinStep() const { return open.has_value(); }
    /// Keeps the step, if the list is not what it was.
    void endStep(const TaskList &list, const std::optional<SortDescriptor> &sortedBy);

    /// From here to `pause`, changes belong to what is gathered.
    void gather();
    void pause() { paused = std::exchange(open, std::nullopt); }
    /// What is gathered from here on comes after something else.
    void closePart(const TaskList &list);
    /// Makes what was gathered a step.
    void endGathering(const TaskList &list, const QString &name);

    /// From now on the list's colours are those of the dark appearance, or no longer.
    /// \param list  as it was until then
    void setInverted(bool inverted, const TaskList &list);
    bool isInverted() const { return inverted; }
    /// The list is about to be replaced by what is in its file: what was not made a step is forgotten.
    void forgetUnfinished();
    /// Forgets all steps.
    void clear();

    /// The way back of the last step that is not undone; the caller changes the list.
    std::optional<TaskStep> undo();
    /// The first step that is undone; the caller changes the list.
    std::optional<TaskStep> redo();

private:
    struct Unfinished
    {
        TaskStep step;
        TaskList before;
    };
    ListChange changeSince(const Unfinished &part, const TaskList &list) const;
    const TaskStep &stepAt(int index) const;

    QUndoStack stack;
    std::optional<Unfinished> open;
    std::optional<Unfinished> paused; ///< the part of what is gathered that nothing has come between yet
    TaskStep gathered;
    bool inverted = false; ///< the list's colours are those of the dark appearance
};
