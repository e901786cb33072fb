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

/// A task with a value of its own in every field.
inline task sampleTask(const QString &key, const QString &name)
{
    return {.key = key,
            .date = Instant(std::chrono::milliseconds(-123'456'789'012'345)),
            .name = name,
            .desc = QStringLiteral("it's \\ \"quoted\"\r\n🌳\u00a0%1 $1 ?"),
            .client = QStringLiteral("Nobody listed"),
            .teamMember = QStringLiteral("Zoë"),
            .color = {0.1, 1.0 / 3.0, 5e-324, 0.25098039215686274},
            .due = Instant(std::chrono::milliseconds(1'800'000'000'001)),
            .status = -1,
            .priority = std::numeric_limits<qint64>::max(),
            .statusName = QStringLiteral("Waiting"),
            .priorityName = QStringLiteral("Sky-high"),
            .hidden = true,
            .startHour = 23,
            .startMin = 59,
            .endHour = 0,
            .endMin = 1};
}

inline QStringList namesOf(const TaskList &tasks)
{
    QStringList names;
    for (const SharedTask &entry : tasks)
        names.append(entry->name);
    return names;
}
