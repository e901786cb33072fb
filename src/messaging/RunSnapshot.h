#pragma once

#include "journal/SentMessage.h"
#include "messaging/ScheduleText.h"

#include <atomic>

/// How far the sending of a run is.
struct RunCounters
{
    std::atomic<qint64> stepsPerformed = 1; ///< recipient × task, both counted from 1
    std::atomic<qint64> schedulesSent = 0;  ///< task messages composed
};

/// How far a run is, as the main thread shows it.
struct RunProgress
{
    qint64 steps = 1;
    qint64 schedules = 0;
    bool isSending = true;     ///< until its last step, whose messages may still be on their way
    bool isHandingOver = true; ///< until the last message has been handed to the gateway client
    qint64 unsent = 0;         ///< messages, since the user has stopped the run
};

/// What a run works on, taken when it starts.
struct RunSnapshot
{
    RecipientKind kind;
    std::vector<Recipient> recipients; ///< in the order in which they are sent their schedules
    std::vector<ScheduledTask> tasks;  ///< in the order of the schedules
    ScheduleText text;
    std::vector<SentMessage> again = {}; ///< of an earlier run, to be sent as they were, and nothing else

    /// The recipient's own ones, in the same order.
    std::vector<const task *> scheduleOf(const Recipient &recipient) const;
    qint64 lastStep() const { return std::ssize(recipients) * std::ssize(tasks) + std::ssize(again); }
};
