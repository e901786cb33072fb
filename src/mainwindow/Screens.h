#pragma once

#include "forms/TaskForm.h"
#include "tools/ViewControllerWhiteboard.h"

#include <QPointer>

class ViewControllerAdd;
class GuideProgram;
class MessageJournal;
class ScheduleRuns;
class ViewControllerClientMgmt;
class ViewControllerJournal;
class ViewControllerNotes;
class ViewControllerSending;
class ViewControllerSettings;
class VersionStore;
class ViewControllerTeamMgmt;
class ViewControllerVersions;

/// Opens the program's further screens. Each exists once, opening it again raises it, and each is made anew
/// after it was closed.
class Screens
{
public:
    /// What the screens keep their files in.
    struct Folders
    {
        QString documents; ///< empty when there is no such folder
        QString state;
    };

    Screens(const TaskFormServices &formServices, ScheduleRuns &runs, VersionStore &versions,
            const Folders &folders);

    /// \param added  is told the key of the task that was added
    void openAddForm(QWidget &mainWindow, const std::function<void(const QString &key)> &added);
    /// Opens the form of the selected task as a modal window; returns at once.
    void openEditForm(QWidget &mainWindow);
    void openClients(QWidget &mainWindow);
    void openTeamMembers(QWidget &mainWindow);
    void openSending(QWidget &mainWindow);
    void openJournal(QWidget &mainWindow);
    void openSettings(QWidget &mainWindow);
    void openNotes(QWidget &mainWindow);
    void openWhiteboard(QWidget &mainWindow);
    void openVersions(QWidget &mainWindow);
    void openGuide(QWidget &mainWindow);
    MessageJournal &messageJournal() const;
    /// Asks before messages are left unsent, unless it is the system that ends the program.
    bool mayQuit() const;

private:
    /// From which texts are sent; empty when none is set.
    QString sendingNumber() const;

    TaskFormServices services;
    ScheduleRuns &runs;
    VersionStore &store;
    Folders folders;
    WhiteboardPen pen;
    QPointer<ViewControllerAdd> addForm;
    QPointer<ViewControllerClientMgmt> clients;
    QPointer<ViewControllerTeamMgmt> teamMembers;
    QPointer<ViewControllerSending> sending;
    QPointer<ViewControllerJournal> journal;
    QPointer<ViewControllerSettings> settings;
    QPointer<ViewControllerNotes> notes;
    QPointer<ViewControllerWhiteboard> whiteboard;
    QPointer<ViewControllerVersions> versions;
    QPointer<GuideProgram> guide;
};
