#pragma once

#include "contacts/ContactTable.h"
#include "contacts/PersistentContainer.h"
#include "widgets/Screen.h"

#include <memory>

namespace Ui {
class ViewControllerClientMgmt;
}

/// Where the user keeps the clients. Changes are saved when the screen goes away,
/// in whatever way it is closed.
class ViewControllerClientMgmt : public Screen
{
    Q_OBJECT

public:
    /// \param dataFolder  where the contact store is
    explicit ViewControllerClientMgmt(const QString &dataFolder, QWidget *parent = nullptr);
    ~ViewControllerClientMgmt() override;

public slots:
    void AddCient(QObject *sender);
    void RemoveClient(QObject *sender);
    void resetData(QObject *sender);
    void nameChange(QObject *sender);
    void okpressed(QObject *sender);

protected:
    void viewWillDisappear() override;

private:
    void connectActions();

    std::unique_ptr<Ui::ViewControllerClientMgmt> ui;
    PersistentContainer persistentContainer;
    ObjectContext *managedObjectContext = nullptr;
    ContactTable clientTableArray;
};
