#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>
#include <optional>

class FileDescriptor;

/// The file in the state folder that holds the new content of another file while that one is rewritten.
///
/// Format: a line "quorvane-redo 2 OLDSIZE OLDCRC LENGTH SIZE CRC", then the other file's absolute path,
/// which is LENGTH bytes long, then its new content of SIZE bytes. CRC is the CRC-32 of all of it but the
/// line's last word, in hexadecimal digits. OLDSIZE and OLDCRC are those of the content that is to be
/// replaced; -1 and 0 where that is not known. In version 1 they, LENGTH and the path are missing, and CRC is
/// that of the content.
namespace redoFile {

/// What tells one content from another.
struct Digest
{
    qsizetype size = -1; ///< bytes
    quint32 crc = 0;     ///< CRC-32

    bool operator==(const Digest &) const = default;
};
Digest digestOf(QByteArrayView content);

struct Redo
{
    Digest replaced = {};
    QString path = {}; ///< empty in version 1
    QByteArray content;
};

/// Where the redo file for this path is.
QString pathFor(const QString &path, const QString &stateFolder);
/// Nothing when there is no such file, it is not whole or cannot be read.
/// \param isBroken  is set when it was read to its end, and is not whole
std::optional<Redo> read(const QString &redoPath, bool *isBroken = nullptr);
/// Whether another process has the redo file, whole or not, under way at this moment: on another machine that
/// shares the folder.
bool isInUse(const QString &redoPath);
/// Writes it so that it is on the disk, whole; an earlier one stays until then.
/// \param replaced  the content that the file has
/// \param digest    of the new content
/// \return what keeps it in use; nothing when that failed, with the reason in errno: EBUSY when it is in use
std::unique_ptr<FileDescriptor> write(const QString &redoPath, const QString &path, const Digest &replaced,
                                      QByteArrayView content, const Digest &digest);
/// What an interrupted `write` leaves under this name never became whole.
inline const QString unfinished = QStringLiteral(".new");

} // namespace redoFile
