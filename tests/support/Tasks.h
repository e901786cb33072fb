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
