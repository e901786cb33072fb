#pragma once

#include <QString>

#include <stop_token>

class GatewayClient;

/// The beginning of the text that is sent: 160 characters as a reader counts them.
QString cutToLength(const QString &text);

/// Sends one text message through the gateway and then waits for the configured delay.
///
/// The message is cut to 160 user-perceived characters. It waits for its turn, and account, sender and
/// override number are those that the preferences have when it leaves; the delay is read now. When the
/// account identifier or the secret cannot stand in an address as it is, the message is refused with a
/// diagnostic line. What the gateway answers goes to the diagnostic lines only. Not to be called on the main
/// thread. \param run  what the message belongs to; the client tells by it which messages were never sent
///
/// False when the message was refused, or was not sent because the client has been closed.
/// \param stop  from then on it is not sent, either
bool sendTextMessage(const QString &message, const QString &phoneNo, GatewayClient &gateway,
                     const void *run = nullptr, const std::stop_token &stop = {});
