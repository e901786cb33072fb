#include "DesktopTest.h"

#include "platform/DesktopAppearance.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "platform/SingleInstance.h"

#include <QDBusMessage>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

const QString style = u"AppleInterfaceStyle"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString portalInterface = u"org.freedesktop.portal.Settings"_s;

} // namespace

/// The desktop's settings portal, as far as the appearance needs it.
class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    uint colorScheme = 1;

    void change(uint scheme)
    {
        colorScheme = scheme;
        QDBusMessage signal = QDBusMessage::createSignal(portalPath, portalInterface, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << u"color-scheme"_s
               << QVariant::fromValue(QDBusVariant(scheme));
        QDBusConnection(u"portal"_s).send(signal);
    }

public slots:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &key)
    {
        const bool known = group == u"org.freedesktop.appearance" && key == u"color-scheme";
        return QDBusVariant(known ? QVariant::fromValue(QDBusVariant(colorScheme)) : QVariant());
    }
};

void DesktopTest::appearanceFollowsThePortal()
{
    // The first question is asked with a blocking call, so the portal answers from a thread of its own.
    QThread thread;
    Portal portal;
    portal.moveToThread(&thread);
    thread.start();
    QDBusConnection portalBus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
    QVERIFY(portalBus.registerObject(portalPath, &portal, QDBusConnection::ExportScriptableSlots));
    QVERIFY(portalBus.registerService(u"org.freedesktop.portal.Desktop"_s));

    Preferences preferences(u"/nonexistent/preferences.ini"_s);
    NotificationCenter systemNotices;
    int notices = 0;
    systemNotices.observe(notice::appearanceChanged, this, [&notices] { ++notices; });
    DesktopAppearance appearance(preferences, systemNotices, QDBusConnection::sessionBus());
    appearance.follow();
    QCOMPARE(preferences.text(style), u"Dark"_s);
    QCOMPARE(notices, 1);

    QMetaObject::invokeMethod(&portal, [&portal] {
        portal.change(1); // no change: no notice
        portal.change(2);
    });
    QTRY_COMPARE(preferences.text(style), std::nullopt);
    QCOMPARE(notices, 2);
    QMetaObject::invokeMethod(&portal, [&portal] { portal.change(1); });
    QTRY_COMPARE(preferences.text(style), u"Dark"_s);
    QCOMPARE(notices, 3);

    portalBus.unregisterService(u"org.freedesktop.portal.Desktop"_s);
    thread.quit();
    thread.wait();
    QDBusConnection::disconnectFromBus(u"portal"_s);
}

void DesktopTest::noPortalIsLight()
{
    Preferences preferences(u"/nonexistent/preferences.ini"_s);
    NotificationCenter systemNotices;
    for (const QDBusConnection &bus : {QDBusConnection::sessionBus(), QDBusConnection(u"no such bus"_s)}) {
        DesktopAppearance appearance(preferences, systemNotices, bus);
        appearance.follow();
        QCOMPARE(preferences.text(style), std::nullopt);
    }
}

void DesktopTest::secondStartShowsTheFirst()
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

void DesktopTest::secondStartWithoutBusEnds()
{
    const QTemporaryDir folder;
    const QDBusConnection noBus(u"no such bus"_s);
    auto first = std::make_unique<SingleInstance>(folder.filePath(u"state"_s), noBus);
    QVERIFY(first->acquire());
    QVERIFY(!SingleInstance(folder.filePath(u"state"_s), noBus).acquire());
    first.reset();
    QVERIFY(SingleInstance(folder.filePath(u"state"_s), noBus).acquire());
}

#include "DesktopTest.moc"
