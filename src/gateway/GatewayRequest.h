#pragma once

#include "journal/SentMessage.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>

class MessageFeed;
class Preferences;

/// What a message belongs to.
struct MessageOrigin
{
    const void *run = nullptr; ///< tells those who send at the same time apart
    /// Says that the run's messages are no longer wanted, and is told when none can be sent any more.
    std::stop_source stop = std::stop_source(std::nostopstate);
    std::shared_ptr<MessageFeed> feed = {}; ///< learns what becomes of the message; null for nobody
    SentMessage entry = {};                 ///< what is known of it besides text and number
};

/// A text message on its way to the gateway. Where it goes and on whose account is settled when it leaves.
struct GatewayMessage
{
    SentMessage entry; ///< with the text as it is sent
    MessageOrigin origin;

    /// Tells whoever follows the message what has become of it.
    void tell() const;
};

/// A form to be posted to the gateway, or a question without one.
struct GatewayRequest
{
    QString path;
    QByteArray userName;
    QByteArray password;
    QByteArray body; ///< application/x-www-form-urlencoded
    GatewayMessage message;
    std::chrono::milliseconds pause = {}; ///< for so long after it no other request goes out
};

/// How messages are sent, as the preferences say at one moment.
struct SendSettings
{
    explicit SendSettings(const Preferences &preferences);

    /// Whether the account makes an address: neither its identifier nor its secret needs escaping there.
    bool fitIntoAddress() const;
    const QString &recipientOf(const SentMessage &message) const;
    /// Source of its form: the REST interface of the Twilio SMS gateway, version 2010-04-01.
    GatewayRequest requestFor(const GatewayMessage &message) const;

    bool isOn; ///< false when nothing is to be sent
    QString accountId;
    QString secret; ///< of the account, or an API key's identifier and secret with a colon between
    QString sender;
    std::optional<QString> testPhoneNo; ///< receives every message where there is one
    std::chrono::milliseconds delay;    ///< a negative one counts as 0 and one above 4294967 ms as that
};

/// Whether account identifier and secret may stand in the user part of an address, and the identifier in its
/// path as well.
bool fitIntoAddress(const QString &accountId, const QString &secret);
