#include "journal/JournalStore.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/ViewControllerSending.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "ui_ViewControllerSending.h"
#include "widgets/Background.h"
#include "widgets/Banner.h"

#include <QCheckBox>
#include <QFileInfo>

using namespace Qt::StringLiterals;

// What the people were sent before, and who wants to be sent nothing more.

/// What the journal tells of the people in the screen.
struct ViewControllerSending::Earlier
{
    std::array<SentSchedules, 2> schedules; ///< by the kind of recipient
    QSet<QString> declined;
    QString problem; ///< why it tells nothing
};

void ViewControllerSending::connectHistory()
{
    constexpr std::chrono::milliseconds gathering(500); // answers that come one after the other
    historyDelay.setSingleShot(true);
    historyDelay.setInterval(0); // several changes at once are one
    answersDelay.setSingleShot(true);
    answersDelay.setInterval(gathering);
    for (QTimer *delay : {&historyDelay, &answersDelay})
        connect(delay, &QTimer::timeout, this, &ViewControllerSending::askJournal);
    for (const DatePicker *picker : {ui->startSendDate, ui->endSendDate})
        connect(picker, &DatePicker::dayChosen, &historyDelay, qOverload<>(&QTimer::start));
    connect(&runs.journal(), &MessageJournal::written, &answersDelay, [this] {
        if (!runs.current() && !answersDelay.isActive()) // the end of a run is waited for
            answersDelay.start();
    });
    for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember}) {
        const auto said = [this, kind](const Contact &contact, QString (SentSchedule::*text)() const) {
            const std::optional<SentSchedule> sent = sentSchedule(kind, contact);
            return sent ? ((*sent).*text)() : QString();
        };
        table(kind).addColumn(
            {u"Last Sent"_s, [said](const Contact &contact) { return said(contact, &SentSchedule::summary); },
             [said](const Contact &contact) {
                 return said(contact, &SentSchedule::sentence);
             }});
        connect(kind == RecipientKind::Client ? ui->changedClients : ui->changedTeamMembers,
                &QPushButton::clicked, this, [this, kind] { selectChanged(kind); });
    }
    historyDelay.start();
}

std::optional<SentSchedule> ViewControllerSending::sentSchedule(RecipientKind kind,
                                                                const Contact &contact) const
{
    return sentSchedules[size_t(kind)].of({contact.name(), contact.phoneNo()});
}

/// Asks for everybody, whoever is selected.
void ViewControllerSending::askJournal()
{
    followTasks();
    std::vector<RunSnapshot> everybody;
    for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember}) {
        everybody.push_back(snapshotOf(kind, scheduledTasks[size_t(kind)]));
        everybody.back().recipients.clear();
        for (int row = 0; row < table(kind).rowCount(); ++row)
            everybody.back().recipients.push_back(
                {table(kind).contact(row).name(), table(kind).contact(row).phoneNo()});
    }
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
            earlier.problem = journal.problem();
            for (const RunSnapshot &run : everybody)
                earlier.schedules[size_t(run.kind)] = SentSchedules(run, sent);
            if (earlier.problem.isEmpty()) {
                earlier.declined = journal.declinedNumbers();
                earlier.problem = journal.problem();
            }
            return earlier;
        },
        [this, question](const Earlier &earlier) {
            if (question == lastQuestion)
                showHistory(earlier);
        });
}

void ViewControllerSending::showHistory(const Earlier &earlier)
{
    if (!earlier.problem.isEmpty()) {
        historyBanner->tell(
            u"When people were last sent something, and who wants no messages, is not known: the "
            "journal of messages cannot be read: %1."_s.arg(earlier.problem),
            {});
        return; // what was known before still holds
    }
    historyBanner->withdraw();
    const bool isFirst = !std::exchange(isHistoryKnown, true);
    for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember}) {
        SentSchedules &known = sentSchedules[size_t(kind)];
        const SentSchedules &now = earlier.schedules[size_t(kind)];
        if (known != now) {
            known = now;
            table(kind).refreshColumn();
        }
        table(kind).setDeclined(earlier.declined);
        (kind == RecipientKind::Client ? ui->changedClients : ui->changedTeamMembers)
            ->setEnabled(!changedRows(kind).empty());
        if (isFirst && allBox(kind).isChecked())
            selectAll(kind); // those left out were not known when all were selected
        followSelection(kind);
    }
}
