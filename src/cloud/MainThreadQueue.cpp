#include "cloud/MainThreadQueue.h"

#include <QElapsedTimer>
#include <QTimer>

#include <deque>
#include <mutex>

/// The part that every thread may touch.
class MainThreadQueue::Jobs
{
public:
    explicit Jobs(MainThreadQueue *ofQueue)
        : queue(ofQueue)
    {
    }

    void add(Job job)
    {
        const std::lock_guard lock(mutex);
        if (!queue)
            return;
        waiting.push_back(std::move(job));
        if (!std::exchange(isScheduled, true))
            QMetaObject::invokeMethod(queue, &MainThreadQueue::runSome, Qt::QueuedConnection);
    }

    Job take()
    {
        const std::lock_guard lock(mutex);
        if (waiting.empty()) {
            isScheduled = false;
            return {};
        }
        Job job = std::move(waiting.front());
        waiting.pop_front();
        return job;
    }

    /// Drops the jobs there are and those to come.
    void close()
    {
        std::deque<Job> dropped; // destroyed after the lock: what a job holds may want to post
        const std::lock_guard lock(mutex);
        dropped.swap(waiting);
        queue = nullptr;
    }

private:
    std::mutex mutex;
    std::deque<Job> waiting;
    MainThreadQueue *queue; ///< none when it is gone
    bool isScheduled = false;
};

MainThreadQueue::MainThreadQueue()
    : jobs(std::make_shared<Jobs>(this))
{
}

MainThreadQueue::~MainThreadQueue()
{
    jobs->close();
}

void MainThreadQueue::post(Job job)
{
    jobs->add(std::move(job));
}

std::function<void(MainThreadQueue::Job)> MainThreadQueue::poster() const
{
    return [shared = jobs](Job job) {
        shared->add(std::move(job));
    };
}

bool MainThreadQueue::runAll()
{
    bool isEmpty = true;
    while (const Job job = jobs->take()) {
        job();
        isEmpty = false;
    }
    return !isEmpty;
}

void MainThreadQueue::runSome()
{
    constexpr int longest = 8; // milliseconds, half a frame
    QElapsedTimer spent;
    spent.start();
    while (const Job job = jobs->take()) {
        job();
        if (spent.elapsed() >= longest) {
            // A timer and not a posted event: the loop would go through those before it looks at the input.
            QTimer::singleShot(0, this, &MainThreadQueue::runSome);
            return;
        }
    }
}
