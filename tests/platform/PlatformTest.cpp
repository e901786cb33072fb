#include "platform/AppearanceSetting.h"
#include "platform/Calendar.h"
#include "platform/DesktopAppearance.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/ScratchHome.h"
#include "support/TestProgram.h"

#include <QDBusConnectionInterface>
#include <QProcess>

#include <thread>

using namespace Qt::StringLiterals;

class PlatformTest : public QObject
{
    Q_OBJECT

private slots:
    void diagnosticLines()
    {
        CapturedOutput output;
        const QString text = u"Tür|🌱"_s;
        diagnostics::line("Row:", text, 3, -1LL, true);
        diagnostics::line("Fields:", QList<QStringView>{u"a", u"", u"b c"});
        diagnostics::line(u"a lone \xd800 half"_s);
        QCOMPARE(output.takeLines(),
                 QStringList({u"Row: Tür|🌱 3 -1 true"_s, u"Fields: [a, , b c]"_s, u"a lone \ufffd half"_s}));
    }

    void diagnosticsFromManyThreads()
    {
        constexpr int threads = 4;
        constexpr int lines = 20'000; // some megabytes, so that several chunks are written while others fill
        CapturedOutput output;
        std::vector<std::thread> writers;
        for (int thread = 0; thread < threads; ++thread)
            writers.emplace_back([thread] {
                for (int i = 0; i < lines; ++i)
                    diagnostics::line("thread", thread, "line", i,
                                      "of a text that is long enough to be torn apart");
            });
        for (std::thread &writer : writers)
            writer.join();

        int next[threads] = {};
        for (const QString &line : output.takeLines()) {
            const QStringList words = line.split(u' ');
            QCOMPARE(words.size(), 15);
            QCOMPARE(words[3].toInt(), next[words[1].toInt()]++);
        }
        for (const int count : next)
            QCOMPARE(count, lines);
    }

    void preferencesFallBackOnGlobalSettings()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"preferences.ini"_s);
        writeTo(path, "[General]\nlist=a, b\nown=Light\n");
        Preferences preferences(path);
        for (const QString &key : {u"own"_s, u"list"_s, u"other"_s})
            preferences.setGlobalText(key, u"Dark"_s);
        QCOMPARE(preferences.text(u"own"_s), u"Light"_s);
        QCOMPARE(preferences.text(u"list"_s), std::nullopt); // present, but no text
        QCOMPARE(preferences.text(u"other"_s), u"Dark"_s);
        preferences.setGlobalText(u"other"_s, std::nullopt);
        QCOMPARE(preferences.text(u"other"_s), std::nullopt);
    }

    void appearanceFollowsThePortal()
    {
        constexpr int limit = 30'000; // milliseconds
        Preferences preferences(u"/nonexistent/preferences.ini"_s);
        NotificationCenter systemNotices;
        QStringList seen;
        systemNotices.observe(notice::appearanceChanged, this, [&] {
            seen.append(preferences.text(appearanceSetting::key).value_or(u"Light"_s));
        });
        const QDBusConnection bus = QDBusConnection::sessionBus();
        for (const QDBusConnection &withoutPortal : {bus, QDBusConnection(u"no such bus"_s)})
            DesktopAppearance(preferences, systemNotices, withoutPortal).follow();
        QCOMPARE(seen, QStringList());

        QProcess portal;
        portal.start(u"" BINARY_DIR "/bin/fake_portal"_s, QStringList());
        QVERIFY(portal.waitForReadyRead(limit));
        DesktopAppearance appearance(preferences, systemNotices, bus);
        appearance.follow();
        portal.write("1"); // it takes its time to answer
        QTRY_COMPARE_WITH_TIMEOUT(seen, QStringList(u"Dark"_s), limit);
        portal.write("121");
        portal.closeWriteChannel();
        QVERIFY(portal.waitForFinished(limit));
        QVERIFY(!bus.interface()->isServiceRegistered(u"org.freedesktop.portal.Desktop"_s));
        QCoreApplication::processEvents(); // what the portal sent came before the bus's answer
        QCOMPARE(seen, QStringList({u"Dark"_s, u"Light"_s, u"Dark"_s}));
    }

    void noticesReachLivingObserversAtOnce()
    {
        NotificationCenter centre;
        int heard = 0;
        auto observer = std::make_unique<QObject>();
        centre.observe(notice::reload, observer.get(), [&heard] { ++heard; });
        centre.post(notice::update);
        QCOMPARE(heard, 0);
        centre.post(notice::reload);
        QCOMPARE(heard, 1);
        observer.reset();
        centre.post(notice::reload);
        QCOMPARE(heard, 1);
    }

    void daysOfTheUsersTimeZone()
    {
        qputenv("TZ", "America/Havana"); // clocks go from 0:00 to 1:00 on 10 March 2024
        tzset();
        const Calendar calendar;
        const Calendar::Day changeDay = calendar.day(QDate(2024, 3, 10));
        QCOMPARE(changeDay.end - changeDay.begin, std::chrono::hours(23));
        QCOMPARE(Calendar::localTime(changeDay.begin).time(), QTime(1, 0));
        QVERIFY(!changeDay.contains(changeDay.end));
        QCOMPARE(calendar.dayOf(changeDay.begin), QDate(2024, 3, 10));
        QCOMPARE(calendar.dayOf(changeDay.begin - std::chrono::milliseconds(1)), QDate(2024, 3, 9));
    }
};

static const TestClass<PlatformTest> registered;

#include "PlatformTest.moc"
