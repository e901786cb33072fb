#include "messaging/ProgressMonitor.h"

#include "platform/Diagnostics.h"

#include <QObject>

#include <chrono>
#include <thread>

using namespace std::chrono_literals;

ProgressMonitor::ProgressMonitor(const RunSnapshot &runSnapshot, const RunCounters &runCounters,
                                 QObject &mainThreadObject, Display onMainThread)
    : snapshot(runSnapshot)
    , counters(runCounters)
    , receiver(mainThreadObject)
    , display(std::move(onMainThread))
{
}

void ProgressMonitor::run()
{
    const qint64 lastStep = snapshot.lastStep();
    qint64 steps = 0;
    bool isOver = false;
    do {
        std::this_thread::sleep_for(500us);
        // Asked before the counter: a run of its own counts to the last step before its sending ends, but
        // another run may count over that.
        isOver = hasSendingEnded;
        steps = counters.stepsPerformed;
        diagnostics::line("--------------------ASYNC--------------------------:", steps);
        diagnostics::line("Progres Index:", steps);
        diagnostics::line("Max Count:", lastStep);
        postChange();
    } while (lastStep > steps && !isOver);
    lastSteps = counters.stepsPerformed.load();
    lastSchedules = counters.schedulesSent.load();
    isLast = true;
    postChange();
    if (snapshot.kind == RecipientKind::TeamMember)
        diagnostics::line("----NoOfSchedules3:", lastSchedules.load(), "----");
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
    if (!isLast)
        display.progress(counters.stepsPerformed);
    else if (!std::exchange(isLastShown, true))
        display.lastStep(lastSteps, lastSchedules);
}
