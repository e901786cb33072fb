#pragma once

#include <QMutex>
#include <QSslConfiguration>
#include <QTemporaryDir>
#include <QThread>

#include <chrono>
#include <functional>

class QSslSocket;

/// An HTTPS server of the test's own on loopback, with a certificate of its own for 127.0.0.1. Offers HTTP/2,
/// which it does not speak. Serves on a thread of its own; is stopped when it is destroyed.
class HttpsServer
{
public:
    struct Request
    {
        QByteArray head; ///< up to the empty line
        QByteArray body;
        int connection = 0; ///< the number of the one it came on

        /// A field of the form that the body is.
        QString field(const QString &name) const;
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

    /// An answer of this status line, such as "201 CREATED", with a body.
    static QByteArray response(const QByteArray &status, const QByteArray &body,
                               const QByteArray &headers = {});

private:
    void listen();
    void receive(QSslSocket &socket, QByteArray &received, int connection);

    QTemporaryDir folder;
    QSslConfiguration tls;
    std::function<Answer(const Request &)> answer;
    QThread thread;
    QObject threadContext;
    mutable QMutex mutex;
    QList<Request> received;
    quint16 serverPort = 0;
};
