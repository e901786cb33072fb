#include "model/TaskManager.h"
#include "model/TaskSearch.h"
#include "model/TaskSort.h"
#include "model/TaskView.h"
#include "platform/Diagnostics.h"

using namespace Qt::StringLiterals;

// What of the list is shown, and in which order.

void TaskManager::buildTasksInView(int view)
{
    const Calendar calendar;
    const Calendar::Day today = calendar.day(calendar.dayOf(Calendar::now()));
    shownTasks.clear();
    for (const SharedTask &entry : std::as_const(allOrFound)) {
        if (isShownUnhidden(*entry, view))
            shownTasks.append(entry);
        if (isShownBesides(*entry, view, today))
            shownTasks.append(entry);
    }
    diagnostics::line("Number if tasks in view:", shownTasks.size());
}

void TaskManager::startSearch(const QString &text)
{
    diagnostics::line(text);
    if (!searching)
        setListAside();
    searching = true;
    searchedText = text;
    diagnostics::line("Tasks:", allOrFound);
    diagnostics::line("Backup Tasks:", setAsideTasks);
    refreshSearch();
}

void TaskManager::endSearch()
{
    diagnostics::line("isEmpty");
    if (std::exchange(searching, false))
        allOrFound = setAsideTasks;
}

void TaskManager::refreshSearch()
{
    if (searching)
        allOrFound = TaskSearch(searchedText).matchesIn(setAsideTasks);
}

void TaskManager::sortByColumn(const SortDescriptor &descriptor)
{
    const std::optional<TaskColumn> column = columnOfSortKey(descriptor.key);
    if (!column)
        return;
    willChange(u"Sort by "_s + infoOf(*column).title);
    sortOrder = descriptor;
    sortTasks(allOrFound, *column, descriptor.ascending);
}
