#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>
#include <utility>

/// A file that is written in place, so that it keeps its identity, links and mode, and that is never lost on
/// the way.
///
/// The new content first goes, flushed, to a redo file in the state folder; then the file itself is rewritten
/// and flushed; then the redo file is removed. Whatever stops the program in between, the redo file is
/// complete and is replayed at the next start, or it is not and the file itself was not touched.
class ProtectedFile
{
public:
    /// Replays what an earlier run left unfinished for this path. If the file then differs from what is
    /// replayed, it is copied aside first: somebody else may have written it since.
    ///
    /// \param path         the file; its folder is made when the file is first written
    /// \param stateFolder  where redo files are kept; made when needed
    ProtectedFile(const QString &path, const QString &stateFolder);

    const QString &path() const { return filePath; }

    /// The whole content, also where it could only be kept in the redo file; nothing when the file is missing
    /// or cannot be read. An existing file that cannot be read is kept as by `keepCopy`.
    std::optional<QByteArray> read();

    /// Replaces the whole content. On false the content on disk is still the old one, or the new one is
    /// complete in the redo file. What the file holds already is written without a redo file, since an
    /// interruption leaves the same bytes.
    bool write(QByteArrayView content);
    /// Why the last write failed, in the words of the operating system.
    const QString &errorString() const { return error; }

    /// Has the file, as it is then, copied beside itself, as `NAME.damaged-YYYYMMDD-HHMMSS`, before the next
    /// write overwrites it. That write fails when the copy cannot be made; its content is then kept in the
    /// redo file. A file to which somebody else has given another content since it was last read or written
    /// here is copied in the same way.
    void keepCopy() { copyDue = true; }
    /// Where the file was copied to since this was last asked; empty for no copy.
    QString takeCopyPath() { return std::exchange(copiedTo, {}); }

private:
    /// What a change of the file shows in: which file it is, its size and the time of its last change.
    struct State
    {
        quint64 inode = 0;                       ///< 0 for no file
        qint64 size = 0;                         ///< bytes
        std::pair<qint64, qint64> modified = {}; ///< seconds, nanoseconds

        bool operator==(const State &) const = default;
    };

    /// What tells one content from another.
    struct Digest
    {
        qsizetype size = 0; ///< bytes
        quint32 crc = 0;    ///< CRC-32

        bool operator==(const Digest &) const = default;
    };
    static Digest digestOf(QByteArrayView content);

    void replay();
    State presentState() const;
    bool isChangedByOthers(const std::optional<Digest> &known) const;
    bool copyAside();
    bool writeRedo(QByteArrayView content, const Digest &digest);
    bool writeInPlace(QByteArrayView content);
    bool fail();

    QString filePath;
    QString stateFolder;
    QString redoPath;
    QString error;
    QString copiedTo;
    State lastSeen;
    std::optional<Digest> held; ///< what it held then; nothing when that is uncertain
    bool copyDue = false;
};
