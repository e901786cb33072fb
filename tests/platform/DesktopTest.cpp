#include "platform/DesktopAppearance.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "platform/SingleInstance.h"
#include "support/TestProgram.h"

#include <QProcess>
#include <QTemporaryDir>

#include <thread>

using namespace Qt::StringLiterals;

static const QString style = u"AppleInterfaceStyle"_s;

class DesktopTest : public QObject
{
    Q_OBJECT

private slots:
    void appearanceFollowsThePortal()
    {
        QProcess portal;
        portal.start(u"" BINARY_DIR "/bin/fake_portal"_s, QStringList());
        QVERIFY(portal.waitForReadyRead());

        Preferences preferences(u"/nonexistent/preferences.ini"_s);
        NotificationCenter systemNotices;
        int notices = 0;
        systemNotices.observe(notice::appearanceChanged, this, [&notices] { ++notices; });
        DesktopAppearance appearance(preferences, systemNotices, QDBusConnection::sessionBus());
        appearance.follow();
        QCOMPARE(preferences.text(style), u"Dark"_s);
        QCOMPARE(notices, 1);

        portal.write("12"); // the first is no change: no notice
        QTRY_COMPARE(preferences.text(style), std::nullopt);
        QCOMPARE(notices, 2);
        portal.write("1");
        QTRY_COMPARE(preferences.text(style), u"Dark"_s);
        QCOMPARE(notices, 3);
        portal.closeWriteChannel();
        QVERIFY(portal.waitForFinished());
    }

    void noPortalIsLight()
    {
        Preferences preferences(u"/nonexistent/preferences.ini"_s);
        NotificationCenter systemNotices;
        for (const QDBusConnection &bus :
             {QDBusConnection::sessionBus(), QDBusConnection(u"no such bus"_s)}) {
            DesktopAppearance appearance(preferences, systemNotices, bus);
            appearance.follow();
            QCOMPARE(preferences.text(style), std::nullopt);
        }
    }

    void secondStartShowsTheFirst()
    {
        const QTemporaryDir folder;
        SingleInstance first(folder.path(), QDBusConnection::sessionBus());
        int activations = 0;
        connect(&first, &SingleInstance::activated, this, [&activations] { ++activations; });
        QVERIFY(first.acquire());

        bool acquired = true;
        std::thread second([&acquired, &folder] {
            const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"second"_s);
            acquired = SingleInstance(folder.path(), bus).acquire();
        });
        QTRY_COMPARE(activations, 1);
        second.join();
        QVERIFY(!acquired);
        QDBusConnection::disconnectFromBus(u"second"_s);
    }
};

static const TestClass<DesktopTest> registered;

#include "DesktopTest.moc"
