#include "messaging/TextMessage.h"

#include "messaging/GatewayClient.h"
#include "platform/Diagnostics.h"

#include <memory>
#include <unicode/ubrk.h>

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

bool sendTextMessage(const QString &message, const QString &phoneNo, GatewayClient &gateway, const void *run,
                     const std::stop_token &stop)
{
    if (gateway.isClosed() || stop.stop_requested())
        return false;
    const SendSettings settings = gateway.settings();
    diagnostics::line("Start Message");
    bool isStarted = false;
    if (!settings.fitIntoAddress()) {
        diagnostics::line("Message refused: the account identifier or the secret makes no valid address");
    } else {
        diagnostics::line("Start Message");
        isStarted = gateway.start({cutToLength(message), phoneNo, run, stop});
    }
    gateway.pause(settings.delay, stop);
    return isStarted;
}
