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
    ScheduleRun(RunSnapshot snapshot, const Preferences &preferences, GatewayClient &gateway,
                const std::shared_ptr<MessageFeed> &feed);
    /// Waits for both threads; while they may still have work the client has to be closed before.
    ~ScheduleRun() override;

    void start();
    /// Ends it; what has not been handed over is not sent.
    void stop() { sendWorker.stop(); }

    qint64 lastStep() const { return snapshot.lastStep(); }
    const RunProgress &progress() const { return shownProgress; }

signals:
    // Both on the main thread.
    void progressed();
    /// Both threads have ended.
    void finished();

private:
    void end();

    RunSnapshot snapshot;
    RunCounters counters;
    RunProgress shownProgress;
    SendWorker sendWorker;
    ProgressMonitor progressMonitor;
    std::unique_ptr<QThread> sendThread;
    std::unique_ptr<QThread> monitorThread;
    int unfinishedThreads = 2;
};
