#include "model/TaskManager.h"
#include "platform/DesktopAppearance.h"
#include "platform/Folders.h"
#include "platform/Preferences.h"
#include "platform/SingleInstance.h"
#include "platform/TerminationSignals.h"
#include "program/Application.h"
#include "program/Program.h"

int main(int argc, char **argv)
{
    Application application(argc, argv);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    SingleInstance instance(folders::state(), bus);
    if (!instance.acquire())
        return EXIT_SUCCESS;
    Application::findWritableFolder();
    terminationSignals::quitOnThem();
    NotificationCenter systemNotices;
    DesktopAppearance appearance(Preferences::standard(), systemNotices, bus);
    appearance.follow();
    application.followAppearance(systemNotices);
    Program program(TaskManager::shared(), systemNotices, Program::Folders::ofUser());
    QObject::connect(&instance, &SingleInstance::activated, &program.mainWindow(),
                     [&program] { bringToFront(program.mainWindow()); });
    return program.run();
}
