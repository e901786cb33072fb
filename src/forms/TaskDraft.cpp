#include "forms/TaskDraft.h"

#include "model/Appearance.h"
#include "platform/Diagnostics.h"
#include "platform/RedoFile.h"
#include "platform/WholeFile.h"

#include <QDataStream>
#include <QDateTime>
#include <QFile>
#include <QIODevice>

#include <cerrno>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 unchecked = 1; ///< format of a task without checksum
constexpr qint32 checked = 2;

Instant instant(qint64 milliseconds)
{
    return Instant(std::chrono::milliseconds(milliseconds));
}

void write(QDataStream &stream, const task &entry)
{
    const Color &color = entry.color;
    stream << qint64(entry.date.time_since_epoch().count()) << entry.name << entry.desc << entry.client
           << entry.teamMember << color.red << color.green << color.blue << color.alpha
           << qint64(entry.due.time_since_epoch().count()) << entry.status << entry.priority
           << entry.statusName << entry.priorityName << entry.startHour << entry.startMin << entry.endHour
           << entry.endMin;
}

/// \param fill  is given the stream
QByteArray written(const auto &fill)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    fill(stream);
    return bytes;
}

QByteArray written(const QList<task> &entries)
{
    return written([&](QDataStream &stream) {
        for (const task &entry : entries) {
            const QByteArray fields = written([&](QDataStream &inner) { write(inner, entry); });
            stream << checked << fields << redoFile::digestOf(fields).crc;
        }
    });
}

std::optional<task> readFields(QDataStream &stream)
{
    task entry;
    Color &color = entry.color;
    qint64 date = 0;
    qint64 due = 0;
    stream >> date >> entry.name >> entry.desc >> entry.client >> entry.teamMember >> color.red >>
        color.green >> color.blue >> color.alpha >> due >> entry.status >> entry.priority >>
        entry.statusName >> entry.priorityName >> entry.startHour >> entry.startMin >> entry.endHour >>
        entry.endMin;
    entry.date = instant(date);
    entry.due = instant(due);
    return stream.status() == QDataStream::Ok ? std::optional(entry) : std::nullopt;
}

/// The next task; nothing when it is damaged or of another version of the program. Behind a task of which
/// only the fields are damaged the stream can be read on.
std::optional<task> readNext(QDataStream &stream)
{
    qint32 format = 0;
    stream >> format;
    if (format == unchecked)
        return readFields(stream);
    QByteArray fields;
    quint32 crc = 0;
    stream >> fields >> crc;
    if (format != checked)
        stream.setStatus(QDataStream::ReadCorruptData);
    if (stream.status() != QDataStream::Ok || crc != redoFile::digestOf(fields).crc)
        return std::nullopt;
    QDataStream inner(fields);
    inner.setVersion(QDataStream::Qt_6_4);
    return readFields(inner);
}

} // namespace

/// What cannot be read is skipped, and the file set aside.
void TaskDraft::read()
{
    const std::optional<QByteArray> bytes = readWholeFile(filePath);
    bool isWhole = bytes || errno == ENOENT;
    QDataStream stream(bytes.value_or(QByteArray()));
    stream.setVersion(QDataStream::Qt_6_4);
    while (!stream.atEnd() && stream.status() == QDataStream::Ok) {
        const std::optional<task> entry = readNext(stream);
        isWhole = isWhole && entry;
        if (entry)
            kept.append(*entry);
    }
    if (isWhole)
        return;
    asidePath = filePath + QDateTime::currentDateTime().toString(u"'.damaged-'yyyyMMdd-HHmmss"_s);
    if (QFile::rename(filePath, asidePath))
        store();
    else
        asidePath = filePath;
}

std::optional<task> TaskDraft::begun()
{
    if (!std::exchange(isRead, true))
        read();
    if (kept.isEmpty())
        return std::nullopt;
    task entry = kept.constLast();
    entry.color = storedOrHeld(entry.color, isDarkMode());
    return entry;
}

void TaskDraft::append(const task &entry)
{
    constexpr qsizetype most = 20;
    kept.append(entry);
    kept.last().color = storedOrHeld(entry.color, isDarkMode());
    if (kept.size() > most)
        kept.removeFirst();
}

bool TaskDraft::keep(const task &entry)
{
    begun(); // so that those of the file stay
    append(entry);
    inHand.reset();
    return store();
}

std::optional<task> TaskDraft::takeUp(const std::optional<task> &instead)
{
    const std::optional<task> taken = begun();
    if (!taken)
        return std::nullopt;
    const std::pair before(kept, inHand);
    inHand = kept.takeLast();
    if (!instead)
        return taken; // and the file has it
    append(*instead);
    if (store())
        return taken;
    std::tie(kept, inHand) = before;
    return std::nullopt;
}

void TaskDraft::letGo()
{
    if (!inHand)
        return;
    inHand.reset();
    store();
}

void TaskDraft::discard()
{
    if (!begun())
        return;
    kept.removeLast();
    store();
}

bool TaskDraft::store()
{
    QList<task> all = kept;
    if (inHand)
        all.append(*inHand);
    const bool isStored = all.isEmpty() ? QFile::remove(filePath) || !QFile::exists(filePath)
                                        : replaceWholeFile(filePath, written(all));
    error = isStored ? QString() : qt_error_string(errno);
    if (!isStored)
        diagnostics::line("Begun tasks not stored:", error);
    return isStored;
}
