#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// The file in the state folder that holds the new content of another file while that one is rewritten.
///
/// Format: a line "quorvane-redo 2 LENGTH SIZE CRC", then the other file's absolute path, which is LENGTH
/// bytes long, then its content of SIZE bytes. CRC is the CRC-32 of both in hexadecimal digits. In version 1
/// LENGTH and path are missing.
namespace redoFile {

struct Redo
{
    QString path; ///< empty in version 1
    QByteArray content;
};

/// Where the redo file for this path is.
QString pathFor(const QString &path, const QString &stateFolder);
/// Nothing when there is no such file or it is not whole.
std::optional<Redo> read(const QString &redoPath);
/// Writes it so that it is on the disk, whole; an earlier one stays until then. False when that failed, with
/// the reason in errno.
/// \param crc  CRC-32 of the content
bool write(const QString &redoPath, const QString &path, QByteArrayView content, quint32 crc);

quint32 crcOf(QByteArrayView bytes);

} // namespace redoFile
