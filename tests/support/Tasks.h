#pragma once

#include "model/TaskManager.h"

/// Makes the manager's list these tasks, and gives the default times back their first values.
inline void setTasks(TaskManager &manager, const QList<task> &tasks)
{
    manager.load([&] {
        for (const task &entry : tasks)
            manager.addTask(entry);
    });
    manager.defaultStartHour = 8;
    manager.defaultEndHour = 17;
    manager.defaultStartMin = manager.defaultEndMin = 0;
}

/// Likewise with tasks as lists hold them.
inline void setTaskList(TaskManager &manager, const TaskList &tasks)
{
    QList<task> plain;
    for (const SharedTask &entry : tasks)
        plain.append(*entry);
    setTasks(manager, plain);
}

/// Changes the task with this key; the selection stays.
inline void changeTask(TaskManager &manager, const QString &key, const std::function<void(task &)> &change)
{
    const qint64 selected = manager.selected();
    manager.selectTaskByKey(key);
    task changed = manager.selectedTask();
    change(changed);
    manager.editSelectedTask(changed);
    if (changed.hidden)
        manager.hideSelectedTask();
    else
        manager.unhideSelectedTask();
    manager.select(selected);
}

/// Whether all that is in the two tasks is equal, and not only their keys.
inline bool haveEqualFields(const task &a, const task &b)
{
    const auto fields = [](const task &entry) {
        const auto &[key, date, name, desc, client, teamMember, color, due, status, priority, statusName,
                     priorityName, hidden, startHour, startMin, endHour, endMin] = entry;
        return std::tie(key, date, name, desc, client, teamMember, color, due, status, priority, statusName,
                        priorityName, hidden, startHour, startMin, endHour, endMin);
    };
    return fields(a) == fields(b);
}
