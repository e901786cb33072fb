#include "messaging/HeldMessages.h"

#include "platform/Diagnostics.h"

#include <algorithm>

HeldMessages::HeldMessages(const Preferences &userPreferences)
    : preferences(userPreferences)
{
}

std::optional<GatewayRequest> HeldMessages::takeNext(const QStringList &underWay)
{
    if (messages.isEmpty())
        return std::nullopt;
    const SendSettings settings(preferences);
    const bool isRefused = !settings.fitIntoAddress();
    if (isRefused)
        diagnostics::line("Messages refused: the account identifier or the secret makes no valid address");
    if (isRefused || !settings.isOn) {
        dropAll();
        return std::nullopt;
    }
    const auto next = std::ranges::find_if(messages, [&](const GatewayMessage &message) {
        return !underWay.contains(settings.recipientOf(message));
    });
    if (next == messages.end())
        return std::nullopt;
    GatewayRequest request = settings.requestFor(*next);
    messages.erase(next);
    return request;
}

void HeldMessages::dropAll()
{
    for (const GatewayMessage &message : std::as_const(messages))
        ++dropped[message.run];
    messages.clear();
}

void HeldMessages::dropUnwanted()
{
    messages.removeIf([this](const GatewayMessage &message) {
        const bool isUnwanted = message.stop.stop_requested();
        dropped[message.run] += isUnwanted ? 1 : 0;
        return isUnwanted;
    });
}

bool HeldMessages::isFull() const
{
    // All of some recipients' schedules, so that they are served side by side, and a few megabytes.
    constexpr qsizetype most = 5000;
    return messages.size() >= most;
}

bool HeldMessages::isAnyOf(const void *run) const
{
    return std::ranges::find(messages, run, &GatewayMessage::run) != messages.end();
}
