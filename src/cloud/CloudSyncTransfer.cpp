#include "cloud/CloudErrand.h"
#include "cloud/CloudMerge.h"
#include "cloud/CloudSync.h"
#include "cloud/MainThreadQueue.h"
#include "model/TaskManager.h"
#include "platform/NotificationCenter.h"

using namespace Qt::StringLiterals;

// How the transfers of the whole list go on, and what is told of them.

void CloudSync::beginTransfer(CloudTransfer::Direction direction, qint64 tasks)
{
    currentTransfer = CloudTransfer{.direction = direction, .tasks = tasks, .deletedKeys = unansweredDeletes};
    emit transferProgressed();
}

CloudSync::SharedErrand CloudSync::errandOfTransfer(std::function<void(const CloudErrand &)> whenOver) const
{
    return std::make_shared<CloudErrand>(
        CloudErrand{.stop = currentTransfer->stop.get_token(), .whenOver = std::move(whenOver)});
}

void CloudSync::stopTransfer()
{
    if (currentTransfer && currentTransfer->canBeStopped())
        currentTransfer->stop.request_stop();
}

/// What counts is whether the task is in the cloud: the account's state may have changed since.
void CloudSync::noteCopied(const QString &key, const CloudErrand &errand)
{
    if (errand.error)
        ++currentTransfer->failed;
    else if (currentTransfer->deletedKeys.contains(key))
        --currentTransfer->tasks;
    else
        ++currentTransfer->done;
    noteOutcome(errand);
    if (currentTransfer->done + currentTransfer->failed == currentTransfer->tasks)
        endTransfer();
}

void CloudSync::noteOutcome(const CloudErrand &errand)
{
    currentTransfer->hasAccount &= errand.hasAccount;
    if (!currentTransfer->error)
        currentTransfer->error = errand.error;
    currentTransfer->hasSucceeded = errand.saved;
    emit transferProgressed();
}

void CloudSync::endTransfer()
{
    CloudTransfer ended = *std::exchange(currentTransfer, std::nullopt);
    if (ended.direction == CloudTransfer::Direction::ToCloud)
        ended.hasSucceeded = ended.failed == 0;
    QStringList told{ended.outcome(), ended.deleteProblem};
    told.removeAll(QString());
    if (!told.isEmpty() && !ended.isEmptyFetch()) {
        if (!ended.hasAccount)
            told.prepend(manager.lastMessage);
        tell(told.join(u' '));
    }
    isProblemTold = !ended.deleteProblem.isEmpty() || (!ended.hasSucceeded && !ended.stop.stop_requested());
    emit transferEnded(ended);
}

void CloudSync::goOnMerging(const std::shared_ptr<CloudMerge> &merge, const SharedErrand &errand)
{
    const bool isMore = merge->mergeSome(currentTransfer->deletedKeys);
    currentTransfer->done = merge->merged();
    if (isMore) {
        emit transferProgressed();
        mainThread->post([this, merge, errand] { goOnMerging(merge, errand); });
        return;
    }
    notices.post(notice::reload);
    if (errand->saved) {
        manager.lastMessage = u"----iCloud:Update Complete!----"_s;
        isProblemTold = false;
    }
    notices.post(notice::update);
    errand->settle();
}
