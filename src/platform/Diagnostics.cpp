#include "platform/Diagnostics.h"

#include "platform/FileDescriptor.h"

#include <QStringEncoder>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace diagnostics {

namespace {

constexpr qsizetype chunkSize = 1 << 16;
/// What may wait for a reader that has stopped reading; later lines are dropped and counted.
constexpr qsizetype backlogLimit = 256 << 20;

/// The queue of finished lines and the thread that writes them.
class Output
{
public:
    /// The output lives until the process is gone; its thread then simply ends with it.
    static Output &instance()
    {
        static Output &only = *std::make_unique<Output>().release();
        return only;
    }

    Output()
    {
        std::thread([this] { run(); }).detach();
        // Whoever reads the lines may have stopped reading; the program ends all the same.
        std::atexit([] { instance().drain(std::chrono::seconds(2)); });
    }

    void add(const QByteArray &line)
    {
        bool isChunkDone = false;
        {
            const std::lock_guard lock(mutex);
            if (backlog + line.size() > backlogLimit) {
                ++dropped;
                return;
            }
            if (chunks.isEmpty() || chunks.last().size() + line.size() > chunkSize) {
                isChunkDone = !chunks.isEmpty();
                startChunk(line.size());
            }
            chunks.last() += line;
            queued += line.size();
            backlog += line.size();
        }
        if (isChunkDone)
            wake.notify_one();
    }

    void flush()
    {
        {
            const std::lock_guard lock(mutex);
            flushing = true;
        }
        wake.notify_one();
    }

    void drain(std::chrono::seconds limit)
    {
        std::unique_lock lock(mutex);
        flushing = true;
        wake.notify_one();
        // Others may go on adding lines.
        drained.wait_for(lock, limit, [this, target = queued] { return written >= target; });
    }

private:
    void startChunk(qsizetype firstLine)
    {
        QByteArray chunk;
        if (firstLine < chunkSize) { // a longer line is shared, not copied
            chunk = std::exchange(spare, QByteArray());
            chunk.reserve(chunkSize);
        }
        if (dropped > 0)
            chunk += "Diagnostics dropped: " + QByteArray::number(dropped) + '\n';
        dropped = 0;
        queued += chunk.size();
        chunks.append(chunk);
    }

    [[noreturn]] void run()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            wake.wait(lock, [this] { return chunks.size() > 1 || flushing; });
            while (!chunks.isEmpty() && (chunks.size() > 1 || flushing))
                writeFirstChunk(lock);
            flushing = false;
        }
    }

    void writeFirstChunk(std::unique_lock<std::mutex> &lock)
    {
        QByteArray chunk = chunks.takeFirst();
        lock.unlock();
        writeFully(STDOUT_FILENO, chunk); // a reader that has gone away loses this chunk only
        lock.lock();
        written += chunk.size();
        backlog -= qMin(backlog, chunk.size());
        if (chunk.size() <= chunkSize) {
            chunk.resize(0);
            spare = std::move(chunk);
        }
        drained.notify_all();
    }

    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable drained;
    QList<QByteArray> chunks;
    QByteArray spare;   ///< a chunk that was written, for the next one
    qint64 queued = 0;  ///< bytes ever
    qint64 written = 0; ///< of them
    qsizetype backlog = 0;
    qint64 dropped = 0;
    bool flushing = false;
};

} // namespace

void appendItem(QByteArray &line, QStringView text)
{
    QStringEncoder utf8(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    const qsizetype start = line.size();
    line.resize(start + utf8.requiredSpace(text.size()));
    const char *end = utf8.appendToBuffer(line.data() + start, text);
    line.truncate(end - line.constData());
}

void appendItem(QByteArray &line, const char *text)
{
    line += text;
}

void appendItem(QByteArray &line, const QByteArray &utf8)
{
    line += utf8;
}

void appendItem(QByteArray &line, bool value)
{
    line += value ? "true" : "false";
}

void appendItem(QByteArray &line, const QList<QStringView> &texts)
{
    constexpr QStringView separator = u", ";
    qsizetype size = separator.size();
    for (const QStringView text : texts)
        size += text.size() + separator.size();
    QString joined(size, Qt::Uninitialized); // encoding one long text is faster than encoding many short ones
    QChar *end = joined.data();
    *end++ = u'[';
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (i > 0)
            end = std::ranges::copy(separator, end).out;
        end = std::ranges::copy(texts[i], end).out;
    }
    *end++ = u']';
    appendItem(line, QStringView(joined.data(), end));
}

QByteArray &scratch()
{
    thread_local QByteArray text;
    return text;
}

/// Whether standard output is the stream that the system has connected to its journal. Source: the variable
/// `JOURNAL_STREAM` of systemd.exec(5), device and inode in decimal.
static bool isJournal()
{
    struct stat output = {};
    return ::fstat(STDOUT_FILENO, &output) == 0 &&
           qgetenv("JOURNAL_STREAM") == QByteArray::number(qulonglong(output.st_dev)) + ':' +
                                            QByteArray::number(qulonglong(output.st_ino));
}

static thread_local int silences = 0;

Silence::Silence()
{
    ++silences;
}

Silence::~Silence()
{
    --silences;
}

void commit(QByteArray &line, bool isPersonal)
{
    constexpr qsizetype keptCapacity = 1 << 16;
    static const bool leavesPersonalOut = isJournal();
    line += '\n';
    if (silences == 0 && (!isPersonal || !leavesPersonalOut))
        Output::instance().add(line);
    if (line.capacity() > keptCapacity)
        line = QByteArray();
    else
        line.resize(0);
}

void flush()
{
    Output::instance().flush();
}

void drain()
{
    Output::instance().drain(std::chrono::minutes(1));
}

} // namespace diagnostics
