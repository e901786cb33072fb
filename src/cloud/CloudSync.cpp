#include "cloud/CloudSync.h"

#include "cloud/CloudErrand.h"
#include "cloud/CloudMerge.h"
#include "cloud/MainThreadQueue.h"
#include "cloud/TaskRecord.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"

#include <QDeadlineTimer>

using namespace Qt::StringLiterals;

CloudSync::CloudSync(TaskManager &taskManager, NotificationCenter &applicationNotices,
                     CloudContainer &cloudContainer)
    : manager(taskManager)
    , notices(applicationNotices)
    , container(cloudContainer)
    , mainThread(std::make_unique<MainThreadQueue>())
{
}

CloudSync::~CloudSync() = default;

bool CloudSync::finish(std::chrono::nanoseconds limit)
{
    const QDeadlineTimer deadline(limit);
    do {
        if (!container.finish(deadline.remainingTimeAsDuration()))
            return false;
    } while (mainThread->runAll());
    return true;
}

template <typename Result, typename Handler>
std::function<void(CloudAnswer<Result>)> CloudSync::onMainThread(const SharedErrand &errand,
                                                                 Handler handler) const
{
    ++errand->unanswered;
    return [post = mainThread->poster(), errand, handler](CloudAnswer<Result> answer) {
        post([errand, handler, answer = std::move(answer)]() mutable {
            handler(answer);
            errand->settle();
        });
    };
}

void CloudSync::checkCloudAccount(const SharedErrand &errand)
{
    diagnostics::line("Container:", container.description());
    container.accountStatus(
        onMainThread<CloudAccount>(errand, [this, errand](const CloudAnswer<CloudAccount> &answer) {
            if (const auto *account = std::get_if<CloudAccount>(&answer))
                reportAccount(*account, errand);
        }));
}

void CloudSync::reportAccount(CloudAccount account, const SharedErrand &errand)
{
    switch (account) {
    case CloudAccount::CouldNotDetermine:
        diagnostics::line("----CloudKit:Cannot Determine Status----");
        manager.lastMessage = u"----iCloud:Cannot Login (Unknown)----"_s;
        break;
    case CloudAccount::Available:
        diagnostics::line("----CloudKit:User is Logged In----");
        break;
    case CloudAccount::Restricted:
        diagnostics::line("----CloudKit:Restricted----");
        manager.lastMessage = u"----iCloud:Cannot Login (Restricted)----"_s;
        break;
    case CloudAccount::NoAccount:
        diagnostics::line("----CloudKit:User is NOT Logged In----");
        manager.lastMessage = u"----iCloud:User is NOT Logged In----"_s;
        break;
    }
    if (account != CloudAccount::Available) {
        errand->saved = errand->hasAccount = false;
        isProblemTold = true;
    }
    notices.post(notice::update);
}

void CloudSync::saveRecord(const CloudRecord &record, const SharedErrand &errand)
{
    container.privateCloudDatabase().saveRecord(
        record, errand->stop,
        onMainThread<CloudRecord>(errand, [errand](const CloudAnswer<CloudRecord> &answer) {
            diagnostics::line(errand->take(answer) ? "----CloudKit:Save Success----"
                                                   : "----CloudKit:Save Error----");
        }));
}

bool CloudSync::saveTaskToCloud(const SharedTask &entry)
{
    return saveTask(entry, std::make_shared<CloudErrand>());
}

bool CloudSync::saveTask(const SharedTask &entry, const SharedErrand &errand)
{
    checkCloudAccount(errand);
    CloudRecord record = newTaskRecord();
    fillRecord(record, *entry, true);
    saveRecord(record, errand);
    diagnostics::line("Add Task to Cloud, hidden:", entry->hidden);
    return errand->saved;
}

bool CloudSync::editTaskInCloud(const SharedTask &entry)
{
    return editTask(entry, std::make_shared<CloudErrand>());
}

