#pragma once

#include "messaging/RunSnapshot.h"

#include <functional>

class QObject;

/// Polls the counters of a run until its last step, and lets the main thread show them. However fast it
/// polls, at most one change is on its way to the main thread. Its work is to be done on a thread of its own.
class ProgressMonitor
{
public:
    /// \param receiver  an object of the main thread, which has to outlive the monitor's work
    /// \param show      is called on the main thread; the last time when the run is at its last step
    ProgressMonitor(const RunSnapshot &snapshot, const RunCounters &counters, QObject &receiver,
                    std::function<void(const RunProgress &)> show);

    void run();
    /// Nothing counts the run's steps any more, so the monitor need not wait for the last one. May be called
    /// from any thread.
    void sendingEnded() { hasSendingEnded = true; }

private:
    void postChange();
    void showChange();

    const RunSnapshot &snapshot;
    const RunCounters &counters;
    QObject &receiver;
    std::function<void(const RunProgress &)> show;
    std::atomic<bool> hasSendingEnded = false;
    std::atomic<bool> isPosted = false;
    std::atomic<bool> isOver = false;
    RunProgress end; ///< set before the run is said to be over
    bool isEndShown = false;
};
