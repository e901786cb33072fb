#include "platform/ProtectedFile.h"

#include "platform/FileDescriptor.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>

#include <zlib.h>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr mode_t userOnly = 0600;
constexpr mode_t byUmask = 0666;

/// The redo file's first line: its kind and version, the content's length in bytes and its CRC-32.
QByteArray redoHeader(QByteArrayView content)
{
    const uLong checksum =
        crc32_z(0, reinterpret_cast<const Bytef *>(content.data()), size_t(content.size()));
    return "quorvane-redo 1 " + QByteArray::number(content.size()) + ' ' + QByteArray::number(checksum, 16) +
           '\n';
}

std::optional<QByteArray> readAll(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(content) : std::nullopt;
}

/// The content of a redo file; nothing when there is none or it is incomplete.
std::optional<QByteArray> redoContent(const QString &path)
{
    const std::optional<QByteArray> redo = readAll(path);
    if (!redo)
        return std::nullopt;
    const qsizetype headerEnd = redo->indexOf('\n') + 1;
    const QByteArray content = redo->sliced(headerEnd);
    if (redo->first(headerEnd) != redoHeader(content))
        return std::nullopt;
    return content;
}

/// Makes a change of the folder's entries last.
bool syncFolder(const QString &path)
{
    const FileDescriptor folder(path, O_RDONLY | O_DIRECTORY);
    return folder.isOpen() && folder.sync();
}

/// Distinguishes files of one name in different folders.
QString redoName(const QString &path)
{
    const QByteArray absolute = QFileInfo(path).absoluteFilePath().toUtf8();
    const uLong folderMark =
        crc32_z(0, reinterpret_cast<const Bytef *>(absolute.data()), size_t(absolute.size()));
    return QFileInfo(path).fileName() + u'.' + QString::number(folderMark, 16) + QLatin1StringView(".redo");
}

} // namespace

ProtectedFile::ProtectedFile(const QString &path, const QString &redoFolder)
    : filePath(path)
    , stateFolder(redoFolder)
    , redoPath(redoFolder + u'/' + redoName(path))
{
    replay();
}

void ProtectedFile::replay()
{
    if (const std::optional<QByteArray> content = redoContent(redoPath)) {
        const QFileInfo info(filePath);
        if (info.exists() && !info.isWritable())
            return;
        const std::optional<QByteArray> present = readAll(filePath);
        if (present != content) {
            const bool isWorthACopy = info.exists() && !(present && present->isEmpty());
            if ((isWorthACopy && !copyAside()) || !writeInPlace(*content))
                return;
        }
    } else if (!QFileInfo(redoPath).isReadable()) {
        return;
    }
    QFile::remove(redoPath);
}

std::optional<QByteArray> ProtectedFile::read()
{
    if (std::optional<QByteArray> unfinished = redoContent(redoPath))
        return unfinished;
    lastSeen = presentState(); // before it is read: a change in between is somebody else's
    std::optional<QByteArray> content = readAll(filePath);
    if (!content && QFileInfo::exists(filePath))
        keepCopy();
    return content;
}

bool ProtectedFile::writeAgain(QByteArrayView content)
{
    if (!isSettled || copyDue || presentState() != lastSeen)
        return write(content);
    isSettled = writeInPlace(content);
    lastSeen = presentState();
    return isSettled;
}

bool ProtectedFile::write(QByteArrayView content)
{
    isSettled = false;
    if (!writeRedo(content))
        return false;
    const bool isForeign = presentState() != lastSeen;
    if ((copyDue || isForeign) && QFileInfo::exists(filePath) && !copyAside())
        return false;
    copyDue = false;
    const bool written = writeInPlace(content);
    lastSeen = presentState();
    if (written)
        QFile::remove(redoPath);
    isSettled = written;
    return written;
}

ProtectedFile::State ProtectedFile::presentState() const
{
    struct stat entry = {};
    if (::stat(QFile::encodeName(filePath).constData(), &entry) != 0)
        return {};
    return {.inode = entry.st_ino,
            .size = entry.st_size,
            .modified = {entry.st_mtim.tv_sec, entry.st_mtim.tv_nsec}};
}

bool ProtectedFile::copyAside() const
{
    // A second copy within one second takes the next free second.
    QDateTime time = QDateTime::currentDateTime();
    QString copyPath;
    do {
        copyPath =
            filePath + QLatin1StringView(".damaged-") + time.toString(QStringLiteral("yyyyMMdd-HHmmss"));
        time = time.addSecs(1);
    } while (QFileInfo::exists(copyPath));
    return QFile::copy(filePath, copyPath) && FileDescriptor(copyPath, O_RDONLY).sync() &&
           syncFolder(QFileInfo(copyPath).path());
}

bool ProtectedFile::writeRedo(QByteArrayView content) const
{
    // An earlier redo file may be the only good copy: it stays until the new one is whole.
    if (!QDir().mkpath(stateFolder))
        return false;
    const QString newPath = redoPath + QLatin1StringView(".new");
    FileDescriptor file(newPath, O_WRONLY | O_CREAT | O_TRUNC, userOnly);
    const bool whole = file.isOpen() && file.write(redoHeader(content)) && file.write(content) &&
                       file.sync() && file.close() &&
                       ::rename(QFile::encodeName(newPath), QFile::encodeName(redoPath)) == 0 &&
                       syncFolder(stateFolder);
    if (!whole)
        QFile::remove(newPath);
    return whole;
}

bool ProtectedFile::writeInPlace(QByteArrayView content) const
{
    const QFileInfo info(filePath);
    const bool isNew = !info.exists();
    if (isNew && !QDir().mkpath(info.path()))
        return false;
    FileDescriptor file(filePath, O_WRONLY | O_CREAT, byUmask);
    // Room is taken before the first byte is overwritten, so that a full disk leaves the old content whole.
    return file.isOpen() && file.reserve(content.size()) && file.write(content) &&
           file.truncate(content.size()) && file.sync() && file.close() &&
           (!isNew || syncFolder(info.path()));
}
