#pragma once

#include "contacts/ContactTable.h"
#include "contacts/PersistentContainer.h"
#include "messaging/SentSchedule.h"
#include "phone/NumberCheck.h"
#include "widgets/Screen.h"

#include <QElapsedTimer>
#include <QTimer>

#include <array>
#include <memory>

class QBoxLayout;
class Banner;
class QCheckBox;
class QTableView;
class ScheduleRun;
class ScheduleRuns;
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
    void changeEvent(QEvent *event) override;

private:
    void connectActions();
    void keepInStep();
    void followSelection(RecipientKind kind);
    QCheckBox &allBox(RecipientKind kind) const;
    std::vector<int> changedRows(RecipientKind kind);
    bool canSend() const;
    std::vector<Contact> selectedContacts(RecipientKind kind) const;
    void send(RecipientKind kind);
    RunSnapshot snapshotOf(RecipientKind kind, std::vector<ScheduledTask> tasks) const;
    bool areContactsNewest(const QString &consequence);
    void markContacts(QBoxLayout &column, QTableView &table, ContactTable &contacts);
    void correctNumber(QTableView &table, ContactTable &contacts, int row, const QString &number);
    void follow(const ScheduleRun &run);
    void showProgress(const ScheduleRun &run);

    void start(RunSnapshot snapshot);
    void connectReport();
    void sendAgain(const std::vector<SentMessage> &messages);
    bool isWanted(const RunSnapshot &snapshot);
    bool isConfirmed(const QString &question, QStringList people);
    void connectPreview();
    void followTasks();
    void showPreview();
    struct Earlier;
    void connectHistory();
    void askJournal();
    void showHistory(const Earlier &earlier);
    void selectChanged(RecipientKind kind);
    void selectAll(RecipientKind kind);
    std::optional<SentSchedule> sentSchedule(RecipientKind kind, const Contact &contact) const;
    QTableView &view(RecipientKind kind) const;
    ContactTable &table(RecipientKind kind);

    std::unique_ptr<Ui::ViewControllerSending> ui;
    QElapsedTimer lastPress;          ///< of a send button
    QMetaObject::Connection followed; ///< to the run that is shown
    bool isSendingShown = false;
    TaskManager &manager;
    ScheduleRuns &runs;
    PersistentContainer persistentContainer;
    ObjectContext *managedObjectContext = nullptr;
    NumberCheck numbers;
    ContactTable clientsArray;
    ContactTable teamMembersArray;
    QTimer previewDelay;
    QTimer historyDelay;
    qint64 lastQuestion = 0; ///< to the journal
    QTimer answersDelay;
    Banner *historyBanner;
    bool isHistoryKnown = false;
    std::array<SentSchedules, 2> sentSchedules; ///< by the kind of recipient
    qint64 tasksSeen = -1;                      ///< the manager's count of changes when these were made
    std::array<std::vector<ScheduledTask>, 2> scheduledTasks; ///< by the kind of recipient
};
