#pragma once

#include "model/task.h"

/// Finds a text in tasks, whatever the case: both are lower-cased by Unicode's default mapping.
class TaskSearch
{
public:
    explicit TaskSearch(const QString &text);

    /// True when name, description, client or team member holds the text.
    bool matches(const task &entry);
    /// The matching tasks in their order.
    TaskList matchesIn(const TaskList &tasks);

private:
    bool isIn(const QString &field);

    QString lowered;
    QByteArray loweredLatin1; ///< null when the text has other characters
    QByteArray fieldLatin1;   ///< scratch, kept to save its memory from field to field
};
