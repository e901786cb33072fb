#include "SampleTasks.h"

#include "model/TaskSort.h"
#include "platform/Diagnostics.h"
#include "platform/FileDescriptor.h"
#include "platform/Preferences.h"
#include "platform/TextFile.h"
#include "program/Program.h"
#include "taskfile/TaskListFile.h"

#include <QApplication>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <fcntl.h>
#include <malloc.h>
#include <numeric>

using namespace Qt::StringLiterals;

// Each measurement stands beside its yardstick of the same name with "Yardstick" appended; bench/README.md
// tells how to read them. The program's diagnostic lines go to a file, as standard output is redirected at
// the start.

namespace {

constexpr int fewest = 100;
constexpr int most = 100'000;

Preferences &preferences()
{
    static Preferences store(u"/nonexistent/preferences.ini"_s);
    return store;
}

void parseFile(benchmark::State &state)
{
    const QString text = QString::fromUtf8(sampleText(state.range(0)));
    for (auto _ : state) {
        auto manager = std::make_unique<TaskManager>(preferences());
        TaskListFile file(*manager, QString(), QString());
        file.parseFile(text);
        benchmark::DoNotOptimize(manager->tasks().size());
        state.PauseTiming();
        diagnostics::drain();
        manager.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(parseFile)->RangeMultiplier(10)->Range(fewest, most)->Unit(benchmark::kMicrosecond)->UseRealTime();

void splitYardstick(benchmark::State &state)
{
    const QString text = QString::fromUtf8(sampleText(state.range(0)));
    for (auto _ : state) {
        QList<QStringList> rows;
        for (const QString &row : text.split(u'^'))
            rows.append(row.split(u'|'));
        benchmark::DoNotOptimize(rows.size());
        state.PauseTiming();
        rows.clear();
        state.ResumeTiming();
    }
}
BENCHMARK(splitYardstick)
    ->RangeMultiplier(10)
    ->Range(fewest, most)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

void writeText(benchmark::State &state)
{
    TaskManager manager(preferences());
    loadSample(manager, state.range(0));
    TaskListFile file(manager, QString(),
                      QString()); // without a documents folder the text is made and not written
    for (auto _ : state)
        benchmark::DoNotOptimize(file.writeFile());
}
BENCHMARK(writeText)->RangeMultiplier(10)->Range(fewest, most)->Unit(benchmark::kMicrosecond)->UseRealTime();

void durableWrite(benchmark::State &state)
{
    const QTemporaryDir folder(QDir::currentPath() + u"/bench-XXXXXX"_s);
    const QByteArray text = sampleText(state.range(0));
    TextFile file(folder.filePath(u"list.txt"_s), folder.filePath(u"state"_s));
    for (auto _ : state)
        if (!file.write(text))
            state.SkipWithError("the file cannot be written");
}
BENCHMARK(durableWrite)
    ->RangeMultiplier(10)
    ->Range(fewest, most)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

void durableWriteYardstick(benchmark::State &state)
{
    const QTemporaryDir folder(QDir::currentPath() + u"/bench-XXXXXX"_s);
    const QByteArray text = sampleText(state.range(0));
    for (auto _ : state) {
        FileDescriptor file(folder.filePath(u"plain.txt"_s), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (!file.write(text) || !file.sync())
            state.SkipWithError("the file cannot be written");
    }
}
BENCHMARK(durableWriteYardstick)
    ->RangeMultiplier(10)
    ->Range(fewest, most)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

/// A command on the selected task in the real window, or its undoing, until the list is in its file and the
/// table is painted.
void measureCommand(benchmark::State &state, bool isUndo)
{
    const QTemporaryDir folder(QDir::currentPath() + u"/bench-XXXXXX"_s);
    NotificationCenter systemNotices;
    TaskManager manager(preferences());
    loadSample(manager, state.range(0));
    Program program(manager, systemNotices, {folder.path(), folder.path(), folder.path(), folder.path()});
    loadSample(manager, state.range(0)); // the folder has no file to read the list from
    program.applicationNotices().post(notice::reload);
    QWidget &window = program.mainWindow();
    window.show();
    auto *table = window.findChild<QTableView *>(u"tblView"_s);
    auto *hide = window.findChild<QAction *>(u"actionHide"_s);
    auto *undo = window.findChild<QAction *>(u"actionUndo"_s);
    QApplication::processEvents();
    for (auto _ : state) {
        state.PauseTiming();
        table->selectRow(int(state.iterations() % 100));
        QApplication::processEvents();
        if (isUndo)
            hide->trigger();
        diagnostics::drain();
        state.ResumeTiming();
        (isUndo ? undo : hide)->trigger();
        table->viewport()->repaint();
    }
    diagnostics::drain();
}

void command(benchmark::State &state)
{
    measureCommand(state, false);
}
BENCHMARK(command)
    ->RangeMultiplier(10)
    ->Range(fewest, most)
    ->Arg(416'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void undoOfCommand(benchmark::State &state)
{
    measureCommand(state, true);
}
BENCHMARK(undoOfCommand)
    ->RangeMultiplier(10)
    ->Range(fewest, most)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

/// The last of 200 steps, each of which sorts the list, and their undoing; in between the list is read anew
/// at times, and among the first of them every task is changed in other ways. Reports the memory that they
/// take.
void undoOfSorting(benchmark::State &state)
{
    constexpr int steps = 200;
    constexpr double megabyte = 1e6;
    TaskManager manager(preferences());
    loadSample(manager, state.range(0));
    const auto inUse = [] {
        return double(mallinfo2().uordblks + mallinfo2().hblkhd);
    };
    for (auto _ : state) {
        state.PauseTiming();
        const double before = inUse();
        for (int step = 0; step < steps; ++step) {
            manager.sortByColumn({.key = infoOf(TaskColumn(step % 2 * 3)).sortKey});
            manager.endStep();
            if (step % 20 == 0)
                loadSample(manager, state.range(0));
            if (step < 10)
                manager.invertColors();
        }
        state.counters["MB"] = (inUse() - before) / megabyte;
        state.ResumeTiming();
        while (manager.undo())
            continue;
    }
}
BENCHMARK(undoOfSorting)->Arg(most)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

/// One more letter in the search field of the real window, until the table is painted.
void searchKeystroke(benchmark::State &state)
{
    const QTemporaryDir folder;
    NotificationCenter systemNotices;
    TaskManager manager(preferences());
    loadSample(manager, state.range(0));
    Program program(manager, systemNotices, {{}, folder.path(), folder.path(), folder.path()});
    QWidget &window = program.mainWindow();
    window.show();
    auto *field = window.findChild<QLineEdit *>(u"searchField"_s);
    auto *table = window.findChild<QTableView *>(u"tblView"_s);
    QApplication::processEvents();
    bool longer = false;
    for (auto _ : state) {
        longer = !longer;
        field->setText(longer ? u"roof"_s : u"roo"_s);
        table->viewport()->repaint();
        diagnostics::flush();
    }
    diagnostics::drain();
}
BENCHMARK(searchKeystroke)
    ->RangeMultiplier(10)
    ->Range(fewest, most)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

void searchYardstick(benchmark::State &state)
{
    const TaskList tasks = sampleTasks(state.range(0));
    const QString text = u"Roof"_s;
    for (auto _ : state) {
        qsizetype found = 0;
        const QString lowered = text.toLower();
        for (const SharedTask &entry : tasks) {
            const QString name = entry->name.toLower();
            const QString desc = entry->desc.toLower();
            const QString client = entry->client.toLower();
            const QString teamMember = entry->teamMember.toLower();
            found += name.contains(lowered) || desc.contains(lowered) || client.contains(lowered) ||
                     teamMember.contains(lowered);
        }
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(searchYardstick)
    ->RangeMultiplier(10)
    ->Range(fewest, most)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

/// How many lists are sorted in one measurement, so that short ones can be measured at all.
qsizetype listsAtOnce(qsizetype tasks)
{
    return std::max<qsizetype>(1, 10'000 / tasks);
}

/// Arguments: the number of tasks and the column.
void sortByColumn(benchmark::State &state)
{
    const TaskList unsorted = sampleTasks(state.range(0));
    const qsizetype lists = listsAtOnce(unsorted.size());
    const TaskColumnInfo &column = taskColumns()[state.range(1)];
    state.SetLabel(column.title.toStdString());
    while (state.KeepRunningBatch(lists)) {
        state.PauseTiming();
        std::vector<TaskList> copies(size_t(lists), unsorted);
        for (TaskList &copy : copies)
            copy.detach();
        state.ResumeTiming();
        for (TaskList &copy : copies)
            sortTasks(copy, column.column, true);
    }
}

template <typename Key>
void sortIndex(benchmark::State &state, const std::vector<Key> &keys)
{
    for (auto _ : state) {
        std::vector<quint32> index(keys.size());
        std::iota(index.begin(), index.end(), 0U);
        std::stable_sort(index.begin(), index.end(),
                         [&keys](quint32 a, quint32 b) { return keys[a] < keys[b]; });
        benchmark::DoNotOptimize(index.data());
    }
}

template <typename KeyOf>
auto keysOf(const TaskList &tasks, KeyOf keyOf)
{
    std::vector<decltype(keyOf(*tasks.first()))> keys;
    for (const SharedTask &entry : tasks)
        keys.push_back(keyOf(*entry));
    return keys;
}

void sortYardstick(benchmark::State &state)
{
    const TaskList tasks = sampleTasks(state.range(0));
    state.SetLabel(taskColumns()[size_t(state.range(1))].title.toStdString());
    const auto time = [](qint64 hour, qint64 minute) {
        return QString::number(hour) + u':' + QString::number(minute);
    };
    switch (TaskColumn(state.range(1))) {
    case TaskColumn::Date:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.date; }));
    case TaskColumn::Due:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.due; }));
    case TaskColumn::Status:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.status; }));
    case TaskColumn::Priority:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.priority; }));
    case TaskColumn::StartTime:
        return sortIndex(state,
                         keysOf(tasks, [&time](const task &t) { return time(t.startHour, t.startMin); }));
    case TaskColumn::EndTime:
        return sortIndex(state, keysOf(tasks, [&time](const task &t) { return time(t.endHour, t.endMin); }));
    case TaskColumn::Name:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.name; }));
    case TaskColumn::Client:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.client; }));
    case TaskColumn::TeamMember:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.teamMember; }));
    case TaskColumn::Description:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.desc; }));
    case TaskColumn::Key:
        return sortIndex(state, keysOf(tasks, [](const task &t) { return t.key; }));
    }
}

void everyColumn(benchmark::internal::Benchmark *sort)
{
    for (int count = fewest; count <= most; count *= count == fewest ? 100 : 10)
        for (int column = 0; column < int(taskColumns().size()); ++column)
            sort->Args({count, column});
    sort->Unit(benchmark::kMicrosecond)->UseRealTime();
}
BENCHMARK(sortByColumn)->Apply(everyColumn);
BENCHMARK(sortYardstick)->Apply(everyColumn);

} // namespace
