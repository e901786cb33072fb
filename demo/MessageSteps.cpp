#include "MessageSteps.h"

#include "Desktop.h"
#include "ExpectedList.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Stage.h"
#include "support/HttpsServer.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QUrlQuery>

#include <algorithm>

using namespace Qt::StringLiterals;

MessageSteps::MessageSteps(Stage &tourStage, const MainWindowHandle &mainWindow,
                           const ExpectedList &expectedList, Desktop &userDesktop,
                           const HttpsServer &messageGateway, QDate today)
    : stage(tourStage)
    , main(mainWindow)
    , expected(expectedList)
    , desktop(userDesktop)
    , gateway(messageGateway)
    , firstDay(2026, 9, 1)
    , lastDay(today.addDays(7))
{
}

void MessageSteps::setUpAccount()
{
    stage.step(u"The gateway's account is set up; the secret is shown as dots, and on demand"_s);
    hand::choose(hand::openMenu(main.window, u"Messages"_s), u"Message Settings…"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerSettings"_s);
    const auto field = [&screen](const QString &name) -> QLineEdit & {
        return hand::child<QLineEdit>(screen, name);
    };
    hand::fill(field(u"secureID"_s), u"AC5f1e0a77"_s);
    hand::fill(field(u"passPhrase"_s), u"green-fingers"_s);
    hand::fill(field(u"sendingPhoneNo"_s), u"+1 555 0100"_s);
    hand::fill(field(u"messageTitle"_s), u"Your garden, your week"_s);
    hand::fill(field(u"messageFooter"_s), u"Questions? Just call."_s);
    hand::fill(field(u"delayMS"_s), u"150"_s);
    hand::click(hand::child<QCheckBox>(screen, u"sendSMS"_s));
    desktop.picturesOf(screen, stage, u"message-settings"_s);
    stage.check(!field(u"passPhrase"_s).displayText().contains(u"green"), u"the secret is hidden"_s);
    hand::click(hand::child<QToolButton>(screen, u"revealButton"_s));
    stage.same(field(u"passPhrase"_s).displayText(), u"green-fingers"_s, u"the secret on demand"_s);
    hand::click(hand::child<QPushButton>(screen, u"saveButton"_s));
    stage.check(!screen.isVisible(), u"the settings are closed"_s);
}

QDialog &MessageSteps::openScreen()
{
    hand::choose(hand::openMenu(main.window, u"Messages"_s), u"Schedule Messages…"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerSending"_s);
    const auto enter = [&screen](const QString &name, QDate day) {
        auto &picker = hand::child<QDateTimeEdit>(screen, name);
        hand::fill(picker, day.toString(picker.displayFormat()));
    };
    enter(u"startSendDate"_s, firstDay);
    enter(u"endSendDate"_s, lastDay);
    return screen;
}

void MessageSteps::sendToClients(const QString &client, const QString &phoneNo)
{
    stage.step(u"A client is texted their schedule, while the window goes on working"_s);
    QDialog &screen = openScreen();
    auto &sendButton = hand::child<QPushButton>(screen, u"sendMsgClients"_s);
    auto &info = hand::child<QLabel>(screen, u"sendingInfo"_s);
    hand::click(hand::child<QCheckBox>(screen, u"allClients"_s));
    hand::click(sendButton);
    require(QTest::qWaitFor([this] { return !gateway.requests().isEmpty(); }), u"nothing is sent"_s);
    stage.check(!sendButton.isEnabled(), u"no second run can be started"_s);
    stage.same(info.text(), u"Sending..."_s, u"what is going on"_s);
    stage.picture(screen, u"sending"_s);
    require(QTest::qWaitFor([&sendButton] { return sendButton.isEnabled(); }, 20'000), u"no end"_s);

    const QStringList messages = scheduleOf(client, ListRow::Client, u"Client Schedule: "_s);
    checkReceived(phoneNo, messages);
    stage.same(info.text(),
               u"Steps Performed:%1 Schedules Sent:%2"_s.arg(expected.rows().size()).arg(messages.size() - 2),
               u"the counts"_s);
    desktop.picturesOf(screen, stage, u"sent"_s);
    hand::click(hand::child<QPushButton>(screen, u"closeButton"_s));
    stage.check(!screen.isVisible(), u"the screen is closed"_s);
}

void MessageSteps::sendToTeamMembers(const QString &teamMember, const QString &phoneNo)
{
    stage.step(u"So is a team member, although the screen is closed in the middle"_s);
    QDialog &screen = openScreen();
    hand::click(hand::child<QCheckBox>(screen, u"allTeamMembers"_s));
    hand::click(hand::child<QPushButton>(screen, u"sendMsgTeamMembers"_s));
    hand::shortcut(screen, Qt::Key_Escape, {});
    stage.check(!screen.isVisible(), u"the screen is closed"_s);
    hand::choose(hand::openMenu(main.window, u"Messages"_s), u"Schedule Messages…"_s);
    QDialog &again = hand::openWindow(u"ViewControllerSending"_s);
    stage.check(!hand::child<QPushButton>(again, u"sendMsgTeamMembers"_s).isEnabled(),
                u"no second run can be started"_s);
    hand::shortcut(again, Qt::Key_Escape, {});
    checkReceived(phoneNo, scheduleOf(teamMember, ListRow::TeamMember, u"Team Member Schedule: "_s));
}

/// What the person should be sent, as one text for each message.
QStringList MessageSteps::scheduleOf(const QString &person, int field, const QString &heading) const
{
    const auto day = [](const ListRow &row, ListRow::Field position) {
        return QDate::fromString(row.field(position), u"M/d/yy"_s).addYears(100);
    };
    const auto time = [](const ListRow &row, int position) {
        const QTime moment(row.fields.value(position).toInt(), row.fields.value(position + 1).toInt());
        return moment.toString(u"hh:mmAP"_s);
    };
    QList<ListRow> rows;
    for (const ListRow &row : expected.rows())
        if (const QDate start = day(row, ListRow::Date);
            start >= firstDay && start <= lastDay && row.fields.value(field).toLower() == person.toLower())
            rows.append(row);
    std::ranges::stable_sort(rows, {}, [&](const ListRow &row) { return day(row, ListRow::Date); });
    QStringList messages{u"Your garden, your week\n%1%2\n%3-%4\n\r"_s.arg(
        heading, person, firstDay.toString(u"M/d/yy"_s), lastDay.toString(u"M/d/yy"_s))};
    for (const ListRow &row : rows)
        messages.append(u"%1 %2-%3 %4 %5-%6"_s.arg(
            day(row, ListRow::Date).toString(u"M/d/yy"_s), time(row, 14),
            day(row, ListRow::Due).toString(u"M/d/yy"_s), time(row, 16), row.field(ListRow::Name),
            row.field(field == ListRow::Client ? ListRow::TeamMember : ListRow::Client)));
    return messages << u"Questions? Just call."_s;
}

void MessageSteps::checkReceived(const QString &phoneNo, const QStringList &messages)
{
    stage.check(messages.size() > 2, u"the schedule has tasks"_s);
    const auto isComplete = [&] {
        return gateway.requests().size() >= checkedRequests + messages.size();
    };
    require(QTest::qWaitFor(isComplete, 20'000), u"not everything is sent"_s);
    const QList<HttpsServer::Request> requests = gateway.requests().sliced(checkedRequests);
    checkedRequests += requests.size();
    stage.same(requests.size(), messages.size(), u"messages"_s);
    for (qsizetype i = 0; i < requests.size(); ++i) {
        const QByteArray &head = requests[i].head;
        stage.check(head.startsWith("POST /2010-04-01/Accounts/AC5f1e0a77/SMS/Messages HTTP/1.1\r\n"),
                    u"the request's path"_s);
        stage.check(head.contains("\r\nAuthorization: Basic " +
                                  QByteArray("AC5f1e0a77:green-fingers").toBase64() + "\r\n"),
                    u"the credentials"_s);
        const QUrlQuery form(QString::fromLatin1(requests[i].body));
        const QString text = form.queryItemValue(u"Body"_s, QUrl::FullyDecoded);
        stage.same(form.queryItemValue(u"From"_s, QUrl::FullyDecoded), u"+1 555 0100"_s, u"the sender"_s);
        stage.same(form.queryItemValue(u"To"_s, QUrl::FullyDecoded), phoneNo, u"the recipient"_s);
        stage.same(text, messages[i].first(qMin(messages[i].size(), 160)), u"the message"_s);
        stage.list(u"to %1: %2"_s.arg(phoneNo, QString(text).replace(u'\n', u" / "_s).remove(u'\r')));
    }
}
