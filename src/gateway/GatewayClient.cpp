#include "gateway/GatewayClient.h"

#include "gateway/GatewayAnswer.h"
#include "journal/MessageJournal.h"
#include "platform/Diagnostics.h"

#include <QDateTime>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStringDecoder>
#include <QTimer>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype connections = 6; // as many as a QNetworkAccessManager opens to one host
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

/// Why there is no complete answer of the gateway; nothing when there is one, whatever it says.
std::optional<QString> transportError(const QNetworkReply &reply)
{
    const QNetworkReply::NetworkError error = reply.error();
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // Qt reports refusals of the gateway as errors, too, and so it does with redirections and challenges that
    // would make it send the body again.
    const bool isAnswer = status >= 300 && error > QNetworkReply::UnknownNetworkError &&
                          error != QNetworkReply::ProtocolUnknownError &&
                          error != QNetworkReply::ProtocolFailure;
    if (error == QNetworkReply::NoError || isAnswer)
        return std::nullopt;
    if (error == QNetworkReply::ContentReSendError)
        return u"The gateway closed the connection without an answer"_s;
    if (const QVariant reason = reply.property("reason"); reason.isValid())
        return reason.toString();
    return reply.errorString();
}

/// False when the request has certainly not come to the gateway.
bool hasReached(QNetworkReply::NetworkError error)
{
    return error != QNetworkReply::HostNotFoundError && error != QNetworkReply::ConnectionRefusedError &&
           error != QNetworkReply::SslHandshakeFailedError;
}

/// Ends the request; the reason is told in place of its error.
void breakOff(QNetworkReply &reply, const QString &reason)
{
    reply.setProperty("reason", reason);
    reply.abort();
}

} // namespace

QSslConfiguration tlsConfiguration(const GatewayAddress &address)
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    if (!address.trusted.isEmpty()) // an empty list would replace the system's
        tls.setCaCertificates(address.trusted);
    return tls;
}

GatewayClient::GatewayClient(const GatewayAddress &gateway, const Preferences &userPreferences,
                             std::chrono::milliseconds requestTimeLimit,
                             std::chrono::milliseconds connectionIdleLimit, MessageJournal *messageJournal)
    : address(gateway)
    , preferences(userPreferences)
    , timeLimit(requestTimeLimit)
    , idleLimit(connectionIdleLimit)
    , journal(messageJournal)
    , held(preferences, journal)
    , ahead(connections)
{
    threadContext.moveToThread(&thread);
    thread.setObjectName(u"gateway"_s);
    // The manager's timers and connections are to end on the thread they belong to.
    QObject::connect(&thread, &QThread::finished, &threadContext, [this] { manager.reset(); });
}

GatewayClient::~GatewayClient()
{
    finish(0ms);
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return !isRecording; });
    }
    thread.quit();
    thread.wait();
}

bool GatewayClient::start(const GatewayMessage &message)
{
    std::unique_lock lock(mutex);
    const auto isUnwanted = [&] {
        return closed || message.origin.stop.stop_requested();
    };
    changed.wait(lock, [&] { return isUnwanted() || !held.isFull(); });
    if (isUnwanted())
        return false;
    // Later than the one before, and than those of earlier runs of the program.
    constexpr qint64 fromMilliseconds = 1000;
    lastId = std::max(lastId + 1, QDateTime::currentMSecsSinceEpoch() * fromMilliseconds);
    GatewayMessage taken = message;
    taken.entry.id = lastId;
    held.append(taken);
    sendHeld();
    return true;
}

/// Hands the messages whose turn it is to the thread. To be called with the mutex locked.
void GatewayClient::sendHeld()
{
    while (!isPausing && underWay.size() < connections) {
        const std::optional<GatewayRequest> next = held.takeNext(underWay);
        if (!next)
            break;
        underWay.append(next->message.entry.number);
        isPausing = next->pause > 0ms;
        if (!thread.isRunning())
            thread.start(); // not before, so that the program starts without it
        QMetaObject::invokeMethod(
            &threadContext, [this, request = *next] { send(request); }, Qt::QueuedConnection);
    }
    recordAhead();
    changed.notify_all();
}

/// Has the journal write what is sent next, so that no message waits for the disk. To be called with the
/// mutex locked.
void GatewayClient::recordAhead()
{
    constexpr qsizetype farthest = 64;
    if (!journal || closed)
        return;
    if (isRecording) {
        const bool hasRunDry = !isPausing && !underWay.isEmpty() && underWay.size() < connections;
        if (hasRunDry && !held.isEmpty())
            ahead = std::min(2 * ahead, farthest);
        return;
    }
    std::vector<SentMessage> next = held.takeUnrecorded(ahead);
    if (next.empty())
        return;
    isRecording = true;
    journal->record(std::move(next), [this](const QString &problem) {
        const std::lock_guard lock(mutex);
        isRecording = false;
        held.setRecorded(problem);
        sendHeld();
    });
}

void GatewayClient::dropUnwanted()
{
    {
        const std::lock_guard lock(mutex);
        held.dropUnwanted();
    }
    changed.notify_all();
}

void GatewayClient::pause(std::chrono::milliseconds duration, const std::stop_token &stop)
{
    if (duration <= 0ms)
        return;
    diagnostics::flush();
    std::unique_lock lock(mutex);
    changed.wait_for(lock, duration, [&] { return closed || stop.stop_requested(); });
}

