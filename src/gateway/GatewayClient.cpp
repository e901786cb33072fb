#include "gateway/GatewayClient.h"

#include "gateway/GatewayAnswer.h"
#include "gateway/GatewayTransport.h"
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

} // namespace

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
    std::vector<SentMessage> next = held.takeUnrecorded(ahead, !underWay.isEmpty());
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
            gatewayTransport::breakOff(*reply, u"The program ended before the gateway answered"_s);
    };
    QMetaObject::invokeMethod(&threadContext, breakAllOff, Qt::QueuedConnection);
    changed.wait_for(lock, 1s, isIdle); // takes a moment, unless the thread itself is kept waiting
    return false;
}

void GatewayClient::send(const GatewayRequest &request)
{
    prepareConnections();
    QNetworkReply *reply = gatewayTransport::post(*manager, gatewayTransport::prepare(address, *tls, request),
                                                  request.body, timeLimit);
    QObject::connect(reply, &QNetworkReply::finished, &threadContext,
                     [this, reply, request] { complete(*reply, request); });
    if (request.pause > 0ms)
        QTimer::singleShot(request.pause, Qt::PreciseTimer, manager.get(), [this] {
            const std::lock_guard lock(mutex);
            isPausing = false;
            sendHeld();
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
    QNetworkReply *reply =
        gatewayTransport::get(*manager, gatewayTransport::prepare(address, *tls, request), timeLimit);
    QObject::connect(reply, &QNetworkReply::finished, &threadContext, [this, reply, request, answered] {
        lastUse.start();
        reply->deleteLater();
        GatewayMessage message = request.message;
        if (const std::optional<QString> error = gatewayTransport::error(*reply)) {
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
    const std::optional<QString> error = gatewayTransport::error(reply);
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
        message.entry.state =
            gatewayTransport::hasReached(reply.error()) ? MessageState::NoAnswer : MessageState::NotSent;
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
