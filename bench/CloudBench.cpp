#include "SampleTasks.h"

#include "cloud/CloudConnection.h"
#include "cloud/TaskRecord.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"
#include "program/Program.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Against the embedded database, or the server that QUORVANE_BENCH_CLOUD names; bench/README.md tells how.

namespace {

/// A database of its own for each run; a server's is emptied.
class BenchCloud
{
public:
    BenchCloud()
    {
        if (const QByteArray url = qgetenv("QUORVANE_BENCH_CLOUD"); !url.isEmpty())
            QSettings(accountFile(), QSettings::IniFormat).setValue(u"url"_s, QString::fromUtf8(url));
        CloudConnection connection(home(), taskRecordType());
        if (!connection.open())
            qFatal("%s", qPrintable(connection.problem().text));
        const auto records = std::get<std::vector<CloudRecord>>(connection.find({taskRecordType().name}));
        connection.begin();
        for (const CloudRecord &record : records)
            connection.remove(record.recordID());
        connection.commit();
    }

    /// Where the account's file is, and the embedded database.
    QString path() const { return folder.path(); }
    CloudHome home() const { return CloudHome::read(accountFile(), path()); }

private:
    QString accountFile() const { return folder.filePath(u"cloud.ini"_s); }

    QTemporaryDir folder;
};

/// The longest time that the event loop did not get round to a timer.
class StopWatch
{
public:
    StopWatch()
    {
        QObject::connect(&timer, &QTimer::timeout, &timer,
                         [this] { longest = std::max(longest, sinceLast.restart()); });
        sinceLast.start();
        timer.start(0ms);
    }

    void countIn(benchmark::State &state)
    {
        state.counters["longest_stop_ms"] =
            std::max(state.counters["longest_stop_ms"].value, double(std::max(longest, sinceLast.elapsed())));
    }

private:
    QTimer timer;
    QElapsedTimer sinceLast;
    qint64 longest = 0;
};

class Bench
{
public:
    Bench(const QString &configFolder, qint64 tasks)
        : program(manager, systemNotices,
                  {folder.path(), configFolder, configFolder, folder.filePath(u"state"_s)})
    {
        loadSample(manager, tasks);
        program.applicationNotices().post(notice::reload);
        program.mainWindow().show();
        QCoreApplication::processEvents();
        // No alert at the end, which somebody would have to dismiss.
        QObject::disconnect(&program.cloudSync(), &CloudSync::transferEnded, nullptr, nullptr);
    }

    void copy()
    {
        program.cloudSync().syncAllToCloud();
        waitForEnd();
    }

    void update()
    {
        program.cloudSync().updateFromCloud();
        waitForEnd();
    }

    QTemporaryDir folder;
    Preferences preferences{u"/nonexistent/preferences.ini"_s};
    TaskManager manager{preferences};
    NotificationCenter systemNotices;
    Program program;

private:
    void waitForEnd()
    {
        while (program.cloudSync().transfer())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
};

void copyToEmptyCloud(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const BenchCloud cloud;
        Bench bench(cloud.path(), state.range(0));
        state.ResumeTiming();
        StopWatch watch;
        bench.copy();
        watch.countIn(state);
    }
}
BENCHMARK(copyToEmptyCloud)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void copyToFullCloud(benchmark::State &state)
{
    const BenchCloud cloud;
    Bench bench(cloud.path(), state.range(0));
    bench.copy();
    for (auto _ : state) {
        StopWatch watch;
        bench.copy();
        watch.countIn(state);
    }
}
BENCHMARK(copyToFullCloud)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

/// The same statements in one transaction each.
void copyYardstick(benchmark::State &state)
{
    const bool isFull = state.range(1) != 0;
    for (auto _ : state) {
        state.PauseTiming();
        const BenchCloud cloud;
        const Bench bench(cloud.path(), state.range(0));
        CloudConnection connection(cloud.home(), taskRecordType());
        connection.open();
        const auto copy = [&] {
            connection.begin();
            for (const SharedTask &entry : bench.manager.tasks()) {
                const auto found =
                    std::get<std::vector<CloudRecord>>(connection.find({taskRecordType().name, entry->key}));
                CloudRecord record = found.empty() ? newTaskRecord() : found.front();
                fillRecord(record, *entry, found.empty());
                connection.save(record);
            }
            connection.commit();
        };
        if (isFull)
            copy();
        state.ResumeTiming();
        copy();
    }
}
BENCHMARK(copyYardstick)
    ->Args({10'000, 0})
    ->Args({10'000, 1})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

void updateFromCloud(benchmark::State &state)
{
    const BenchCloud cloud;
    Bench bench(cloud.path(), state.range(0));
    bench.copy();
    for (auto _ : state) {
        StopWatch watch;
        bench.update();
        watch.countIn(state);
    }
}
BENCHMARK(updateFromCloud)
    ->Arg(10'000)
    ->Arg(20'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(5);

} // namespace