bool CloudSync::editTask(const SharedTask &entry, const SharedErrand &errand)
{
    using Records = std::vector<CloudRecord>;
    checkCloudAccount(errand);
    const auto store = [this, entry, errand](const CloudAnswer<Records> &answer) {
        if (!errand->take(answer))
            return;
        if (errand->stop.stop_requested()) {
            errand->fail({CloudError::Reason::Stopped});
            return;
        }
        if (currentTransfer && currentTransfer->deletedKeys.contains(entry->key))
            return; // or it would be back in the cloud
        const auto &records = std::get<Records>(answer);
        if (records.empty()) {
            diagnostics::line("CloudKit Edit - Record Not Found - Add");
            saveTask(entry, errand);
        }
        for (CloudRecord record : records) {
            fillRecord(record, *entry, false);
            saveRecord(record, errand);
        }
    };
    container.privateCloudDatabase().performQuery({taskRecordType().name, entry->key}, errand->stop,
                                                  onMainThread<Records>(errand, store));
    diagnostics::line("CloudKit Edit - Return Saved:", errand->saved);
    return errand->saved;
}

bool CloudSync::syncAllToCloud()
{
    if (currentTransfer)
        return false;
    diagnostics::line("Sync To CloudKit, #Tasks:", manager.tasks().size());
    beginTransfer(CloudTransfer::Direction::ToCloud, manager.tasks().size());
    bool result = true;
    for (const SharedTask &entry : manager.tasks())
        result = editTask(entry, errandOfTransfer([this, key = entry->key](const CloudErrand &errand) {
                              noteCopied(key, errand);
                          }));
    if (manager.tasks().isEmpty())
        endTransfer();
    return result;
}

bool CloudSync::deleteTaskFromCloud(const QString &key)
{
    using Records = std::vector<CloudRecord>;
    unansweredDeletes.insert(key);
    if (currentTransfer)
        currentTransfer->deletedKeys.insert(key);
    const auto errand = std::make_shared<CloudErrand>();
    errand->whenOver = [this, key](const CloudErrand &over) {
        tellOfDelete(key, over);
    };
    checkCloudAccount(errand);
    const auto remove = [this, errand](const CloudAnswer<Records> &answer) {
        if (!errand->take(answer))
            return;
        const auto &records = std::get<Records>(answer);
        errand->saved = errand->saved && !records.empty();
        for (const CloudRecord &record : records)
            container.privateCloudDatabase().deleteRecord(
                record.recordID(),
                onMainThread<CloudRecordID>(
                    errand, [errand](const CloudAnswer<CloudRecordID> &deleted) { errand->take(deleted); }));
    };
    container.privateCloudDatabase().performQuery({taskRecordType().name, key}, errand->stop,
                                                  onMainThread<Records>(errand, remove));
    return errand->saved;
}

bool CloudSync::updateFromCloud()
{
    using Records = std::vector<CloudRecord>;
    if (currentTransfer)
        return false;
    beginTransfer(CloudTransfer::Direction::FromCloud, 0);
    const SharedErrand errand = errandOfTransfer([this](const CloudErrand &over) {
        currentTransfer->note(over);
        emit transferProgressed();
        endTransfer();
    });
    checkCloudAccount(errand);
    const auto merge = [this, errand](CloudAnswer<Records> &answer) {
        if (!errand->take(answer))
            return;
        auto &records = std::get<Records>(answer);
        if (errand->stop.stop_requested())
            errand->fail({CloudError::Reason::Stopped});
        else if (records.empty())
            errand->saved = false;
        else {
            currentTransfer->tasks = qint64(records.size());
            ++errand->unanswered;
            goOnMerging(std::make_shared<CloudMerge>(manager, std::move(records)), errand);
        }
    };
    container.privateCloudDatabase().performQuery({taskRecordType().name}, errand->stop,
                                                  onMainThread<Records>(errand, merge));
    return errand->saved;
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

void CloudSync::tellOfDelete(const QString &key, const CloudErrand &errand)
{
    unansweredDeletes.remove(key);
    if (errand.error && (errand.hasAccount || !errand.error->isOfAccount())) {
        const QString problem = u"A task that was deleted here is still in the cloud, since %1."_s.arg(
            errand.error->plainWords());
        tell(problem);
        isProblemTold = true;
        if (currentTransfer)
            currentTransfer->deleteProblem = problem;
    } else if (!errand.error && errand.hasAccount && isProblemTold) {
        tell({});
    }
}

void CloudSync::tell(const QString &message)
{
    manager.lastMessage = message;
    isProblemTold = false;
    notices.post(notice::update);
}
