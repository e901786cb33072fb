#pragma once

#include "model/TaskManager.h"

/// Tasks of about the size that a small business has: rows of some 180 bytes, in no order of any column.
TaskList sampleTasks(qsizetype count);

/// Makes the manager's list such tasks.
void loadSample(TaskManager &manager, qsizetype count);

/// The same tasks as the text of a task list file.
QByteArray sampleText(qsizetype count);
