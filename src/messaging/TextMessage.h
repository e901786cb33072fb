#pragma once

class GatewayClient;
class Preferences;
class QString;

/// Sends one text message through the gateway and then waits for the configured delay.
///
/// The message is cut to 160 user-perceived characters. Account, sender, override number and delay are asked
/// of the preferences for every message; a negative delay counts as 0 and one above 4294967 ms as that. An
/// account identifier or secret that cannot stand in an address as it is refuses the message with a
/// diagnostic line. What the gateway answers goes to the diagnostic lines only. Not for the main thread.
///
/// False when the client was closed, so that the message was not sent.
///
/// Source of the request's form: the REST interface of the Twilio SMS gateway, version 2010-04-01.
bool sendTextMessage(const QString &message, const QString &phoneNo, const Preferences &preferences,
                     GatewayClient &gateway);
