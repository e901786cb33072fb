#include "forms/TaskDraft.h"

#include "model/Appearance.h"
#include "platform/Diagnostics.h"
#include "platform/WholeFile.h"

#include <QDataStream>
#include <QFile>
#include <QIODevice>

namespace {

constexpr qint32 fileFormat = 1;

Instant instant(qint64 milliseconds)
{
    return Instant(std::chrono::milliseconds(milliseconds));
}

QByteArray written(const task &entry)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    const Color &color = entry.color;
    stream << fileFormat << qint64(entry.date.time_since_epoch().count()) << entry.name << entry.desc
           << entry.client << entry.teamMember << color.red << color.green << color.blue << color.alpha
           << qint64(entry.due.time_since_epoch().count()) << entry.status << entry.priority
           << entry.statusName << entry.priorityName << entry.startHour << entry.startMin << entry.endHour
           << entry.endMin;
    return bytes;
}

/// The task, unless the file was damaged or written by another version of the program.
std::optional<task> read(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    task entry;
    Color &color = entry.color;
    qint32 format = 0;
    qint64 date = 0;
    qint64 due = 0;
    stream >> format >> date >> entry.name >> entry.desc >> entry.client >> entry.teamMember >> color.red >>
        color.green >> color.blue >> color.alpha >> due >> entry.status >> entry.priority >>
        entry.statusName >> entry.priorityName >> entry.startHour >> entry.startMin >> entry.endHour >>
        entry.endMin;
    entry.date = instant(date);
    entry.due = instant(due);
    const bool isWhole = stream.status() == QDataStream::Ok && stream.atEnd() && format == fileFormat;
    return isWhole ? std::optional(entry) : std::nullopt;
}

} // namespace

std::optional<task> TaskDraft::begun()
{
    if (!std::exchange(isRead, true))
        kept = read(readWholeFile(filePath).value_or(QByteArray()));
    std::optional<task> entry = kept;
    if (entry)
        entry->color = storedOrHeld(entry->color, isDarkMode());
    return entry;
}

void TaskDraft::keep(const task &entry)
{
    isRead = true;
    kept = entry;
    kept->color = storedOrHeld(entry.color, isDarkMode());
    if (!replaceWholeFile(filePath, written(*kept)))
        diagnostics::line("Begun task kept until the program ends only");
}

void TaskDraft::discard()
{
    isRead = true;
    kept.reset();
    QFile::remove(filePath);
}
