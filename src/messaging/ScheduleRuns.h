#pragma once

#include "messaging/GatewayClient.h"
#include "messaging/ScheduleRun.h"

#include <list>

/// The program's runs of schedule messages, with the counters and the gateway client that they share. Made
/// on the main thread, before the screens and after the preferences.
class ScheduleRuns
{
public:
    ScheduleRuns(const Preferences &preferences, const GatewayAddress &address);
    ~ScheduleRuns();
    ScheduleRuns(const ScheduleRuns &) = delete;
    ScheduleRuns &operator=(const ScheduleRuns &) = delete;

    /// A run that can be started. It lives until shortly after it has finished.
    ScheduleRun &add(RunSnapshot snapshot);

    /// Ends all runs: what has not been started is not sent any more.
    void stop();
    /// Waits for the answers to what was started; false when that takes longer than the limit.
    bool finish(std::chrono::nanoseconds limit);

    RunCounters counters;

private:
    const Preferences &preferences;
    GatewayClient gateway;
    std::list<std::unique_ptr<ScheduleRun>> runs;
    QObject mainThread; ///< receives what ends a run
};
