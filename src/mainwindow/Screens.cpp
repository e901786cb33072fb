#include "mainwindow/Screens.h"

#include "contacts/ViewControllerClientMgmt.h"
#include "contacts/ViewControllerTeamMgmt.h"
#include "forms/ViewControllerAdd.h"
#include "forms/ViewControllerEdit.h"
#include "mainwindow/GuideProgram.h"
#include "messaging/ViewControllerSending.h"
#include "messaging/ViewControllerSettings.h"
#include "model/TaskManager.h"
#include "tools/ViewControllerNotes.h"

using namespace Qt::StringLiterals;

/// Shows the screen, which is made if it is not open; true when it was made. A screen that was closed is
/// gone.
template <typename ScreenClass, typename Resources>
static bool open(QPointer<ScreenClass> &screen, Resources &&resources, QWidget &mainWindow)
{
    const bool isNew = !screen || !screen->isVisible();
    if (isNew) {
        screen = new ScreenClass(resources, &mainWindow);
        screen->setAttribute(Qt::WA_DeleteOnClose);
    }
    bringToFront(*screen);
    return isNew;
}

Screens::Screens(const TaskFormServices &formServices, ScheduleRuns &scheduleRuns, const Folders &userFolders)
    : services(formServices)
    , runs(scheduleRuns)
    , folders(userFolders)
{
}

void Screens::openAddForm(QWidget &mainWindow, const std::function<void(const QString &)> &added)
{
    if (open(addForm, services, mainWindow))
        QObject::connect(addForm, &ViewControllerAdd::added, &mainWindow, added);
}

void Screens::openEditForm(QWidget &mainWindow)
{
    auto *form = new ViewControllerEdit(services, &mainWindow);
    form->setAttribute(Qt::WA_DeleteOnClose);
    form->setWindowModality(Qt::ApplicationModal);
    form->show();
}

void Screens::openClients(QWidget &mainWindow)
{
    open(clients, services.dataFolder, mainWindow);
}

void Screens::openTeamMembers(QWidget &mainWindow)
{
    open(teamMembers, services.dataFolder, mainWindow);
}

void Screens::openSending(QWidget &mainWindow)
{
    open(sending, ViewControllerSending::Services{services.manager, runs, services.dataFolder}, mainWindow);
}

void Screens::openSettings(QWidget &mainWindow)
{
    open(settings, services.manager.defaults, mainWindow);
}

void Screens::openNotes(QWidget &mainWindow)
{
    open(notes, ViewControllerNotes::Folders{folders.documents, folders.state}, mainWindow);
}

void Screens::openWhiteboard(QWidget &mainWindow)
{
    open(whiteboard, ViewControllerWhiteboard::Services{pen, services.colorPanel, folders.state}, mainWindow);
}

void Screens::openGuide(QWidget &mainWindow)
{
    if (!guide)
        guide = new GuideProgram(services.systemNotices, &mainWindow);
    guide->bringToFront();
}
