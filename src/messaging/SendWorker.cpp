#include "messaging/SendWorker.h"

#include "gateway/MessageFeed.h"
#include "gateway/MessagingSettings.h"
#include "gateway/TextMessage.h"
#include "platform/Diagnostics.h"
#include "platform/Preferences.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

SendWorker::SendWorker(const RunSnapshot &runSnapshot, RunCounters &runCounters,
                       const Preferences &userPreferences, GatewayClient &gatewayClient,
                       std::shared_ptr<MessageFeed> messageFeed)
    : snapshot(runSnapshot)
    , counters(runCounters)
    , preferences(userPreferences)
    , gateway(gatewayClient)
    , sendingTask(snapshot.kind == RecipientKind::Client ? sendingClientTask : sendingTeamMemberTask)
    , feed(std::move(messageFeed))
{
}

void SendWorker::run()
{
    qint64 position = 0;
    bool isComplete = true;
    for (const Recipient &recipient : snapshot.recipients)
        isComplete &= sendSchedule(++position, recipient);
    sendAgain();
    unsent += gateway.drain(this);
    if (!isComplete || unsent > 0)
        diagnostics::line("Messages not sent:", unsent);
}

void SendWorker::stop()
{
    stopped.request_stop();
    gateway.dropUnwanted();
}

/// False when that was over before the last task.
bool SendWorker::sendSchedule(qint64 position, const Recipient &recipient)
{
    hasMatched = false;
    const std::optional<QString> name =
        recipient.name ? std::optional(matchedName(*recipient.name)) : std::nullopt;
    sendingTask = recipient;
    if (!isOver())
        beginRecipient();
    for (size_t index = 0; index < snapshot.tasks.size(); ++index) {
        if (isOver()) {
            tellUnsent(name, index);
            return false;
        }
        const ScheduledTask &candidate = snapshot.tasks[index];
        const qint64 step = position * qint64(index + 1);
        counters.stepsPerformed = step;
        diagnostics::line("Sending step:", step);
        if (snapshot.kind == RecipientKind::TeamMember)
            diagnostics::line("----NoOfSchedules5:", counters.schedulesSent.load(), "----");
        if (snapshot.text.matches(name, candidate, ScheduleText::DayLines::Written))
            sendTask(*candidate.entry);
    }
    if (hasMatched)
        if (const QString footer = snapshot.text.footer(); !footer.isEmpty())
            send(footer);
    return true;
}

void SendWorker::beginRecipient()
{
    if (snapshot.kind == RecipientKind::TeamMember)
        diagnostics::line("----NoOfSchedules4:", counters.schedulesSent.load(), "----");
    diagnostics::line("row value:", sendingTask.name);
    diagnostics::line("row value:", sendingTask.phoneNo);
    if (snapshot.kind == RecipientKind::Client)
        diagnostics::line("Sending messages ...");
}

void SendWorker::sendTask(const task &entry)
{
    diagnostics::line("Task Found:", entry.name, nameIn(entry, snapshot.kind), sendingTask.phoneNo);
    if (!hasMatched)
        send(snapshot.text.header(entry));
    const qint64 schedules = ++counters.schedulesSent;
    hasMatched = true;
    if (snapshot.kind == RecipientKind::TeamMember)
        diagnostics::line("----NoOfSchedules2:", schedules, "----");
    send(snapshot.text.taskMessage(entry), &entry);
}

MessageOrigin SendWorker::originFor(const task *entry)
{
    SentMessage known{.run = began,
                      .isTeamMember = snapshot.kind == RecipientKind::TeamMember,
                      .person = sendingTask.name.value_or(QString()),
                      .phoneNo = sendingTask.phoneNo.value_or(QString()),
                      .firstDay = snapshot.text.firstDay(),
                      .lastDay = snapshot.text.lastDay(),
                      .place = place++};
    if (entry) {
        known.taskKey = entry->key;
        known.taskName = entry->name;
        known.taskDay = snapshot.text.dayOf(*entry);
    }
    return {.run = this, .stop = stopped, .feed = feed, .entry = known};
}

void SendWorker::send(const QString &message, const task *entry)
{
    if (!preferences.boolean(messagingKey::notifications)) {
        tellUnsent(message, entry, u"Sending was switched off"_s);
        return;
    }
    if (!sendTextMessage(message, sendingTask.phoneNo.value_or(QString()), gateway, originFor(entry)))
        ++unsent;
}

/// Sends messages of an earlier run as they were.
void SendWorker::sendAgain()
{
    for (const SentMessage &earlier : snapshot.again) {
        counters.stepsPerformed = place + 1;
        SentMessage entry = earlier;
        entry.place = place++;
        entry.state = MessageState::Waiting;
        entry.identifier.clear();
        entry.reason.clear();
        entry.code = 0;
        if (!sendTextMessage(entry.text, entry.phoneNo, gateway,
                             {.run = this, .stop = stopped, .feed = feed, .entry = entry}))
            ++unsent;
    }
}

/// Tells which messages the recipient would have been sent from this task on.
void SendWorker::tellUnsent(const std::optional<QString> &name, size_t firstTask)
{
    if (!preferences.boolean(messagingKey::notifications))
        return;
    const diagnostics::Silence silence; // the lines belong to what is sent
    for (size_t index = firstTask; index < snapshot.tasks.size(); ++index) {
        const ScheduledTask &candidate = snapshot.tasks[index];
        if (!snapshot.text.matches(name, candidate, ScheduleText::DayLines::Omitted))
            continue;
        if (!std::exchange(hasMatched, true)) {
            ++unsent;
            tellUnsent(snapshot.text.header(*candidate.entry));
        }
        ++unsent;
        tellUnsent(snapshot.text.taskMessage(*candidate.entry), &*candidate.entry);
    }
    if (const QString footer = snapshot.text.footer(); hasMatched && !footer.isEmpty()) {
        ++unsent;
        tellUnsent(footer);
    }
}

void SendWorker::tellUnsent(const QString &message, const task *entry, const QString &reason)
{
    if (!feed)
        return;
    SentMessage told = originFor(entry).entry;
    told.reason = reason;
    told.text = cutToLength(message);
    told.state = MessageState::NotSent;
    feed->tell(told);
}
