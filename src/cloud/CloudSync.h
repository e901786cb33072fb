#pragma once

#include "cloud/CloudTransfer.h"
#include "model/task.h"

#include <QHash>
#include <QObject>

#include <chrono>
#include <memory>

struct CloudErrand;
class CloudMerge;
class MainThreadQueue;
class NotificationCenter;
class TaskManager;

/// Copies tasks between the task manager and the user's private cloud database.
///
/// Every operation returns before the cloud has answered; the outcome of a transfer and of a delete follows
/// in the manager's `lastMessage` and the notices "update" and "reload". Answers are handled on the main
/// thread. What an operation returns is whether anything had failed by then. The two that transfer the whole
/// list tell how far they are; while one of them is under way, neither begins, and false is returned.
///
/// Made and destroyed on the main thread. What it is made with outlives it; answers that come when it is gone
/// are dropped.
class CloudSync : public QObject
{
    Q_OBJECT

public:
    CloudSync(TaskManager &manager, NotificationCenter &notices, CloudContainer &container);
    ~CloudSync() override;

    /// Updates every task of the manager's `tasks` in the cloud, or adds it there.
    bool syncAllToCloud();
    /// Updates every record that has the task's key, or adds one.
    bool editTaskInCloud(const SharedTask &entry);
    /// Adds a record for the task.
    bool saveTaskToCloud(const SharedTask &entry);
    /// Deletes every record that has the key.
    bool deleteTaskFromCloud(const QString &key);
    /// Puts a task's record back if deleting the task has removed one, once that is known.
    void restoreTaskInCloud(const SharedTask &entry);
    /// Fetches all records and merges them into the list: the cloud's values win, and nothing local is
    /// removed.
    bool updateFromCloud();

    /// The one that is under way, if there is one.
    const std::optional<CloudTransfer> &transfer() const { return currentTransfer; }
    /// Lets the transfer end without what has not been sent.
    void stopTransfer();

    /// Waits until all that was started is done, without the event loop; false when the cloud takes longer
    /// than the limit.
    bool finish(std::chrono::nanoseconds limit);

signals:
    void transferProgressed();
    /// After the last answer.
    void transferEnded(const CloudTransfer &transfer);

private:
    using SharedErrand = std::shared_ptr<CloudErrand>;

    void checkCloudAccount(const SharedErrand &errand);
    void reportAccount(CloudAccount account, const SharedErrand &errand);
    bool saveTask(const SharedTask &entry, const SharedErrand &errand);
    bool editTask(const SharedTask &entry, const SharedErrand &errand);
    void deleteTask(const QString &key, const SharedErrand &errand);
    void inTurn(const QString &key, const std::function<void()> &begin);
    void endTurn(const QString &key);
    void saveRecord(const CloudRecord &record, const SharedErrand &errand);
    /// Merges a few records, and the others in later turns of the event loop, then tells of the outcome.
    void goOnMerging(const std::shared_ptr<CloudMerge> &merge, const SharedErrand &errand);

    void beginTransfer(CloudTransfer::Direction direction, qint64 tasks);
    SharedErrand errandOfTransfer(std::function<void(const CloudErrand &)> whenOver) const;
    void noteCopied(const QString &key, const CloudErrand &errand);
    void endTransfer();
    void tellOfDelete(const QString &key, const CloudErrand &errand);
    void tellProblem(const QString &problem);
    void tell(const QString &message);

    /// What the cloud may call on any thread and at any time: it has the main thread call the handler, unless
    /// this object is gone by then. The errand is not over before that.
    template <typename Result, typename Handler>
    std::function<void(CloudAnswer<Result>)> onMainThread(const SharedErrand &errand, Handler handler) const;

    TaskManager &manager;
    NotificationCenter &notices;
    CloudContainer &container;
    std::optional<CloudTransfer> currentTransfer;
    QSet<QString> unansweredDeletes;             ///< by their keys
    QSet<QString> removedRecords;                ///< by the keys of their tasks, which were deleted
    QHash<QString, std::function<void()>> turns; ///< what waits for what is under way for the task of a key
    bool isProblemTold = false;                  ///< by the manager's message, until something succeeds
    std::unique_ptr<MainThreadQueue> mainThread; ///< last: no handler runs when the rest is gone
};
