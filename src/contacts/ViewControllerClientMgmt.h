#pragma once

#include "contacts/ContactScreen.h"

/// Where the user keeps the clients.
class ViewControllerClientMgmt : public ContactScreen
{
    Q_OBJECT

public:
    explicit ViewControllerClientMgmt(const Services &services, QWidget *parent = nullptr);

public slots:
    void AddCient(QObject *) { clientTableView.addContact(); }
    void RemoveClient(QObject *) { clientTableView.removeSelected(); }
    void resetData(QObject *) {}
    void nameChange(QObject *nameField);
    void okpressed(QObject *) { close(); }

protected:
    ContactTableView &clientTableView;
    QAbstractScrollArea &clientTable; ///< the same: a table view is its own scroll view
    ContactTable clientTableArray;

private:
    void connectActions();
};
