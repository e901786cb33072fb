#pragma once

#include "Account.h"
#include "contacts/Contact.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/ViewControllerSending.h"
#include "model/TaskManager.h"
#include "support/Dialogs.h"
#include "support/Tasks.h"
#include "widgets/DatePicker.h"
#include "widgets/ProgressIndicator.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

inline Instant onDay(int day)
{
    return Calendar::instantOf(QDateTime(QDate(2026, 11, day), QTime(12, 0)));
}

inline task job(const QString &name, int day, const QString &client, const QString &teamMember)
{
    return {.key = name,
            .date = onDay(day),
            .name = name,
            .client = client,
            .teamMember = teamMember,
            .due = onDay(day + 1),
            .startHour = 9,
            .endHour = 17,
            .endMin = 30};
}

inline const task late = job(u"After"_s, 9, u"Ann"_s, u"Bob"_s); // for the days 6 to 8, which are sent

/// So many tasks of Ann's, named 0, 1 and so on.
inline QList<task> tasksOfAnn(int count)
{
    QList<task> tasks;
    for (int number = 0; number < count; ++number)
        tasks.append(job(QString::number(number), 6, u"ann"_s, u""_s));
    return tasks;
}

/// A gateway, an account with it, four clients, a team member and some tasks of theirs.
struct Office
{
    using Answering = std::function<HttpsServer::Answer(const HttpsServer::Request &)>;

    /// \param onRequest  is called on the gateway's thread
    explicit Office(std::function<void(Office &)> onRequest = {})
        : Office([this, onRequest](const HttpsServer::Request &) {
            if (onRequest)
                onRequest(*this);
            return HttpsServer::Answer{HttpsServer::response("201 CREATED", "ok")};
        })
    {
    }
    /// \param answering  is the gateway
    explicit Office(const Answering &answering)
        : server(answering)
    {
        PersistentContainer store(contactModel(), folder.path());
        store.loadPersistentStores();
        ObjectContext &context = store.viewContext();
        const auto add = [](Contact contact, const QString &name, const QString &phoneNo) {
            if (!name.isNull())
                contact.setValue(Contact::Name, name);
            if (!phoneNo.isNull())
                contact.setValue(Contact::PhoneNo, phoneNo);
        };
        add(Clients(context), u"Ann"_s, u"+1"_s);
        add(Clients(context), u"ZOË"_s, {});
        add(Clients(context), u"ann"_s, u"+3"_s);
        add(Clients(context), {}, u"+4"_s);
        add(TeamMembers(context), u"Bob"_s, u"+5"_s);
        context.save();
        setTasks(manager, {job(u"Late"_s, 8, u"ANN"_s, u"Bob"_s), job(u"Early"_s, 6, u"ann"_s, u""_s),
                           job(u"Other"_s, 7, u"zoë"_s, u"bob"_s), late});
        openScreen();
    }

    /// Opens a new screen in place of the one that was open.
    void openScreen()
    {
        screen.reset();
        screen = std::make_unique<ViewControllerSending>(
            ViewControllerSending::Services{manager, runs, folder.path()});
        screen->show();
        child<DatePicker>("startSendDate").setMoment(onDay(6));
        child<DatePicker>("endSendDate").setMoment(onDay(8));
    }

    template <typename Widget>
    Widget &child(const char *name) const
    {
        return *screen->findChild<Widget *>(QString::fromLatin1(name));
    }
    void select(const char *table, const QList<int> &rows) const
    {
        QItemSelectionModel &selection = *child<QTableView>(table).selectionModel();
        for (const int row : rows)
            selection.select(selection.model()->index(row, 0),
                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    void press(const char *button) const { QTest::mouseClick(&child<QPushButton>(button), Qt::LeftButton); }
    void send(const QList<task> &tasks)
    {
        setTasks(manager, tasks);
        select("clientsTable", {0});
        press("sendMsgClients");
    }

    /// How many buttons are enabled and how the bar and the text tell of a run.
    QString shown() const
    {
        const auto &bar = child<ProgressIndicator>("progressBar");
        const int enabled = int(child<QPushButton>("sendMsgClients").isEnabled()) +
                            int(child<QPushButton>("sendMsgTeamMembers").isEnabled());
        return u"%1 buttons, %2 at %3 of %4: %5"_s.arg(enabled)
            .arg(bar.isAnimated() ? u"moving"_s : u"still"_s)
            .arg(bar.value())
            .arg(bar.maximum())
            .arg(child<QLabel>("sendingInfo").text());
    }
    bool waitFor(const QString &start) const
    {
        return QTest::qWaitFor([&] { return shown().startsWith(start); }, 20'000);
    }

    /// Waits until the runs have ended and their messages have been answered; what they were, sorted, since
    /// recipients are served side by side.
    QStringList received()
    {
        if (!QTest::qWaitFor([this] { return !runs.current(); }, 20'000) || !runs.finish(20s))
            return {u"the run does not end"_s};
        QStringList messages;
        for (const HttpsServer::Request &request : server.requests())
            messages.append(request.field(u"To"_s) + u": "_s + request.field(u"Body"_s));
        messages.sort();
        return messages;
    }

    HttpsServer server;
    Account account;
    QTemporaryDir folder;
    TaskManager manager{account.preferences};
    ScheduleRuns runs{account.preferences, addressOf(server), folder.path()};
    std::unique_ptr<ViewControllerSending> screen;
};