qsizetype GatewayClient::drain(const void *run)
{
    diagnostics::flush();
    std::unique_lock lock(mutex);
    changed.wait(lock, [this, run] { return !held.isAnyOf(run); });
    return held.takeDropped(run);
}

void GatewayClient::close()
{
    {
        const std::lock_guard lock(mutex);
        closed = true;
        held.dropAll(u"The program was ended before"_s);
    }
    changed.notify_all();
}

bool GatewayClient::finish(std::chrono::nanoseconds limit)
{
    close();
    const auto isIdle = [this] {
        return underWay.isEmpty();
    };
    std::unique_lock lock(mutex);
    if (changed.wait_for(lock, limit, isIdle))
        return true;
    const auto breakAllOff = [this] {
        for (QNetworkReply *reply : manager->findChildren<QNetworkReply *>())
            breakOff(*reply, u"The program ended before the gateway answered"_s);
    };
    QMetaObject::invokeMethod(&threadContext, breakAllOff, Qt::QueuedConnection);
    changed.wait_for(lock, 1s, isIdle); // takes a moment, unless the thread itself is kept waiting
    return false;
}

void GatewayClient::send(const GatewayRequest &request)
{
    prepareConnections();
    auto body = std::make_unique<UnrepeatableBody>(request.body);
    QNetworkReply *reply = manager->post(prepare(address, *tls, request), body.get());
    body.release()->setParent(reply);
    guard(*reply);
    QObject::connect(reply, &QNetworkReply::finished, &threadContext,
                     [this, reply, request] { complete(*reply, request); });
    if (request.pause > 0ms)
        QTimer::singleShot(request.pause, Qt::PreciseTimer, manager.get(), [this] {
            const std::lock_guard lock(mutex);
            isPausing = false;
            sendHeld();
        });
}

/// Breaks the request off when its answer takes too long or does not end.
void GatewayClient::guard(QNetworkReply &reply) const
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

void GatewayClient::ask(const GatewayMessage &message,
                        const std::function<void(const QString &problem)> &answered)
{
    const SendSettings accountNow = settings();
    if (!accountNow.fitIntoAddress() || accountNow.accountId != message.entry.account) {
        answered(u"they went out on another account"_s);
        return;
    }
    GatewayRequest request = accountNow.requestFor(message);
    request.path += u'/' + message.entry.identifier;
    request.body.clear();
    {
        const std::lock_guard lock(mutex);
        if (closed)
            return;
        if (!thread.isRunning())
            thread.start();
    }
    QMetaObject::invokeMethod(
        &threadContext, [this, request, answered] { query(request, answered); }, Qt::QueuedConnection);
}

void GatewayClient::query(const GatewayRequest &request,
                          const std::function<void(const QString &problem)> &answered)
{
    prepareConnections();
    QNetworkReply *reply = manager->get(prepare(address, *tls, request));
    guard(*reply);
    QObject::connect(reply, &QNetworkReply::finished, &threadContext, [this, reply, request, answered] {
        lastUse.start();
        reply->deleteLater();
        GatewayMessage message = request.message;
        if (const std::optional<QString> error = transportError(*reply)) {
            answered(lineText(*error, request));
            return;
        }
        const GatewayAnswer answer(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                                   reply->readAll());
        if (answer.identifier != message.entry.identifier) {
            const QString reason = lineText(answer.reason, request);
            answered(reason.isEmpty() ? u"The answer is about another message"_s : reason);
            return;
        }
        if (answer.state != message.entry.state) {
            answer.noteIn(message.entry, request);
            note(message);
        }
        answered({});
    });
}

/// Writes down what has become of a message, and tells it.
void GatewayClient::note(const GatewayMessage &message)
{
    if (journal)
        journal->note(message.entry);
    message.tell();
}

void GatewayClient::prepareConnections()
{
    if (!manager) {
        manager = std::make_unique<QNetworkAccessManager>();
        manager->setProxy(QNetworkProxy::NoProxy);
        tls = tlsConfiguration(address);
    } else if (manager->findChild<QNetworkReply *>() == nullptr &&
               std::chrono::milliseconds(lastUse.elapsed()) > idleLimit) {
        manager->clearConnectionCache();
    }
}

void GatewayClient::complete(QNetworkReply &reply, const GatewayRequest &request)
{
    lastUse.start();
    reply.deleteLater(); // before anybody can know of its end and send what would meet it
    const std::optional<QString> error = transportError(reply);
    const QByteArray body = error ? QByteArray() : reply.readAll();
    // Decoded as a whole, so that a last character that is cut off is an error, too.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(body);
    diagnostics::line("Finished");
    if (!body.isEmpty() && !decoder.hasError())
        diagnostics::line("Response:", lineText(text, request));
    else
        diagnostics::line("Error:", error ? u"Optional(%1)"_s.arg(lineText(*error, request)) : u"nil"_s);
    diagnostics::flush(); // the main thread may not become idle for long
    GatewayMessage message = request.message;
    if (error) {
        message.entry.state = hasReached(reply.error()) ? MessageState::NoAnswer : MessageState::NotSent;
        message.entry.reason = lineText(*error, request);
    } else {
        GatewayAnswer(reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), body)
            .noteIn(message.entry, request);
    }
    note(message);
    const std::lock_guard lock(mutex);
    underWay.removeOne(message.entry.number);
    sendHeld();
}
