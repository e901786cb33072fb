#include "model/TaskManager.h"

#include "model/Appearance.h"
#include "model/TaskShareText.h"
#include "platform/Diagnostics.h"
#include "platform/Preferences.h"
#include "widgets/ColorWell.h"
#include "widgets/SharingServicePicker.h"
#include "widgets/TextView.h"

#include <QUuid>

using namespace Qt::StringLiterals;

TaskManager::TaskManager(Preferences &preferences)
    : defaults(preferences)
{
}

TaskManager &TaskManager::shared()
{
    static TaskManager instance(Preferences::standard());
    return instance;
}

QString TaskManager::addTask(const task &added)
{
    task entry = added;
    if (entry.key.isEmpty())
        entry.key = newKey();
    const QString key = entry.key;
    TaskList &list = changedList(u"Add"_s, entry);
    list.append(earlier ? earlier->sameAs(std::move(entry)) : SharedTask(std::move(entry)));
    followDefaultTimes(added);
    diagnostics::line("Add Task, hidden:", added.hidden);
    return key;
}

void TaskManager::editSelectedTask(const task &edited)
{
    if (const TaskList &list = workingList(); isSelectedIn(list)) {
        const SharedTask old = list[selectedIndex];
        task changed = edited;
        changed.key = old->key;
        changed.hidden = old->hidden;
        if (!haveEqualFields(changed, *old)) // or there would be a step that takes nothing back
            changedList(u"Edit"_s, *old)[selectedIndex] = SharedTask(std::move(changed));
    }
    followDefaultTimes(edited);
    diagnostics::line("Edit Task");
}

void TaskManager::editSelectedTaskKeepingOld(const task &edited)
{
    task old = selectedTask();
    willChange(u"Edit"_s, &old);
    old.key.clear();
    addTask(old);
    editSelectedTask(edited);
}

void TaskManager::load(const std::function<void()> &addTasks)
{
    const QString selectedKey = selectedTask().key;
    earlier.emplace(workingList());
    const bool wasSearching = std::exchange(searching, false);
    ++loads;
    ++changes;
    taskHistory.forgetUnfinished();
    sortOrder.reset();
    allOrFound.clear();
    addTasks();
    const qsizetype gone = earlier->goneCount();
    earlier.reset();
    searching = wasSearching;
    refreshSearch();
    if (selectedIndex >= 0)
        selectTaskByKey(selectedKey);
    taskHistory.haveBeenReplaced(gone);
}

void TaskManager::invertColors()
{
    ++changes;
    setColorsInverted(!taskHistory.isInverted());
    for (TaskList *list : {&allOrFound, &setAsideTasks})
        for (SharedTask &entry : *list)
            entry.edit().color = entry->color.inverted();
    taskHistory.haveBeenReplaced(workingList().size());
}

QString TaskManager::addTask(const QString &key, Instant date, const QString &name, const QString &desc,
                             const Color &color, Instant due, qint64 status, qint64 priority,
                             const QString &statusName, const QString &priorityName, bool hidden,
                             qint64 startHour, qint64 startMin, qint64 endHour, qint64 endMin,
                             const QString &client, const QString &teamMember)
{
    return addTask({.key = key,
                    .date = date,
                    .name = name,
                    .desc = desc,
                    .client = client,
                    .teamMember = teamMember,
                    .color = color,
                    .due = due,
                    .status = status,
                    .priority = priority,
                    .statusName = statusName,
                    .priorityName = priorityName,
                    .hidden = hidden,
                    .startHour = startHour,
                    .startMin = startMin,
                    .endHour = endHour,
                    .endMin = endMin});
}

void TaskManager::editSelectedTask(Instant date, const QString &name, const QString &desc, const Color &color,
                                   Instant due, qint64 status, qint64 priority, const QString &statusName,
                                   const QString &priorityName, qint64 startHour, qint64 startMin,
                                   qint64 endHour, qint64 endMin, const QString &client,
                                   const QString &teamMember)
{
    editSelectedTask({.date = date,
                      .name = name,
                      .desc = desc,
                      .client = client,
                      .teamMember = teamMember,
                      .color = color,
                      .due = due,
                      .status = status,
                      .priority = priority,
                      .statusName = statusName,
                      .priorityName = priorityName,
                      .startHour = startHour,
                      .startMin = startMin,
                      .endHour = endHour,
                      .endMin = endMin});
}

