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
    showContacts(
        clientTableArray,
        {.title = u"Clients"_s,
         .purpose = tr("Clients are those for whom the work is done. A task can be given one of them, and "
                       "those with a phone number can be texted what is planned for them."),
         .add = u"Add a client"_s,
         .remove = u"Delete the selected clients"_s});
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
