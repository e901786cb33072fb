#include "platform/WholeFile.h"

#include "platform/FileDescriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// The result of a system call that a signal may have interrupted.
template <typename Call>
auto finished(const Call &call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Where the content is, or is to be: a link is kept.
QString targetOf(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists())
        return info.canonicalFilePath();
    return info.isSymLink() ? info.symLinkTarget() : path;
}

bool writeNew(const QString &path, QByteArrayView content)
{
    constexpr mode_t userOnly = 0600;
    FileDescriptor file(path, O_WRONLY | O_CREAT | O_EXCL, userOnly);
    return file.isOpen() && file.write(content) && file.sync() && file.close();
}

} // namespace

int openRegularFile(const QString &path, int flags, mode_t mode)
{
    const QByteArray name = QFile::encodeName(path);
    const int file =
        finished([&] { return ::open(name.constData(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, mode); });
    struct stat entry = {};
    if (file < 0 || (::fstat(file, &entry) == 0 && S_ISREG(entry.st_mode)))
        return file;
    ::close(file);
    errno = S_ISDIR(entry.st_mode) ? EISDIR : ENOTSUP;
    return -1;
}

std::optional<QByteArray> readWholeFile(const QString &path, qint64 most)
{
    constexpr qsizetype chunk = 65'536; // bytes
    const int file = openRegularFile(path, O_RDONLY);
    if (file < 0)
        return std::nullopt;
    const auto closed = qScopeGuard([file] {
        const int error = errno;
        ::close(file);
        errno = error;
    });
    QByteArray content;
    for (qsizetype size = 0;;) {
        content.resize(std::max(size + chunk, size * 2));
        const ssize_t count =
            finished([&] { return ::read(file, content.data() + size, size_t(content.size() - size)); });
        if (count < 0)
            return std::nullopt;
        size += count;
        if (size > most) {
            errno = EFBIG;
            return std::nullopt;
        }
        if (count == 0)
            return content.first(size);
    }
}

bool replaceWholeFile(const QString &path, QByteArrayView content)
{
    const QString target = targetOf(path);
    const QString folderPath = QFileInfo(target).path();
    const QString newPath = target + u".new"_s;
    if (!QDir().mkpath(folderPath))
        return false;
    QFile::remove(newPath); // what an interrupted run has left
    if (!writeNew(newPath, content) ||
        std::rename(QFile::encodeName(newPath).constData(), QFile::encodeName(target).constData()) != 0) {
        const int error = errno;
        QFile::remove(newPath);
        errno = error;
        return false;
    }
    const FileDescriptor folder(folderPath, O_RDONLY | O_DIRECTORY);
    return folder.isOpen() && folder.sync();
}
