#include "model/task.h"

#include "platform/Diagnostics.h"

#include <QUuid>

#include <tuple>

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

bool haveEqualFields(const task &a, const task &b)
{
    const auto fields = [](const task &entry) {
        const auto &[key, date, name, desc, client, teamMember, color, due, status, priority, statusName,
                     priorityName, hidden, startHour, startMin, endHour, endMin] = entry;
        return std::tie(key, date, name, desc, client, teamMember, color, due, status, priority, statusName,
                        priorityName, hidden, startHour, startMin, endHour, endMin);
    };
    return fields(a) == fields(b);
}
