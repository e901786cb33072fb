#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>
#include <stop_token>

class Preferences;

/// A text message on its way to the gateway. Where it goes and on whose account is settled when it leaves.
struct GatewayMessage
{
    QString text; ///< as it is sent
    QString phoneNo;
    const void *run = nullptr; ///< tells those who send at the same time apart
    std::stop_token stop = {}; ///< it is no longer wanted
};

/// A form to be posted to the gateway.
struct GatewayRequest
{
    QString path;
    QByteArray userName;
    QByteArray password;
    QByteArray body; ///< application/x-www-form-urlencoded
    QString recipient;
    std::chrono::milliseconds pause = {}; ///< for so long after it no other request goes out
};

/// How messages are sent, as the preferences say at one moment.
struct SendSettings
{
    explicit SendSettings(const Preferences &preferences);

    /// Whether the account makes an address: neither its identifier nor its secret needs escaping there.
    bool fitIntoAddress() const;
    const QString &recipientOf(const GatewayMessage &message) const;
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
