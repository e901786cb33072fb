#include "model/TaskHistory.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace {

/// On the stack for its place and its name: the list is changed by whoever moves on the stack.
class StepCommand : public QUndoCommand
{
public:
    StepCommand(TaskStep done, qint64 numberOfStep)
        : QUndoCommand(done.name)
        , step(std::move(done))
        , number(numberOfStep)
    {
    }

    const TaskStep step;
    const qint64 number; ///< of all that were made, the undone ones included
};

const StepCommand &commandAt(const QUndoStack &stack, int index)
{
    return static_cast<const StepCommand &>(*stack.command(index));
}

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
        stack.push(new StepCommand(std::move(step), stepCount++));
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

void TaskHistory::haveBeenReplaced(qsizetype tasks)
{
    constexpr qsizetype most = 300'000; // some hundred megabytes
    const qint64 oldest = stack.count() > 0 ? commandAt(stack, 0).number : stepCount;
    replacements.append({stepCount, tasks});
    replacements.removeIf([oldest](const Replacement &one) { return one.stepCount <= oldest; });
    int first = 0;
    while (keptAlone(first) > most)
        ++first;
    if (first > 0)
        giveUp(first);
}

/// How many replaced tasks the steps from this one on hold on to, at most: of each replacement no more than
/// there were, and no more than are in the steps before it.
qsizetype TaskHistory::keptAlone(int first) const
{
    qsizetype kept = 0;
    qsizetype held = 0;
    int index = first;
    for (const Replacement &one : replacements) {
        for (; index < stack.count() && commandAt(stack, index).number < one.stepCount; ++index)
            held += stepAt(index).change.taskCount();
        kept += std::min(held, one.tasks);
    }
    return kept;
}

/// A stack gives up all of its steps or none. Steps that are undone can be made again only after those before
/// them.
void TaskHistory::giveUp(int oldest)
{
    const int done = stack.index() - oldest;
    std::vector<std::unique_ptr<StepCommand>> kept;
    for (int index = oldest; done >= 0 && index < stack.count(); ++index)
        kept.push_back(std::make_unique<StepCommand>(stepAt(index), commandAt(stack, index).number));
    stack.clear();
    for (std::unique_ptr<StepCommand> &step : kept)
        stack.push(step.release());
    if (done >= 0)
        stack.setIndex(done);
}

void TaskHistory::clear()
{
    forgetUnfinished();
    stack.clear();
}

const TaskStep &TaskHistory::stepAt(int index) const
{
    return commandAt(stack, index).step;
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
