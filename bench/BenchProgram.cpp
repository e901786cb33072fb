#include <QApplication>
#include <QFile>
#include <QStyleFactory>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <iostream>
#include <sstream>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// Sends the diagnostic lines to a file and gives the results the standard output the bench was started with.
static int redirectDiagnostics(const QString &path)
{
    const int results = ::dup(STDOUT_FILENO);
    const int lines = ::open(QFile::encodeName(path), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(lines, STDOUT_FILENO);
    ::close(lines);
    return results;
}

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    const QTemporaryDir folder;
    const int results = redirectDiagnostics(folder.filePath(u"diagnostics.txt"_s));
    std::ostringstream table;
    benchmark::ConsoleReporter reporter(benchmark::ConsoleReporter::OO_Tabular);
    reporter.SetOutputStream(&table);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const std::string text = table.str();
    return ::write(results, text.data(), text.size()) == ssize_t(text.size()) ? EXIT_SUCCESS : EXIT_FAILURE;
}
