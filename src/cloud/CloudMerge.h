#pragma once

#include "cloud/CloudDatabase.h"
#include "model/task.h"

#include <QHash>
#include <QSet>

class TaskManager;

/// Merges fetched records into the task manager's list, some at a time.
class CloudMerge
{
public:
    CloudMerge(TaskManager &manager, std::vector<CloudRecord> records);

    /// Merges the next few records, but for tasks that the user has deleted; false when there are none left.
    bool mergeSome(const QSet<QString> &deletedKeys);
    qint64 merged() const { return qint64(next); }

private:
    void merge(const task &fetched);
    void findKeys();

    TaskManager &manager;
    std::vector<CloudRecord> records;
    size_t next = 0;
    /// The last task of each key in the working list, as it was at the end of the last call.
    QHash<QString, qint64> lastOfKey;
    qint64 seenChanges = 0;
    qint64 seenLoads;
};
