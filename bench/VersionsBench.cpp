#include "SampleTasks.h"

#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "taskfile/TaskListFile.h"
#include "taskfile/TaskRowWriter.h"
#include "versions/ComparedVersion.h"
#include "versions/VersionStore.h"
#include "versions/ViewControllerVersions.h"

#include <QApplication>
#include <QTableView>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

// Yardsticks and how to read the figures: bench/README.md.

namespace {

/// The sample with one task in a hundred changed or gone, and sorted otherwise.
TaskList changedSample(qsizetype count)
{
    TaskList tasks = sampleTasks(count);
    std::mt19937 random(3);
    std::ranges::shuffle(tasks, random);
    tasks.remove(0, count / 200);
    for (qsizetype index = 0; index < tasks.size(); index += 200)
        tasks[index].edit().name += u" again"_s;
    return tasks;
}

QByteArray textOf(const TaskList &tasks)
{
    TaskRowWriter writer(u'|', u'^');
    QByteArray text;
    for (const SharedTask &entry : tasks)
        writer.append(text, *entry, entry->color);
    return text;
}

void compareVersions(benchmark::State &state)
{
    const QByteArray before = sampleText(state.range(0));
    const QByteArray after = textOf(changedSample(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(VersionDiff::between(ListRows(before), ListRows(after)).moved);
}
BENCHMARK(compareVersions)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

void compareVersionsYardstick(benchmark::State &state)
{
    const QByteArray before = sampleText(state.range(0));
    const QByteArray after = textOf(changedSample(state.range(0)));
    for (auto _ : state)
        for (const QByteArray &text : {before, after})
            for (const QByteArray &row : text.split('^'))
                benchmark::DoNotOptimize(row.split('|').size());
}
BENCHMARK(compareVersionsYardstick)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

/// All that choosing a version does on another thread.
void readAndCompare(benchmark::State &state)
{
    const QTemporaryDir folder(QDir::currentPath() + u"/bench-XXXXXX"_s);
    VersionKeeper(folder.path()).keep(sampleText(state.range(0)), ClockReading::now());
    const TaskList today = changedSample(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ComparedVersion(*versionFile::readText(versionFile::pathOf(folder.path(), 1)), today, false)
                .rows()
                .size());
}
BENCHMARK(readAndCompare)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Of a list of so many tasks, on the thread that nobody waits for.
void keepVersion(benchmark::State &state)
{
    const QTemporaryDir folder(QDir::currentPath() + u"/bench-XXXXXX"_s);
    VersionKeeper keeper(folder.path());
    const QByteArray text = sampleText(state.range(0));
    int number = 0;
    for (auto _ : state)
        keeper.keep(text + QByteArray::number(++number), ClockReading::now());
}
BENCHMARK(keepVersion)->Arg(100)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

double median(std::vector<double> &values)
{
    std::ranges::nth_element(values, values.begin() + values.size() / 2);
    return values[values.size() / 2];
}

/// Changes that follow each other without a pause, in turns with versions and without: "ratio" is what a
/// change until it is written takes with them, to what it takes without.
void writeInARow(benchmark::State &state)
{
    constexpr int inARow = 20;
    const QTemporaryDir folder(QDir::currentPath() + u"/bench-XXXXXX"_s);
    Preferences preferences(folder.filePath(u"none.ini"_s));
    TaskManager manager(preferences);
    loadSample(manager, state.range(0));
    VersionStore store(folder.path());
    bool isKept = false;
    TaskListFile file(manager, folder.path(), folder.path(), {.keep = [&](const QByteArray &text) {
                          if (isKept)
                              store.keep(text);
                      }});
    std::vector<double> times[2];
    for (auto _ : state) {
        isKept = !isKept;
        for (int number = 0; number < inARow; ++number) {
            const auto begin = std::chrono::steady_clock::now();
            manager.select(number);
            manager.isSelectedTaskHidden() ? manager.unhideSelectedTask() : manager.hideSelectedTask();
            file.writeFile();
            const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
            times[isKept].push_back(time.count());
            diagnostics::drain();
        }
        store.finish(std::chrono::minutes(1));
    }
    state.counters["without"] = median(times[0]);
    state.counters["with"] = median(times[1]);
    state.counters["ratio"] = median(times[1]) / median(times[0]);
}
BENCHMARK(writeInARow)
    ->Arg(100)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(40)
    ->UseRealTime();

/// From the command until the versions and the newest one's tasks are shown.
void openVersions(benchmark::State &state)
{
    const QTemporaryDir folder(QDir::currentPath() + u"/bench-XXXXXX"_s);
    Preferences preferences(folder.filePath(u"none.ini"_s));
    NotificationCenter notices;
    TaskManager manager(preferences);
    loadSample(manager, state.range(1));
    {
        VersionKeeper keeper(versionFile::folderIn(folder.path()));
        const QByteArray text = sampleText(state.range(1));
        for (int number = 0; number < state.range(0); ++number)
            keeper.keep(QByteArray(text).replace("Mow", "Mow " + QByteArray::number(number)),
                        ClockReading::now());
    }
    VersionStore store(folder.path());
    for (auto _ : state) {
        ViewControllerVersions screen({manager, store, notices, [](const TaskList &, const QString &) {
                                       }});
        screen.show();
        const auto &table = *screen.findChild<QTableView *>(u"tasksTable"_s);
        while (table.model()->rowCount() == 0)
            QApplication::processEvents();
        QApplication::processEvents();
        table.viewport()->repaint();
    }
}
BENCHMARK(openVersions)->Args({500, 1000})->Args({500, 10'000})->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
