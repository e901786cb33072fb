#include "cloud/CloudSync.h"

#include "cloud/CloudMerge.h"
#include "cloud/MainThreadQueue.h"
#include "cloud/TaskRecord.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"

#include <QDeadlineTimer>

using namespace Qt::StringLiterals;

static bool isError(const auto &answer)
{
    return std::holds_alternative<CloudError>(answer);
}

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
std::function<void(CloudAnswer<Result>)> CloudSync::onMainThread(Handler handler) const
{
    return [post = mainThread->poster(), handler](CloudAnswer<Result> answer) {
        post([handler, answer = std::move(answer)]() mutable { handler(answer); });
    };
}

void CloudSync::checkCloudAccount(const Saved &saved)
{
    diagnostics::line("Container:", container.description());
    container.accountStatus(
        onMainThread<CloudAccount>([this, saved](const CloudAnswer<CloudAccount> &answer) {
            if (const auto *account = std::get_if<CloudAccount>(&answer))
                reportAccount(*account, saved);
        }));
}

void CloudSync::reportAccount(CloudAccount account, const Saved &saved)
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
    if (account != CloudAccount::Available)
        *saved = false;
    notices.post(notice::update);
}

void CloudSync::saveRecord(const CloudRecord &record, const Saved &saved)
{
    container.privateCloudDatabase().saveRecord(
        record, onMainThread<CloudRecord>([saved](const CloudAnswer<CloudRecord> &answer) {
            diagnostics::line(isError(answer) ? "----CloudKit:Save Error----"
                                              : "----CloudKit:Save Success----");
            *saved = *saved && !isError(answer);
        }));
}

bool CloudSync::saveTaskToCloud(const SharedTask &entry)
{
    const Saved saved = std::make_shared<bool>(true);
    checkCloudAccount(saved);
    CloudRecord record = newTaskRecord();
    fillRecord(record, *entry, true);
    saveRecord(record, saved);
    diagnostics::line("Add Task to Cloud, hidden:", entry->hidden);
    return *saved;
}

bool CloudSync::editTaskInCloud(const SharedTask &entry)
{
    using Records = std::vector<CloudRecord>;
    const Saved saved = std::make_shared<bool>(true);
    checkCloudAccount(saved);
    container.privateCloudDatabase().performQuery(
        {taskRecordType().name, entry->key},
        onMainThread<Records>([this, entry, saved](const CloudAnswer<Records> &answer) {
            const auto *records = std::get_if<Records>(&answer);
            if (!records) {
                *saved = false;
                return;
            }
            if (records->empty()) {
                diagnostics::line("CloudKit Edit - Record Not Found - Add");
                *saved = saveTaskToCloud(entry);
                return;
            }
            for (CloudRecord record : *records) {
                fillRecord(record, *entry, false);
                saveRecord(record, saved);
            }
        }));
    diagnostics::line("CloudKit Edit - Return Saved:", *saved);
    return *saved;
}

bool CloudSync::syncAllToCloud()
{
    diagnostics::line("Sync To CloudKit, #Tasks:", manager.tasks().size());
    bool result = true;
    for (const SharedTask &entry : manager.tasks())
        result = editTaskInCloud(entry);
    return result;
}

bool CloudSync::deleteTaskFromCloud(const QString &key)
{
    using Records = std::vector<CloudRecord>;
    const Saved saved = std::make_shared<bool>(true);
    checkCloudAccount(saved);
    container.privateCloudDatabase().performQuery(
        {taskRecordType().name, key},
        onMainThread<Records>([this, saved](const CloudAnswer<Records> &answer) {
            const auto *records = std::get_if<Records>(&answer);
            if (!records || records->empty()) {
                *saved = false;
                return;
            }
            for (const CloudRecord &record : *records)
                container.privateCloudDatabase().deleteRecord(
                    record.recordID(),
                    onMainThread<CloudRecordID>([saved](const CloudAnswer<CloudRecordID> &deleted) {
                        *saved = *saved && !isError(deleted);
                    }));
        }));
    return *saved;
}

bool CloudSync::updateFromCloud()
{
    using Records = std::vector<CloudRecord>;
    const Saved saved = std::make_shared<bool>(true);
    checkCloudAccount(saved);
    container.privateCloudDatabase().performQuery(
        {taskRecordType().name}, onMainThread<Records>([this, saved](CloudAnswer<Records> &answer) {
            auto *records = std::get_if<Records>(&answer);
            if (records && !records->empty())
                goOnMerging(std::make_shared<CloudMerge>(manager, std::move(*records)), saved);
            else
                *saved = false;
        }));
    return *saved;
}

void CloudSync::goOnMerging(const std::shared_ptr<CloudMerge> &merge, const Saved &saved)
{
    if (merge->mergeSome()) {
        mainThread->post([this, merge, saved] { goOnMerging(merge, saved); });
        return;
    }
    notices.post(notice::reload);
    if (*saved)
        manager.lastMessage = u"----iCloud:Update Complete!----"_s;
    notices.post(notice::update);
}
