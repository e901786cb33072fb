#pragma once

#include "cloud/CloudDatabase.h"
#include "model/task.h"

#include <QHash>

class TaskManager;

/// Merges fetched records into the task manager's list, some at a time.
class CloudMerge
{
public:
    CloudMerge(TaskManager &manager, std::vector<CloudRecord> records);

    /// Merges the next few records; false when there are none left.
    bool mergeSome();

private:
    void merge(const CloudRecord &record);
    void findKeys();

    TaskManager &manager;
    std::vector<CloudRecord> records;
    size_t next = 0;
    /// The last task of each key in the working list, as it was at the end of the last call.
    QHash<QString, qint64> lastOfKey;
    qint64 seenChanges = 0;
    bool isDark;
};
