#include "mainwindow/Screens.h"

#include "app/UIUtil.h"
#include "contacts/ViewControllerClientMgmt.h"
#include "contacts/ViewControllerTeamMgmt.h"
#include "forms/ViewControllerAdd.h"
#include "forms/ViewControllerEdit.h"
#include "gateway/MessagingSettings.h"
#include "journal/ViewControllerJournal.h"
#include "mainwindow/GuideProgram.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/ViewControllerSending.h"
#include "messaging/ViewControllerSettings.h"
#include "model/TaskManager.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "platform/TerminationSignals.h"
#include "tools/ViewControllerNotes.h"
#include "versions/ViewControllerVersions.h"
#include "widgets/WindowSize.h"

#include <QApplication>

using namespace Qt::StringLiterals;

/// Shows the screen, which is made if it is not open; true when it was made. A screen that was closed is
/// gone.
/// \param stateFolder  where its size is kept; empty for a screen that has a size of its own
template <typename ScreenClass, typename Resources>
static bool open(QPointer<ScreenClass> &screen, Resources &&resources, QWidget &mainWindow,
                 const QString &stateFolder = {})
{
    const bool isNew = !screen || !screen->isVisible();
    if (isNew) {
        screen = new ScreenClass(resources, &mainWindow);
        screen->setAttribute(Qt::WA_DeleteOnClose);
        if (!stateFolder.isEmpty())
            windowSize::keep(*screen, stateFolder);
    }
    // A modal form lets no other window be used than another modal one.
    const QWidget *modal = QApplication::activeModalWidget();
    if (modal && modal != screen) {
        screen->hide(); // a window keeps its modality while it is shown
        screen->setWindowModality(Qt::ApplicationModal);
    }
    bringToFront(*screen);
    return isNew;
}

Screens::Screens(const TaskFormServices &formServices, ScheduleRuns &scheduleRuns, VersionStore &versionStore,
                 const Folders &userFolders)
    : services(formServices)
    , runs(scheduleRuns)
    , store(versionStore)
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

QString Screens::sendingNumber() const
{
    return services.manager.defaults.text(messagingKey::sendingPhoneNo).value_or(QString());
}

void Screens::openClients(QWidget &mainWindow)
{
    open(clients, ContactScreen::Services{services.dataFolder, sendingNumber()}, mainWindow, folders.state);
}

void Screens::openTeamMembers(QWidget &mainWindow)
{
    open(teamMembers, ContactScreen::Services{services.dataFolder, sendingNumber()}, mainWindow,
         folders.state);
}

void Screens::openSending(QWidget &mainWindow)
{
    open(sending, ViewControllerSending::Services{services.manager, runs, services.dataFolder}, mainWindow,
         folders.state);
}

void Screens::openJournal(QWidget &mainWindow)
{
    if (open(journal, runs.journal(), mainWindow, folders.state))
        QObject::connect(journal, &ViewControllerJournal::messagesWanted, &mainWindow,
                         [this, &mainWindow] { openSending(mainWindow); });
}

void Screens::openSettings(QWidget &mainWindow)
{
    open(settings, services.manager.defaults, mainWindow, folders.state);
}

void Screens::openNotes(QWidget &mainWindow)
{
    open(notes, ViewControllerNotes::Folders{folders.documents, folders.state}, mainWindow, folders.state);
}

void Screens::openWhiteboard(QWidget &mainWindow)
{
    open(whiteboard, ViewControllerWhiteboard::Services{pen, services.colorPanel, folders.state}, mainWindow);
}

void Screens::openVersions(QWidget &mainWindow)
{
    const auto bringBack = [this](const TaskList &list, const QString &stepName) {
        services.manager.replaceList(list, stepName);
        services.notices.post(notice::reload);
    };
    open(versions,
         ViewControllerVersions::Services{services.manager, store, services.systemNotices, bringBack},
         mainWindow, folders.state);
}

void Screens::openGuide(QWidget &mainWindow)
{
    if (!guide)
        guide = new GuideProgram(services.systemNotices, &mainWindow);
    guide->bringToFront();
}

MessageJournal &Screens::messageJournal() const
{
    return runs.journal();
}

bool Screens::mayQuit() const
{
    if (!runs.current() || terminationSignals::isReceived())
        return true;
    const bool isWanted =
        util().askYesNo(u"Messages are still being sent. Quit and leave the rest unsent?"_s, {});
    return isWanted || !runs.current() || terminationSignals::isReceived(); // meanwhile
}
