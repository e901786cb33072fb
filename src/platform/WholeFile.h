#pragma once

#include <QByteArray>
#include <QString>

#include <limits>
#include <optional>

/// The whole content of a regular file; nothing when it cannot be read, with the reason in errno.
/// \param most  a file of more bytes is not read: EFBIG
std::optional<QByteArray> readWholeFile(const QString &path,
                                        qint64 most = std::numeric_limits<qint64>::max());

/// Removes what an interrupted replacement of the file has left.
void removeUnfinished(const QString &path);
/// Replaces the whole file, or what it links to, by one that only its owner can read. Its folder is made when
/// missing. On false, with the reason in errno, the content is the old one or, when only its folder could not
/// be made to last, the new one; it is never a part.
bool replaceWholeFile(const QString &path, QByteArrayView content);
