#pragma once

#include <QObject>

#include <functional>
#include <memory>

/// Does on the main thread what other threads hand to it, in the order it came, and lets the user's input in
/// between: however much is queued, it keeps the event loop waiting for a few milliseconds at a time only.
///
/// Made and destroyed on the main thread. What is queued when it is destroyed is dropped.
class MainThreadQueue : public QObject
{
    Q_OBJECT

public:
    using Job = std::function<void()>;

    MainThreadQueue();
    ~MainThreadQueue() override;

    /// Queues the job.
    void post(Job job);
    /// As `post`, for other threads. It may outlive the queue, and then drops the jobs.
    std::function<void(Job)> poster() const;
    /// Does what is queued without returning to the event loop; false when there was nothing.
    bool runAll();

private:
    class Jobs;

    void runSome();

    std::shared_ptr<Jobs> jobs; ///< shared with the posters
};
