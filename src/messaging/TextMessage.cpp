#include "messaging/TextMessage.h"

#include "messaging/GatewayClient.h"
#include "messaging/MessagingSettings.h"
#include "platform/Diagnostics.h"
#include "platform/Preferences.h"

#include <QUrl>

#include <algorithm>
#include <memory>
#include <unicode/ubrk.h>

using namespace Qt::StringLiterals;

/// The beginning of the text, of so many characters as a reader counts them.
static QString firstCharacters(const QString &text, int count)
{
    // Not Qt's own finder, which miscounts emoji after several scripts.
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> characters(
        ubrk_open(UBRK_CHARACTER, "", reinterpret_cast<const UChar *>(text.utf16()), int32_t(text.size()),
                  &status),
        &ubrk_close);
    int32_t end = 0;
    while (U_SUCCESS(status) && count-- > 0 && end != UBRK_DONE)
        end = ubrk_next(characters.get());
    return end == UBRK_DONE || U_FAILURE(status) ? text : text.first(end);
}

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

std::chrono::milliseconds delayAfterMessage(const Preferences &preferences)
{
    constexpr qint64 longestDelay = 4'294'967;
    return std::chrono::milliseconds(
        std::clamp<qint64>(preferences.integer(messagingKey::delay), 0, longestDelay));
}

bool sendTextMessage(const QString &message, const QString &phoneNo, const Preferences &preferences,
                     GatewayClient &gateway)
{
    constexpr int longestMessage = 160;
    if (gateway.isClosed())
        return false;
    const auto setting = [&preferences](const QString &key) {
        return preferences.text(key).value_or(QString());
    };
    const QString accountId = setting(messagingKey::accountId);
    const QString secret = setting(messagingKey::secret);
    const QString from = setting(messagingKey::sendingPhoneNo);
    const QString to =
        preferences.boolean(messagingKey::overwrite) ? setting(messagingKey::testPhoneNo) : phoneNo;
    const QString text = firstCharacters(message, longestMessage);
    const std::chrono::milliseconds delay = delayAfterMessage(preferences);
    diagnostics::line("Start Message");
    if (!fitIntoAddress(accountId, secret)) {
        diagnostics::line("Message refused: the account identifier or the secret makes no valid address");
    } else {
        diagnostics::line("Start Message");
        if (!gateway.start({.path = u"/2010-04-01/Accounts/"_s + accountId + u"/SMS/Messages"_s,
                            .userName = accountId.toUtf8(),
                            .password = secret.toUtf8(),
                            .body = "From=" + QUrl::toPercentEncoding(from) + "&To=" +
                                    QUrl::toPercentEncoding(to) + "&Body=" + QUrl::toPercentEncoding(text),
                            .recipient = to,
                            .pause = delay}))
            return false;
    }
    gateway.pause(delay);
    return true;
}
