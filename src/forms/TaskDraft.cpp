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

void write(QDataStream &stream, const task &entry)
{
    const Color &color = entry.color;
    stream << fileFormat << qint64(entry.date.time_since_epoch().count()) << entry.name << entry.desc
           << entry.client << entry.teamMember << color.red << color.green << color.blue << color.alpha
           << qint64(entry.due.time_since_epoch().count()) << entry.status << entry.priority
           << entry.statusName << entry.priorityName << entry.startHour << entry.startMin << entry.endHour
           << entry.endMin;
}

QByteArray written(const QList<task> &entries)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    for (const task &entry : entries)
        write(stream, entry);
    return bytes;
}

/// The next task, unless the file was damaged or written by another version of the program.
std::optional<task> read(QDataStream &stream)
{
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
    const bool isWhole = stream.status() == QDataStream::Ok && format == fileFormat;
    return isWhole ? std::optional(entry) : std::nullopt;
}

QList<task> readAll(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    QList<task> entries;
    while (!stream.atEnd()) {
        const std::optional<task> entry = read(stream);
        if (!entry)
            break;
        entries.append(*entry);
    }
    return entries;
}

} // namespace

std::optional<task> TaskDraft::begun()
{
    if (!std::exchange(isRead, true))
        kept = readAll(readWholeFile(filePath).value_or(QByteArray()));
    if (kept.isEmpty())
        return std::nullopt;
    task entry = kept.constLast();
    entry.color = storedOrHeld(entry.color, isDarkMode());
    return entry;
}

void TaskDraft::keep(const task &entry)
{
    constexpr qsizetype most = 20;
    begun(); // so that those of the file stay
    kept.append(entry);
    kept.last().color = storedOrHeld(entry.color, isDarkMode());
    if (kept.size() > most)
        kept.removeFirst();
    store();
}

void TaskDraft::discard()
{
    if (!begun())
        return;
    kept.removeLast();
    store();
}

void TaskDraft::store() const
{
    if (kept.isEmpty())
        QFile::remove(filePath);
    else if (!replaceWholeFile(filePath, written(kept)))
        diagnostics::line("Begun task kept until the program ends only");
}
