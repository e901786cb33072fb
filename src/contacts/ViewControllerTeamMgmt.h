#pragma once

#include "contacts/ContactTable.h"
#include "contacts/PersistentContainer.h"
#include "widgets/Screen.h"

#include <memory>

namespace Ui {
class ViewControllerTeamMgmt;
}

/// Where the user keeps the team members. Changes are saved when the screen goes away,
/// in whatever way it is closed.
class ViewControllerTeamMgmt : public Screen
{
    Q_OBJECT

public:
    /// \param dataFolder  where the contact store is
    explicit ViewControllerTeamMgmt(const QString &dataFolder, QWidget *parent = nullptr);
    ~ViewControllerTeamMgmt() override;

public slots:
    void AddTeamMember(QObject *sender);
    void RemoveTeamMember(QObject *sender);
    void OkPressed(QObject *sender);

protected:
    void viewWillDisappear() override;

private:
    void connectActions();

    std::unique_ptr<Ui::ViewControllerTeamMgmt> ui;
    PersistentContainer persistentContainer;
    ObjectContext *managedObjectContext = nullptr;
    ContactTable teamTableArray;
};
