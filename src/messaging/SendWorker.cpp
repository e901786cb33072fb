#include "messaging/SendWorker.h"

#include "messaging/MessagingSettings.h"
#include "messaging/TextMessage.h"
#include "platform/Diagnostics.h"
#include "platform/Preferences.h"

SendWorker::SendWorker(const RunSnapshot &runSnapshot, RunCounters &runCounters,
                       const Preferences &userPreferences, GatewayClient &gatewayClient)
    : snapshot(runSnapshot)
    , counters(runCounters)
    , preferences(userPreferences)
    , gateway(gatewayClient)
    , sendingTask(snapshot.kind == RecipientKind::Client ? sendingClientTask : sendingTeamMemberTask)
{
}

void SendWorker::run()
{
    qint64 position = 0;
    bool isComplete = true;
    for (const Recipient &recipient : snapshot.recipients)
        isComplete &= sendSchedule(++position, recipient);
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
            countUnsent(name, index);
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
    send(snapshot.text.taskMessage(entry));
}

void SendWorker::send(const QString &message)
{
    if (!preferences.boolean(messagingKey::notifications))
        return;
    if (!sendTextMessage(message, sendingTask.phoneNo.value_or(QString()), gateway, this,
                         stopped.get_token()))
        ++unsent;
}

/// Counts the messages that the recipient would have been sent from this task on.
void SendWorker::countUnsent(const std::optional<QString> &name, size_t firstTask)
{
    if (!preferences.boolean(messagingKey::notifications))
        return;
    for (size_t index = firstTask; index < snapshot.tasks.size(); ++index)
        if (snapshot.text.matches(name, snapshot.tasks[index], ScheduleText::DayLines::Omitted))
            unsent += std::exchange(hasMatched, true) ? 1 : 2; // the first one with its header
    if (hasMatched && !snapshot.text.footer().isEmpty())
        ++unsent;
}
