#pragma once

#include "contacts/ContactTable.h"
#include "contacts/PersistentContainer.h"
#include "messaging/ScheduleText.h"
#include "widgets/Screen.h"

#include <QElapsedTimer>

#include <memory>

class QCheckBox;
class QTableView;
class ScheduleRun;
class ScheduleRuns;
struct RunSnapshot;
class TaskManager;

namespace Ui {
class ViewControllerSending;
}

/// Where the user picks clients or team members and a range of days, and has each of them sent their
/// schedule. A run goes on when the screen is closed, and a screen that is opened meanwhile shows it.
class ViewControllerSending : public Screen
{
    Q_OBJECT

public:
    struct Services
    {
        TaskManager &manager;
        ScheduleRuns &runs;
        QString dataFolder; ///< where the contact store is
    };

    explicit ViewControllerSending(const Services &services, QWidget *parent = nullptr);
    ~ViewControllerSending() override;

public slots:
    void selectClients(QObject *sender);
    void selectTeamMembers(QObject *sender);
    void SendScheduleToClients(QObject *sender);
    void SendScheduleToTeamMembers(QObject *sender);
    void closeSending(QObject *sender);

protected:
    void viewDidAppear() override;
    void viewWillDisappear() override;

private:
    void connectActions();
    void keepInStep(QTableView &table, QCheckBox &selectAll);
    bool canSend() const;
    void send(RecipientKind kind, const QTableView &table, const ContactTable &contacts);
    bool areContactsNewest();
    void follow(const ScheduleRun &run);
    void showProgress(const ScheduleRun &run);

    bool isWanted(const RunSnapshot &snapshot);

    std::unique_ptr<Ui::ViewControllerSending> ui;
    QElapsedTimer lastPress;          ///< of a send button
    QMetaObject::Connection followed; ///< to the run that is shown
    bool isSendingShown = false;
    TaskManager &manager;
    ScheduleRuns &runs;
    PersistentContainer persistentContainer;
    ObjectContext *managedObjectContext = nullptr;
    ContactTable clientsArray;
    ContactTable teamMembersArray;
};
