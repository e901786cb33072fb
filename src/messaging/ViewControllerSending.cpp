#include "messaging/ViewControllerSending.h"

#include "app/UIUtil.h"
#include "gateway/MessagingSettings.h"
#include "messaging/PreviewPane.h"
#include "messaging/ReportPane.h"
#include "messaging/ScheduleRuns.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "platform/Preferences.h"
#include "ui_ViewControllerSending.h"
#include "widgets/Alert.h"
#include "widgets/Banner.h"

#include <QApplication>
#include <QShortcut>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

/// Numbers and days are whole; the names have what is left.
static void fitColumns(QHeaderView &header)
{
    constexpr int rowsLookedAt = 50;
    header.setResizeContentsPrecision(rowsLookedAt);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(Contact::Name, QHeaderView::Stretch);
}

ViewControllerSending::ViewControllerSending(const Services &services, QWidget *parent)
    : Screen(parent)
    , ui(std::make_unique<Ui::ViewControllerSending>())
    , manager(services.manager)
    , runs(services.runs)
    , persistentContainer(contactModel(), services.dataFolder)
    , numbers(manager.defaults.text(messagingKey::sendingPhoneNo).value_or(QString()))
{
    ui->setupUi(this);
    persistentContainer.loadPersistentStores();
    managedObjectContext = &persistentContainer.viewContext();
    clientsArray.load<Clients>(*managedObjectContext);
    teamMembersArray.load<TeamMembers>(*managedObjectContext);
    ui->clientsTable->setModel(&clientsArray);
    ui->teamMembers->setModel(&teamMembersArray);
    for (QTableView *table : {ui->clientsTable, ui->teamMembers})
        fitColumns(*table->horizontalHeader());
    for (DatePicker *picker : {ui->startSendDate, ui->endSendDate})
        picker->setMoment(Calendar::now());
    markContacts(*ui->clientsColumn, *ui->clientsTable, clientsArray);
    markContacts(*ui->teamMembersColumn, *ui->teamMembers, teamMembersArray);
    connectActions();
    connectPreview();
    connectReport();
    connectHistory();
    showPreview();
    if (const QString reason = persistentContainer.errorString(); !reason.isEmpty()) {
        auto *banner = new Banner(this);
        ui->mainLayout->insertWidget(0, banner);
        banner->tell(u"The contacts in %1 could not be read: %2."_s.arg(persistentContainer.path(), reason),
                     {});
    }
    if (const ScheduleRun *run = runs.current()) {
        ui->panes->setCurrentWidget(ui->report);
        follow(*run);
    }
}

ViewControllerSending::~ViewControllerSending() = default;

/// A button's own shortcut presses it again and again while the keys are held down.
static void takeShortcutOver(QPushButton &button)
{
    auto *shortcut = new QShortcut(button.shortcut(), &button);
    button.setShortcut({});
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, &button, &QPushButton::animateClick);
}

void ViewControllerSending::connectActions()
{
    connect(ui->allClients, &QCheckBox::clicked, this, [this] { selectClients(ui->allClients); });
    connect(ui->allTeamMembers, &QCheckBox::clicked, this, [this] { selectTeamMembers(ui->allTeamMembers); });
    connect(ui->sendMsgClients, &QPushButton::clicked, this,
            [this] { SendScheduleToClients(ui->sendMsgClients); });
    connect(ui->sendMsgTeamMembers, &QPushButton::clicked, this,
            [this] { SendScheduleToTeamMembers(ui->sendMsgTeamMembers); });
    for (QPushButton *button : {ui->sendMsgClients, ui->sendMsgTeamMembers})
        takeShortcutOver(*button);
    connect(ui->stopButton, &QPushButton::clicked, this, [this] { runs.stopSending(); });
    connect(ui->closeButton, &QPushButton::clicked, this, [this] { closeSending(ui->closeButton); });
    keepInStep();
}

void ViewControllerSending::viewDidAppear()
{
    const ScheduleRun *run = runs.current();
    ui->report->setMaySend(canSend() && !(run && run->progress().isHandingOver));
    if (run && run->progress().isSending)
        return; // its last step enables the buttons
    for (QPushButton *button : {ui->sendMsgClients, ui->sendMsgTeamMembers})
        button->setEnabled(canSend());
}

