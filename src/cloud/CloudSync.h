#pragma once

#include "cloud/CloudDatabase.h"
#include "model/task.h"

#include <chrono>
#include <memory>

class CloudMerge;
class MainThreadQueue;
class NotificationCenter;
class TaskManager;

/// Copies tasks between the task manager and the user's private cloud database.
///
/// Every operation returns before the cloud has answered; the outcome follows in the manager's `lastMessage`
/// and the notices "update" and "reload". Answers are handled on the main thread. What an operation returns
/// is whether anything had failed by then.
///
/// Made and destroyed on the main thread. What it is made with outlives it; answers that come when it is gone
/// are dropped.
class CloudSync
{
public:
    CloudSync(TaskManager &manager, NotificationCenter &notices, CloudContainer &container);
    ~CloudSync();

    /// Updates every task of the manager's `tasks` in the cloud, or adds it there.
    bool syncAllToCloud();
    /// Updates every record that has the task's key, or adds one.
    bool editTaskInCloud(const SharedTask &entry);
    /// Adds a record for the task.
    bool saveTaskToCloud(const SharedTask &entry);
    /// Deletes every record that has the key.
    bool deleteTaskFromCloud(const QString &key);
    /// Fetches all records and merges them into the list: the cloud's values win, and nothing local is
    /// removed.
    bool updateFromCloud();

    /// Waits until all that was started is done, without the event loop; false when the cloud takes longer
    /// than the limit.
    bool finish(std::chrono::nanoseconds limit);

private:
    /// What became of an operation so far; shared with its handlers.
    using Saved = std::shared_ptr<bool>;

    void checkCloudAccount(const Saved &saved);
    void reportAccount(CloudAccount account, const Saved &saved);
    void saveRecord(const CloudRecord &record, const Saved &saved);
    /// Merges a few records, and the others in later turns of the event loop, then tells of the outcome.
    void goOnMerging(const std::shared_ptr<CloudMerge> &merge, const Saved &saved);
    /// What the cloud may call on any thread and at any time: it has the main thread call the handler, unless
    /// this object is gone by then.
    template <typename Result, typename Handler>
    std::function<void(CloudAnswer<Result>)> onMainThread(Handler handler) const;

    TaskManager &manager;
    NotificationCenter &notices;
    CloudContainer &container;
    std::unique_ptr<MainThreadQueue> mainThread; ///< last: no handler runs when the rest is gone
};
