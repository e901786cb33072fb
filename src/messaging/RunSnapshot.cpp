#include "messaging/RunSnapshot.h"

std::vector<const task *> RunSnapshot::scheduleOf(const Recipient &recipient) const
{
    std::vector<const task *> schedule;
    if (!recipient.name)
        return schedule;
    const QString name = matchedName(*recipient.name);
    for (const ScheduledTask &candidate : tasks)
        if (text.matches(name, candidate, ScheduleText::DayLines::Omitted))
            schedule.push_back(&*candidate.entry);
    return schedule;
}
