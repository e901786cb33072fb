#include "messaging/ScheduleRun.h"

ScheduleRun::ScheduleRun(RunSnapshot runSnapshot, RunCounters &counters, const Preferences &preferences,
                         GatewayClient &gateway)
    : snapshot(std::move(runSnapshot))
    , sendWorker(snapshot, counters, preferences, gateway)
    , progressMonitor(snapshot, counters, *this,
                      {.progress = [this](qint64 steps) { emit progressed(steps); },
                       .lastStep =
                           [this](qint64 steps, qint64 schedules) {
                               emit lastStepReached(steps, schedules);
                           }})
    , sendThread(QThread::create([this] {
        sendWorker.run();
        progressMonitor.sendingEnded();
    }))
    , monitorThread(QThread::create([this] { progressMonitor.run(); }))
{
    for (const QThread *thread : {sendThread.get(), monitorThread.get()})
        connect(thread, &QThread::finished, this, [this] {
            if (--unfinishedThreads == 0)
                emit finished();
        });
}

ScheduleRun::~ScheduleRun()
{
    sendThread->wait();
    monitorThread->wait();
}

void ScheduleRun::start()
{
    monitorThread->start(QThread::HighPriority);
    sendThread->start(QThread::LowPriority);
}