void ViewControllerSending::viewWillDisappear()
{
    managedObjectContext->save();
}

bool ViewControllerSending::canSend() const
{
    const Preferences &preferences = manager.defaults;
    const auto isSet = [&preferences](const QString &key) {
        return !preferences.text(key).value_or(QString()).isEmpty();
    };
    return preferences.boolean(messagingKey::notifications) && isSet(messagingKey::secret) &&
           isSet(messagingKey::accountId) && isSet(messagingKey::sendingPhoneNo);
}

void ViewControllerSending::SendScheduleToClients(QObject *)
{
    send(RecipientKind::Client);
}

void ViewControllerSending::SendScheduleToTeamMembers(QObject *)
{
    send(RecipientKind::TeamMember);
}

void ViewControllerSending::send(RecipientKind kind)
{
    // The second press of a double click.
    const bool isRepeated = lastPress.isValid() && lastPress.elapsed() < QApplication::doubleClickInterval();
    lastPress.start();
    if (isRepeated)
        return;
    for (DatePicker *picker : {ui->startSendDate, ui->endSendDate})
        if (!picker->commit()) // what is still being typed there
            return;
    if (!areContactsNewest(u"Nothing has been sent. Please look whom you have selected, and press the button "
                           "again."_s))
        return;
    RunSnapshot snapshot = snapshotOf(kind, tasksForSchedules(kind, manager.workingList()));
    if (isWanted(snapshot))
        start(std::move(snapshot));
}

void ViewControllerSending::start(RunSnapshot snapshot)
{
    ScheduleRun &run = runs.add(std::move(snapshot));
    follow(run);
    run.start();
}

/// What a run for those who are selected would work on.
RunSnapshot ViewControllerSending::snapshotOf(RecipientKind kind, std::vector<ScheduledTask> tasks) const
{
    std::vector<Recipient> recipients;
    for (const Contact &contact : selectedContacts(kind))
        recipients.push_back({contact.name(), contact.phoneNo()});
    const ScheduleText text(kind, ui->startSendDate->moment(), ui->endSendDate->moment(), manager.defaults);
    return {.kind = kind, .recipients = std::move(recipients), .tasks = std::move(tasks), .text = text};
}

QTableView &ViewControllerSending::view(RecipientKind kind) const
{
    return kind == RecipientKind::Client ? *ui->clientsTable : *ui->teamMembers;
}

ContactTable &ViewControllerSending::table(RecipientKind kind)
{
    return kind == RecipientKind::Client ? clientsArray : teamMembersArray;
}

/// Shows the run, from where it is to its last step.
void ViewControllerSending::follow(const ScheduleRun &run)
{
    ui->progressBar->setIndeterminate(true);
    ui->progressBar->setSteps(1, run.lastStep());
    if (ui->report->show(runs.report()))
        ui->panes->setCurrentWidget(ui->report);
    disconnect(followed); // an older one may still be handing over
    followed = connect(&run, &ScheduleRun::progressed, this, [this, &run] { showProgress(run); });
    showProgress(run);
}

void ViewControllerSending::showProgress(const ScheduleRun &run)
{
    const auto [steps, schedules, isSending, isHandingOver, unsent] = run.progress();
    // Not once more when the last message has gone: the screen may have come up again with other settings.
    if (isSending != std::exchange(isSendingShown, isSending))
        for (QPushButton *button : {ui->sendMsgClients, ui->sendMsgTeamMembers})
            button->setEnabled(!isSending);
    ui->report->setMaySend(!isHandingOver && canSend());
    ui->progressBar->setStep(steps);
    ui->stopButton->setEnabled(isHandingOver);
    if (!isHandingOver)
        historyDelay.start();
    if (isSending) {
        ui->progressBar->startAnimation();
        ui->sendingInfo->setText(u"Sending..."_s);
    } else {
        ui->progressBar->stopAnimation();
        const QString more = isHandingOver ? u" – messages are still being sent"_s
                             : unsent > 0  ? u" – messages that were not sent: %1"_s.arg(unsent)
                                           : QString();
        ui->sendingInfo->setText(u"Steps Performed:%1 Schedules Sent:%2"_s.arg(steps).arg(schedules) + more);
    }
}

void ViewControllerSending::closeSending(QObject *)
{
    close();
}
