#include "versions/VersionStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The disk on which the file is, or is to be.
std::optional<dev_t> diskOf(const QString &path)
{
    QFileInfo part(path);
    while (!part.exists() && !part.isRoot())
        part.setFile(part.absolutePath());
    struct stat entry = {};
    const bool isKnown = ::stat(QFile::encodeName(part.absoluteFilePath()).constData(), &entry) == 0;
    return isKnown ? std::optional(entry.st_dev) : std::nullopt;
}

/// Lets the threads that the user waits for go first.
void stepBack()
{
    constexpr int niceness = 10;
    ::setpriority(PRIO_PROCESS, id_t(::gettid()), niceness);
}

} // namespace

VersionStore::VersionStore(const QString &stateFolder)
    : versionsFolder(versionFile::folderIn(stateFolder))
    , thread(QThread::create([this] { run(); }))
{
    thread->start();
}

VersionStore::~VersionStore()
{
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    wake.notify_one();
    thread->wait();
}

void VersionStore::keep(const QByteArray &text)
{
    constexpr qsizetype mostWaiting = 32LL << 20; // bytes, besides the newest
    {
        const std::lock_guard lock(mutex);
        qsizetype waiting = 0;
        for (const Given &earlier : given)
            waiting += earlier.text.size();
        if (waiting > mostWaiting)
            given.pop_back();
        given.push_back({text, ClockReading::now()});
        ++givenSoFar;
    }
    wake.notify_one();
}

TaskListHistory VersionStore::history()
{
    return {.keep = [this](const QByteArray &text) { keep(text); },
            .makeRoom =
                [this](const QString &path, qint64 bytes) {
                    return makeRoom(path, bytes);
                }};
}

bool VersionStore::finish(std::chrono::nanoseconds limit)
{
    std::unique_lock lock(mutex);
    isHurried = true;
    wake.notify_one();
    const bool isAllKept = isDone.wait_for(lock, limit, [this] { return given.empty() && !isKeeping; });
    isHurried = false;
    return isAllKept;
}

void VersionStore::run()
{
    stepBack();
    VersionKeeper keeper(versionsFolder);
    std::unique_lock lock(mutex);
    for (;;) {
        wake.wait(lock, [this] { return !given.empty() || isUpdateDue || isEnding; });
        if (given.empty() && isEnding)
            return;
        if (!given.empty())
            waitForPause(lock);
        std::optional<Given> next;
        if (!given.empty()) {
            next = std::move(given.front());
            given.pop_front();
        }
        isKeeping = next.has_value();
        const bool isLookDue = std::exchange(isLookedThrough, false);
        lock.unlock();
        if (isLookDue)
            keeper.lookAgain();
        const bool isUpdated = next ? keepWith(keeper, *next) : keeper.updateSummary();
        if (isUpdated)
            emit changed();
        lock.lock();
        isUpdateDue = isUpdated || next;
        isKeeping = false;
        isDone.notify_all();
    }
}

/// Leaves the disk and the memory to commands that follow each other quickly, for a while.
void VersionStore::waitForPause(std::unique_lock<std::mutex> &lock)
{
    constexpr qsizetype perMillisecond = 40'000; // bytes of the text
    const std::chrono::milliseconds pause(given.front().text.size() / perMillisecond);
    for (int left = 10; left > 0; --left) {
        const auto isOver = [this, seen = givenSoFar] {
            return isHurried || isEnding || givenSoFar != seen;
        };
        if (!wake.wait_for(lock, pause, isOver) || isHurried || isEnding)
            return;
    }
}

/// True when it is a new version now.
bool VersionStore::keepWith(VersionKeeper &keeper, const Given &next)
{
    using enum VersionKeeper::Outcome;
    const VersionKeeper::Outcome outcome = keeper.keep(next.text, next.time);
    if (outcome == Failed) {
        const QString problem = qt_error_string(errno);
        if (std::exchange(toldProblem, problem) != problem)
            emit told(u"Earlier versions of the task list cannot be kept in %1: %2."_s.arg(versionsFolder,
                                                                                           problem));
    }
    return outcome == Kept;
}

bool VersionStore::makeRoom(const QString &filePath, qint64 bytes)
{
    constexpr qint64 fewest = 1LL << 20;
    if (diskOf(filePath) != diskOf(versionsFolder))
        return false;
    qint64 freed = 0;
    for (const QFileInfo &file : QDir(versionsFolder).entryInfoList(QDir::Files, QDir::Name)) {
        if (freed >= std::max(bytes, fewest))
            break;
        const qint64 size = file.size(); // asked of the disk, as long as it is there
        if (versionFile::numberOf(file.fileName()) > 0 && QFile::remove(file.filePath()))
            freed += size;
    }
    if (freed == 0)
        return false;
    {
        const std::lock_guard lock(mutex);
        isLookedThrough = true;
    }
    // Queued: the caller is in the middle of a write.
    QMetaObject::invokeMethod(
        this,
        [this, isFirst = !std::exchange(isRoomMade, true)] {
            if (isFirst)
                emit told(u"The disk is full. Earlier versions of the task list were removed, the oldest "
                          "first, to make room for the list itself."_s);
            emit changed();
        },
        Qt::QueuedConnection);
    return true;
}
