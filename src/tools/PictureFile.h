#pragma once

#include "platform/ProtectedFile.h"

#include <QImage>
#include <QStringList>

#include <optional>

/// The PNG file that holds the whiteboard's picture.
class PictureFile
{
public:
    /// See ProtectedFile.
    PictureFile(const QString &path, const QString &stateFolder)
        : file(path, stateFolder)
    {
    }

    /// The picture in the file; null when there is none. One that cannot be read is kept beside itself when
    /// it is overwritten.
    QImage read();
    /// What could not be read by that, in a whole sentence; otherwise nothing.
    const QStringList &complaint() const { return unread; }
    /// What others have written since; null when it cannot be read, or nothing when the file still holds what
    /// was last read or written here.
    std::optional<QImage> readNewer();
    /// Makes the picture the file's, or holds it as long as the file does not take it.
    bool write(const QImage &picture);

    /// Whether the file holds what was last read from it, or written.
    bool isFiled() const { return holdsPicture; }
    /// What the file could not take, which is newer than what it holds; otherwise null.
    const QImage &unfiled() const { return rejected; }
    /// Why it could not be written.
    const QString &errorString() const { return problem; }
    bool isChangedByOthers() const { return file.isChangedByOthers(); }

    /// What the file in its present form holds, byte by byte.
    QByteArray content() { return file.read().value_or(QByteArray()); }
    const QString &path() const { return file.path(); }
    QString takeCopyPath() { return file.takeCopyPath(); }

    /// As the file would hold it; empty when that cannot be.
    static QByteArray encoded(const QImage &picture);
    static QImage decoded(const QByteArray &bytes) { return QImage::fromData(bytes, "PNG"); }

private:
    ProtectedFile file;
    QStringList unread;
    QString problem;
    QImage rejected;
    bool holdsPicture = true;
};
