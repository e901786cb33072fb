#pragma once

#include "gateway/GatewayRequest.h"

class GatewayClient;

/// The beginning of the text that is sent: 160 characters as a reader counts them.
QString cutToLength(const QString &text);

/// Sends one text message through the gateway and then waits for the configured delay.
///
/// The message is cut to 160 user-perceived characters. It waits for its turn, and account, sender and
/// override number are those that the preferences have when it leaves; the delay is read now. When the
/// account identifier or the secret cannot stand in an address as it is, the message is refused with a
/// diagnostic line. What the gateway answers goes to the diagnostic lines, to the journal and to whoever
/// follows the message. Not to be called on the main thread.
///
/// False when the message was refused, or was not sent because the client has been closed or the message is
/// no longer wanted.
bool sendTextMessage(const QString &message, const QString &phoneNo, GatewayClient &gateway,
                     const MessageOrigin &origin = {});
