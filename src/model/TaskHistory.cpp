#include "model/TaskHistory.h"

#include <algorithm>

namespace {

/// On the stack for its place and its name: the list is changed by whoever moves on the stack.
class StepCommand : public QUndoCommand
{
public:
    explicit StepCommand(TaskStep done)
        : QUndoCommand(done.name)
        , step(std::move(done))
    {
    }

    const TaskStep step;
};

} // namespace

TaskStep TaskStep::reversed() const
{
    TaskStep back = *this;
    back.isUndone = !isUndone;
    back.change = change.reversed();
    std::swap(back.sortedBefore, back.sortedAfter);
    return back;
}

QStringList TaskStep::keysToShow() const
{
    const QStringList keys = change.changedKeys();
    return keys.isEmpty() && !key.isEmpty() ? QStringList(key) : keys;
}

TaskHistory::TaskHistory()
{
    constexpr int mostSteps = 200;
    stack.setUndoLimit(mostSteps);
}

void TaskHistory::willChange(const TaskList &list, const TaskStep &step)
{
    if (open)
        return;
    endPaused(list);
    open = {.step = step, .before = list};
}

void TaskHistory::endStep(const TaskList &list, const std::optional<SortDescriptor> &sortedBy)
{
    if (const auto done = std::exchange(open, std::nullopt))
        keep(*done, list, sortedBy);
}

void TaskHistory::keep(const Unfinished &done, const TaskList &list,
                       const std::optional<SortDescriptor> &sortedBy)
{
    TaskStep step = done.step;
    step.change = ListChange::between(done.before, list, inverted);
    step.sortedAfter = sortedBy;
    if (!step.change.isEmpty())
        stack.push(new StepCommand(std::move(step)));
}

void TaskHistory::pause(const QString &name)
{
    paused = std::exchange(open, std::nullopt);
    if (paused)
        paused->step = {.name = name, .loads = paused->step.loads, .sortedBefore = paused->step.sortedBefore};
}

void TaskHistory::endPaused(const TaskList &list)
{
    if (const auto done = std::exchange(paused, std::nullopt))
        keep(*done, list, done->step.sortedBefore);
}

void TaskHistory::setInverted(bool dark, const TaskList &list)
{
    if (dark != inverted)
        endPaused(list);
    inverted = dark;
}

void TaskHistory::forgetUnfinished()
{
    open.reset();
    paused.reset();
}

void TaskHistory::clear()
{
    forgetUnfinished();
    stack.clear();
}

const TaskStep &TaskHistory::stepAt(int index) const
{
    return static_cast<const StepCommand *>(stack.command(index))->step;
}

std::optional<TaskStep> TaskHistory::undo()
{
    if (!stack.canUndo())
        return std::nullopt;
    stack.undo();
    return stepAt(stack.index()).reversed();
}

std::optional<TaskStep> TaskHistory::redo()
{
    if (!stack.canRedo())
        return std::nullopt;
    stack.redo();
    return stepAt(stack.index() - 1);
}
