#include "cloud/MainThreadQueue.h"

#include <QElapsedTimer>
#include <QTimer>

void MainThreadQueue::post(std::function<void()> job)
{
    const std::lock_guard lock(mutex);
    jobs.push_back(std::move(job));
    if (!std::exchange(isScheduled, true))
        QMetaObject::invokeMethod(this, &MainThreadQueue::runSome, Qt::QueuedConnection);
}

void MainThreadQueue::runSome()
{
    constexpr int longest = 8; // milliseconds, half a frame
    QElapsedTimer spent;
    spent.start();
    while (const std::function<void()> job = take()) {
        job();
        if (spent.elapsed() >= longest) {
            // A timer and not a posted event: the loop would go through those before it looks at the input.
            QTimer::singleShot(0, this, &MainThreadQueue::runSome);
            return;
        }
    }
}

bool MainThreadQueue::runAll()
{
    bool isEmpty = true;
    while (const std::function<void()> job = take()) {
        job();
        isEmpty = false;
    }
    return !isEmpty;
}

std::function<void()> MainThreadQueue::take()
{
    const std::lock_guard lock(mutex);
    if (jobs.empty()) {
        isScheduled = false;
        return {};
    }
    std::function<void()> job = std::move(jobs.front());
    jobs.pop_front();
    return job;
}
