#include "model/TaskManager.h"
#include "platform/DesktopAppearance.h"
#include "platform/Folders.h"
#include "platform/Preferences.h"
#include "platform/SessionBus.h"
#include "platform/TerminationSignals.h"
#include "program/Application.h"
#include "program/CommandLine.h"
#include "program/Program.h"
#include "program/StartCheck.h"
#include "program/TaskListing.h"

#include <QTextStream>

#include <csignal>
#include <fontconfig/fontconfig.h>
#include <future>
#include <span>

/// Does what needs no window; the exit code.
static int runWithoutWindow(const CommandLine &commandLine)
{
    constexpr int wrongUse = 2;
    switch (commandLine.purpose) {
    case CommandLine::Purpose::Listing:
        return TaskListing(folders::documents(), folders::state())
            .print(commandLine.view, commandLine.isJson ? TaskListing::Form::Json : TaskListing::Form::Text);
    case CommandLine::Purpose::Answer:
        QTextStream(stdout) << commandLine.answer;
        return EXIT_SUCCESS;
    default:
        QTextStream(stderr) << QStringLiteral("quorvane: ") + commandLine.answer + QChar::LineFeed;
        return wrongUse;
    }
}

static int runInWindow(int argc, char **argv, const QString &action)
{
    // The list of the system's fonts takes as long to read as the display to open, and nothing of it.
    std::future<void> fonts = std::async(std::launch::async, [] { FcInit(); });
    sessionBus::leaveIfSilent();
    Application application(argc, argv);
    fonts.wait(); // before a window asks for it
    const QDBusConnection bus = sessionBus::open();
    SingleInstance instance(folders::state(), bus, action);
    const SingleInstance::Outcome outcome = instance.acquire();
    if (outcome == SingleInstance::Outcome::Shown)
        return EXIT_SUCCESS;
    terminationSignals::quitOnThem();
    NotificationCenter systemNotices;
    DesktopAppearance appearance(Preferences::standard(), systemNotices, bus);
    appearance.follow();
    application.followAppearance(systemNotices);
    if (!mayStart(instance, outcome))
        return EXIT_FAILURE;
    Application::keepDialogSettings();
    Application::findWritableFolder();
    Program program(TaskManager::shared(), systemNotices, Program::Folders::ofUser());
    const auto perform = [&program](const QString &wanted) {
        program.perform(wanted);
    };
    QObject::connect(&instance, &SingleInstance::activated, &program.mainWindow(), perform);
    if (!action.isEmpty()) // once the window is there
        QMetaObject::invokeMethod(
            &program.mainWindow(), [&] { perform(action); }, Qt::QueuedConnection);
    return program.run([&instance] { instance.release(); });
}

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // whoever reads the diagnostic lines, or the bus, may go away
    QStringList arguments;
    for (const char *argument : std::span(argv, size_t(argc)))
        arguments << QString::fromLocal8Bit(argument);
    const CommandLine commandLine(arguments);
    if (commandLine.purpose == CommandLine::Purpose::Window)
        return runInWindow(argc, argv, commandLine.action);
    const QCoreApplication application(argc, argv);
    return runWithoutWindow(commandLine);
}
