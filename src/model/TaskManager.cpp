#include "model/TaskManager.h"

#include "model/Appearance.h"
#include "model/TaskSearch.h"
#include "model/TaskShareText.h"
#include "model/TaskSort.h"
#include "model/TaskView.h"
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

static QString newKey()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

QString TaskManager::addTask(const QString &key, Instant date, const QString &name, const QString &desc,
                             const Color &color, Instant due, qint64 status, qint64 priority,
                             const QString &statusName, const QString &priorityName, bool hidden,
                             qint64 startHour, qint64 startMin, qint64 endHour, qint64 endMin,
                             const QString &client, const QString &teamMember)
{
    const QString ownKey = key.isEmpty() ? newKey() : key;
    workingList().append(task{.key = ownKey,
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
    followDefaultTimes(startHour, startMin, endHour, endMin);
    diagnostics::line("Add Task, hidden:", hidden);
    return ownKey;
}

void TaskManager::editSelectedTask(Instant date, const QString &name, const QString &desc, const Color &color,
                                   Instant due, qint64 status, qint64 priority, const QString &statusName,
                                   const QString &priorityName, qint64 startHour, qint64 startMin,
                                   qint64 endHour, qint64 endMin, const QString &client,
                                   const QString &teamMember)
{
    if (TaskList &list = workingList(); isSelectedIn(list)) {
        task &entry = list[selected].edit();
        entry = task{.key = entry.key,
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
                     .hidden = entry.hidden,
                     .startHour = startHour,
                     .startMin = startMin,
                     .endHour = endHour,
                     .endMin = endMin};
    }
    followDefaultTimes(startHour, startMin, endHour, endMin);
    diagnostics::line("Edit Task");
}

void TaskManager::followDefaultTimes(qint64 startHour, qint64 startMin, qint64 endHour, qint64 endMin)
{
    defaultStartHour = startHour;
    defaultStartMin = startMin;
    defaultEndHour = endHour;
    defaultEndMin = endMin;
}

qint64 TaskManager::selectTaskByKey(const QString &key)
{
    const TaskList &list = workingList();
    selected = list.size() - 1;
    while (selected >= 0 && list[selected]->key != key)
        --selected;
    return selected;
}

void TaskManager::selectAgain(const QString &key)
{
    if (selectedTask().key != key)
        selectTaskByKey(key);
}

task TaskManager::selectedTask() const
{
    if (const TaskList &list = workingList(); isSelectedIn(list))
        return *list[selected];
    return blankTask();
}

task TaskManager::blankTask() const
{
    task blank;
    blank.date = blank.due = Calendar::now();
    blank.client = blank.teamMember = u"UnAssigned"_s;
    blank.startHour = defaultStartHour;
    blank.startMin = defaultStartMin;
    blank.endHour = defaultEndHour;
    blank.endMin = defaultEndMin;
    return blank;
}

void TaskManager::deleteSelectedTask()
{
    if (TaskList &list = workingList(); isSelectedIn(list))
        list.removeAt(selected);
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
    if (TaskList &list = workingList(); isSelectedIn(list))
        list[selected].edit().hidden = hidden;
}

bool TaskManager::isSelectedTaskHidden() const
{
    if (!isSearching)
        diagnostics::line("Selected:", selected);
    const TaskList &list = workingList();
    return isSelectedIn(list) && list[selected]->hidden;
}

void TaskManager::closeSelectedTask()
{
    for (TaskList *list : {&tasks, &backupTasks}) {
        if (!isSelectedIn(*list))
            continue;
        task &entry = (*list)[selected].edit();
        entry.status = taskStatus::closed;
        entry.statusName = taskStatus::closedName;
    }
}

void TaskManager::cloneSelectedTask()
{
    const task original = selectedTask();
    addTask(QString(), original.date, original.name, original.desc, original.color, original.due,
            original.status, original.priority, original.statusName, original.priorityName, original.hidden,
            original.startHour, original.startMin, original.endHour, original.endMin, original.client,
            original.teamMember);
}

void TaskManager::moveSelectedTask(bool up)
{
    const qint64 upper = up ? selected - 1 : selected;
    if (selected >= 0 && upper >= 0 && upper + 1 < tasks.size())
        tasks.swapItemsAt(upper, upper + 1);
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

void TaskManager::buildTasksInView(int view)
{
    const Calendar calendar;
    const Calendar::Day today = calendar.day(calendar.dayOf(Calendar::now()));
    tasksInView.clear();
    for (const SharedTask &entry : std::as_const(tasks)) {
        if (isShownUnhidden(*entry, view))
            tasksInView.append(entry);
        if (isShownBesides(*entry, view, today))
            tasksInView.append(entry);
    }
    diagnostics::line("Number if tasks in view:", tasksInView.size());
}

void TaskManager::startSearch(const QString &text)
{
    diagnostics::line(text);
    if (!isSearching)
        backupTasks = tasks;
    isSearching = true;
    searchTerm = text;
    diagnostics::line("Tasks:", tasks);
    diagnostics::line("Backup Tasks:", backupTasks);
    refreshSearch();
}

void TaskManager::endSearch()
{
    diagnostics::line("isEmpty");
    if (isSearching)
        tasks = backupTasks;
    isSearching = false;
}

void TaskManager::refreshSearch()
{
    if (isSearching)
        tasks = TaskSearch(searchTerm).matchesIn(backupTasks);
}

void TaskManager::sortByColumn(const SortDescriptor &descriptor)
{
    if (const std::optional<TaskColumn> column = columnOfSortKey(descriptor.key))
        sortTasks(tasks, *column, descriptor.ascending);
}
