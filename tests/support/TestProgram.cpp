#include "support/TestProgram.h"

#include <QApplication>
#include <QLocale>

#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#ifdef __SANITIZE_THREAD__
/// What QProcess starts a child with, here without sharing the test's memory: the thread sanitizer, told of a
/// child, stops looking, and would do so in the test itself.
extern "C" int clone(int (*function)(void *), void *, int flags, void *argument, ...) noexcept
{
    va_list more;
    va_start(more, argument);
    int *const processFd = va_arg(more, int *);
    va_end(more);
    const long pid =
        ::syscall(SYS_clone, flags & ~(CLONE_VM | CLONE_VFORK), nullptr, processFd, nullptr, nullptr);
    if (pid == 0)
        ::_exit(function(argument));
    return int(pid);
}
#endif

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
