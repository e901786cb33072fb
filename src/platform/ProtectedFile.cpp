#include "platform/ProtectedFile.h"

#include "platform/FileDescriptor.h"
#include "platform/WholeFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

static constexpr mode_t byUmask = 0666;
static constexpr mode_t userOnly = 0600;

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

ProtectedFile::ProtectedFile(const QString &path, const QString &redoFolder)
    : filePath(path)
    , stateFolder(redoFolder)
    , redoPath(redoFile::pathFor(path, redoFolder))
{
    replay();
}

QList<ProtectedFile::Replayed> ProtectedFile::replayAll(const QString &stateFolder)
{
    QList<Replayed> all;
    QDir folder(stateFolder);
    for (const QString &name : folder.entryList({u"*.redo"_s + redoFile::unfinished}, QDir::Files))
        if (!redoFile::isInUse(folder.filePath(name.chopped(redoFile::unfinished.size()))))
            folder.remove(name);
    for (const QString &name : folder.entryList({u"*.redo"_s}, QDir::Files))
        if (const auto redo = redoFile::read(folder.filePath(name)); redo && !redo->path.isEmpty()) {
            const ProtectedFile file(redo->path, stateFolder);
            all.append({.path = file.filePath,
                        .copyPath = file.copiedTo,
                        .problem = file.isPending ? file.error : QString(),
                        .redoPath = file.redoPath});
        }
    return all;
}

/// Whether the content is what an interrupted write leaves: the new content's beginning, and behind it the
/// rest of what was there.
static bool isHalfWritten(const QByteArray &present, const redoFile::Redo &redo)
{
    const auto differ = std::ranges::mismatch(present, redo.content);
    const qsizetype same = differ.in1 - present.cbegin();
    return redo.replaced.size < 0 ||
           (same > 0 && (present.size() == same || present.size() == redo.replaced.size));
}

/// Whether somebody else has written the file since its redo file was.
static bool isOvertaken(const QString &path, const std::optional<QByteArray> &present,
                        const redoFile::Redo &redo, const QString &redoPath)
{
    return present && !present->isEmpty() && redoFile::digestOf(*present) != redo.replaced &&
           !isHalfWritten(*present, redo) &&
           QFileInfo(path).lastModified() >= QFileInfo(redoPath).lastModified();
}

std::optional<QByteArray> ProtectedFile::peek(const QString &path, const QString &stateFolder)
{
    const QString redoPath = redoFile::pathFor(path, stateFolder);
    for (;;) {
        const QDateTime before = QFileInfo(path).lastModified();
        const std::optional<QByteArray> present = readWholeFile(path);
        const int reason = errno;
        if (const auto redo = redoFile::read(redoPath); redo)
            return isOvertaken(path, present, *redo, redoPath) ? present : redo->content;
        errno = reason;
        if (!present || QFileInfo(path).lastModified() == before) // or it was written while it was read
            return present;
    }
}

void ProtectedFile::replay()
{
    bool isBroken = false;
    const std::optional<redoFile::Redo> redo = redoFile::read(redoPath, &isBroken);
    if (redoFile::isInUse(redoPath))
        return;
    if (isBroken)
        QFile::remove(redoPath); // never became whole: the file itself was not touched
    isPending = redo && !replay(*redo);
    if (redo && !isPending)
        QFile::remove(redoPath);
}

/// False when the file could not be made to hold what was left unfinished, and it is not kept aside either.
bool ProtectedFile::replay(const redoFile::Redo &redo)
{
    const QFileInfo info(filePath);
    if (info.exists() && ::access(QFile::encodeName(filePath).constData(), W_OK) != 0)
        return fail();
    const std::optional<QByteArray> present = readWholeFile(filePath);
    if (present == redo.content)
        return true;
    const bool isUntouched = present && (present->isEmpty() || redoFile::digestOf(*present) == redo.replaced);
    if (isOvertaken(filePath, present, redo, redoPath))
        return keepAside(redo.content); // somebody else has written the file since
    return (!info.exists() || isUntouched || copyAside()) && writeInPlace(redo.content, true);
}

std::optional<QByteArray> ProtectedFile::read()
{
    held.reset();
    if (const auto unfinished = isPending ? redoFile::read(redoPath) : std::nullopt)
        return unfinished->content;
    lastSeen = presentState(); // before it is read: a change in between is somebody else's
    std::optional<QByteArray> content = readWholeFile(filePath);
    const int reason = errno;
    unreadable.clear();
    if (content)
        held = redoFile::digestOf(*content);
    else if (reason != ENOENT || isBehindBrokenLink(filePath))
        unreadable = systemText(reason);
    isUnread = !content && QFileInfo::exists(filePath);
    return content;
}

