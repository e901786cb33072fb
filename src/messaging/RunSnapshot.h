#pragma once

#include "messaging/ScheduleText.h"

#include <atomic>

/// How far a run is. The whole program has one pair, which runs that overlap share.
struct RunCounters
{
    std::atomic<qint64> stepsPerformed = 1; ///< recipient × task, both counted from 1
    std::atomic<qint64> schedulesSent = 0;  ///< task messages composed
};

/// What a run works on, taken when it starts.
struct RunSnapshot
{
    RecipientKind kind;
    std::vector<Recipient> recipients; ///< in the order in which they are sent their schedules
    std::vector<ScheduledTask> tasks;  ///< in the order of the schedules
    ScheduleText text;

    qint64 lastStep() const { return qint64(recipients.size()) * qint64(tasks.size()); }
};
