#include "SampleTasks.h"
#include "gateway/MessagingSettings.h"
#include "gateway/TextMessage.h"
#include "journal/ViewControllerJournal.h"
#include "messaging/SchedulePreview.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/SendWorker.h"
#include "platform/Diagnostics.h"
#include "platform/Preferences.h"
#include "support/HttpsServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QTableView>
#include <QTemporaryDir>
#include <QUrl>

#include <benchmark/benchmark.h>

#include <chrono>

using namespace Qt::StringLiterals;

// Yardsticks and how to read the figures: bench/README.md.

namespace {

constexpr int recipients = 200;
constexpr int messages = 2000;

/// Every task belongs to one of the recipients, each of whom has as many.
std::unique_ptr<RunSnapshot> sampleRun(RecipientKind kind, qsizetype taskCount,
                                       const Preferences &preferences)
{
    TaskList tasks = sampleTasks(taskCount);
    std::vector<Recipient> people;
    for (int number = 0; number < recipients; ++number)
        people.push_back({u"Person number %1"_s.arg(number), u"+49 30 %1"_s.arg(number)});
    for (qsizetype index = 0; index < tasks.size(); ++index) {
        task &entry = tasks[index].edit();
        entry.client = entry.teamMember = people[size_t(index) % recipients].name->toUpper();
    }
    const auto [first, last] =
        std::ranges::minmax_element(tasks, {}, [](const SharedTask &entry) { return entry->date; });
    return std::make_unique<RunSnapshot>(
        RunSnapshot{.kind = kind,
                    .recipients = std::move(people),
                    .tasks = tasksForSchedules(kind, tasks),
                    .text = ScheduleText(kind, (*first)->date, (*last)->date, preferences)});
}

void composeRun(benchmark::State &state)
{
    const QTemporaryDir folder;
    const Preferences preferences(folder.filePath(u"preferences.ini"_s)); // sending is off
    const auto run = sampleRun(RecipientKind(state.range(1)), state.range(0), preferences);
    RunCounters counters;
    GatewayClient gateway({}, preferences);
    for (auto _ : state) {
        SendWorker(*run, counters, preferences, gateway).run();
        diagnostics::drain();
    }
    if (counters.schedulesSent != state.range(0) * state.iterations())
        state.SkipWithError("not every task was composed");
}

/// All messages of the same run, as they are shown before anything is sent.
void previewRun(benchmark::State &state)
{
    const QTemporaryDir folder;
    const Preferences preferences(folder.filePath(u"preferences.ini"_s));
    const auto run = sampleRun(RecipientKind::Client, state.range(0), preferences);
    for (auto _ : state)
        benchmark::DoNotOptimize(SchedulePreview(*run, preferences).summary());
}
BENCHMARK(previewRun)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The lines of the same run, and nothing but them.
void writeItsLines(benchmark::State &state)
{
    const QTemporaryDir folder;
    const Preferences preferences(folder.filePath(u"preferences.ini"_s));
    const auto run = sampleRun(RecipientKind(state.range(1)), state.range(0), preferences);
    const bool forTeam = run->kind == RecipientKind::TeamMember;
    const qsizetype tasksOfOne = state.range(0) / recipients;
    for (auto _ : state) {
        for (const Recipient &recipient : run->recipients) {
            diagnostics::line("row value:", recipient.name);
            diagnostics::line("row value:", recipient.phoneNo);
            for (qint64 step = 0; step < state.range(0); ++step) {
                diagnostics::line("Sending step:", step);
                if (forTeam)
                    diagnostics::line("----NoOfSchedules5:", step, "----");
            }
            for (qsizetype index = 0; index < tasksOfOne; ++index) {
                const task &entry = *run->tasks[size_t(index)].entry;
                diagnostics::line("ASCENDING");
                diagnostics::line("ASCENDING");
                diagnostics::line("Task Found:", entry.name, entry.client, recipient.phoneNo);
                if (forTeam)
                    diagnostics::line("----NoOfSchedules2:", index, "----");
                diagnostics::line("Hour:", entry.startHour, " Min:", entry.startMin);
                diagnostics::line("Hour:", entry.endHour, " Min:", entry.endMin);
            }
        }
        diagnostics::drain();
    }
}

void eachKind(benchmark::internal::Benchmark *benchmark)
{
    for (const int kind : {int(RecipientKind::Client), int(RecipientKind::TeamMember)})
        for (const int tasks : {200, 10'000})
            benchmark->Args({tasks, kind});
    benchmark->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(composeRun)->Apply(eachKind);
BENCHMARK(writeItsLines)->Apply(eachKind);

/// A gateway on loopback that takes every message.
class LocalGateway
{
public:
    GatewayAddress address() const
    {
        return {.host = u"127.0.0.1"_s, .port = server.port(), .trusted = {server.certificate()}};
    }

private:
    HttpsServer server{[](const HttpsServer::Request &) {
        return HttpsServer::Answer{
            HttpsServer::response("201 CREATED", R"({"sid": "SM1", "status": "queued"})")};
    }};
};

void sendMessages(benchmark::State &state)
{
    const QTemporaryDir folder;
    Preferences preferences(folder.filePath(u"preferences.ini"_s));
    preferences.store({{messagingKey::accountId, u"AC12"_s},
                       {messagingKey::secret, u"secret"_s},
                       {messagingKey::notifications, true}});
    const bool isKept = state.range(0) != 0;
    const LocalGateway local;
    MessageJournal journal(folder.path()); // as in the program, for all of its runs
    for (auto _ : state) {
        RunReport report;
        GatewayClient gateway(local.address(), preferences, std::chrono::minutes(1), std::chrono::seconds(2),
                              isKept ? &journal : nullptr);
        MessageOrigin origin;
        if (isKept)
            origin.feed = report.feed();
        for (int number = 0; number < messages; ++number) {
            origin.entry.place = number;
            sendTextMessage(u"11/6/26 09:00AM-11/6/26 05:30PM Mow the lawn-Ann"_s,
                            u"+1 555 %1"_s.arg(number * recipients / messages), gateway, origin);
            QCoreApplication::processEvents();
        }
        gateway.drain();
        if (!gateway.finish(std::chrono::minutes(5)))
            state.SkipWithError("not every message was answered");
        QCoreApplication::processEvents();
        if (isKept && report.summary() != u"%1 accepted"_s.arg(messages))
            state.SkipWithError("not every message was accepted");
    }
}

/// The same requests by a bare manager, which keeps six connections to one host.
void postPlainly(benchmark::State &state)
{
    const LocalGateway local;
    const GatewayAddress address = local.address();
    for (auto _ : state) {
        QNetworkAccessManager manager;
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.addCaCertificates(address.trusted);
        QNetworkRequest request(
            QUrl(u"https://127.0.0.1:%1/2010-04-01/Accounts/AC12/SMS/Messages"_s.arg(address.port)));
        request.setSslConfiguration(tls);
        request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/x-www-form-urlencoded"_s);
        request.setRawHeader("Authorization", "Basic QUMxMjpzZWNyZXQ=");
        request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false); // the gateway does not speak it
        const QByteArray body = "From=&To=%2B1%20555%200100&Body="
                                "11%2F6%2F26%2009%3A00AM-11%2F6%2F26%2005%3A30PM%20Mow%20the%20lawn-Ann";
        QEventLoop loop;
        int answered = 0;
        for (int number = 0; number < messages; ++number) {
            QNetworkReply *reply = manager.post(request, body);
            QObject::connect(reply, &QNetworkReply::finished, &loop, [&, reply] {
                if (reply->error() != QNetworkReply::NoError)
                    state.SkipWithError("a request failed");
                reply->deleteLater();
                if (++answered == messages)
                    loop.quit();
            });
        }
        loop.exec();
    }
}

/// The window of the sent messages, until it is painted; a letter in its search field (1).
void openJournal(benchmark::State &state)
{
    constexpr qint64 minute = 60'000; // milliseconds
    const QTemporaryDir folder(QDir::currentPath() + u"/bench-XXXXXX"_s);
    std::vector<SentMessage> sent;
    for (qint64 number = 0; number < state.range(0); ++number)
        sent.push_back(
            {.id = number + 1,
             .moment = 1'700'000'000'000 + number * 5 * minute,
             .person = u"Person number %1"_s.arg(number % recipients),
             .number = u"+4930%1"_s.arg(number % recipients, 7, 10, QLatin1Char('0')),
             .taskName = u"Mow the lawn"_s,
             .text = u"11/6/26 09:00AM-11/6/26 05:30PM Mow the lawn behind the house-Ann %1"_s.arg(number),
             .state = MessageState::Accepted,
             .identifier = u"SM0123456789abcdef0123456789ab%1"_s.arg(number)});
    if (!JournalStore(folder.path()).write(sent, {}, JournalStore::Durability::Machine))
        state.SkipWithError("not written");
    MessageJournal journal(folder.path());
    for (auto _ : state) {
        if (state.range(1) == 1)
            state.PauseTiming();
        ViewControllerJournal screen(journal);
        screen.show();
        QCoreApplication::processEvents();
        if (state.range(1) == 1) {
            state.ResumeTiming();
            screen.findChild<QLineEdit *>(u"searchField"_s)->setText(u"N"_s);
            QCoreApplication::processEvents();
        }
        if (screen.findChild<QTableView *>()->model()->rowCount() != state.range(0))
            state.SkipWithError("not all are shown");
        state.PauseTiming();
        screen.close();
        state.ResumeTiming();
    }
}
BENCHMARK(openJournal)
    ->ArgsProduct({{0, 1'000, 100'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

BENCHMARK(sendMessages)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(postPlainly)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
