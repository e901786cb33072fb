#include "messaging/ViewControllerSettings.h"
#include "platform/Preferences.h"
#include "support/Dialogs.h"
#include "support/TestProgram.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;

static QLineEdit &field(const QWidget &screen, const QString &name)
{
    return *screen.findChild<QLineEdit *>(name);
}

static void click(const QWidget &screen, const QString &button)
{
    QTest::mouseClick(screen.findChild<QPushButton *>(button), Qt::LeftButton);
}

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void settingsAreKept()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"config/preferences.ini"_s);
        const QString odd = u" a, b; @x \"ü\" = % \\ "_s;
        const std::pair<QString, QString> texts[] = {{u"secureID"_s, u"twilioSID"_s},
                                                     {u"passPhrase"_s, u"twillioSecret"_s},
                                                     {u"sendingPhoneNo"_s, u"twillioSendingPhoneNo"_s},
                                                     {u"messageTitle"_s, u"twillioMessageTitle"_s},
                                                     {u"testPhoneNo"_s, u"twillioTestPhoneNo"_s},
                                                     {u"messageFooter"_s, u"twillioMessageFooter"_s}};
        const auto isText = [](const QString &name) {
            return name != u"secureID" && name != u"passPhrase";
        };
        {
            Preferences preferences(path);
            ViewControllerSettings screen(preferences);
            screen.show();
            QCOMPARE(field(screen, u"delayMS"_s).text(), u"0"_s);
            for (const auto &[name, key] : texts) {
                QCOMPARE(field(screen, name).text(), QString());
                field(screen, name).setText(isText(name) ? name + odd : u' ' + name + u' ');
            }
            screen.findChild<QCheckBox *>(u"sendSMS"_s)->setChecked(true);
            for (const auto &[text, number] :
                 {std::pair(u"x"_s, 0), {u"99999999999999999999"_s, 2147483647}, {u"  -5 ms"_s, -5}}) {
                field(screen, u"delayMS"_s).setText(text);
                click(screen, u"saveButton"_s);
                QCOMPARE(preferences.integer(u"twillioDelay"_s), number);
                screen.show(); // filled anew
            }
            click(screen, u"resetButton"_s);
            QCOMPARE(field(screen, u"passPhrase"_s).text() + field(screen, u"delayMS"_s).text(), u"0"_s);
        }
        QCOMPARE(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        Preferences preferences(path);
        ViewControllerSettings screen(preferences);
        screen.show();
        for (const auto &[name, key] : texts)
            QCOMPARE(field(screen, name).text() + *preferences.text(key),
                     (isText(name) ? name + odd : name).repeated(2));
        QVERIFY(preferences.boolean(u"twillioNotifications"_s));
        QVERIFY(!preferences.boolean(u"twillioOverwrite"_s));
        QCOMPARE(field(screen, u"delayMS"_s).text(), u"-5"_s);
        for (const auto &[name, key] : {texts[0], texts[1]}) {
            const QString before = *preferences.text(key);
            field(screen, name).setText(u"AC 12"_s);
            click(screen, u"saveButton"_s);
            const QPointer<QLabel> note = screen.findChild<QLabel *>(u"note"_s);
            QVERIFY(note && note->text().contains(u"such as a blank") && screen.isVisible());
            QCOMPARE(preferences.text(key), before);
            field(screen, name).setText(before);
            QTRY_VERIFY(!note); // and so has the mark gone
        }
    }

    void settingsThatCannotBeWritten()
    {
        Preferences preferences(u"/dev/null/preferences.ini"_s);
        ViewControllerSettings screen(preferences);
        screen.show();
        field(screen, u"secureID"_s).setText(u"AC12"_s);
        const AlertAnswer alert(u"OK"_s);
        click(screen, u"saveButton"_s);
        QVERIFY(alert.informativeText.contains(u"could not be written"));
        QCOMPARE(preferences.text(u"twilioSID"_s), u"AC12"_s);
    }
};

static const TestClass<SettingsTest> registered;
#include "SettingsTest.moc"
