#include "platform/ProtectedFile.h"

#include "platform/FileDescriptor.h"
#include "platform/WholeFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

static constexpr mode_t byUmask = 0666;

ProtectedFile::ProtectedFile(const QString &path, const QString &redoFolder)
    : filePath(path)
    , stateFolder(redoFolder)
    , redoPath(redoFile::pathFor(path, redoFolder))
{
    replay();
}

QStringList ProtectedFile::replayAll(const QString &stateFolder)
{
    QStringList copies;
    QDir folder(stateFolder);
    for (const QString &name : folder.entryList({u"*.redo.new"_s}, QDir::Files))
        folder.remove(name); // never became whole
    for (const QString &name : folder.entryList({u"*.redo"_s}, QDir::Files))
        if (const auto redo = redoFile::read(folder.filePath(name)); redo && !redo->path.isEmpty())
            if (const QString copy = ProtectedFile(redo->path, stateFolder).takeCopyPath(); !copy.isEmpty())
                copies.append(copy);
    return copies;
}

void ProtectedFile::replay()
{
    const std::optional<redoFile::Redo> redo = redoFile::read(redoPath);
    if (!redo) {
        if (QFileInfo(redoPath).isReadable())
            QFile::remove(redoPath); // not whole: the file itself was not touched
        return;
    }
    const QFileInfo info(filePath);
    if (info.exists() && !info.isWritable())
        return;
    const std::optional<QByteArray> present = readWholeFile(filePath);
    if (present != redo->content) {
        const bool isUntouched =
            present && (present->isEmpty() || redoFile::digestOf(*present) == redo->replaced);
        const bool isWorthACopy = info.exists() && !isUntouched;
        const bool isDone = present && isWorthACopy && isOvertaken(redoPath)
                                ? keepAside(redo->content)
                                : (!isWorthACopy || copyAside()) && writeInPlace(redo->content, true);
        if (!isDone)
            return;
    }
    QFile::remove(redoPath);
}

static QString systemText(int error)
{
    return QString::fromStdString(std::generic_category().message(error));
}

/// Whether a link on the way to the file leads nowhere, as when a disk is not mounted.
static bool isBehindBrokenLink(const QString &path)
{
    QFileInfo part(path);
    while (!part.exists() && !part.isSymLink() && !part.isRoot())
        part.setFile(part.absolutePath());
    return part.isSymLink() && !part.exists();
}

/// Whether somebody else has written the file since the redo file was made. What the program itself has
/// written half may be that much newer as writing takes at most.
bool ProtectedFile::isOvertaken(const QString &byWhich) const
{
    constexpr qint64 longestWrite = 60; // seconds
    return QFileInfo(byWhich).lastModified().secsTo(QFileInfo(filePath).lastModified()) > longestWrite;
}

std::optional<QByteArray> ProtectedFile::read()
{
    held.reset();
    if (const std::optional<redoFile::Redo> unfinished = redoFile::read(redoPath))
        return unfinished->content;
    lastSeen = presentState(); // before it is read: a change in between is somebody else's
    std::optional<QByteArray> content = readWholeFile(filePath);
    const int reason = errno;
    unreadable.clear();
    if (content) {
        held = redoFile::digestOf(*content);
        copyDue = false; // unless whoever reads it finds something wrong again
    } else if (reason != ENOENT || isBehindBrokenLink(filePath)) {
        unreadable = systemText(reason);
    }
    if (!content && QFileInfo::exists(filePath))
        keepCopy();
    return content;
}

bool ProtectedFile::write(QByteArrayView content)
{
    const std::optional<Digest> known = std::exchange(held, std::nullopt);
    const Digest wanted = redoFile::digestOf(content);
    const bool isSame = !copyDue && known == wanted && presentState() == lastSeen;
    bool isProtected = isSame;
    if (!isSame) {
        isProtected =
            redoFile::write(redoPath, filePath, known.value_or(Digest()), content, wanted) || fail();
        if ((copyDue || isChangedByOthers(known)) && QFileInfo::exists(filePath) && !copyAside())
            return false;
        copyDue = false;
    }
    const QString whyNoRedo = error;
    const bool isWritten = writeInPlace(content, isProtected);
    lastSeen = presentState();
    if (!isWritten) {
        error = isProtected ? error : whyNoRedo;
        return false;
    }
    held = wanted;
    if (!isSame)
        QFile::remove(redoPath);
    return true;
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
    const std::optional<QByteArray> present = readWholeFile(filePath);
    return !present || !known || redoFile::digestOf(*present) != *known;
}

/// Keeps the reason for which the system just refused something; always false.
bool ProtectedFile::fail()
{
    error = systemText(errno);
    return false;
}

/// Free, and no other than this beside the file.
QString ProtectedFile::nameOfCopy() const
{
    // A second copy within one second takes the next free second.
    QDateTime time = QDateTime::currentDateTime();
    QString copyPath;
    do {
        copyPath = filePath + u".damaged-"_s + time.toString(u"yyyyMMdd-HHmmss"_s);
        time = time.addSecs(1);
    } while (QFileInfo::exists(copyPath));
    return copyPath;
}

bool ProtectedFile::copyAside()
{
    const QString copyPath = nameOfCopy();
    QFile file(filePath);
    if (!file.copy(copyPath)) {
        error = copyPath + u": "_s + file.errorString();
        return false;
    }
    copiedTo = copyPath;
    const FileDescriptor copy(copyPath, O_RDONLY);
    return (copy.isOpen() && copy.sync() && syncFolder(QFileInfo(copyPath).path())) || fail();
}

/// Keeps the content where a copy of the file would be.
bool ProtectedFile::keepAside(QByteArrayView content)
{
    const QString copyPath = nameOfCopy();
    FileDescriptor copy(copyPath, O_WRONLY | O_CREAT | O_EXCL, byUmask);
    if (!copy.isOpen() || !copy.write(content) || !copy.sync() || !syncFolder(QFileInfo(copyPath).path())) {
        fail();
        QFile::remove(copyPath);
        return false;
    }
    copiedTo = copyPath;
    return true;
}

/// \param isProtected  the content is on the disk already, or what is there is the same
bool ProtectedFile::writeInPlace(QByteArrayView content, bool isProtected)
{
    const QFileInfo info(filePath);
    const bool isNew = !info.exists();
    if (isNew && !QDir().mkpath(info.path()))
        return fail();
    FileDescriptor file(filePath, O_WRONLY | O_CREAT, byUmask);
    // Room is taken before the first byte is overwritten, so that a full disk leaves the old content whole.
    const auto hasRoom = [&] {
        return file.reserve(content.size()) || (isProtected && (errno == EOPNOTSUPP || errno == ENOSYS));
    };
    return (file.isOpen() && hasRoom() && file.write(content) && file.truncate(content.size()) &&
            file.sync() && file.close() && (!isNew || syncFolder(info.path()))) ||
           fail();
}
