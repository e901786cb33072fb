#pragma once

#include "gateway/GatewayTransport.h"
#include "gateway/HeldMessages.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QThread>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// The one HTTPS client through which all messages go, on a thread of its own.
///
/// Every request goes out once: it is not repeated, does not follow a redirection and does not answer a
/// challenge. What comes back is written to the diagnostic lines. A recipient's requests go out one after the
/// other's answer, so that they arrive in order, and those of several recipients side by side. Made and
/// destroyed on the main thread, used on others.
class GatewayClient
{
public:
    /// \param preferences  with what account and to what number each message is sent when it leaves; have to
    ///                     outlive the client
    /// \param timeLimit  for the answer to each request
    /// \param idleLimit  connections that have been idle for longer are given up: the gateway closes idle
    ///                   ones, and a message that is sent just then would be lost
    /// \param journal  has every message before it leaves, and what becomes of it; has to outlive the client;
    ///                 null where none is kept
    GatewayClient(const GatewayAddress &address, const Preferences &preferences,
                  std::chrono::milliseconds timeLimit = std::chrono::minutes(1),
                  std::chrono::milliseconds idleLimit = std::chrono::seconds(2),
                  MessageJournal *journal = nullptr);
    /// Breaks off the requests under way.
    ~GatewayClient();
    GatewayClient(const GatewayClient &) = delete;
    GatewayClient &operator=(const GatewayClient &) = delete;

    /// Sends the message as soon as its turn comes and does not wait for that, unless there are many before
    /// it. False when the client was closed.
    bool start(const GatewayMessage &message);
    /// Asks what has become of a message that the gateway has accepted.
    /// \param answered  is called on another thread, with the reason where that is not known
    void ask(const GatewayMessage &message, const std::function<void(const QString &problem)> &answered);
    /// Waits for the duration. Ends at once when the client is closed, or when that is no longer wanted.
    void pause(std::chrono::milliseconds duration, const std::stop_token &stop = {});
    /// Drops what waits and is no longer wanted, and wakes those who do not want it.
    void dropUnwanted();
    /// Waits until none of the run's messages waits for its turn. The answer is how many never got it because
    /// the client was closed or they were not to be sent any more; each of them is told once.
    qsizetype drain(const void *run = nullptr);
    /// How a message would be sent now.
    SendSettings settings() const { return SendSettings(preferences); }

    /// From here on nothing is sent. May be called from any thread.
    void close();
    bool isClosed() const { return closed; }
    /// Closes the client and waits until every request under way has been answered; those that take longer
    /// than the limit are broken off, and the result is false.
    bool finish(std::chrono::nanoseconds limit);

private:
    void sendHeld();
    void recordAhead();
    void send(const GatewayRequest &request);
    void query(const GatewayRequest &request, const std::function<void(const QString &problem)> &answered);
    void prepareConnections();
    void complete(QNetworkReply &reply, const GatewayRequest &request);
    void note(const GatewayMessage &message);

    GatewayAddress address;
    const Preferences &preferences;
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
    MessageJournal *journal;
    HeldMessages held;
    qint64 lastId = 0;        ///< of a message in the journal
    qsizetype ahead;          ///< how many messages the journal is to have before their turn
    bool isRecording = false; ///< the journal is writing some
    QStringList underWay;     ///< whose requests have not been answered
    bool isPausing = false;   ///< after a request
};
