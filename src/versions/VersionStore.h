#pragma once

#include "taskfile/TaskListFile.h"
#include "versions/VersionKeeper.h"

#include <QObject>
#include <QThread>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

/// Keeps every version of the list that it is given, on a thread of its own: nobody waits for it. Used on the
/// main thread.
class VersionStore : public QObject
{
    Q_OBJECT

public:
    explicit VersionStore(const QString &stateFolder);
    /// Keeps what it was given first.
    ~VersionStore() override;

    /// Where the versions are.
    const QString &folder() const { return versionsFolder; }
    /// Has the list's text kept as its newest version. When the thread is far behind, versions between are
    /// left out, never the newest one.
    void keep(const QByteArray &text);
    /// Removes versions, the oldest first, to make room on the disk on which the file is to be: the list's,
    /// or the one in the state folder that protects it while it is written. \param bytes  how much is wanted;
    /// no less than 1 MB is freed \return false when there is nothing to be freed on that disk
    bool makeRoom(const QString &filePath, qint64 bytes);
    /// Both, for the list's file, which this has to outlive.
    TaskListHistory history();
    /// Waits until all is kept; false when that takes longer than the limit.
    bool finish(std::chrono::nanoseconds limit);

signals:
    /// There is a new version, or one has been removed. From the other thread.
    void changed();
    /// A whole sentence that the user has to be told. From the other thread, too.
    void told(const QString &sentence);

private:
    struct Given
    {
        QByteArray text;
        ClockReading time;
    };

    void run();
    void waitForPause(std::unique_lock<std::mutex> &lock);
    bool keepWith(VersionKeeper &keeper, const Given &next);

    QString versionsFolder;
    bool isRoomMade = false; ///< in this run: it is told once
    QString toldProblem;     ///< the thread's own
    std::mutex mutex;        ///< over all that follows; never held while anybody waits for the disk
    std::condition_variable wake;
    std::condition_variable isDone;
    std::deque<Given> given;
    qint64 givenSoFar = 0;
    bool isKeeping = false;
    bool isLookedThrough = false; ///< by somebody else than the thread, who has removed versions
    bool isUpdateDue = true;      ///< of what versions tell
    bool isHurried = false;       ///< somebody waits for it
    bool isEnding = false;
    std::unique_ptr<QThread> thread;
};
