#pragma once

#include "forms/TaskForm.h"

#include <QPointer>

class ViewControllerAdd;
class ViewControllerClientMgmt;
class ViewControllerSettings;
class ViewControllerTeamMgmt;

/// Opens the program's further screens. Each exists once, opening it again raises it, and each is made anew
/// after it was closed.
class Screens
{
public:
    explicit Screens(const TaskFormServices &formServices);

    void openAddForm(QWidget &mainWindow);
    /// Opens the form of the selected task as a modal window; returns at once.
    void openEditForm(QWidget &mainWindow);
    void openClients(QWidget &mainWindow);
    void openTeamMembers(QWidget &mainWindow);
    void openSettings(QWidget &mainWindow);

private:
    TaskFormServices services;
    QPointer<ViewControllerAdd> addForm;
    QPointer<ViewControllerClientMgmt> clients;
    QPointer<ViewControllerTeamMgmt> teamMembers;
    QPointer<ViewControllerSettings> settings;
};
