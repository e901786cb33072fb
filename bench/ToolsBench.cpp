#include "tools/ViewControllerNotes.h"
#include "tools/ViewControllerWhiteboard.h"
#include "widgets/ColorWell.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cmath>
#include <unistd.h>

using namespace Qt::StringLiterals;

// Yardsticks and how to read the figures: bench/README.md.

namespace {

constexpr QSize canvasSize(1920, 1080);
constexpr int band = 60;

void writeDurably(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush() ||
        ::fsync(file.handle()) != 0)
        qFatal("%s", qPrintable(file.errorString()));
}

/// A whiteboard with a scribble on it.
class SampleBoard
{
public:
    SampleBoard()
    {
        QDir::setCurrent(folder.path());
        screen.resize(canvasSize + QSize(0, band));
        screen.show();
        QCoreApplication::processEvents();
        layer = screen.findChild<QWidget *>(u"line"_s);
        for (int stroke = 0; stroke < 20; ++stroke)
            draw(stroke);
    }

    bool isLargeEnough() const { return layer->size() == canvasSize; }
    QString picture() const { return folder.filePath(u"zandulistwhiteboard.png"_s); }

    void draw(int stroke)
    {
        send(QEvent::MouseButtonPress, place(stroke, 0));
        for (int step = 1; step < 60; ++step)
            send(QEvent::MouseMove, place(stroke, step));
        release(stroke);
    }

    static QPointF place(int stroke, int step)
    {
        return {40.0 + step * 30.0, 60.0 + stroke % 20 * 50.0 + 40.0 * std::sin(step * 0.7 + stroke)};
    }

    void release(int stroke) { send(QEvent::MouseButtonRelease, place(stroke, 59)); }

    void send(QEvent::Type type, QPointF point)
    {
        QMouseEvent event(type, point, layer->mapToGlobal(point),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        QCoreApplication::sendEvent(layer, &event);
    }

private:
    QTemporaryDir folder;
    WhiteboardPen pen;
    ColorPanel colorPanel;
    ViewControllerWhiteboard screen{{pen, colorPanel, folder.filePath(u"state"_s)}};
    QWidget *layer = nullptr;
};

void releaseStroke(benchmark::State &state)
{
    SampleBoard board;
    if (!board.isLargeEnough())
        state.SkipWithError("needs a display of more than 1920 x 1140");
    int stroke = 0;
    for (auto _ : state) {
        state.PauseTiming();
        board.send(QEvent::MouseButtonPress, SampleBoard::place(stroke, 0));
        for (int step = 1; step < 60; ++step)
            board.send(QEvent::MouseMove, SampleBoard::place(stroke, step));
        QCoreApplication::processEvents();
        state.ResumeTiming();
        board.release(stroke++);
    }
}

void encodeAndWrite(benchmark::State &state)
{
    const SampleBoard board;
    const QImage image = QImage(board.picture()).convertToFormat(QImage::Format_RGB32);
    const QTemporaryDir folder;
    for (auto _ : state) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "PNG");
        writeDurably(folder.filePath(u"picture.png"_s), bytes);
    }
}

/// One position of a drag, until it is painted; `range` are the positions before it.
void dragPosition(benchmark::State &state)
{
    SampleBoard board;
    if (!board.isLargeEnough())
        state.SkipWithError("needs a display of more than 1920 x 1140");
    board.send(QEvent::MouseButtonPress, SampleBoard::place(0, 0));
    int step = 0;
    for (; step < state.range(0); ++step)
        board.send(QEvent::MouseMove, SampleBoard::place(step / 60, step % 60));
    QCoreApplication::processEvents();
    for (auto _ : state) {
        board.send(QEvent::MouseMove, SampleBoard::place(step / 60, step % 60));
        QCoreApplication::processEvents();
        ++step;
    }
    state.counters["positions/s"] =
        benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}

BENCHMARK(releaseStroke)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(encodeAndWrite)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(dragPosition)->Arg(10)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Five megabytes of notes.
QByteArray sampleNotes()
{
    QByteArray text;
    for (int line = 0; text.size() < 5'000'000; ++line)
        text +=
            "Line " + QByteArray::number(line) + ": ring the nursery about the plum trees, and the café.\n";
    return text;
}

void openNotes(benchmark::State &state)
{
    const QTemporaryDir folder;
    writeDurably(folder.filePath(u"zandunotes.txt"_s), sampleNotes());
    for (auto _ : state) {
        auto screen = std::make_unique<ViewControllerNotes>(
            ViewControllerNotes::Folders{folder.path(), folder.filePath(u"state"_s)});
        screen->show();
        QCoreApplication::processEvents();
        state.PauseTiming();
        screen.reset();
        state.ResumeTiming();
    }
}

void showBareText(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"notes.txt"_s);
    writeDurably(path, sampleNotes());
    for (auto _ : state) {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        auto view = std::make_unique<QPlainTextEdit>();
        view->setPlainText(QString::fromUtf8(file.readAll()));
        view->show();
        QCoreApplication::processEvents();
        state.PauseTiming();
        view.reset();
        state.ResumeTiming();
    }
}

/// The notes as they were at the last save, or (1) with a word typed since.
void saveNotes(benchmark::State &state)
{
    const QTemporaryDir folder;
    writeDurably(folder.filePath(u"zandunotes.txt"_s), sampleNotes());
    ViewControllerNotes screen({folder.path(), folder.filePath(u"state"_s)});
    screen.show();
    auto *text = screen.findChild<QPlainTextEdit *>(u"textEdit"_s);
    text->insertPlainText(u"more"_s);
    for (auto _ : state) {
        if (state.range(0) == 1)
            text->insertPlainText(u"word "_s);
        screen.tick(nullptr);
    }
}

void writePlainly(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QByteArray text = sampleNotes();
    for (auto _ : state)
        writeDurably(folder.filePath(u"notes.txt"_s), text);
}

BENCHMARK(openNotes)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(showBareText)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(saveNotes)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(writePlainly)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
