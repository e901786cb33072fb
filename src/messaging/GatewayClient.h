#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QNetworkAccessManager>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QString>
#include <QThread>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

/// Where the gateway is reached by HTTPS.
struct GatewayAddress
{
    QString host = QStringLiteral("api.twilio.com");
    quint16 port = 443;
    QList<QSslCertificate> trusted = {}; ///< certificates to trust; empty for those of the system
};

/// The TLS settings, with the certificates by which the gateway has to prove who it is.
QSslConfiguration tlsConfiguration(const GatewayAddress &address);

/// A form to be posted to the gateway.
struct GatewayRequest
{
    QString path;
    QByteArray userName;
    QByteArray password;
    QByteArray body; ///< application/x-www-form-urlencoded
};

/// The one HTTPS client through which all messages go, on a thread of its own.
///
/// Every request goes out once: it is not repeated, does not follow a redirection and does not answer a
/// challenge. What comes back is written to the diagnostic lines. Made and destroyed on the main thread, used
/// on others.
class GatewayClient
{
public:
    /// \param timeLimit  for the answer to each request
    /// \param idleLimit  connections that have been idle for longer are given up: the gateway closes idle
    ///                   ones, and a message that is sent just then would be lost
    explicit GatewayClient(const GatewayAddress &address,
                           std::chrono::milliseconds timeLimit = std::chrono::minutes(1),
                           std::chrono::milliseconds idleLimit = std::chrono::seconds(2));
    /// Breaks off the requests under way.
    ~GatewayClient();
    GatewayClient(const GatewayClient &) = delete;
    GatewayClient &operator=(const GatewayClient &) = delete;

    /// Waits until fewer requests are under way than there may be connections, starts this one and does not
    /// wait for its answer. False when the client was closed before that.
    bool start(const GatewayRequest &request);
    /// Waits until every started request has been handed to the network, and then for the duration. Ends at
    /// once when the client is closed.
    void pause(std::chrono::milliseconds duration);

    /// From here on nothing is started. May be called from any thread.
    void close();
    bool isClosed() const { return closed; }
    /// Closes the client and waits until every request under way has been answered; those that take longer
    /// than the limit are broken off, and the answer is false.
    bool finish(std::chrono::nanoseconds limit);

private:
    void send(const GatewayRequest &request);
    void prepareConnections();
    void complete(QNetworkReply &reply, const GatewayRequest &request);

    GatewayAddress address;
    std::chrono::milliseconds timeLimit;
    std::chrono::milliseconds idleLimit;
    QThread thread;
    // These four belong to the thread. Manager and TLS settings are made for the first request, since they
    // load the TLS library.
    QObject threadContext;
    std::unique_ptr<QNetworkAccessManager> manager;
    std::optional<QSslConfiguration> tls;
    QElapsedTimer lastUse; ///< since the last answer
    std::mutex mutex;
    std::condition_variable changed;
    std::atomic<bool> closed = false;
    int underWay = 0; ///< requests that have been started and not answered
    int unsent = 0;   ///< those of them that the thread has not yet handed to the network
};
