#include "model/task.h"

#include "platform/Diagnostics.h"

void appendItem(QByteArray &line, const TaskList &tasks)
{
    line += '[';
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        if (i > 0)
            line += ", ";
        diagnostics::appendItem(line, tasks[i]->key);
    }
    line += ']';
}
