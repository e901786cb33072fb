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

quint32 redoFile::crcOf(QByteArrayView bytes)
{
    return quint32(crc32_z(0, reinterpret_cast<const Bytef *>(bytes.data()), size_t(bytes.size())));
}

QString redoFile::pathFor(const QString &path, const QString &stateFolder)
{
    // The number tells files of the same name in different folders apart.
    const QFileInfo file(path);
    return stateFolder + u'/' + file.fileName() + u'.' +
           QString::number(crcOf(file.absoluteFilePath().toUtf8()), 16) + u".redo"_s;
}

std::optional<redoFile::Redo> redoFile::read(const QString &redoPath)
{
    const std::optional<QByteArray> bytes = readWholeFile(redoPath);
    if (!bytes)
        return std::nullopt;
    const qsizetype headerEnd = bytes->indexOf('\n') + 1;
    const QByteArrayView rest = QByteArrayView(*bytes).sliced(headerEnd);
    const QList<QByteArray> header = bytes->first(headerEnd).trimmed().split(' ');
    const bool hasPath = header.size() == 5 && header[1] == "2";
    if (header.first() != "quorvane-redo" || (!hasPath && (header.size() != 4 || header[1] != "1")))
        return std::nullopt;
    const qlonglong pathSize = hasPath ? header[2].toLongLong() : 0;
    const qlonglong size = header[header.size() - 2].toLongLong();
    if (pathSize < 0 || pathSize > rest.size() || size != rest.size() - pathSize ||
        header.last().toUInt(nullptr, 16) != crcOf(rest))
        return std::nullopt;
    return Redo{.path = QFile::decodeName(rest.first(pathSize).toByteArray()),
                .content = rest.sliced(pathSize).toByteArray()};
}

bool redoFile::write(const QString &redoPath, const QString &path, QByteArrayView content, quint32 crc)
{
    const QString folder = QFileInfo(redoPath).path();
    if (!QDir().mkpath(folder))
        return false;
    const QByteArray name = QFile::encodeName(QFileInfo(path).absoluteFilePath());
    const auto crcOfBoth = quint32(crc32_combine(crcOf(name), crc, content.size()));
    const QByteArray header = "quorvane-redo 2 " + QByteArray::number(name.size()) + ' ' +
                              QByteArray::number(content.size()) + ' ' + QByteArray::number(crcOfBoth, 16) +
                              '\n';
    const QString newPath = redoPath + u".new"_s;
    FileDescriptor file(newPath, O_WRONLY | O_CREAT | O_TRUNC, userOnly);
    const bool isWritten =
        file.isOpen() && file.write(header + name) && file.write(content) && file.sync() && file.close() &&
        ::rename(QFile::encodeName(newPath), QFile::encodeName(redoPath)) == 0 && syncFolder(folder);
    if (!isWritten) {
        const int reason = errno;
        QFile::remove(newPath);
        errno = reason;
    }
    return isWritten;
}
