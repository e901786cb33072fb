#pragma once

#include "forms/TaskForm.h"

#include <QPointer>

class ViewControllerAdd;
class ScheduleRuns;
class ViewControllerClientMgmt;
class ViewControllerSending;
class ViewControllerSettings;
class ViewControllerTeamMgmt;

/// Opens the program's further screens. Each exists once, opening it again raises it, and each is made anew
/// after it was closed.
class Screens
{
public:
    Screens(const TaskFormServices &formServices, ScheduleRuns &runs);

    void openAddForm(QWidget &mainWindow);
    /// Opens the form of the selected task as a modal window; returns at once.
    void openEditForm(QWidget &mainWindow);
    void openClients(QWidget &mainWindow);
    void openTeamMembers(QWidget &mainWindow);
    void openSending(QWidget &mainWindow);
    void openSettings(QWidget &mainWindow);

private:
    TaskFormServices services;
    ScheduleRuns &runs;
    QPointer<ViewControllerAdd> addForm;
    QPointer<ViewControllerClientMgmt> clients;
    QPointer<ViewControllerTeamMgmt> teamMembers;
    QPointer<ViewControllerSending> sending;
    QPointer<ViewControllerSettings> settings;
};
