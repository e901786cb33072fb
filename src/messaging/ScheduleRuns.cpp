#include "messaging/ScheduleRuns.h"

ScheduleRuns::ScheduleRuns(const Preferences &userPreferences, const GatewayAddress &address)
    : preferences(userPreferences)
    , gateway(address)
{
}

ScheduleRuns::~ScheduleRuns()
{
    stop();
}

ScheduleRun &ScheduleRuns::add(RunSnapshot snapshot)
{
    counters.stepsPerformed = 1;
    counters.schedulesSent = 0;
    runs.push_back(std::make_unique<ScheduleRun>(std::move(snapshot), counters, preferences, gateway));
    ScheduleRun *run = runs.back().get();
    // Queued: a run cannot go while it tells that it has finished.
    QObject::connect(
        run, &ScheduleRun::finished, &mainThread,
        [this, run] { std::erase_if(runs, [run](const auto &kept) { return kept.get() == run; }); },
        Qt::QueuedConnection);
    return *run;
}

void ScheduleRuns::stop()
{
    gateway.close();
    runs.clear();
}

bool ScheduleRuns::finish(std::chrono::nanoseconds limit)
{
    return gateway.finish(limit);
}
