#pragma once

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <chrono>
#include <optional>

class QNetworkAccessManager;
struct GatewayRequest;

/// Where the gateway is reached by HTTPS.
struct GatewayAddress
{
    QString host = QStringLiteral("api.twilio.com");
    quint16 port = 443;
    QList<QSslCertificate> trusted = {}; ///< certificates to trust; empty for those of the system
};

/// The TLS settings, with the certificates by which the gateway has to prove who it is.
QSslConfiguration tlsConfiguration(const GatewayAddress &address);

/// One request to the gateway: it goes out once, is not repeated, does not follow a redirection and does not
/// answer a challenge.
namespace gatewayTransport {

QNetworkRequest prepare(const GatewayAddress &address, const QSslConfiguration &tls,
                        const GatewayRequest &request);
/// \param timeLimit  for the whole answer, which may have 1 MB
QNetworkReply *post(QNetworkAccessManager &manager, const QNetworkRequest &request, const QByteArray &body,
                    std::chrono::milliseconds timeLimit);
QNetworkReply *get(QNetworkAccessManager &manager, const QNetworkRequest &request,
                   std::chrono::milliseconds timeLimit);

/// Why there is no complete answer of the gateway; nothing when there is one, whatever it says.
std::optional<QString> error(const QNetworkReply &reply);
/// False when the request has certainly not come to the gateway.
bool hasReached(QNetworkReply::NetworkError error);
/// Ends the request; the reason is told in place of its error.
void breakOff(QNetworkReply &reply, const QString &reason);

} // namespace gatewayTransport
