#pragma once

#include <chrono>

class GatewayClient;
class Preferences;
class QString;

/// Whether account identifier and secret may stand in the user part of an address, and the identifier in its
/// path as well.
bool fitIntoAddress(const QString &accountId, const QString &secret);

/// The configured pause after a message: a negative one counts as 0 and one above 4294967 ms as that.
std::chrono::milliseconds delayAfterMessage(const Preferences &preferences);

/// Sends one text message through the gateway and then waits for the configured delay.
///
/// The message is cut to 160 user-perceived characters. Account, sender, override number and delay are read
/// from the preferences for every message. When the account identifier or the secret cannot stand in an
/// address as it is, the message is refused with a diagnostic line. What the gateway answers goes to the
/// diagnostic lines only. Not to be called on the main thread.
///
/// False when the message was not sent because the client has been closed. One that waits for its turn is
/// taken as sent; the client tells of it if it never comes.
///
/// Source of the request's form: the REST interface of the Twilio SMS gateway, version 2010-04-01.
bool sendTextMessage(const QString &message, const QString &phoneNo, const Preferences &preferences,
                     GatewayClient &gateway);
