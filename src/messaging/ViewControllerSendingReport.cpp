#include "messaging/ReportPane.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/ViewControllerSending.h"
#include "model/TaskManager.h"
#include "ui_ViewControllerSending.h"
#include "widgets/Banner.h"

#include <algorithm>

using namespace Qt::StringLiterals;

// What the user learns of what was sent, and what can be done about it.

void ViewControllerSending::connectReport()
{
    ui->report->show(runs.report());
    connect(ui->report, &ReportPane::sendAgainWanted, this, &ViewControllerSending::sendAgain);
    connect(ui->report, &ReportPane::deliveryWanted, this, [this] { runs.askForDelivery(); });
    auto *journalBanner = new Banner(this);
    historyBanner = new Banner(this);
    for (Banner *banner : {journalBanner, historyBanner})
        ui->mainLayout->insertWidget(0, banner);
    connect(&runs.journal(), &MessageJournal::told, journalBanner, [journalBanner](const QString &sentence) {
        journalBanner->tell(sentence, {{u"Dismiss"_s, [journalBanner] {
                                            journalBanner->withdraw();
                                        }}});
    });
}

/// To whom the messages go, a line each.
static QStringList recipientsOf(const std::vector<SentMessage> &messages, const SendSettings &settings)
{
    QStringList people;
    for (const SentMessage &message : messages) {
        const QString &number = settings.recipientOf(message);
        const QString person = u"%1 (%2)"_s.arg(message.person, number.isEmpty() ? u"no number"_s : number);
        if (!people.contains(person))
            people.append(person);
    }
    return people;
}

void ViewControllerSending::sendAgain(const std::vector<SentMessage> &messages)
{
    if (messages.empty())
        return;
    const auto unanswered = std::ranges::count(messages, MessageState::NoAnswer, &SentMessage::state);
    QString question = messages.size() == 1
                           ? u"Send one message again, exactly as it was?"_s
                           : u"Send %1 messages again, exactly as they were?"_s.arg(messages.size());
    if (unanswered > 0)
        question += unanswered == 1 ? u" One of them had no answer and may have arrived."_s
                                    : u" %1 of them had no answer and may have arrived."_s.arg(unanswered);
    if (!isConfirmed(question, recipientsOf(messages, SendSettings(manager.defaults))))
        return;
    const RecipientKind kind =
        messages.front().isTeamMember ? RecipientKind::TeamMember : RecipientKind::Client;
    const Instant now = Calendar::now();
    start({.kind = kind,
           .recipients = {},
           .tasks = {},
           .text = ScheduleText(kind, now, now, manager.defaults),
           .again = messages});
}
