#include "platform/ProtectedFile.h"

#include "platform/FileDescriptor.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>

#include <zlib.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t userOnly = 0600;
constexpr mode_t byUmask = 0666;

quint32 crcOf(QByteArrayView bytes)
{
    return quint32(crc32_z(0, reinterpret_cast<const Bytef *>(bytes.data()), size_t(bytes.size())));
}

/// The redo file's first line: its kind and version, the content's length in bytes and its CRC-32.
QByteArray redoHeader(qsizetype size, quint32 crc)
{
    return "quorvane-redo 1 " + QByteArray::number(size) + ' ' + QByteArray::number(crc, 16) + '\n';
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
    if (redo->first(headerEnd) != redoHeader(content.size(), crcOf(content)))
        return std::nullopt;
    return content;
}

/// Makes a change of the folder's entries last.
bool syncFolder(const QString &path)
{
    const FileDescriptor folder(path, O_RDONLY | O_DIRECTORY);
    return folder.isOpen() && folder.sync();
}

/// Tells files of the same name in different folders apart.
QString redoName(const QString &path)
{
    const quint32 folderMark = crcOf(QFileInfo(path).absoluteFilePath().toUtf8());
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
    held.reset();
    if (std::optional<QByteArray> unfinished = redoContent(redoPath))
        return unfinished;
    lastSeen = presentState(); // before it is read: a change in between is somebody else's
    std::optional<QByteArray> content = readAll(filePath);
    if (content)
        held = digestOf(*content);
    else if (QFileInfo::exists(filePath))
        keepCopy();
    return content;
}

bool ProtectedFile::write(QByteArrayView content)
{
    const std::optional<Digest> known = std::exchange(held, std::nullopt);
    const Digest wanted = digestOf(content);
    const bool isSame = !copyDue && known == wanted && presentState() == lastSeen;
    if (!isSame) {
        if (!writeRedo(content, wanted))
            return false;
        if ((copyDue || isChangedByOthers(known)) && QFileInfo::exists(filePath) && !copyAside())
            return false;
        copyDue = false;
    }
    const bool written = writeInPlace(content);
    lastSeen = presentState();
    if (!written)
        return false;
    held = wanted;
    if (!isSame)
        QFile::remove(redoPath);
    return true;
}

ProtectedFile::Digest ProtectedFile::digestOf(QByteArrayView content)
{
    return {.size = content.size(), .crc = crcOf(content)};
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

/// A file that was merely touched is not changed.
bool ProtectedFile::isChangedByOthers(const std::optional<Digest> &known) const
{
    if (presentState() == lastSeen)
        return false;
    const std::optional<QByteArray> present = readAll(filePath);
    return !present || !known || digestOf(*present) != *known;
}

/// Keeps the reason for which the system just refused something; always false.
bool ProtectedFile::fail()
{
    error = QString::fromStdString(std::generic_category().message(errno));
    return false;
}

bool ProtectedFile::copyAside()
{
    // A second copy within one second takes the next free second.
    QDateTime time = QDateTime::currentDateTime();
    QString copyPath;
    do {
        copyPath =
            filePath + QLatin1StringView(".damaged-") + time.toString(QStringLiteral("yyyyMMdd-HHmmss"));
        time = time.addSecs(1);
    } while (QFileInfo::exists(copyPath));
    QFile file(filePath);
    if (!file.copy(copyPath)) {
        error = copyPath + u": "_s + file.errorString();
        return false;
    }
    copiedTo = copyPath;
    const FileDescriptor copy(copyPath, O_RDONLY);
    return (copy.isOpen() && copy.sync() && syncFolder(QFileInfo(copyPath).path())) || fail();
}

bool ProtectedFile::writeRedo(QByteArrayView content, const Digest &digest)
{
    // An earlier redo file may be the only good copy: it stays until the new one is whole.
    if (!QDir().mkpath(stateFolder))
        return fail();
    const QString newPath = redoPath + QLatin1StringView(".new");
    FileDescriptor file(newPath, O_WRONLY | O_CREAT | O_TRUNC, userOnly);
    const bool whole = file.isOpen() && file.write(redoHeader(digest.size, digest.crc)) &&
                       file.write(content) && file.sync() && file.close() &&
                       ::rename(QFile::encodeName(newPath), QFile::encodeName(redoPath)) == 0 &&
                       syncFolder(stateFolder);
    if (whole)
        return true;
    fail();
    QFile::remove(newPath);
    return false;
}

bool ProtectedFile::writeInPlace(QByteArrayView content)
{
    const QFileInfo info(filePath);
    const bool isNew = !info.exists();
    if (isNew && !QDir().mkpath(info.path()))
        return fail();
    FileDescriptor file(filePath, O_WRONLY | O_CREAT, byUmask);
    // Room is taken before the first byte is overwritten, so that a full disk leaves the old content whole.
    return (file.isOpen() && file.reserve(content.size()) && file.write(content) &&
            file.truncate(content.size()) && file.sync() && file.close() &&
            (!isNew || syncFolder(info.path()))) ||
           fail();
}
