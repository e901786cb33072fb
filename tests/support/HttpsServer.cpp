#include "support/HttpsServer.h"

#include "support/ScratchHome.h"

#include <QProcess>
#include <QRegularExpression>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTimer>
#include <QUrlQuery>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QSslConfiguration selfSigned(const QTemporaryDir &folder)
{
    const QString key = folder.filePath(u"key.pem"_s);
    const QString certificate = folder.filePath(u"certificate.pem"_s);
    const QString command = u"req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 "
                            "-subj /CN=gateway -addext subjectAltName=IP:127.0.0.1"_s;
    QProcess openssl;
    openssl.start(u"openssl"_s, command.split(u' ') << u"-keyout"_s << key << u"-out"_s << certificate);
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        qFatal("openssl: %s", openssl.readAllStandardError().constData());
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificate(QSslCertificate(contentOf(certificate)));
    tls.setAllowedNextProtocols(
        {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
    tls.setPrivateKey(QSslKey(contentOf(key), QSsl::Ec));
    return tls;
}

} // namespace

HttpsServer::HttpsServer(std::function<Answer(const Request &)> answerOf)
    : tls(selfSigned(folder))
    , answer(std::move(answerOf))
{
    threadContext.moveToThread(&thread);
    thread.start();
    QMetaObject::invokeMethod(
        &threadContext, [this] { listen(); }, Qt::BlockingQueuedConnection);
}

HttpsServer::~HttpsServer()
{
    thread.quit();
    thread.wait();
}

void HttpsServer::listen()
{
    auto *server = new QSslServer;
    QObject::connect(&thread, &QThread::finished, server, &QObject::deleteLater);
    server->setSslConfiguration(tls);
    if (!server->listen(QHostAddress::LocalHost))
        qFatal("%s", qPrintable(server->errorString()));
    serverPort = server->serverPort();
    QObject::connect(server, &QTcpServer::pendingConnectionAvailable, server,
                     [this, server, connection = 0]() mutable {
                         ++connection;
                         auto *socket = static_cast<QSslSocket *>(server->nextPendingConnection());
                         QObject::connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
                         QObject::connect(socket, &QIODevice::readyRead, socket,
                                          [this, socket, connection, bytes = std::make_shared<QByteArray>()] {
                                              *bytes += socket->readAll();
                                              receive(*socket, *bytes, connection);
                                          });
                     });
}

void HttpsServer::receive(QSslSocket &socket, QByteArray &bytes, int connection)
{
    static const QRegularExpression length(u"\ncontent-length: *(\\d+)"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    const qsizetype headSize = bytes.indexOf("\r\n\r\n");
    const auto found = length.match(QString::fromLatin1(bytes.first(qMax(headSize, 0))));
    if (headSize < 0 || bytes.size() < headSize + 4 + found.captured(1).toInt())
        return;
    const Request request{bytes.first(headSize), bytes.sliced(headSize + 4), connection};
    bytes.clear(); // clients wait for the answer before they send more
    {
        const QMutexLocker lock(&mutex);
        received.append(request);
    }
    const Answer given = answer(request);
    QTimer::singleShot(given.delay, &socket, [&socket, given] {
        socket.write(given.bytes);
        if (given.closes)
            socket.disconnectFromHost();
    });
}

QString HttpsServer::Request::field(const QString &name) const
{
    return QUrlQuery(QString::fromLatin1(body)).queryItemValue(name, QUrl::FullyDecoded);
}

QList<HttpsServer::Request> HttpsServer::requests() const
{
    const QMutexLocker lock(&mutex);
    return received;
}

QByteArray HttpsServer::response(const QByteArray &status, const QByteArray &body, const QByteArray &headers)
{
    return "HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + QByteArray::number(body.size()) +
           "\r\n\r\n" + body;
}
