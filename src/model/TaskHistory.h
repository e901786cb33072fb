#pragma once

#include "model/ListChange.h"
#include "model/TaskColumn.h"

#include <QUndoStack>

#include <optional>
#include <utility>

/// What one command of the user has done to the list.
struct TaskStep
{
    QString name;          ///< for a person: "Delete 'Mow lawn'"
    QString key = {};      ///< of the one task that it is about; empty for none or several
    bool isDelete = false; ///< of that task, here and in the cloud
    bool isUndone = false; ///< it is the way back
    qint64 loads = 0;      ///< how often the whole list had been read by then
    ListChange change = {};
    std::optional<SortDescriptor> sortedBefore = {};
    std::optional<SortDescriptor> sortedAfter = {};
    TaskList changedElsewhere = {}; ///< since, for which it has stayed undone or done

    TaskStep reversed() const;
    /// The tasks that it brings, changes or is about.
    QStringList keysToShow() const;
};

/// The steps that the user can take back, and take again.
///
/// What changes between two calls of `endStep` is one step. Changes that are made in several turns of the
/// event loop are one, too, up to where the user takes another step between them.
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

    /// From here to `pause`, changes belong to a step that goes on in later turns of the event loop.
    void goOn() { open = std::exchange(paused, std::nullopt); }
    /// \param name  of that step
    void pause(const QString &name);
    /// Keeps the step that is paused.
    void endPaused(const TaskList &list);

    /// From now on the list's colours are those of the dark appearance, or no longer.
    /// \param list  as it was until then
    void setInverted(bool inverted, const TaskList &list);
    bool isInverted() const { return inverted; }
    /// The list is about to be replaced by what is in its file: what was not made a step is forgotten.
    void forgetUnfinished();
    /// So many tasks of the list were replaced by others than through steps, and live on for the steps alone.
    /// Where those come to too many, the oldest steps are given up.
    void haveBeenReplaced(qsizetype tasks);
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
    void keep(const Unfinished &done, const TaskList &list, const std::optional<SortDescriptor> &sortedBy);
    const TaskStep &stepAt(int index) const;
    qsizetype keptAlone(int first) const;
    void giveUp(int oldest);

    struct Replacement
    {
        qint64 stepCount; ///< how many steps had been made by then
        qsizetype tasks;
    };

    QUndoStack stack;
    qint64 stepCount = 0;
    QList<Replacement> replacements; ///< since the oldest step
    std::optional<Unfinished> open;
    std::optional<Unfinished> paused;
    bool inverted = false; ///< the list's colours are those of the dark appearance
};
