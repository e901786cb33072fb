#include "gateway/TextMessage.h"

#include "gateway/GatewayClient.h"
#include "platform/Diagnostics.h"

#include <memory>
#include <unicode/ubrk.h>

using namespace Qt::StringLiterals;

QString cutToLength(const QString &text)
{
    constexpr int longestMessage = 160;
    if (text.size() <= longestMessage) // no character has less than one unit
        return text;
    int count = longestMessage;
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

/// Tells that the message was never handed to the gateway; always false.
static bool refuse(GatewayMessage message, const QString &reason)
{
    message.entry.state = MessageState::NotSent;
    message.entry.reason = reason;
    message.tell();
    return false;
}

bool sendTextMessage(const QString &message, const QString &phoneNo, GatewayClient &gateway,
                     const MessageOrigin &origin)
{
    GatewayMessage sent{origin.entry, origin};
    sent.entry.text = cutToLength(message);
    sent.entry.phoneNo = phoneNo;
    if (gateway.isClosed() || origin.stop.stop_requested())
        return refuse(sent, {});
    const SendSettings settings = gateway.settings();
    diagnostics::line("Start Message");
    bool isStarted = false;
    if (!settings.fitIntoAddress()) {
        diagnostics::line("Message refused: the account identifier or the secret makes no valid address");
        refuse(sent, u"The account identifier or the secret makes no valid address"_s);
    } else {
        diagnostics::line("Start Message");
        sent.tell();
        isStarted = gateway.start(sent) || refuse(sent, {});
    }
    gateway.pause(settings.delay, origin.stop.get_token());
    return isStarted;
}
