#include "contacts/ViewControllerClientMgmt.h"

#include "platform/Diagnostics.h"
#include "ui_ContactScreen.h"

using namespace Qt::StringLiterals;

ViewControllerClientMgmt::ViewControllerClientMgmt(const Services &services, QWidget *parent)
    : ContactScreen(services, parent)
    , clientTableView(*ui->table)
    , clientTable(clientTableView)
{
    setObjectName(u"ViewControllerClientMgmt"_s);
    clientTableView.setObjectName(u"clientTableView"_s);
    clientTableArray.load<Clients>(*managedObjectContext);
    showContacts(clientTableArray, u"Clients"_s, u"Add a client"_s, u"Delete the selected clients"_s);
    connectActions();
}

void ViewControllerClientMgmt::connectActions()
{
    connect(ui->addButton, &QPushButton::clicked, this, [this] { AddCient(ui->addButton); });
    connect(ui->removeButton, &QPushButton::clicked, this, [this] { RemoveClient(ui->removeButton); });
    connect(ui->okButton, &QPushButton::clicked, this, [this] { okpressed(ui->okButton); });
    connect(&clientTableView, &ContactTableView::nameEdited, this, &ViewControllerClientMgmt::nameChange);
}

void ViewControllerClientMgmt::nameChange(QObject *)
{
    diagnostics::line("Name Change");
}
