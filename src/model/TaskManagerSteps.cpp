#include "model/TaskManager.h"

#include <algorithm>

using namespace Qt::StringLiterals;

// How changes of the list become steps that can be taken back.

static QString stepName(const QString &verb, const task *about)
{
    constexpr qsizetype most = 40;
    if (!about)
        return verb;
    const QString name = about->name.simplified();
    return verb + u" '"_s + (name.size() > most ? name.first(most) + u'…' : name) + u'\'';
}

void TaskManager::willChange(const QString &verb, const task *about, bool isDelete)
{
    ++changes;
    if (!earlier && !taskHistory.isWithinStep())
        taskHistory.willChange(workingList(), {.name = stepName(verb, about),
                                               .key = about ? about->key : QString(),
                                               .isDelete = isDelete,
                                               .loads = loads,
                                               .sortedBefore = sortOrder});
}

TaskList &TaskManager::changedList(const QString &verb, const task &about, bool isDelete)
{
    willChange(verb, &about, isDelete);
    return searching ? setAsideTasks : allOrFound;
}

/// Also of what goes on later.
void TaskManager::endSteps()
{
    endStep();
    taskHistory.endPaused(workingList());
}

std::optional<TaskStep> TaskManager::undo()
{
    endSteps();
    return apply(taskHistory.undo());
}

std::optional<TaskStep> TaskManager::redo()
{
    endSteps();
    return apply(taskHistory.redo());
}

std::optional<TaskStep> TaskManager::apply(std::optional<TaskStep> step)
{
    if (!step)
        return step;
    const QString selectedKey = selectedTask().key;
    ++changes;
    step->changedElsewhere = step->change.applyTo(searching ? setAsideTasks : allOrFound,
                                                  taskHistory.isInverted(), step->loads != loads);
    if (step->sortedBefore != step->sortedAfter)
        sortOrder = step->sortedAfter;
    refreshSearch();
    if (selectedIndex >= 0)
        selectTaskByKey(selectedKey);
    return step;
}

void TaskManager::replaceList(const TaskList &list, const QString &name)
{
    const QString selectedKey = selectedTask().key;
    willChange(name);
    const auto isSameTask = [](const SharedTask &a, const SharedTask &b) {
        return a->key == b->key;
    };
    const qsizetype common = std::min(list.size(), workingList().size());
    if (!std::equal(list.cbegin(), list.cbegin() + common, workingList().cbegin(), isSameTask))
        sortOrder.reset();
    (searching ? setAsideTasks : allOrFound) = list;
    refreshSearch();
    if (selectedIndex >= 0)
        selectTaskByKey(selectedKey);
    endStep();
}
