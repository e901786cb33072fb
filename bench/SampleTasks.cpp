#include "SampleTasks.h"

#include "taskfile/TaskRowWriter.h"

#include <QUuid>

#include <random>

using namespace Qt::StringLiterals;

TaskList sampleTasks(qsizetype count)
{
    static const QStringList works = {u"Mow lawn"_s,    u"Trim hedge"_s,  u"Repair roof garden"_s,
                                      u"Clean pond"_s,  u"Plant roses"_s, u"Write invoice"_s,
                                      u"Order mulch"_s, u"Prune pear"_s};
    static const QStringList clients = {u"Okafor"_s,    u"Hotel Bellevue"_s,    u"M\u00fcller"_s,
                                        u"Lindqvist"_s, u"St. Anne's School"_s, u"UnAssigned"_s};
    static const QStringList team = {u"Anna"_s, u"J\u00f6rg"_s, u"Tomasz"_s, u"UnAssigned"_s};
    static const QStringList priorities = {u"None"_s, u"Low"_s, u"Medium"_s, u"High"_s};
    static const Color colors[] = {
        {1.0, 0.85, 0.6, 1.0}, {0.8, 0.92, 0.65, 1.0}, {0.65882352941176, 0.8, 0.95, 1.0}};

    const Calendar calendar;
    std::mt19937 random(20240307);
    const auto below = [&random](int limit) {
        return int(random() % unsigned(limit));
    };
    TaskList tasks;
    tasks.reserve(count);
    for (qsizetype i = 0; i < count; ++i) {
        task entry;
        entry.key =
            QUuid::createUuidV5(QUuid(), QByteArray::number(i)).toString(QUuid::WithoutBraces).toUpper();
        entry.date = calendar.startOfDay(QDate(2025, 1, 1).addDays(below(700)));
        entry.due = entry.date + std::chrono::days(below(30));
        entry.name = works[below(8)] + u' ' + QString::number(below(100'000));
        entry.desc = u"Second gate on the left, key "_s + QString::number(below(10'000)) + u" hangs inside"_s;
        entry.client = clients[below(6)];
        entry.teamMember = team[below(4)];
        entry.color = colors[below(3)];
        entry.status = below(3) == 0 ? taskStatus::closed : taskStatus::open;
        entry.statusName = entry.status == taskStatus::closed ? taskStatus::closedName : u"Open"_s;
        entry.priority = below(4);
        entry.priorityName = priorities[entry.priority];
        entry.startHour = 7 + below(6);
        entry.startMin = 15 * below(4);
        entry.endHour = 13 + below(6);
        entry.hidden = below(50) == 0;
        tasks.append(entry);
    }
    return tasks;
}

void loadSample(TaskManager &manager, qsizetype count)
{
    manager.load([&] {
        for (const SharedTask &entry : sampleTasks(count))
            manager.addTask(*entry);
    });
}

QByteArray sampleText(qsizetype count)
{
    TaskRowWriter writer(u'|', u'^');
    QByteArray text;
    const TaskList tasks = sampleTasks(count);
    for (const SharedTask &entry : tasks)
        writer.append(text, *entry, entry->color);
    return text;
}
