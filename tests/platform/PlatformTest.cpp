#include "platform/AppearanceSetting.h"
#include "platform/Calendar.h"
#include "platform/DesktopAppearance.h"
#include "platform/Diagnostics.h"
#include "platform/IniFile.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/FakePortal.h"
#include "support/TestProgram.h"

#include <QDBusConnectionInterface>
#include <QRandomGenerator>
#include <QSettings>

#include <sys/stat.h>
#include <thread>

using namespace Qt::StringLiterals;

class PlatformTest : public QObject
{
    Q_OBJECT

private slots:
    void diagnosticsFromManyThreads()
    {
        constexpr int threads = 4;
        constexpr int lines = 20'000; // some megabytes, so that several chunks are written while others fill
        const QString text = u"Tür|🌱, and a lone \xd800 half of a character"_s;
        CapturedOutput output;
        std::vector<std::thread> writers;
        for (int thread = 0; thread < threads; ++thread)
            writers.emplace_back([thread, text] {
                for (int i = 0; i < lines; ++i)
                    diagnostics::line("thread", thread, "line", i, text, -1LL, true,
                                      QList<QStringView>{u"a", u"", u"b c"});
            });
        for (std::thread &writer : writers)
            writer.join();

        int next[threads] = {};
        for (const QString &line : output.takeLines()) {
            const QStringList words = line.split(u' ');
            QCOMPARE(words.sliced(4).join(u' '),
                     u"Tür|🌱, and a lone \ufffd half of a character -1 true [a, , b c]"_s);
            QCOMPARE(words[3].toInt(), next[words[1].toInt()]++);
        }
        for (const int count : next)
            QCOMPARE(count, lines);
    }

    void iniFilesHoldAnyText()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"any.ini"_s);
        const QStringList parts{u"a"_s,  u"0"_s, u" "_s, u"\t"_s, u"\n"_s,     u"\x01"_s, u"\""_s,
                                u"\\"_s, u","_s, u";"_s, u"="_s,  u"@"_s,      u"%"_s,    u"@Size(1 2)"_s,
                                u"#"_s,  u"["_s, u"]"_s, u"ü"_s,  u"\u2028"_s, u"🌱"_s,    u"x"_s};
        QList<std::pair<QString, QString>> texts;
        for (int i = 0; i < 1000; ++i) {
            texts.append({u"key%1"_s.arg(i), {}});
            for (int length = QRandomGenerator::global()->bounded(5); length > 0; --length)
                texts.last().second += parts[QRandomGenerator::global()->bounded(parts.size())];
        }
        {
            QSettings settings(path, QSettings::IniFormat);
            settings.setValue(u"list"_s, QStringList{u"a"_s, u"b"_s});
            settings.setValue(u"size"_s, QSize(1, 2));
            settings.setValue(u"other/key0"_s, u"of another section"_s);
            for (const auto &[key, text] : texts)
                settings.setValue(key, text);
        }
        for (int round = 0; round < 2; ++round) { // what QSettings has written, then what it reads
            const QSettings settings(path, QSettings::IniFormat);
            IniFile file(path);
            QVERIFY(file.isWhole());
            for (const auto &[key, text] : texts) {
                QCOMPARE(file.text(key), text);
                QCOMPARE(settings.value(key).toString(), text);
            }
            for (const QString &key : {u"list"_s, u"size"_s})
                QVERIFY(file.contains(key) && !file.text(key));
            QCOMPARE(settings.value(u"other/key0"_s), u"of another section"_s);
            for (qsizetype i = 0; i < texts.size(); ++i)
                std::swap(texts[i].second, texts[texts.size() - 1 - i].second += u'@');
            QVERIFY(file.store(texts));
        }
    }

    void iniFilesWrittenByHand()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"own/url.ini"_s);
        const QString address = u"postgresql://user@host:1/db?sslmode=verify-full"_s;
        for (const auto &[content, text] :
             {std::pair<QByteArray, QString>("url=" + address.toUtf8(), address),
              {"\xef\xbb\xbf url = a  b ;c\r\nurl2=x", u"a  b"_s},
              {"url=x\n[ general ]\nurl=\\xfc\\\\", u"ü\\"_s},
              {"[other]\nurl=x", u"none"_s},
              {"url=x" + QByteArray(1'000'000, '\n'), u"none"_s},
              {"url=a,b", u"none"_s},
              {"url=\"x", u"none"_s},
              {"url=\\x", u"none"_s}}) {
            writeTo(path, content);
            QCOMPARE(IniFile(path).text(u"url"_s).value_or(u"none"_s), text);
        }
        writeTo(path, "; note\nno line\nurl=1\n\n[other]\nurl=2");
        const QString link = folder.filePath(u"link.ini"_s);
        QVERIFY(QFile::link(path, link));
        writeTo(path + u".new"_s, "left by a run that was interrupted, and longer than the file itself");
        IniFile file(link);
        QVERIFY(!file.isWhole());
        QVERIFY(file.store({{u"url"_s, u"a b"_s}, {u"new"_s, u"3"_s}}));
        QCOMPARE(contentOf(path), "; note\nno line\nurl=\"a b\"\nnew=3\n\n[other]\nurl=2\n");
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(QFile::permissions(path) & QFile::Permissions(0x0077), QFile::Permissions());
        QVERIFY(QFile::remove(path) && ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
        QVERIFY(!file.store({{u"url"_s, u"kept in memory"_s}}));
        QVERIFY(QFile::remove(path) && file.store({{u"new"_s, u"4"_s}}));
        QCOMPARE(IniFile(path).text(u"url"_s), u"kept in memory"_s);
    }

    void appearanceFollowsThePortal()
    {
        const QTemporaryDir folder;
        writeTo(folder.filePath(u"own.ini"_s), "own=Light\nlist=a, b\n");
        Preferences preferences(folder.filePath(u"own.ini"_s));
        for (const QString &key : {u"own"_s, u"list"_s})
            preferences.setGlobalText(key, u"Dark"_s);
        QCOMPARE(preferences.text(u"own"_s), u"Light"_s);
        QCOMPARE(preferences.text(u"list"_s), std::nullopt); // present, but no text
        NotificationCenter systemNotices;
        QStringList seen;
        systemNotices.observe(notice::appearanceChanged, this, [&] {
            seen.append(preferences.text(appearanceSetting::key).value_or(u"Light"_s));
        });
        const QDBusConnection bus = QDBusConnection::sessionBus();
        for (const QDBusConnection &withoutPortal : {bus, QDBusConnection(u"no such bus"_s)})
            DesktopAppearance(preferences, systemNotices, withoutPortal).follow();
        QCOMPARE(seen, QStringList());

        std::optional<FakePortal> portal(std::in_place, 1U);
        DesktopAppearance appearance(preferences, systemNotices, bus);
        appearance.follow(); // the portal answers afterwards
        QTRY_COMPARE_WITH_TIMEOUT(seen, QStringList(u"Dark"_s), 30'000);
        for (const uint scheme : {1, 2, 1})
            portal->change(scheme);
        portal.reset();
        QVERIFY(!bus.interface()->isServiceRegistered(u"org.freedesktop.portal.Desktop"_s));
        QCoreApplication::processEvents(); // what the portal sent came before the bus's answer
        QCOMPARE(seen, QStringList({u"Dark"_s, u"Light"_s, u"Dark"_s}));
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
