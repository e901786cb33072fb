#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <mutex>

/// Does on the main thread what other threads hand to it, in the order it came, and lets the user's input in
/// between: however much is queued, the event loop is kept for a few milliseconds at a time.
///
/// Made on the main thread.
class MainThreadQueue : public QObject
{
    Q_OBJECT

public:
    /// Queues the job. From any thread.
    void post(std::function<void()> job);
    /// Does what is queued without returning to the event loop; false when there was nothing. On the main
    /// thread.
    bool runAll();

private:
    void runSome();
    std::function<void()> take();

    std::mutex mutex;
    std::deque<std::function<void()>> jobs;
    bool isScheduled = false;
};
