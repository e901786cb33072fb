#include "cloud/CloudMerge.h"

#include "cloud/TaskRecord.h"
#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"

CloudMerge::CloudMerge(TaskManager &taskManager, std::vector<CloudRecord> fetched)
    : manager(taskManager)
    , records(std::move(fetched))
    , isDark(isDarkMode())
{
}

bool CloudMerge::mergeSome()
{
    constexpr size_t some = 50;
    // The window reads the list anew from its file when the appearance changes, without what was merged so
    // far.
    if (std::exchange(isDark, isDarkMode()) != isDark)
        next = 0;
    // Between two calls the user may have changed the list, or begun a search.
    if (next == 0 || !manager.workingList().isSharedWith(seen))
        findKeys();
    seen.clear(); // or every change would copy the list
    const qint64 chosen = manager.selected;
    for (const size_t end = std::min(next + some, records.size()); next < end; ++next)
        merge(records[next]);
    seen = manager.workingList();
    if (next == records.size())
        return false;
    manager.selected = chosen; // until all is merged the user goes on with the task of their choice
    return true;
}

void CloudMerge::findKeys()
{
    const TaskList &list = manager.workingList();
    lastOfKey.clear();
    lastOfKey.reserve(list.size());
    for (qsizetype index = 0; index < list.size(); ++index)
        lastOfKey.insert(list[index]->key, index);
}

qint64 CloudMerge::selectTask(const QString &key)
{
    // As TaskManager::selectTaskByKey, without a walk through the list for every record.
    return manager.selected = lastOfKey.value(key, -1);
}

void CloudMerge::merge(const CloudRecord &record)
{
    const task fetched = taskOfRecord(record, manager.blankTask());
    diagnostics::line("Selected:", selectTask(fetched.key));
    if (manager.selected < 0) {
        const QString key = manager.addTask(
            fetched.key, fetched.date, fetched.name, fetched.desc, fetched.color, fetched.due, fetched.status,
            fetched.priority, fetched.statusName, fetched.priorityName, fetched.hidden, fetched.startHour,
            fetched.startMin, fetched.endHour, fetched.endMin, fetched.client, fetched.teamMember);
        lastOfKey.insert(key, manager.workingList().size() - 1);
        return;
    }
    manager.editSelectedTask(fetched.date, fetched.name, fetched.desc, fetched.color, fetched.due,
                             fetched.status, fetched.priority, fetched.statusName, fetched.priorityName,
                             fetched.startHour, fetched.startMin, fetched.endHour, fetched.endMin,
                             fetched.client, fetched.teamMember);
    if (fetched.hidden)
        manager.hideSelectedTask();
    else
        manager.unhideSelectedTask();
    diagnostics::line("Selected Task:", manager.selectedTask());
}
