#include "platform/WholeFile.h"

#include "platform/FileDescriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace {

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

std::optional<QByteArray> readWholeFile(const QString &path, qint64 most)
{
    constexpr qsizetype chunk = 65'536; // bytes
    FileDescriptor file(path, O_RDONLY);
    if (!file.isOpen())
        return std::nullopt;
    struct stat entry = {};
    file.stat(entry);
    QByteArray content;
    for (qsizetype size = 0;;) {
        if (size == content.size())
            content.resize(std::max(size * 2, qsizetype(std::min(qint64{entry.st_size}, most))) + chunk);
        const qsizetype count = file.read(content.data() + size, content.size() - size);
        if (count < 0)
            return std::nullopt;
        size += count;
        if (size > most) {
            errno = EFBIG;
            return std::nullopt;
        }
        if (count == 0) {
            content.truncate(size);
            return content;
        }
    }
}

static QString unfinishedPath(const QString &target)
{
    return target + u".new"_s;
}

void removeUnfinished(const QString &path)
{
    QFile::remove(unfinishedPath(targetOf(path)));
}

bool replaceWholeFile(const QString &path, QByteArrayView content)
{
    const QString target = targetOf(path);
    const QString folderPath = QFileInfo(target).path();
    const QString newPath = unfinishedPath(target);
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
    return syncFolder(folderPath);
}
