#include "messaging/ScheduleRuns.h"

#include <QCryptographicHash>

#include <algorithm>
#include <array>

ScheduleRuns::ScheduleRuns(const Preferences &userPreferences, const GatewayAddress &address,
                           const QString &dataFolder)
    : preferences(userPreferences)
    , messageJournal(dataFolder)
    , gateway(address, preferences, std::chrono::minutes(1), std::chrono::seconds(2), &messageJournal)
{
}

ScheduleRuns::~ScheduleRuns()
{
    stop();
}

/// By what two runs are known to send the same; empty for one that sends nothing.
static QByteArray digestOf(const RunSnapshot &snapshot)
{
    QCryptographicHash digest(QCryptographicHash::Sha256);
    bool isEmpty = true;
    for (const Recipient &recipient : snapshot.recipients) {
        const QString person =
            matchedName(recipient.name.value_or(QString())) + u'\n' + recipient.phoneNo.value_or(QString());
        for (const task *entry : snapshot.scheduleOf(recipient)) {
            isEmpty = false;
            const QStringList texts{person, entry->name, entry->client, entry->teamMember};
            const std::array<qint64, 6> moments{entry->date.time_since_epoch().count(),
                                                entry->due.time_since_epoch().count(),
                                                entry->startHour,
                                                entry->startMin,
                                                entry->endHour,
                                                entry->endMin};
            digest.addData(texts.join(u'\n').toUtf8());
            digest.addData(QByteArrayView(reinterpret_cast<const char *>(moments.data()), sizeof moments));
        }
    }
    digest.addData(snapshot.text.rangeAndFrame().toUtf8());
    return isEmpty ? QByteArray() : digest.result();
}

std::optional<QTime> ScheduleRuns::timeOfSame(const RunSnapshot &snapshot) const
{
    constexpr qint64 recent = 600; // seconds
    const QByteArray digest = digestOf(snapshot);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (auto earlier = sent.crbegin(); !digest.isEmpty() && earlier != sent.crend(); ++earlier)
        if (earlier->digest == digest &&
            (earlier->ended.isNull() || qAbs(earlier->ended.secsTo(now)) < recent))
            return earlier->began.toLocalTime().time();
    return std::nullopt;
}

ScheduleRun &ScheduleRuns::add(RunSnapshot snapshot)
{
    constexpr qsizetype mostKept = 100;
    const QDateTime began = QDateTime::currentDateTimeUtc();
    sent.append({began, {}, digestOf(snapshot)});
    if (sent.size() > mostKept)
        sent.removeFirst();
    // A run that sends nothing leaves the report of the one before.
    const bool isReported = !sent.last().digest.isEmpty() || !snapshot.again.empty();
    if (isReported) {
        for (const auto &query : deliveryQueries)
            query->stop();
        newestReport = std::make_unique<RunReport>();
    }
    runs.push_back(std::make_unique<ScheduleRun>(std::move(snapshot), preferences, gateway,
                                                 isReported ? newestReport->feed() : nullptr));
    ScheduleRun *run = runs.back().get();
    QObject::connect(run, &ScheduleRun::finished, &mainThread, [this, began] {
        for (Sent &entry : sent)
            if (entry.began == began)
                entry.ended = QDateTime::currentDateTimeUtc();
    });
    // Queued: a run cannot go while it tells that it has finished.
    QObject::connect(
        run, &ScheduleRun::finished, &mainThread,
        [this, run] { std::erase_if(runs, [run](const auto &kept) { return kept.get() == run; }); },
        Qt::QueuedConnection);
    return *run;
}

void ScheduleRuns::askForDelivery()
{
    if (!newestReport || newestReport->isBeingAsked())
        return;
    std::erase_if(deliveryQueries, [](const auto &query) { return query->isDone(); });
    std::vector<SentMessage> accepted;
    std::ranges::copy_if(newestReport->allMessages(), std::back_inserter(accepted),
                         [](const SentMessage &message) { return message.state == MessageState::Accepted; });
    deliveryQueries.push_back(
        std::make_unique<DeliveryQuery>(std::move(accepted), gateway, newestReport->feed()));
    DeliveryQuery &query = *deliveryQueries.back();
    QObject::connect(&query, &DeliveryQuery::progressed, newestReport.get(), &RunReport::tellDelivery);
    query.start();
}

void ScheduleRuns::stopSending()
{
    for (const std::unique_ptr<ScheduleRun> &run : runs)
        run->stop();
}

void ScheduleRuns::stop()
{
    gateway.close();
    runs.clear();
}

bool ScheduleRuns::finish(std::chrono::nanoseconds limit)
{
    return gateway.finish(limit);
}
