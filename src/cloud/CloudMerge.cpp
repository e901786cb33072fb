#include "cloud/CloudMerge.h"

#include "cloud/TaskRecord.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"

using namespace Qt::StringLiterals;

CloudMerge::CloudMerge(TaskManager &taskManager, std::vector<CloudRecord> fetched)
    : manager(taskManager)
    , records(std::move(fetched))
    , seenLoads(taskManager.loadCount())
{
}

bool CloudMerge::mergeSome(const QSet<QString> &deletedKeys)
{
    constexpr size_t some = 50;
    // The window reads the list anew from its file when the appearance changes or another program has written
    // it, without what was merged so far.
    if (std::exchange(seenLoads, manager.loadCount()) != seenLoads)
        next = 0;
    // Between two calls the user may have changed the list.
    if (next == 0 || manager.changeCount() != seenChanges)
        findKeys();
    const qint64 chosen = manager.selected();
    manager.endStep();
    manager.history().goOn();
    for (const size_t end = std::min(next + some, records.size()); next < end; ++next)
        if (const task fetched = taskOfRecord(records[next], manager.blankTask());
            !deletedKeys.contains(fetched.key))
            merge(fetched);
    manager.history().pause(u"Update from Cloud"_s);
    seenChanges = manager.changeCount();
    if (next == records.size()) {
        manager.history().endPaused(manager.workingList());
        return false;
    }
    manager.select(chosen); // until all is merged the user goes on with the task of their choice
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

void CloudMerge::merge(const task &fetched)
{
    // As TaskManager::selectTaskByKey, without a walk through the list for every record.
    manager.select(lastOfKey.value(fetched.key, -1));
    diagnostics::line("Selected:", manager.selected());
    if (manager.selected() < 0) {
        const QString key = manager.addTask(fetched);
        lastOfKey.insert(key, manager.workingList().size() - 1);
        return;
    }
    manager.editSelectedTask(fetched);
    if (fetched.hidden)
        manager.hideSelectedTask();
    else
        manager.unhideSelectedTask();
    diagnostics::line("Selected Task:", manager.selectedTask());
}
