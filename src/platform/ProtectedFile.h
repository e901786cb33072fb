#pragma once

#include "platform/RedoFile.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

struct stat;

/// A file that is written in place, so that it keeps its identity, links and mode, and that is never lost on
/// the way.
///
/// The new content first goes, flushed, to a redo file in the state folder; then the file itself is rewritten
/// and flushed; then the redo file is removed. Whatever stops the program in between, the redo file is
/// complete and is replayed at the next start, or it is not and the file itself was not touched.
class ProtectedFile
{
public:
    /// What became of a file that an earlier run left unfinished.
    struct Replayed
    {
        QString path;
        QString copyPath; ///< of the other version, where there were two
        QString problem;  ///< why it could not be finished, in the words of the operating system
        QString redoPath; ///< where its content is kept in that case
    };

    /// Replays what an earlier run left unfinished, for all files. To be called before any of them is read.
    static QList<Replayed> replayAll(const QString &stateFolder);

    /// The content that the file has or, while it is being written or after that was interrupted, is to have;
    /// nothing when it is missing or cannot be read, with the reason in errno. Changes nothing and locks
    /// nothing: for who looks only, also while another process writes.
    static std::optional<QByteArray> peek(const QString &path, const QString &stateFolder);

    /// Replays what an earlier run left unfinished for this path. Where somebody else has written the file
    /// since, it stays as it is, and what was left unfinished becomes a copy of the kind that `keepCopy`
    /// makes; where that is uncertain, the file is copied first. What another machine is writing at this
    /// moment is left alone.
    ///
    /// \param path         the file; its folder is made when the file is first written
    /// \param stateFolder  where redo files are kept; made when needed
    ProtectedFile(const QString &path, const QString &stateFolder);

    const QString &path() const { return filePath; }

    /// The whole content, also where it could only be kept in the redo file; nothing when the file is missing
    /// or cannot be read. An existing file that cannot be read is kept as by `keepCopy`.
    std::optional<QByteArray> read();
    /// Why the file could not be read the last time although it is there, or may be where a link leads that
    /// leads nowhere now, in the words of the operating system; otherwise empty.
    const QString &readProblem() const { return unreadable; }
    /// Whether somebody else has given the file another content since it was last read or written here.
    bool isChangedByOthers() const { return isChangedByOthers(held); }

    /// Frees so many bytes of the full disk on which this file is, or is to be; false when it cannot.
    using MakeRoom = std::function<bool(const QString &path, qint64 bytes)>;

    /// Replaces the whole content. On false the content on disk is still the old one, or the new one is
    /// complete in the redo file. What the file holds already is written without a redo file, since an
    /// interruption leaves the same bytes; so is what there is room for in the file itself, where no redo
    /// file can be made.
    /// \param makeRoom  is asked first wherever a disk is full: for the redo file, the copy, the file
    bool write(QByteArrayView content, const MakeRoom &makeRoom = {});
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

    using Digest = redoFile::Digest;

    void replay();
    bool replay(const redoFile::Redo &redo);
    State presentState() const;
    static State stateOf(const struct stat &entry);
    bool isChangedByOthers(const std::optional<Digest> &known) const;
    QString nameOfCopy() const;
    bool copyAside();
    bool keepAside(QByteArrayView content);
    bool writeInPlace(QByteArrayView content, bool isProtected);
    std::unique_ptr<FileDescriptor> writeRedo(const std::optional<Digest> &known, QByteArrayView content,
                                              const Digest &digest);
    bool withRoom(const std::function<bool()> &step, const std::function<bool()> &makeRoom) const;
    bool fail();

    QString filePath;
    QString stateFolder;
    QString redoPath;
    QString error;
    bool lacksRoom = false; ///< of a disk that is full, for what failed last
    QString unreadable;
    QString copiedTo;
    State lastSeen;
    std::optional<Digest> held; ///< what it held then; nothing when that is uncertain
    bool copyDue = false;
    bool isUnread = false;  ///< there is a file, and it could not be read
    bool isPending = false; ///< what the redo file holds is not in the file yet
};
