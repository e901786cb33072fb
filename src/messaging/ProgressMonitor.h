#pragma once

#include "messaging/RunSnapshot.h"

#include <functional>

class QObject;

/// Polls the counters of a run until its last step, and lets the main thread show them. However fast it
/// polls, at most one change is on its way to the main thread. Its work is to be done on a thread of its own.
class ProgressMonitor
{
public:
    /// What the main thread does.
    struct Display
    {
        std::function<void(qint64 steps)> progress;
        std::function<void(qint64 steps, qint64 schedules)> lastStep;
    };

    /// \param receiver  an object of the main thread, which has to outlive the monitor's work
    ProgressMonitor(const RunSnapshot &snapshot, const RunCounters &counters, QObject &receiver,
                    Display display);

    void run();
    /// Nothing counts the run's steps any more, so that there is nothing to wait for. From any thread.
    void sendingEnded() { hasSendingEnded = true; }

private:
    void postChange();
    void showChange();

    const RunSnapshot &snapshot;
    const RunCounters &counters;
    QObject &receiver;
    Display display;
    std::atomic<bool> hasSendingEnded = false;
    std::atomic<bool> isPosted = false;
    std::atomic<bool> isLast = false; ///< of the changes; the two below are set before
    std::atomic<qint64> lastSteps = 0;
    std::atomic<qint64> lastSchedules = 0;
    bool isLastShown = false;
};
