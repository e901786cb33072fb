#include "platform/RedoFile.h"

#include "platform/FileDescriptor.h"
#include "platform/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <zlib.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

using namespace Qt::StringLiterals;

static constexpr mode_t userOnly = 0600;
static constexpr int hexadecimal = 16;

/// \param before  CRC-32 of what comes before the bytes
static quint32 crcOf(QByteArrayView bytes, quint32 before = 0)
{
    return quint32(crc32_z(before, reinterpret_cast<const Bytef *>(bytes.data()), size_t(bytes.size())));
}

redoFile::Digest redoFile::digestOf(QByteArrayView content)
{
    return {.size = content.size(), .crc = crcOf(content)};
}

QString redoFile::pathFor(const QString &path, const QString &stateFolder)
{
    // The number tells files of the same name in different folders apart.
    const QFileInfo file(path);
    return stateFolder + u'/' + file.fileName() + u'.' +
           QString::number(crcOf(file.absoluteFilePath().toUtf8()), 16) + u".redo"_s;
}

static std::optional<redoFile::Redo> parse(const QByteArray &bytes)
{
    const qsizetype headerEnd = bytes.indexOf('\n') + 1;
    const QByteArrayView rest = QByteArrayView(bytes).sliced(headerEnd);
    const QList<QByteArray> header = bytes.first(headerEnd).trimmed().split(' ');
    const bool isFirstVersion = header.size() == 4 && header[1] == "1";
    if (header.first() != "quorvane-redo" || !(isFirstVersion || (header.size() == 7 && header[1] == "2")))
        return std::nullopt;
    const qlonglong pathSize = isFirstVersion ? 0 : header[4].toLongLong();
    const qsizetype beforeCrc = isFirstVersion ? 0 : bytes.lastIndexOf(' ', headerEnd - 1) + 1;
    if (pathSize < 0 || pathSize > rest.size() ||
        header[header.size() - 2].toLongLong() != rest.size() - pathSize ||
        header.last().toUInt(nullptr, hexadecimal) != crcOf(rest, crcOf(bytes.first(beforeCrc))))
        return std::nullopt;
    redoFile::Redo redo{.path = QFile::decodeName(rest.first(pathSize).toByteArray()),
                        .content = rest.sliced(pathSize).toByteArray()};
    if (!isFirstVersion)
        redo.replaced = {.size = header[2].toLongLong(), .crc = header[3].toUInt(nullptr, hexadecimal)};
    return redo;
}

std::optional<redoFile::Redo> redoFile::read(const QString &redoPath, bool *isBroken)
{
    const std::optional<QByteArray> bytes = readWholeFile(redoPath);
    std::optional<Redo> redo = bytes ? parse(*bytes) : std::nullopt;
    if (isBroken)
        *isBroken = bytes && !redo;
    return redo;
}

static bool isLocked(const QString &path)
{
    if (!QFileInfo::exists(path))
        return false;
    const FileDescriptor file(path, O_RDWR);
    return file.isOpen() && !file.lock();
}

bool redoFile::isInUse(const QString &redoPath)
{
    return isLocked(redoPath) || isLocked(redoPath + unfinished);
}

std::unique_ptr<FileDescriptor> redoFile::write(const QString &redoPath, const QString &path,
                                                const Digest &replaced, QByteArrayView content,
                                                const Digest &digest)
{
    const QString folder = QFileInfo(redoPath).path();
    if (!QDir().mkpath(folder))
        return nullptr;
    if (isInUse(redoPath)) {
        errno = EBUSY;
        return nullptr;
    }
    const QByteArray name = QFile::encodeName(QFileInfo(path).absoluteFilePath());
    const QByteArray numbers = QByteArrayList{"quorvane-redo 2",
                                              QByteArray::number(replaced.size),
                                              QByteArray::number(replaced.crc, hexadecimal),
                                              QByteArray::number(name.size()),
                                              QByteArray::number(digest.size),
                                              QByteArray()}
                                   .join(' ');
    const auto crc = quint32(crc32_combine(crcOf(numbers + name), digest.crc, digest.size));
    const QString newPath = redoPath + unfinished;
    auto file = std::make_unique<FileDescriptor>(newPath, O_WRONLY | O_CREAT | O_TRUNC, userOnly);
    const bool isWritten = file->isOpen() && file->lock() &&
                           file->write(numbers + QByteArray::number(crc, hexadecimal) + '\n' + name) &&
                           file->write(content) && file->sync() &&
                           ::rename(QFile::encodeName(newPath), QFile::encodeName(redoPath)) == 0 &&
                           syncFolder(folder);
    if (!isWritten) {
        const int reason = errno;
        QFile::remove(newPath);
        errno = reason;
        return nullptr;
    }
    return file;
}