void TaskManager::followDefaultTimes(const task &last)
{
    defaultStartHour = last.startHour;
    defaultStartMin = last.startMin;
    defaultEndHour = last.endHour;
    defaultEndMin = last.endMin;
}

qint64 TaskManager::selectTaskByKey(const QString &key)
{
    const TaskList &list = workingList();
    selectedIndex = list.size() - 1;
    while (selectedIndex >= 0 && list[selectedIndex]->key != key)
        --selectedIndex;
    return selectedIndex;
}

void TaskManager::selectAgain(const QString &key)
{
    if (selectedTask().key != key)
        selectTaskByKey(key);
}

task TaskManager::selectedTask() const
{
    if (const TaskList &list = workingList(); isSelectedIn(list))
        return *list[selectedIndex];
    return blankTask();
}

task TaskManager::blankTask() const
{
    const Instant now = Calendar::now();
    return {.date = now,
            .client = u"UnAssigned"_s,
            .teamMember = u"UnAssigned"_s,
            .due = now,
            .startHour = defaultStartHour,
            .startMin = defaultStartMin,
            .endHour = defaultEndHour,
            .endMin = defaultEndMin};
}

void TaskManager::deleteSelectedTask()
{
    if (const TaskList &list = workingList(); isSelectedIn(list))
        changedList(u"Delete"_s, *list[selectedIndex], true).removeAt(selectedIndex);
}

void TaskManager::hideSelectedTask()
{
    setSelectedHidden(true);
}

void TaskManager::unhideSelectedTask()
{
    setSelectedHidden(false);
}

void TaskManager::setSelectedHidden(bool hidden)
{
    if (const TaskList &list = workingList(); isSelectedIn(list) && list[selectedIndex]->hidden != hidden)
        changedList(hidden ? u"Hide"_s : u"Unhide"_s, *list[selectedIndex])[selectedIndex].edit().hidden =
            hidden;
}

bool TaskManager::isSelectedTaskHidden() const
{
    if (!searching)
        diagnostics::line("Selected:", selectedIndex);
    const TaskList &list = workingList();
    return isSelectedIn(list) && list[selectedIndex]->hidden;
}

void TaskManager::closeSelectedTask()
{
    const task closed = selectedTask();
    willChange(u"Close"_s, &closed);
    for (TaskList *list : {&allOrFound, &setAsideTasks}) {
        if (!isSelectedIn(*list))
            continue;
        task &entry = (*list)[selectedIndex].edit();
        entry.status = taskStatus::closed;
        entry.statusName = taskStatus::closedName;
    }
}

void TaskManager::cloneSelectedTask()
{
    task clone = selectedTask();
    clone.key.clear();
    willChange(u"Clone"_s, &clone);
    addTask(clone);
}

void TaskManager::moveSelectedTask(bool up)
{
    const qint64 upper = up ? selectedIndex - 1 : selectedIndex;
    if (selectedIndex < 0 || upper < 0 || upper + 1 >= allOrFound.size())
        return;
    const task moved = *allOrFound.at(selectedIndex);
    willChange(up ? u"Move Up"_s : u"Move Down"_s, &moved);
    sortOrder.reset();
    allOrFound.swapItemsAt(upper, upper + 1);
}

void TaskManager::moveSelectedTaskTo(qint64 index)
{
    if (searching || !isSelectedIn(allOrFound) || index < 0 || index >= allOrFound.size() ||
        index == selectedIndex)
        return;
    const task moved = *allOrFound.at(selectedIndex);
    willChange(u"Move"_s, &moved);
    sortOrder.reset();
    allOrFound.move(selectedIndex, index);
}

void TaskManager::shareSelectedTask(QWidget &anchor) const
{
    const task shared = selectedTask();
    const SharingServicePicker picker({.title = shared.name, .text = taskShareText(shared, newKey())});
    QMetaObject::invokeMethod(
        &anchor, [picker, &anchor] { picker.show(anchor, Qt::LeftEdge, *anchor.window()); },
        Qt::QueuedConnection);
}

void TaskManager::resetColorWell(ColorWell &well, TextView &text) const
{
    const Color textColor = appearanceTextColor();
    well.setColor(textColor.inverted());
    text.setTextColor(textColor);
}

void TaskManager::invertColorWell(ColorWell &well, TextView &text) const
{
    well.setColor(well.color().inverted());
    text.setTextColor(appearanceTextColor());
}
