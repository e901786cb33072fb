#include "SampleTasks.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int runs = 15;
constexpr qsizetype tasksInMemory = 100'000;
constexpr int patience = 60'000; // milliseconds

/// One run of a program, from its start until it has painted its window.
class Start
{
public:
    Start(const QString &program, const QString &home, const QByteArray &paintedLine)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
            environment.insert(QString::fromLatin1(variable), home);
        process.setProcessEnvironment(environment);
        QElapsedTimer timer;
        timer.start();
        process.start(program, QStringList());
        QByteArray lines;
        while (!lines.contains(paintedLine)) {
            if (!process.waitForReadyRead(patience))
                qFatal("%s did not paint its window", qPrintable(program));
            lines = lines.last(qMin(lines.size(), paintedLine.size())) + process.readAllStandardOutput();
        }
        milliseconds = double(timer.nsecsElapsed()) / 1e6;
    }
    ~Start()
    {
        process.kill();
        process.waitForFinished();
    }

    /// Resident memory in bytes, once nothing more is written.
    qint64 residentMemory()
    {
        while (process.waitForReadyRead(1000))
            process.readAllStandardOutput();
        QFile statm(u"/proc/%1/statm"_s.arg(process.processId()));
        if (!statm.open(QIODevice::ReadOnly))
            return -1;
        return statm.readAll().split(' ').at(1).toLongLong() * 4096;
    }

    double milliseconds = 0;

private:
    QProcess process;
};

void writeList(const QString &home, qsizetype count)
{
    QDir().mkpath(home + u"/Documents"_s);
    QFile file(home + u"/Documents/zandulist.txt"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write(sampleText(count));
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace

/// Usage: startup_bench QUORVANE BARE_WINDOW
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 3)
        return EXIT_FAILURE;
    const QString program = QString::fromLocal8Bit(argv[1]);
    const QString bare = QString::fromLocal8Bit(argv[2]);
    const QByteArray rowPainted = "Start Time ";

    for (const int tasks : {1000, 10'000}) {
        const QTemporaryDir startHome;
        writeList(startHome.path(), tasks);
        std::vector<double> own;
        std::vector<double> yardstick;
        for (int run = 0; run < runs; ++run) {
            yardstick.push_back(Start(bare, startHome.path(), "painted").milliseconds);
            own.push_back(Start(program, startHome.path(), rowPainted).milliseconds);
        }
        std::printf("start to first paint, %d tasks: %.1f ms; bare window: %.1f ms; ratio %.2f\n", tasks,
                    median(own), median(yardstick), median(own) / median(yardstick));
    }

    const QTemporaryDir emptyHome;
    const QTemporaryDir fullHome;
    writeList(fullHome.path(), tasksInMemory);
    const qint64 empty = Start(program, emptyHome.path(), "Number of Rows:").residentMemory();
    const qint64 full = Start(program, fullHome.path(), rowPainted).residentMemory();
    std::printf("resident memory, %d tasks: %.1f MB; empty: %.1f MB; bytes a task %.0f\n", int(tasksInMemory),
                double(full) / 1e6, double(empty) / 1e6, double(full - empty) / double(tasksInMemory));
    return EXIT_SUCCESS;
}
