#pragma once

#include <QByteArrayView>
#include <QString>

#include <sys/types.h>

/// Writes all of the bytes to the descriptor; false when that failed, with the reason in errno.
bool writeFully(int descriptor, QByteArrayView bytes);

/// Makes a change of the folder's entries last; false when that failed, with the reason in errno.
bool syncFolder(const QString &path);

/// An open file of the operating system, for what QFile does not promise: every step tells whether it took
/// effect, with the reason in errno, and goes on after a signal.
class FileDescriptor
{
public:
    /// Opens the path with the flags and mode of open(2). Nothing but a regular file or a folder is opened,
    /// and nothing is waited for, as a pipe in the file's place would have it.
    FileDescriptor(const QString &path, int flags, mode_t mode = 0);
    ~FileDescriptor();
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    bool isOpen() const { return descriptor >= 0; }
    /// Takes room on the disk for a content of this many bytes, without changing the file; EOPNOTSUPP where
    /// the file system has no such operation.
    bool reserve(qsizetype size);
    /// Writes all of the bytes at the current position.
    bool write(QByteArrayView bytes);
    bool truncate(qsizetype size);
    /// Waits until the content is on the disk.
    bool sync() const;
    bool close();

private:
    int descriptor;
};
