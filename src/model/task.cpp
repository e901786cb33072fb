#include "model/task.h"

#include "platform/Diagnostics.h"

#include <QUuid>

QString newKey()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

void appendItem(QByteArray &line, const task &entry)
{
    diagnostics::appendItem(line, entry.key);
    line += ' ';
    diagnostics::appendItem(line, entry.name);
}

void appendItem(QByteArray &line, const TaskList &tasks)
{
    QList<QStringView> keys;
    keys.reserve(tasks.size());
    for (const SharedTask &entry : tasks)
        keys.append(entry->key);
    diagnostics::appendItem(line, keys);
}
