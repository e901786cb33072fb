#include "contacts/ViewControllerTeamMgmt.h"

#include "ui_ViewControllerTeamMgmt.h"

#include <QHideEvent>

ViewControllerTeamMgmt::ViewControllerTeamMgmt(const QString &dataFolder, QWidget *parent)
    : Screen(parent)
    , ui(std::make_unique<Ui::ViewControllerTeamMgmt>())
    , persistentContainer(contactModel(), dataFolder)
{
    ui->setupUi(this);
    persistentContainer.loadPersistentStores();
    managedObjectContext = &persistentContainer.viewContext();
    teamTableArray.arrange<TeamMembers>(*managedObjectContext);
    ui->teamTable->setTable(teamTableArray);
    connectActions();
}

ViewControllerTeamMgmt::~ViewControllerTeamMgmt() = default;

void ViewControllerTeamMgmt::connectActions()
{
    connect(ui->addButton, &QPushButton::clicked, this, [this] { AddTeamMember(ui->addButton); });
    connect(ui->removeButton, &QPushButton::clicked, this, [this] { RemoveTeamMember(ui->removeButton); });
    connect(ui->okButton, &QPushButton::clicked, this, [this] { OkPressed(ui->okButton); });
}

void ViewControllerTeamMgmt::viewWillDisappear()
{
    ui->teamTable->endEditing();
    managedObjectContext->save();
}

void ViewControllerTeamMgmt::AddTeamMember(QObject *)
{
    ui->teamTable->addContact();
}

void ViewControllerTeamMgmt::RemoveTeamMember(QObject *)
{
    ui->teamTable->removeSelected();
}

void ViewControllerTeamMgmt::OkPressed(QObject *)
{
    close();
}
