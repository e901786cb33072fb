#pragma once

#include "model/task.h"

/// Tasks of about the size that a small business has: rows of some 180 bytes, in no order of any column.
TaskList sampleTasks(qsizetype count);

/// The same tasks as the text of a task list file.
QByteArray sampleText(qsizetype count);
