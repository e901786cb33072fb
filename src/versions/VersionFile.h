#pragma once

#include "platform/Calendar.h"
#include "versions/VersionSummary.h"

#include <optional>

/// An earlier version of the task list, without the list itself.
struct Version
{
    qint64 number = 0; ///< in the order in which they were kept, from 1
    qint64 before = 0; ///< the number of the one that the summary compares it with; 0 for none
    Instant time = {}; ///< when it was kept, by the system's clock
    qint64 clock = 0;  ///< the same in milliseconds of a clock that only goes forward: see VersionKeeper
    qint64 room = 0;   ///< bytes on the disk
    VersionSummary summary = {};
};

/// The files in which earlier versions of the list are kept, each in a file of its own.
///
/// Format: a line "quorvane-version 1 LENGTH CRC", then a head of LENGTH bytes of which CRC is the CRC-32 in
/// hexadecimal digits, then the list's text as one zstd frame with a checksum. The head is a line "NUMBER
/// BEFORE TIME CLOCK SIZE PACKED TASKS ADDED CHANGED REMOVED MOVED", where SIZE and PACKED are the bytes of
/// the text and of the frame, then a line for each of the summary's names.
namespace versionFile {

/// Where the versions are kept.
QString folderIn(const QString &stateFolder);
QString pathOf(const QString &folder, qint64 number);
/// The number that a file of this name has to hold; 0 for any other file.
qint64 numberOf(const QString &fileName);

/// Writes the version so that it is on the disk, whole, or not there at all; false when that failed, with the
/// reason in errno. Its room is set.
/// \param text  the list
bool write(const QString &folder, Version &version, const QByteArray &text);
/// Replaces what an existing file tells of the version.
bool rewriteHead(const QString &folder, Version &version);

/// Nothing when the file cannot be read, or is not whole.
std::optional<Version> readHead(const QString &path);
std::optional<QByteArray> readText(const QString &path);

/// All versions of a folder, the oldest first, and the names of the files that are none.
struct Listing
{
    QList<Version> versions;
    QStringList unreadable;
};
Listing list(const QString &folder);

} // namespace versionFile
