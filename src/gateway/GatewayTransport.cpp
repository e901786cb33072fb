#include "gateway/GatewayTransport.h"

#include "gateway/GatewayRequest.h"

#include <QNetworkAccessManager>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

QSslConfiguration tlsConfiguration(const GatewayAddress &address)
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    if (!address.trusted.isEmpty()) // an empty list would replace the system's
        tls.setCaCertificates(address.trusted);
    return tls;
}

namespace gatewayTransport {

namespace {

constexpr qint64 longestAnswer = 1 << 20;

/// A request's body that can be read only once. Where a connection breaks after a request was sent, Qt would
/// otherwise send it again, and the gateway may have seen it already.
class UnrepeatableBody : public QIODevice
{
public:
    explicit UnrepeatableBody(const QByteArray &content)
        : bytes(content)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    bool reset() override { return read == 0; }
    qint64 bytesAvailable() const override { return bytes.size() - read + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *destination, qint64 most) override
    {
        const QByteArrayView part = QByteArrayView(bytes).sliced(read, std::min(most, bytes.size() - read));
        std::ranges::copy(part, destination);
        read += part.size();
        return part.size();
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray bytes;
    qsizetype read = 0;
};

} // namespace

QNetworkRequest prepare(const GatewayAddress &address, const QSslConfiguration &tls,
                        const GatewayRequest &request)
{
    QUrl url;
    url.setScheme(u"https"_s);
    url.setHost(address.host);
    url.setPort(address.port == 443 ? -1 : address.port);
    url.setPath(request.path);
    QNetworkRequest prepared(url);
    if (!request.body.isEmpty()) {
        prepared.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded"_ba);
        prepared.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    }
    prepared.setRawHeader("Authorization", "Basic " + (request.userName + ':' + request.password).toBase64());
    prepared.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    prepared.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    prepared.setAttribute(QNetworkRequest::Http2AllowedAttribute, false); // it has retries of its own
    for (const auto attribute :
         {QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::CookieLoadControlAttribute,
          QNetworkRequest::CookieSaveControlAttribute})
        prepared.setAttribute(attribute, QNetworkRequest::Manual);
    prepared.setSslConfiguration(tls);
    return prepared;
}

std::optional<QString> error(const QNetworkReply &reply)
{
    const QNetworkReply::NetworkError code = reply.error();
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // Qt reports refusals of the gateway as errors, too, and so it does with redirections and challenges that
    // would make it send the body again.
    const bool isAnswer = status >= 300 && code > QNetworkReply::UnknownNetworkError &&
                          code != QNetworkReply::ProtocolUnknownError &&
                          code != QNetworkReply::ProtocolFailure;
    if (code == QNetworkReply::NoError || isAnswer)
        return std::nullopt;
    if (code == QNetworkReply::ContentReSendError)
        return u"The gateway closed the connection without an answer"_s;
    if (const QVariant reason = reply.property("reason"); reason.isValid())
        return reason.toString();
    return reply.errorString();
}

bool hasReached(QNetworkReply::NetworkError error)
{
    return error != QNetworkReply::HostNotFoundError && error != QNetworkReply::ConnectionRefusedError &&
           error != QNetworkReply::SslHandshakeFailedError;
}

void breakOff(QNetworkReply &reply, const QString &reason)
{
    reply.setProperty("reason", reason);
    reply.abort();
}

/// Breaks the request off when its answer takes too long or does not end.
static void guard(QNetworkReply &reply, std::chrono::milliseconds timeLimit)
{
    auto *limit = new QTimer(&reply); // ends with the reply
    limit->setTimerType(Qt::PreciseTimer);
    limit->setSingleShot(true);
    QObject::connect(limit, &QTimer::timeout, &reply,
                     [&reply] { breakOff(reply, u"The gateway did not answer in time"_s); });
    limit->start(timeLimit);
    reply.setReadBufferSize(longestAnswer + 1);
    QObject::connect(&reply, &QNetworkReply::readyRead, &reply, [&reply] {
        if (reply.bytesAvailable() > longestAnswer)
            breakOff(reply, u"The gateway's answer does not end"_s);
    });
}

QNetworkReply *post(QNetworkAccessManager &manager, const QNetworkRequest &request, const QByteArray &body,
                    std::chrono::milliseconds timeLimit)
{
    auto once = std::make_unique<UnrepeatableBody>(body);
    QNetworkReply *reply = manager.post(request, once.get());
    once.release()->setParent(reply);
    guard(*reply, timeLimit);
    return reply;
}

QNetworkReply *get(QNetworkAccessManager &manager, const QNetworkRequest &request,
                   std::chrono::milliseconds timeLimit)
{
    QNetworkReply *reply = manager.get(request);
    guard(*reply, timeLimit);
    return reply;
}

} // namespace gatewayTransport
