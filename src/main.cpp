#include "model/TaskManager.h"
#include "platform/DesktopAppearance.h"
#include "platform/Folders.h"
#include "platform/Preferences.h"
#include "platform/SessionBus.h"
#include "platform/TerminationSignals.h"
#include "program/Application.h"
#include "program/Program.h"
#include "program/StartCheck.h"

#include <csignal>

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // whoever reads the diagnostic lines, or the bus, may go away
    sessionBus::leaveIfSilent();
    Application application(argc, argv);
    const QDBusConnection bus = sessionBus::open();
    SingleInstance instance(folders::state(), bus);
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
    QObject::connect(&instance, &SingleInstance::activated, &program.mainWindow(),
                     [&program] { bringToFront(program.mainWindow()); });
    return program.run([&instance] { instance.release(); });
}
