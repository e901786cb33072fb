#pragma once

#include <QMutex>
#include <QSslConfiguration>
#include <QTemporaryDir>
#include <QThread>

#include <chrono>
#include <functional>

class QSslSocket;

/// An HTTPS server of the test's own on loopback, with a certificate of its own for 127.0.0.1. Serves on a
/// thread of its own; is stopped when it is destroyed.
class HttpsServer
{
public:
    struct Request
    {
        QByteArray head; ///< up to the empty line
        QByteArray body;
        quint16 clientPort; ///< of the connection it came on
    };
    struct Answer
    {
        QByteArray bytes; ///< all of what is sent back
        bool closes = false;
        std::chrono::milliseconds delay = {};
    };

    /// \param answer  is asked on the server's thread
    explicit HttpsServer(std::function<Answer(const Request &)> answer);
    ~HttpsServer();

    quint16 port() const { return serverPort; }
    /// To be trusted by whoever is to speak with the server.
    QSslCertificate certificate() const { return tls.localCertificate(); }
    /// What has been received so far.
    QList<Request> requests() const;
    /// The most requests that were waiting for their answers at the same time.
    int mostAtOnce() const { return mostWaiting; }

    /// An answer of this status line, such as "201 CREATED", with a body.
    static QByteArray response(const QByteArray &status, const QByteArray &body,
                               const QByteArray &headers = {});

private:
    void listen();
    void receive(QSslSocket &socket, QByteArray &received);

    QTemporaryDir folder;
    QSslConfiguration tls;
    std::function<Answer(const Request &)> answer;
    QThread thread;
    QObject threadContext;
    mutable QMutex mutex;
    QList<Request> received;
    std::atomic<int> waiting = 0;
    std::atomic<int> mostWaiting = 0;
    quint16 serverPort = 0;
};
