#pragma once

#include "messaging/GatewayClient.h"
#include "messaging/MessagingSettings.h"
#include "platform/Preferences.h"
#include "support/HttpsServer.h"

#include <QUrl>
#include <QUrlQuery>

/// Preferences with which messages can be sent.
struct Account
{
    Account()
    {
        using namespace Qt::StringLiterals;
        preferences.setText(messagingKey::accountId, u"AC12"_s);
        preferences.setText(messagingKey::secret, u"s3cr:t"_s);
        preferences.setText(messagingKey::sendingPhoneNo, u"+1 555 0100"_s);
        preferences.setBoolean(messagingKey::notifications, true);
    }

    QTemporaryDir folder;
    Preferences preferences{folder.filePath(QStringLiteral("preferences.ini"))};
};

inline GatewayAddress addressOf(const HttpsServer &server)
{
    return {.host = QStringLiteral("127.0.0.1"), .port = server.port(), .trusted = {server.certificate()}};
}

/// A field of the form that a request carries.
inline QString formField(const HttpsServer::Request &request, const QString &name)
{
    const QUrlQuery form(QString::fromLatin1(request.body));
    return form.queryItemValue(name, QUrl::FullyDecoded);
}
