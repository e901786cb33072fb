#pragma once

#include "support/ScratchHome.h"

#include <QApplication>
#include <QLocale>
#include <QTest>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

/// Runs the test classes one after the other, in a scratch home and the locale en_US; the number of failures.
template <typename... TestClasses>
int runTests(int argc, char **argv)
{
    // The results keep the standard output; what the program writes there is caught or thrown away.
    stdout = ::fdopen(::dup(STDOUT_FILENO), "w");
    const int nowhere = ::open("/dev/null", O_WRONLY);
    if (!stdout || ::dup2(nowhere, STDOUT_FILENO) < 0)
        return EXIT_FAILURE;
    const ScratchHome home;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QApplication application(argc, argv);
    int failures = 0;
    const auto run = [&](QObject &&test) {
        failures += QTest::qExec(&test, argc, argv);
    };
    (run(TestClasses()), ...);
    return failures;
}
