#include "mainwindow/Screens.h"

#include "contacts/ViewControllerClientMgmt.h"
#include "contacts/ViewControllerTeamMgmt.h"
#include "forms/ViewControllerAdd.h"
#include "forms/ViewControllerEdit.h"
#include "messaging/ViewControllerSettings.h"
#include "model/TaskManager.h"

/// Shows the screen, which is made if it is not open. A screen that was closed is gone.
template <typename Screen, typename Resources>
static void open(QPointer<Screen> &screen, Resources &&resources, QWidget &mainWindow)
{
    if (!screen || !screen->isVisible()) {
        screen = new Screen(resources, &mainWindow);
        screen->setAttribute(Qt::WA_DeleteOnClose);
    }
    screen->setWindowState(screen->windowState() & ~Qt::WindowMinimized);
    screen->show();
    screen->raise();
    screen->activateWindow();
}

Screens::Screens(const TaskFormServices &formServices)
    : services(formServices)
{
}

void Screens::openAddForm(QWidget &mainWindow)
{
    open(addForm, services, mainWindow);
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

void Screens::openSettings(QWidget &mainWindow)
{
    open(settings, services.manager.defaults, mainWindow);
}
