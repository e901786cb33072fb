#include "gateway/HeldMessages.h"

#include "journal/MessageJournal.h"
#include "platform/Diagnostics.h"

#include <QDateTime>

#include <algorithm>

using namespace Qt::StringLiterals;

HeldMessages::HeldMessages(const Preferences &userPreferences, MessageJournal *messageJournal)
    : preferences(userPreferences)
    , journal(messageJournal)
{
}

/// Settles where the message goes, and on whose account.
static void address(SentMessage &entry, const SendSettings &settings)
{
    entry.number = settings.recipientOf(entry);
    entry.isTest = settings.testPhoneNo.has_value();
    entry.account = settings.accountId;
    entry.moment = QDateTime::currentMSecsSinceEpoch();
    entry.state = MessageState::HandedOver;
}

/// The journal has the message, to the number to which it would go now.
bool HeldMessages::isRecorded(const Held &held, const SendSettings &settings) const
{
    return !journal || (held.record == Record::Made &&
                        held.message.entry.number == settings.recipientOf(held.message.entry) &&
                        held.message.entry.account == settings.accountId);
}

std::optional<GatewayRequest> HeldMessages::takeNext(const QStringList &underWay)
{
    if (messages.empty())
        return std::nullopt;
    const SendSettings settings(preferences);
    if (!settings.fitIntoAddress()) {
        diagnostics::line("Messages refused: the account identifier or the secret makes no valid address");
        dropAll(u"The account identifier or the secret makes no valid address"_s);
    } else if (!settings.isOn) {
        dropAll(u"Sending was switched off"_s);
    }
    const auto next = std::ranges::find_if(messages, [&](const Held &held) {
        return isRecorded(held, settings) && !underWay.contains(settings.recipientOf(held.message.entry));
    });
    if (next == messages.end())
        return std::nullopt;
    address(next->message.entry, settings);
    next->message.tell();
    GatewayRequest request = settings.requestFor(next->message);
    setRecord(*next, Record::Missing); // it is no longer held
    messages.erase(next);
    return request;
}

void HeldMessages::setRecord(Held &held, Record record)
{
    recorded += int(record != Record::Missing) - int(held.record != Record::Missing);
    held.record = record;
}

std::vector<SentMessage> HeldMessages::takeUnrecorded(qsizetype most, bool isAnyUnderWay)
{
    if (isAnyUnderWay && 2 * recorded > most)
        return {}; // looked at in full only when it may be of use
    // Some for each of several recipients, since only one message at a time goes to each.
    constexpr size_t recipientsAtOnce = 6;
    constexpr size_t farthest = 8;
    const size_t limit = size_t(most);
    const size_t limitForOne = std::max<size_t>(1, limit / recipientsAtOnce);
    const SendSettings settings(preferences);
    QHash<QString, size_t> chosen; // by recipient
    std::vector<Held *> missing;
    size_t ready = 0;
    size_t lookedAt = 0;
    for (Held &held : messages) {
        if (ready + missing.size() == limit || ++lookedAt > farthest * limit)
            break;
        if (chosen[settings.recipientOf(held.message.entry)]++ >= limitForOne)
            continue;
        if (held.record == Record::BeingMade || isRecorded(held, settings))
            ++ready;
        else
            missing.push_back(&held);
    }
    std::vector<SentMessage> taken;
    if (missing.size() < ready)
        return taken; // a few at a time would keep the disk busy
    for (Held *held : missing) {
        address(held->message.entry, settings);
        setRecord(*held, Record::BeingMade);
        taken.push_back(held->message.entry);
    }
    return taken;
}

void HeldMessages::setRecorded(const QString &problem)
{
    for (Held &held : messages)
        if (held.record == Record::BeingMade)
            setRecord(held, problem.isEmpty() ? Record::Made : Record::Missing);
    if (problem.isEmpty())
        return;
    for (Held &held : messages)
        held.message.origin.stop.request_stop();
    dropAll(u"The journal of messages cannot be written: %1"_s.arg(problem));
}

void HeldMessages::drop(const Held &held, const QString &reason)
{
    ++dropped[held.message.origin.run];
    GatewayMessage message = held.message;
    message.entry.state = MessageState::NotSent;
    message.entry.reason = reason;
    if (held.record != Record::Missing)
        journal->note(message.entry);
    message.tell();
}

void HeldMessages::dropAll(const QString &reason)
{
    for (const Held &held : messages)
        drop(held, reason);
    messages.clear();
    recorded = 0;
}

void HeldMessages::dropUnwanted()
{
    messages.remove_if([this](const Held &held) {
        const bool isUnwanted = held.message.origin.stop.stop_requested();
        if (isUnwanted) {
            drop(held, u"It was stopped before"_s);
            recorded -= held.record == Record::Missing ? 0 : 1;
        }
        return isUnwanted;
    });
}

bool HeldMessages::isFull() const
{
    // All of some recipients' schedules, so that they are served side by side, and a few megabytes.
    constexpr qsizetype most = 5000;
    return qsizetype(messages.size()) >= most;
}

bool HeldMessages::isAnyOf(const void *run) const
{
    return std::ranges::any_of(messages, [run](const Held &held) { return held.message.origin.run == run; });
}
