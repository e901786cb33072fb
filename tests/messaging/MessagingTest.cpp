#include "messaging/MessagingSettings.h"
#include "messaging/ScheduleText.h"
#include "messaging/ViewControllerSettings.h"
#include "platform/Preferences.h"
#include "support/TestProgram.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

Instant noon(int day)
{
    return Calendar::instantOf(QDateTime(QDate(2026, 11, day), QTime(12, 0)));
}

QLineEdit &field(const QWidget &screen, const char *name)
{
    return *screen.findChild<QLineEdit *>(QString::fromLatin1(name));
}

void click(const QWidget &screen, const char *button)
{
    QTest::mouseClick(screen.findChild<QPushButton *>(QString::fromLatin1(button)), Qt::LeftButton);
}

const Preferences noPreferences(u"/nonexistent/preferences.ini"_s);

} // namespace

class MessagingTest : public QObject
{
    Q_OBJECT

private slots:
    void settingsAreKept()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"config/preferences.ini"_s);
        {
            Preferences preferences(path);
            ViewControllerSettings screen(preferences);
            screen.show();
            QCOMPARE(field(screen, "delayMS").text(), u"0"_s);
            for (const char *name : {"secureID", "passPhrase", "sendingPhoneNo", "messageTitle",
                                     "testPhoneNo", "messageFooter"}) {
                QCOMPARE(field(screen, name).text(), QString());
                field(screen, name).setText(QString::fromLatin1(name) + u" a, b; @x \"ü\" = % \\ "_s);
            }
            field(screen, "delayMS").setText(u"  -5 ms"_s);
            screen.findChild<QCheckBox *>(u"sendSMS"_s)->setChecked(true);
            click(screen, "saveButton");
            screen.show(); // filled anew
            click(screen, "resetButton");
            QCOMPARE(field(screen, "passPhrase").text() + field(screen, "delayMS").text(), u"0"_s);
            screen.close();
        }
        QCOMPARE(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        Preferences preferences(path);
        const QString kept = u" a, b; @x \"ü\" = % \\ "_s;
        QCOMPARE(preferences.text(u"twilioSID"_s), u"secureID"_s + kept);
        QCOMPARE(preferences.text(u"twillioSecret"_s), u"passPhrase"_s + kept);
        QCOMPARE(preferences.text(u"twillioMessageFooter"_s), u"messageFooter"_s + kept);
        QVERIFY(preferences.boolean(u"twillioNotifications"_s));
        QVERIFY(!preferences.boolean(u"twillioOverwrite"_s));
        QCOMPARE(preferences.integer(u"twillioDelay"_s), -5);
        ViewControllerSettings screen(preferences);
        screen.show();
        QCOMPARE(field(screen, "testPhoneNo").text(), u"testPhoneNo"_s + kept);
        QCOMPARE(field(screen, "delayMS").text(), u"-5"_s);
        for (const auto &[text, number] : {std::pair(u"x"_s, 0), {u"99999999999999999999"_s, 2147483647}}) {
            field(screen, "delayMS").setText(text);
            screen.setSettings(nullptr);
            QCOMPARE(preferences.integer(u"twillioDelay"_s), number);
        }
    }

    void tasksOfARecipient()
    {
        const ScheduleText text(RecipientKind::Client, noon(6) + std::chrono::hours(5),
                                noon(8) - std::chrono::hours(5), noPreferences);
        const auto matches = [&text](const QString &client, int day, const std::optional<QString> &name) {
            const ScheduledTask candidate = tasksForSchedules(
                RecipientKind::Client, {task{.date = noon(day), .client = client, .teamMember = u"x"_s}})[0];
            const bool isMatch = text.matches(name, candidate);
            return text.wouldMatch(name, candidate) == isMatch && isMatch;
        };
        const QString name = matchedName(u"É Ann"_s);
        QVERIFY(matches(u"é ann"_s, 6, name) && matches(u"e\u0301 ANN"_s, 8, name));
        QVERIFY(!matches(u"é ann"_s, 5, name) && !matches(u"é ann"_s, 9, name));
        QVERIFY(!matches(u"é anna"_s, 7, name) && !matches(u"é ann "_s, 7, name));
        QVERIFY(matches(u""_s, 7, u""_s) && !matches(u""_s, 7, std::nullopt));
    }

    void messageTexts()
    {
        const QTemporaryDir folder;
        const Preferences settings(folder.filePath(u"preferences.ini"_s));
        const task entry{.date = noon(6),
                         .name = u"Mow & rake"_s,
                         .client = u"ann"_s,
                         .teamMember = u"Bob"_s,
                         .due = noon(8),
                         .startHour = 0,
                         .startMin = 5,
                         .endHour = 17,
                         .endMin = 30};
        const ScheduleText text(RecipientKind::TeamMember, noon(6), noon(30), settings);
        QCOMPARE(text.header(entry), u"\nTeam Member Schedule: Bob\n11/6/26-11/30/26\n\r"_s);
        QCOMPARE(text.taskMessage(entry), u"11/6/26 12:05AM-11/8/26 05:30PM Mow & rake-ann"_s);
        const auto sorted = tasksForSchedules(RecipientKind::Client, {task{.key = u"c"_s, .date = noon(7)},
                                                                      task{.key = u"a"_s, .date = noon(6)},
                                                                      task{.key = u"b"_s, .date = noon(6)}});
        QCOMPARE(sorted[0].entry->key + sorted[1].entry->key + sorted[2].entry->key, u"abc"_s);
    }
};

static const TestClass<MessagingTest> registered;

#include "MessagingTest.moc"
