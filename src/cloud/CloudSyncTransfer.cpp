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

void CloudSync::noteCopied(const QString &key, const CloudErrand &errand)
{
    currentTransfer->noteCopied(key, errand);
    emit transferProgressed();
    if (currentTransfer->isCopied())
        endTransfer();
}

void CloudSync::endTransfer()
{
    CloudTransfer ended = *std::exchange(currentTransfer, std::nullopt);
    if (ended.direction == CloudTransfer::Direction::ToCloud)
        ended.hasSucceeded = ended.failed == 0;
    if (const QString message = ended.message(manager.lastMessage); !message.isEmpty())
        tell(message);
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
