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
        if (currentTransfer && currentTransfer->deletedKeys.contains(entry->key)) {
            removedRecords.insert(entry->key); // it would be back in the cloud, which is for an undo to do
            return;
        }
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
    unansweredDeletes.insert(key);
    if (currentTransfer)
        currentTransfer->deletedKeys.insert(key);
    const auto errand = std::make_shared<CloudErrand>();
    errand->whenOver = [this, key](const CloudErrand &over) {
        tellOfDelete(key, over);
        endTurn(key);
    };
    inTurn(key, [this, key, errand] { deleteTask(key, errand); });
    return errand->saved;
}

void CloudSync::deleteTask(const QString &key, const SharedErrand &errand)
{
    using Records = std::vector<CloudRecord>;
    checkCloudAccount(errand);
    const auto remove = [this, key, errand](const CloudAnswer<Records> &answer) {
        if (!errand->take(answer))
            return;
        const auto &records = std::get<Records>(answer);
        errand->saved = errand->saved && !records.empty();
        if (!records.empty())
            removedRecords.insert(key);
        for (const CloudRecord &record : records)
            container.privateCloudDatabase().deleteRecord(
                record.recordID(),
                onMainThread<CloudRecordID>(
                    errand, [errand](const CloudAnswer<CloudRecordID> &deleted) { errand->take(deleted); }));
    };
    container.privateCloudDatabase().performQuery({taskRecordType().name, key}, errand->stop,
                                                  onMainThread<Records>(errand, remove));
}

void CloudSync::restoreTaskInCloud(const SharedTask &entry)
{
    const auto errand = std::make_shared<CloudErrand>();
    errand->whenOver = [this, key = entry->key](const CloudErrand &over) {
        if (over.error) {
            removedRecords.insert(key);
            tellProblem(u"A task that was brought back here is not in the cloud again, since %1. Copying the "
                        u"list to the cloud "
                        "puts it there."_s.arg(over.error->plainWords()));
        }
        endTurn(key);
    };
    inTurn(entry->key, [this, entry, errand] {
        unansweredDeletes.remove(entry->key); // of one that was still waiting, too
        if (!removedRecords.remove(entry->key)) {
            endTurn(entry->key);
            return;
        }
        if (currentTransfer)
            currentTransfer->deletedKeys.remove(entry->key);
        editTask(entry, errand);
    });
}

/// Begins what is to be done with the task's record as soon as nothing is under way for it; what else was
/// waiting for that is no longer wanted.
void CloudSync::inTurn(const QString &key, const std::function<void()> &begin)
{
    if (turns.contains(key)) {
        turns[key] = begin;
        return;
    }
    turns.insert(key, nullptr);
    begin();
}

void CloudSync::endTurn(const QString &key)
{
    if (const std::function<void()> next = turns.take(key))
        inTurn(key, next);
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

void CloudSync::tellOfDelete(const QString &key, const CloudErrand &errand)
{
    unansweredDeletes.remove(key);
    if (errand.error && (errand.hasAccount || !errand.error->isOfAccount())) {
        tellProblem(u"A task that was deleted here is still in the cloud, since %1."_s.arg(
            errand.error->plainWords()));
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

/// Tells of something that failed beside a transfer, and again when that ends.
void CloudSync::tellProblem(const QString &problem)
{
    tell(problem);
    isProblemTold = true;
    if (currentTransfer)
        currentTransfer->deleteProblem = problem;
}
