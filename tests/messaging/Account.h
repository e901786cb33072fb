#pragma once

#include "gateway/GatewayClient.h"
#include "gateway/MessagingSettings.h"
#include "platform/Preferences.h"
#include "support/HttpsServer.h"

/// Preferences with which messages can be sent.
struct Account
{
    Account()
    {
        using namespace Qt::StringLiterals;
        preferences.store({{messagingKey::accountId, u"AC12"_s},
                           {messagingKey::secret, u"s3cr:t"_s},
                           {messagingKey::sendingPhoneNo, u"+1 555 0100"_s},
                           {messagingKey::notifications, true}});
    }

    QTemporaryDir folder;
    Preferences preferences{folder.filePath(QStringLiteral("preferences.ini"))};
};

inline GatewayAddress addressOf(const HttpsServer &server)
{
    return {.host = QStringLiteral("127.0.0.1"), .port = server.port(), .trusted = {server.certificate()}};
}
