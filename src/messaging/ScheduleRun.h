#pragma once

#include "messaging/ProgressMonitor.h"
#include "messaging/SendWorker.h"

#include <QObject>
#include <QThread>

/// Sends every recipient of a snapshot their schedule, on a thread of its own, while another one watches how
/// far that is. Lives on the main thread and goes on whether or not anybody listens.
class ScheduleRun : public QObject
{
    Q_OBJECT

public:
    ScheduleRun(RunSnapshot snapshot, RunCounters &counters, const Preferences &preferences,
                GatewayClient &gateway);
    /// Waits for both threads; while they may still have work the client has to be closed before.
    ~ScheduleRun() override;

    void start();

signals:
    // All of them on the main thread.
    void progressed(qint64 steps);
    /// The last step has begun; its messages may still be on their way.
    void lastStepReached(qint64 steps, qint64 schedules);
    /// Both threads have ended.
    void finished();

private:
    RunSnapshot snapshot;
    SendWorker sendWorker;
    ProgressMonitor progressMonitor;
    std::unique_ptr<QThread> sendThread;
    std::unique_ptr<QThread> monitorThread;
    int unfinishedThreads = 2;
};
