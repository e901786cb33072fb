#include "gateway/GatewayRequest.h"

#include "gateway/MessageFeed.h"
#include "gateway/MessagingSettings.h"
#include "platform/Preferences.h"

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

/// Whether all characters may stand in an address as they are: RFC 3986's unreserved ones and sub-delims, and
/// these others.
static bool areValid(const QString &text, QStringView others = {})
{
    return std::ranges::all_of(text, [others](QChar character) {
        return character < u'\u0080' &&
               (character.isLetterOrNumber() || u"-._~!$&'()*+,;="_s.contains(character) ||
                others.contains(character));
    });
}

bool fitIntoAddress(const QString &accountId, const QString &secret)
{
    return areValid(accountId) && areValid(secret, u":") && accountId != u"." && accountId != u"..";
}

static QString textIn(const Preferences &preferences, const QString &key)
{
    return preferences.text(key).value_or(QString());
}

static std::chrono::milliseconds delayIn(const Preferences &preferences)
{
    constexpr qint64 longestDelay = 4'294'967;
    return std::chrono::milliseconds(
        std::clamp<qint64>(preferences.integer(messagingKey::delay), 0, longestDelay));
}

SendSettings::SendSettings(const Preferences &preferences)
    : isOn(preferences.boolean(messagingKey::notifications))
    , accountId(textIn(preferences, messagingKey::accountId))
    , secret(textIn(preferences, messagingKey::secret))
    , sender(textIn(preferences, messagingKey::sendingPhoneNo))
    , testPhoneNo(preferences.boolean(messagingKey::overwrite)
                      ? std::optional(textIn(preferences, messagingKey::testPhoneNo))
                      : std::nullopt)
    , delay(delayIn(preferences))
{
}

bool SendSettings::fitIntoAddress() const
{
    return ::fitIntoAddress(accountId, secret);
}

void GatewayMessage::tell() const
{
    if (origin.feed)
        origin.feed->tell(entry);
}

const QString &SendSettings::recipientOf(const SentMessage &message) const
{
    return testPhoneNo ? *testPhoneNo : message.phoneNo;
}

GatewayRequest SendSettings::requestFor(const GatewayMessage &message) const
{
    const QString &recipient = recipientOf(message.entry);
    // A key signs in with its own identifier; the account stays in the path.
    const qsizetype colon = secret.startsWith(u"SK") ? secret.indexOf(u':') : -1;
    return {.path = u"/2010-04-01/Accounts/"_s + accountId + u"/SMS/Messages"_s,
            .userName = (colon < 0 ? accountId : secret.first(colon)).toUtf8(),
            .password = secret.sliced(colon + 1).toUtf8(),
            .body = "From=" + QUrl::toPercentEncoding(sender) + "&To=" + QUrl::toPercentEncoding(recipient) +
                    "&Body=" + QUrl::toPercentEncoding(message.entry.text),
            .message = message,
            .pause = delay};
}
