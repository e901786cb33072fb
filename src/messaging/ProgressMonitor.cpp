#include "messaging/ProgressMonitor.h"

#include "platform/Diagnostics.h"

#include <QObject>

#include <chrono>
#include <thread>

using namespace std::chrono_literals;

ProgressMonitor::ProgressMonitor(const RunSnapshot &runSnapshot, const RunCounters &runCounters,
                                 QObject &mainThreadObject,
                                 std::function<void(const RunProgress &)> onMainThread)
    : snapshot(runSnapshot)
    , counters(runCounters)
    , receiver(mainThreadObject)
    , show(std::move(onMainThread))
{
}

void ProgressMonitor::run()
{
    const qint64 lastStep = snapshot.lastStep();
    qint64 steps = 0;
    bool hasEnded = false;
    do {
        std::this_thread::sleep_for(500us);
        // Asked before the counter, so that the last step is seen although sending ends in between. A run
        // that is cut off has no last step.
        hasEnded = hasSendingEnded;
        steps = counters.stepsPerformed;
        diagnostics::line("--------------------ASYNC--------------------------:", steps);
        diagnostics::line("Progres Index:", steps);
        diagnostics::line("Max Count:", lastStep);
        postChange();
    } while (lastStep > steps && !hasEnded);
    end = {.steps = counters.stepsPerformed, .schedules = counters.schedulesSent, .isSending = false};
    isOver = true;
    postChange();
    if (snapshot.kind == RecipientKind::TeamMember)
        diagnostics::line("----NoOfSchedules3:", end.schedules, "----");
    std::this_thread::sleep_for(500us);
}

void ProgressMonitor::postChange()
{
    if (!isPosted.exchange(true))
        QMetaObject::invokeMethod(
            &receiver, [this] { showChange(); }, Qt::QueuedConnection);
}

void ProgressMonitor::showChange()
{
    isPosted = false; // before it is asked what to show, so that nothing newer is left unshown
    if (!isOver)
        show({.steps = counters.stepsPerformed, .schedules = counters.schedulesSent});
    else if (!std::exchange(isEndShown, true))
        show(end);
}
