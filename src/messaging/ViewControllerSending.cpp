#include "messaging/ViewControllerSending.h"

#include "app/UIUtil.h"
#include "messaging/MessagingSettings.h"
#include "messaging/ScheduleRuns.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "platform/Preferences.h"
#include "ui_ViewControllerSending.h"

#include <QApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

/// The contacts of the selected rows, in the order of the rows.
static std::vector<Recipient> selectedRecipients(const QTableView &table, const ContactTable &contacts)
{
    QList<int> rows;
    for (const QModelIndex &index : table.selectionModel()->selectedRows())
        rows.append(index.row());
    std::ranges::sort(rows);
    std::vector<Recipient> recipients;
    for (const int row : rows)
        recipients.push_back({contacts.contact(row).name(), contacts.contact(row).phoneNo()});
    return recipients;
}

ViewControllerSending::ViewControllerSending(const Services &services, QWidget *parent)
    : Screen(parent)
    , ui(std::make_unique<Ui::ViewControllerSending>())
    , manager(services.manager)
    , runs(services.runs)
    , persistentContainer(contactModel(), services.dataFolder)
{
    ui->setupUi(this);
    persistentContainer.loadPersistentStores();
    managedObjectContext = &persistentContainer.viewContext();
    clientsArray.load<Clients>(*managedObjectContext);
    teamMembersArray.load<TeamMembers>(*managedObjectContext);
    ui->clientsTable->setModel(&clientsArray);
    ui->teamMembers->setModel(&teamMembersArray);
    for (QTableView *table : {ui->clientsTable, ui->teamMembers})
        table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    for (DatePicker *picker : {ui->startSendDate, ui->endSendDate})
        picker->setMoment(Calendar::now());
    connectActions();
    if (const ScheduleRun *run = runs.current())
        follow(*run);
}

ViewControllerSending::~ViewControllerSending() = default;

void ViewControllerSending::connectActions()
{
    connect(ui->allClients, &QCheckBox::clicked, this, [this] { selectClients(ui->allClients); });
    connect(ui->allTeamMembers, &QCheckBox::clicked, this, [this] { selectTeamMembers(ui->allTeamMembers); });
    connect(ui->sendMsgClients, &QPushButton::clicked, this,
            [this] { SendScheduleToClients(ui->sendMsgClients); });
    connect(ui->sendMsgTeamMembers, &QPushButton::clicked, this,
            [this] { SendScheduleToTeamMembers(ui->sendMsgTeamMembers); });
    connect(ui->closeButton, &QPushButton::clicked, this, [this] { closeSending(ui->closeButton); });
    keepInStep(*ui->clientsTable, *ui->allClients);
    keepInStep(*ui->teamMembers, *ui->allTeamMembers);
}

/// Lets the check box follow when rows are selected one by one.
void ViewControllerSending::keepInStep(QTableView &table, QCheckBox &selectAll)
{
    const auto follow = [&table, &selectAll] {
        const qsizetype selected = table.selectionModel()->selectedRows().size();
        selectAll.setChecked(selected > 0 && selected == table.model()->rowCount());
    };
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, &selectAll, follow);
}

void ViewControllerSending::viewDidAppear()
{
    if (const ScheduleRun *run = runs.current(); run && run->progress().isSending)
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

static void select(QTableView &table, const QCheckBox &selectAll)
{
    const bool isOn = selectAll.isChecked();
    diagnostics::line(isOn ? 1 : 0);
    if (isOn)
        table.selectAll();
    else
        table.clearSelection();
}

void ViewControllerSending::selectClients(QObject *)
{
    select(*ui->clientsTable, *ui->allClients);
}

void ViewControllerSending::selectTeamMembers(QObject *)
{
    select(*ui->teamMembers, *ui->allTeamMembers);
}

void ViewControllerSending::SendScheduleToClients(QObject *)
{
    send(RecipientKind::Client, selectedRecipients(*ui->clientsTable, clientsArray));
}

void ViewControllerSending::SendScheduleToTeamMembers(QObject *)
{
    send(RecipientKind::TeamMember, selectedRecipients(*ui->teamMembers, teamMembersArray));
}

void ViewControllerSending::send(RecipientKind kind, std::vector<Recipient> recipients)
{
    // The second press of a double click, or of a key that is held down.
    const bool isRepeated = lastPress.isValid() && lastPress.elapsed() < QApplication::doubleClickInterval();
    lastPress.start();
    if (isRepeated)
        return;
    for (DatePicker *picker : {ui->startSendDate, ui->endSendDate})
        if (!picker->commit()) // what is still being typed there
            return;
    const ScheduleText text(kind, ui->startSendDate->moment(), ui->endSendDate->moment(), manager.defaults);
    RunSnapshot snapshot{.kind = kind,
                         .recipients = std::move(recipients),
                         .tasks = tasksForSchedules(kind, manager.workingList()),
                         .text = text};
    if (!isWanted(snapshot))
        return;
    ScheduleRun &run = runs.add(std::move(snapshot));
    follow(run);
    run.start();
}

/// Asks before the same people are sent the same again.
bool ViewControllerSending::isWanted(const RunSnapshot &snapshot)
{
    constexpr size_t mostNamed = 8;
    const std::optional<QTime> before = runs.timeOfSame(snapshot);
    if (!before)
        return true;
    const Preferences &preferences = manager.defaults;
    const bool isTest = preferences.boolean(messagingKey::overwrite);
    const QString testNumber = preferences.text(messagingKey::testPhoneNo).value_or(QString());
    QStringList people;
    for (const Recipient &recipient : snapshot.recipients)
        if (people.size() < qsizetype(mostNamed))
            people.append(u"%1 (%2)"_s.arg(recipient.name.value_or(QString()),
                                           isTest ? testNumber : recipient.phoneNo.value_or(u"–"_s)));
    if (snapshot.recipients.size() > mostNamed)
        people.append(u"%1 more"_s.arg(snapshot.recipients.size() - mostNamed));
    const bool isAgain = util().askYesNo(u"The same messages were sent at %1. Send them again?"_s.arg(
                                             QLocale().toString(*before, QLocale::ShortFormat)),
                                         people.join(u", "_s));
    lastPress.start();
    return isAgain;
}

/// Shows the run, from where it is to its last step.
void ViewControllerSending::follow(const ScheduleRun &run)
{
    ui->progressBar->setIndeterminate(true);
    ui->progressBar->setSteps(1, run.lastStep());
    connect(&run, &ScheduleRun::progressed, this, [this, &run] {
        if (&run == runs.current()) // an older one that still hands over is not what is shown
            showProgress(run);
    });
    showProgress(run);
}

void ViewControllerSending::showProgress(const ScheduleRun &run)
{
    const auto [steps, schedules, isSending, isHandingOver] = run.progress();
    for (QPushButton *button : {ui->sendMsgClients, ui->sendMsgTeamMembers})
        button->setEnabled(!isSending);
    ui->progressBar->setStep(steps);
    if (isSending) {
        ui->progressBar->startAnimation();
        ui->sendingInfo->setText(u"Sending..."_s);
    } else {
        ui->progressBar->stopAnimation();
        ui->sendingInfo->setText(u"Steps Performed:%1 Schedules Sent:%2"_s.arg(steps).arg(schedules) +
                                 (isHandingOver ? u" – messages are still being sent"_s : QString()));
    }
}

void ViewControllerSending::closeSending(QObject *)
{
    close();
}
