#include "contacts/ViewControllerTeamMgmt.h"

#include "ui_ContactScreen.h"

using namespace Qt::StringLiterals;

ViewControllerTeamMgmt::ViewControllerTeamMgmt(const Services &services, QWidget *parent)
    : ContactScreen(services, parent)
    , teamTable(*ui->table)
{
    setObjectName(u"ViewControllerTeamMgmt"_s);
    teamTable.setObjectName(u"teamTable"_s);
    teamTableArray.load<TeamMembers>(*managedObjectContext);
    showContacts(
        teamTableArray,
        {.title = u"Team Members"_s,
         .purpose = tr("Team members are those who do the work. A task can be given one of them, and those "
                       "with a phone number can be texted their schedule."),
         .add = u"Add a team member"_s,
         .remove = u"Delete the selected team members"_s});
    connectActions();
}

void ViewControllerTeamMgmt::connectActions()
{
    connect(ui->addButton, &QPushButton::clicked, this, [this] { AddTeamMember(ui->addButton); });
    connect(ui->removeButton, &QPushButton::clicked, this, [this] { RemoveTeamMember(ui->removeButton); });
    connect(ui->okButton, &QPushButton::clicked, this, [this] { OkPressed(ui->okButton); });
}
