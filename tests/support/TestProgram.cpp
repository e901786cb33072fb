#include "support/TestProgram.h"

#include <QApplication>
#include <QLocale>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

/// Runs the test classes one after the other, in a scratch home and the locale en_US; the number of failures.
int main(int argc, char **argv)
{
    // The results keep the standard output; what the program writes there is caught or thrown away.
    stdout = ::fdopen(::dup(STDOUT_FILENO), "w");
    const int nowhere = ::open("/dev/null", O_WRONLY);
    if (!stdout || ::dup2(nowhere, STDOUT_FILENO) < 0)
        return EXIT_FAILURE;
    const ScratchHome home;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QApplication application(argc, argv);
    if (testClasses.empty())
        return EXIT_FAILURE;
    int failures = 0;
    for (const auto make : testClasses)
        failures += QTest::qExec(make().get(), argc, argv);
    return failures;
}
