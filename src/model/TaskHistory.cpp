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
    std::swap(back.sortedBefore, back.sortedAfter);
    std::ranges::reverse(back.changes);
    for (ListChange &change : back.changes)
        change = change.reversed();
    return back;
}

QStringList TaskStep::keysToShow() const
{
    QStringList keys;
    for (const ListChange &change : changes)
        keys += change.changedKeys();
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
    closePart(list);
    open = {.step = step, .before = list};
}

void TaskHistory::endStep(const TaskList &list, const std::optional<SortDescriptor> &sortedBy)
{
    if (!open)
        return;
    TaskStep step = open->step;
    step.changes = {changeSince(*open, list)};
    step.sortedAfter = sortedBy;
    open.reset();
    if (!step.changes[0].isEmpty())
        stack.push(new StepCommand(std::move(step)));
}

ListChange TaskHistory::changeSince(const Unfinished &part, const TaskList &list) const
{
    return ListChange::between(part.before, list, inverted);
}

void TaskHistory::gather()
{
    open = std::exchange(paused, std::nullopt);
}

void TaskHistory::closePart(const TaskList &list)
{
    if (!paused)
        return;
    if (const ListChange change = changeSince(*paused, list); !change.isEmpty())
        gathered.changes.append(change);
    gathered.sortedBefore = gathered.sortedAfter = paused->step.sortedBefore;
    paused.reset();
}

void TaskHistory::endGathering(const TaskList &list, const QString &name)
{
    closePart(list);
    TaskStep step = std::exchange(gathered, {});
    step.name = name;
    if (!step.changes.isEmpty())
        stack.push(new StepCommand(std::move(step)));
}

void TaskHistory::setInverted(bool dark, const TaskList &list)
{
    if (dark != inverted)
        closePart(list);
    inverted = dark;
}

void TaskHistory::forgetUnfinished()
{
    open.reset();
    paused.reset();
    gathered = {};
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
