#include "contacts/ViewControllerClientMgmt.h"

#include "platform/Diagnostics.h"
#include "ui_ViewControllerClientMgmt.h"

#include <QHideEvent>

ViewControllerClientMgmt::ViewControllerClientMgmt(const QString &dataFolder, QWidget *parent)
    : Screen(parent)
    , ui(std::make_unique<Ui::ViewControllerClientMgmt>())
    , persistentContainer(contactModel(), dataFolder)
{
    ui->setupUi(this);
    persistentContainer.loadPersistentStores();
    managedObjectContext = &persistentContainer.viewContext();
    clientTableArray.arrange<Clients>(*managedObjectContext);
    ui->clientTableView->setTable(clientTableArray);
    connectActions();
}

ViewControllerClientMgmt::~ViewControllerClientMgmt() = default;

void ViewControllerClientMgmt::connectActions()
{
    connect(ui->addButton, &QPushButton::clicked, this, [this] { AddCient(ui->addButton); });
    connect(ui->removeButton, &QPushButton::clicked, this, [this] { RemoveClient(ui->removeButton); });
    connect(ui->okButton, &QPushButton::clicked, this, [this] { okpressed(ui->okButton); });
    connect(ui->clientTableView, &ContactTableView::nameEdited, this, &ViewControllerClientMgmt::nameChange);
}

void ViewControllerClientMgmt::viewWillDisappear()
{
    ui->clientTableView->endEditing();
    managedObjectContext->save();
}

void ViewControllerClientMgmt::AddCient(QObject *)
{
    ui->clientTableView->addContact();
}

void ViewControllerClientMgmt::RemoveClient(QObject *)
{
    ui->clientTableView->removeSelected();
}

void ViewControllerClientMgmt::resetData(QObject *) {}

void ViewControllerClientMgmt::nameChange(QObject *)
{
    diagnostics::line("Name Change");
}

void ViewControllerClientMgmt::okpressed(QObject *)
{
    close();
}
