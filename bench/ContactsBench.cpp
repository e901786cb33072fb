#include "contacts/Contact.h"
#include "contacts/PersistentContainer.h"
#include "contacts/ViewControllerClientMgmt.h"
#include "forms/TaskDraft.h"
#include "forms/ViewControllerAdd.h"
#include "model/TaskManager.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "widgets/ColorWell.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableView>
#include <QTemporaryDir>
#include <QVariant>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

// Yardsticks and how to read the figures: bench/README.md.

namespace {

constexpr int most = 10'000;

/// A folder with a contact store of so many clients.
class SampleStore
{
public:
    explicit SampleStore(qint64 clients)
    {
        PersistentContainer container(contactModel(), folder.path());
        container.loadPersistentStores();
        for (qint64 number = 0; number < clients; ++number) {
            Clients client(container.viewContext());
            client.setValue(Contact::Name, u"Client number %1"_s.arg(number));
            client.setValue(Contact::PhoneNo, u"+49 30 %1"_s.arg(number, 7, 10, QLatin1Char('0')));
        }
        if (!container.viewContext().save())
            qFatal("the sample store cannot be written");
    }

    QString path() const { return folder.path(); }
    QString file() const { return folder.filePath(u"Model.sqlite"_s); }

private:
    QTemporaryDir folder;
};

QSqlDatabase plainConnection(const QString &file)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"plain"_s);
    database.setDatabaseName(file);
    if (!database.open())
        qFatal("no plain connection");
    return database;
}

void openForm(benchmark::State &state)
{
    const SampleStore store(state.range(0));
    Preferences preferences(u"/nonexistent/preferences.ini"_s);
    TaskManager manager(preferences);
    NotificationCenter notices;
    NotificationCenter systemNotices;
    ColorPanel colorPanel;
    TaskDraft draft(store.path() + u"/draft"_s);
    const TaskFormServices services{manager, notices, systemNotices, colorPanel, draft, store.path()};
    for (auto _ : state) {
        ViewControllerAdd form(services);
        form.show();
        QCoreApplication::processEvents();
        state.PauseTiming();
        form.close();
        state.ResumeTiming();
    }
}
BENCHMARK(openForm)->Arg(0)->Arg(most)->Unit(benchmark::kMillisecond)->UseRealTime();

void readRowsYardstick(benchmark::State &state)
{
    const SampleStore store(most);
    {
        const QSqlDatabase database = plainConnection(store.file());
        for (auto _ : state) {
            QSqlQuery query(database);
            query.setForwardOnly(true);
            query.exec(u"SELECT id, name, phoneNo FROM Clients ORDER BY id"_s);
            while (query.next()) {
                benchmark::DoNotOptimize(query.value(1).toString());
                benchmark::DoNotOptimize(query.value(2).toString());
            }
        }
    }
    QSqlDatabase::removeDatabase(u"plain"_s);
}
BENCHMARK(readRowsYardstick)->Unit(benchmark::kMillisecond)->UseRealTime();

/// All contacts are removed in their window (0), or brought back (1).
void removeAndBringBack(benchmark::State &state)
{
    const SampleStore store(most);
    ViewControllerClientMgmt screen({store.path()});
    screen.show();
    auto *table = screen.findChild<QTableView *>();
    const auto remove = [&] {
        table->selectAll();
        screen.RemoveClient(nullptr);
        QCoreApplication::processEvents();
    };
    const auto bringBack = [&] {
        for (QPushButton *button : screen.findChildren<QPushButton *>())
            if (button->text() == u"Undo")
                button->click();
        QCoreApplication::processEvents();
    };
    for (auto _ : state) {
        if (state.range(0) == 1) {
            state.PauseTiming();
            remove();
            state.ResumeTiming();
            bringBack();
        } else {
            remove();
            state.PauseTiming();
            bringBack();
            state.ResumeTiming();
        }
    }
    if (table->model()->rowCount() != most)
        state.SkipWithError("not all are back");
}
BENCHMARK(removeAndBringBack)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void saveChanges(benchmark::State &state)
{
    const SampleStore store(most);
    PersistentContainer container(contactModel(), store.path());
    container.loadPersistentStores();
    const std::vector<ManagedObject> clients = container.viewContext().fetch(Clients::fetchRequest());
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        ++round;
        for (ManagedObject client : clients)
            client.setValue(Contact::PhoneNo, u"+49 30 %1"_s.arg(round, 7, 10, QLatin1Char('0')));
        state.ResumeTiming();
        if (!container.viewContext().save())
            state.SkipWithError("not saved");
    }
}
BENCHMARK(saveChanges)->Unit(benchmark::kMillisecond)->UseRealTime();

void saveChangesYardstick(benchmark::State &state)
{
    const SampleStore store(most);
    {
        QSqlDatabase database = plainConnection(store.file());
        int round = 0;
        for (auto _ : state) {
            const QString number = u"+49 30 %1"_s.arg(++round, 7, 10, QLatin1Char('0'));
            database.transaction();
            QSqlQuery query(database);
            query.prepare(u"UPDATE Clients SET name = ?, phoneNo = ? WHERE id = ?"_s);
            for (int id = 1; id <= most; ++id) {
                query.bindValue(0, u"Client number 1234"_s);
                query.bindValue(1, number);
                query.bindValue(2, id);
                query.exec();
            }
            if (!database.commit())
                state.SkipWithError("not committed");
        }
    }
    QSqlDatabase::removeDatabase(u"plain"_s);
}
BENCHMARK(saveChangesYardstick)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
