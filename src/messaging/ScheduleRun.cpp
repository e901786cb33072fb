#include "messaging/ScheduleRun.h"

#include "platform/Diagnostics.h"

ScheduleRun::ScheduleRun(RunSnapshot runSnapshot, const Preferences &preferences, GatewayClient &gateway,
                         const std::shared_ptr<MessageFeed> &feed)
    : snapshot(std::move(runSnapshot))
    , sendWorker(snapshot, counters, preferences, gateway, feed)
    , progressMonitor(snapshot, counters, *this,
                      [this](const RunProgress &progress) {
                          shownProgress = progress;
                          emit progressed();
                      })
    , sendThread(QThread::create([this] {
        sendWorker.run();
        progressMonitor.sendingEnded();
    }))
    , monitorThread(QThread::create([this] { progressMonitor.run(); }))
{
    for (const QThread *thread : {sendThread.get(), monitorThread.get()})
        connect(thread, &QThread::finished, this, [this] {
            if (--unfinishedThreads == 0)
                end();
        });
}

/// The last step's messages are counted only now.
void ScheduleRun::end()
{
    shownProgress = {.steps = counters.stepsPerformed,
                     .schedules = counters.schedulesSent,
                     .isSending = false,
                     .isHandingOver = false,
                     .unsent = sendWorker.unsentMessages()};
    emit progressed();
    emit finished();
}

ScheduleRun::~ScheduleRun()
{
    sendThread->wait();
    monitorThread->wait();
}

void ScheduleRun::start()
{
    if (snapshot.kind == RecipientKind::TeamMember)
        diagnostics::line("----NoOfSchedules1:", shownProgress.schedules, "----");
    monitorThread->start(QThread::HighPriority);
    sendThread->start(QThread::LowPriority);
}
