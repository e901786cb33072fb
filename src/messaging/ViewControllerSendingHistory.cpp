#include "journal/JournalStore.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/ViewControllerSending.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "ui_ViewControllerSending.h"
#include "widgets/Alert.h"
#include "widgets/Background.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

// What the people were sent before, and who wants to be sent nothing more.

/// What the journal tells of the people in the screen.
struct ViewControllerSending::Earlier
{
    std::array<QHash<QString, SentSchedule>, 2> schedules; ///< by the kind of recipient
    QSet<QString> declined;
};

void ViewControllerSending::connectHistory()
{
    historyDelay.setSingleShot(true);
    historyDelay.setInterval(0); // several changes at once are one
    connect(&historyDelay, &QTimer::timeout, this, &ViewControllerSending::askJournal);
    const auto update = qOverload<>(&QTimer::start);
    for (const DatePicker *picker : {ui->startSendDate, ui->endSendDate})
        connect(picker, &DatePicker::dayChosen, &historyDelay, update);
    connect(&runs.journal(), &MessageJournal::written, &historyDelay, [this] {
        if (!runs.current()) // its end is waited for
            historyDelay.start();
    });
    for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember}) {
        const auto known = [this, kind](const Contact &contact) {
            return sentSchedulesNow[size_t(kind)].constFind(matchedName(contact.name().value_or(QString())));
        };
        const auto of = [this, kind, known](const Contact &contact, QString (SentSchedule::*text)() const) {
            const auto found = known(contact);
            return found == sentSchedulesNow[size_t(kind)].cend() ? QString() : ((*found).*text)();
        };
        table(kind).addColumn({u"Last Sent"_s,
                               [of](const Contact &contact) { return of(contact, &SentSchedule::summary); },
                               [of](const Contact &contact) {
                                   return of(contact, &SentSchedule::sentence);
                               }});
    }
    connect(ui->changedClients, &QPushButton::clicked, this,
            [this] { selectChanged(RecipientKind::Client); });
    connect(ui->changedTeamMembers, &QPushButton::clicked, this,
            [this] { selectChanged(RecipientKind::TeamMember); });
    historyDelay.start();
}

/// Asks for everybody, whoever is selected.
void ViewControllerSending::askJournal()
{
    followTasks();
    std::vector<RunSnapshot> everybody;
    for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember})
        everybody.push_back(snapshotOf(kind, scheduledTasks[size_t(kind)]));
    const qint64 question = ++lastQuestion;
    inBackground(
        *this,
        [everybody, folder = runs.journal().folder()] {
            const diagnostics::Silence silence; // the lines belong to what is sent
            Earlier earlier;
            JournalStore journal(folder);
            if (!QFileInfo::exists(journal.filePath()))
                return earlier;
            const ScheduleText &range = everybody.front().text;
            const std::vector<SentMessage> sent = journal.sentFor(range.firstDay(), range.lastDay());
            for (const RunSnapshot &run : everybody)
                earlier.schedules[size_t(run.kind)] = sentSchedules(run, sent);
            earlier.declined = journal.declinedNumbers();
            return earlier;
        },
        [this, question](const Earlier &earlier) {
            if (question == lastQuestion)
                showHistory(earlier);
        });
}

void ViewControllerSending::showHistory(const Earlier &earlier)
{
    sentSchedulesNow = earlier.schedules;
    for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember}) {
        table(kind).setDeclined(earlier.declined);
        const auto &schedules = earlier.schedules[size_t(kind)];
        const bool isAnyChanged = std::ranges::any_of(schedules, &SentSchedule::isChanged);
        (kind == RecipientKind::Client ? ui->changedClients : ui->changedTeamMembers)
            ->setEnabled(isAnyChanged);
    }
}

/// Selects those whose schedule is not what they were sent for these days.
void ViewControllerSending::selectChanged(RecipientKind kind)
{
    const ContactTable &contacts = table(kind);
    QItemSelection rows;
    for (int row = 0; row < contacts.rowCount(); ++row) {
        const QString name = matchedName(contacts.contact(row).name().value_or(QString()));
        if (sentSchedulesNow[size_t(kind)].value(name).isChanged() && !contacts.isDeclined(row))
            rows.select(contacts.index(row, 0), contacts.index(row, contacts.columnCount() - 1));
    }
    QItemSelectionModel &selection = *view(kind).selectionModel();
    selection.select(rows, QItemSelectionModel::ClearAndSelect);
}

/// Takes away the mark of a number whose owner has asked for no more messages.
void ViewControllerSending::tryAgain(const Contact &contact)
{
    JournalStore journal(runs.journal().folder());
    if (!journal.tryAgain(contact.phoneNo().value_or(QString())))
        alertMessage(this, u"The mark stays, since it could not be taken away in %1: %2."_s.arg(
                               journal.filePath(), journal.problem()));
    historyDelay.start();
}
