#pragma once

#include "contacts/ContactScreen.h"

/// Where the user keeps the team members.
class ViewControllerTeamMgmt : public ContactScreen
{
    Q_OBJECT

public:
    explicit ViewControllerTeamMgmt(const Services &services, QWidget *parent = nullptr);

public slots:
    void AddTeamMember(QObject *) { teamTable.addContact(); }
    void RemoveTeamMember(QObject *) { teamTable.removeSelected(); }
    void OkPressed(QObject *) { close(); }

protected:
    ContactTableView &teamTable;
    ContactTable teamTableArray;

private:
    void connectActions();
};