/// Does the step, once more whenever room could be made on the disk that was full.
bool ProtectedFile::withRoom(const std::function<bool()> &step, const std::function<bool()> &makeRoom) const
{
    while (!step())
        if (!lacksRoom || !makeRoom())
            return false;
    return true;
}

/// \param known  the content that the file has, as far as that is certain
std::unique_ptr<FileDescriptor> ProtectedFile::writeRedo(const std::optional<Digest> &known,
                                                         QByteArrayView content, const Digest &digest)
{
    const Digest replaced = known.value_or(lastSeen == State() ? redoFile::digestOf({}) : Digest());
    auto redo = redoFile::write(redoPath, filePath, replaced, content, digest);
    if (!redo)
        fail();
    return redo;
}

bool ProtectedFile::write(QByteArrayView content, const MakeRoom &makeRoom)
{
    const auto roomFor = [&](const QString &path) {
        return [&makeRoom, path, bytes = content.size()] {
            return makeRoom && makeRoom(path, bytes);
        };
    };
    const std::optional<Digest> known = std::exchange(held, std::nullopt);
    const Digest wanted = redoFile::digestOf(content);
    const bool isSame = !copyDue && known == wanted && presentState() == lastSeen;
    bool isProtected = isSame;
    std::unique_ptr<FileDescriptor> redo; // in use until the file itself is written
    if (!isSame) {
        isProtected =
            withRoom([&] { return bool(redo = writeRedo(known, content, wanted)); }, roomFor(redoPath));
        isPending |= isProtected;
        // An older redo file that stays would be replayed over what is written without a new one.
        const bool staysOld = QFileInfo::exists(redoPath) && !QFileInfo(stateFolder).isWritable();
        if (!isProtected && (staysOld || redoFile::isInUse(redoPath)))
            return false;
        if ((copyDue || isUnread || isChangedByOthers(known)) && QFileInfo::exists(filePath) &&
            !withRoom([this] { return copyAside(); }, roomFor(filePath)))
            return false;
        copyDue = isUnread = false;
    }
    const QString whyNoRedo = error;
    if (!withRoom([&] { return writeInPlace(content, isProtected); }, roomFor(filePath))) {
        lastSeen = presentState();
        error = isProtected ? error : whyNoRedo;
        return false;
    }
    held = wanted;
    isPending = false;
    if (!isSame)
        QFile::remove(redoPath);
    return true;
}

ProtectedFile::State ProtectedFile::presentState() const
{
    struct stat entry = {};
    return ::stat(QFile::encodeName(filePath).constData(), &entry) == 0 ? stateOf(entry) : State();
}

ProtectedFile::State ProtectedFile::stateOf(const struct stat &entry)
{
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
    lacksRoom = errno == ENOSPC || errno == EDQUOT;
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
    const std::optional<QByteArray> content = readWholeFile(filePath);
    return content ? keepAside(*content) : fail();
}

/// Keeps the content where a copy of the file would be.
bool ProtectedFile::keepAside(QByteArrayView content)
{
    const QString copyPath = nameOfCopy();
    struct stat entry = {};
    const bool hasMode = ::stat(QFile::encodeName(filePath).constData(), &entry) == 0;
    const mode_t mode = hasMode ? entry.st_mode & byUmask : userOnly;
    FileDescriptor copy(copyPath, O_WRONLY | O_CREAT | O_EXCL, mode);
    if (!copy.isOpen() || !copy.write(content) || !copy.sync() || !syncFolder(QFileInfo(copyPath).path())) {
        fail();
        error = copyPath + u": "_s + error;
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
    if (isBehindBrokenLink(filePath)) { // what is made there would be hidden by what belongs there
        errno = ENOENT;
        return fail();
    }
    if (isNew && !QDir().mkpath(info.path()))
        return fail();
    FileDescriptor file(filePath, O_WRONLY | O_CREAT, byUmask);
    // Room is taken before the first byte is overwritten, so that a full disk leaves the old content whole.
    const auto hasRoom = [&] {
        return file.reserve(content.size()) || (isProtected && (errno == EOPNOTSUPP || errno == ENOSYS));
    };
    struct stat entry = {};
    const bool isWritten = file.isOpen() && hasRoom() && file.write(content) &&
                           file.truncate(content.size()) && file.sync() && file.stat(entry) && file.close() &&
                           (!isNew || syncFolder(info.path()));
    lastSeen = stateOf(entry); // by the open file: whoever replaces it now is somebody else
    return isWritten || fail();
}
