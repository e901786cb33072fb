#pragma once

#include "gateway/DeliveryQuery.h"
#include "gateway/GatewayClient.h"
#include "journal/MessageJournal.h"
#include "messaging/RunReport.h"
#include "messaging/ScheduleRun.h"

#include <QDateTime>

#include <optional>
#include <vector>

/// The program's runs of schedule messages, with the gateway client that they share. Made on the main
/// thread, before the screens and after the preferences.
class ScheduleRuns
{
public:
    /// \param dataFolder  where the journal of messages is
    ScheduleRuns(const Preferences &preferences, const GatewayAddress &address, const QString &dataFolder);
    ~ScheduleRuns();
    ScheduleRuns(const ScheduleRuns &) = delete;
    ScheduleRuns &operator=(const ScheduleRuns &) = delete;

    /// A run to be started. It lives until shortly after it has finished.
    ScheduleRun &add(RunSnapshot snapshot);
    /// When the same messages were last sent to the same people, if that was within the last minutes; also
    /// when they are still being handed over.
    std::optional<QTime> timeOfSame(const RunSnapshot &snapshot) const;
    /// The newest of the runs that have not finished; null when there is none.
    ScheduleRun *current() const { return runs.empty() ? nullptr : runs.back().get(); }

    /// What becomes of the messages of the newest run, also when it has finished; null before the first one.
    RunReport *report() const { return newestReport.get(); }
    MessageJournal &journal() { return messageJournal; }

    /// Asks the gateway what has become of the report's messages at the phones, unless that is under way.
    /// The report tells how far it is.
    void askForDelivery();

    /// Has all runs end without what has not been handed over.
    void stopSending();
    /// Ends all runs, and with them the client: what has not been started is not sent any more.
    void stop();
    /// Waits for the answers to what was started; false when that takes longer than the limit.
    bool finish(std::chrono::nanoseconds limit);

private:
    const Preferences &preferences;
    MessageJournal messageJournal;
    std::unique_ptr<RunReport> newestReport;
    std::vector<std::unique_ptr<DeliveryQuery>> deliveryQueries; ///< whose answers may be on their way
    GatewayClient gateway;
    struct Sent
    {
        QDateTime began;
        QDateTime ended;   ///< null while messages are being handed over
        QByteArray digest; ///< of people and messages
    };

    QList<Sent> sent; ///< the newest last
    std::vector<std::unique_ptr<ScheduleRun>> runs;
    QObject mainThread; ///< receives what ends a run
};
