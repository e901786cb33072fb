#include "app/UIUtil.h"
#include "support/CapturedOutput.h"
#include "support/Dialogs.h"
#include "support/TestProgram.h"
#include "widgets/Alert.h"

#include <QDir>
#include <QTimer>

using namespace Qt::StringLiterals;

class AppTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::addLibraryPath(u"" BINARY_DIR "/bin/" MODULE_PATH ""_s); }

    void firstLine()
    {
        struct Case
        {
            QString text, line, measures;
        };
        for (const auto &[text, line, measures] : std::initializer_list<Case>{
                 {u"häuser"_s, u"häuser"_s, u"Index Truncate: 7 End Index: 7"_s},
                 {u"ä\nb\nc"_s, u"ä..."_s, u"Index Truncate: 2 End Index: 6"_s},
                 {u"a\n"_s, u"a..."_s, u"Index Truncate: 1 End Index: 2"_s},
                 {u"a\r\nb"_s, u"a\r\nb"_s, u"Index Truncate: 4 End Index: 4"_s},
                 {u"a\r\nb\nc"_s, u"a\r\nb..."_s, u"Index Truncate: 4 End Index: 6"_s}}) {
            CapturedOutput output;
            QCOMPARE(util().truncateAtLineBreak(text), line);
            QCOMPARE(output.takeLines().join(u'\n'), measures + u'\n' + line);
        }
    }

    void twelveHourTimes()
    {
        const auto time = [](qint64 hour, qint64 minute) {
            return util().formatTime(hour, minute);
        };
        CapturedOutput output;
        QCOMPARE(time(0, 5), u"12:05AM"_s);
        QCOMPARE(output.takeLines(), QStringList(u"Hour: 0  Min: 5"_s));
        QCOMPARE(time(9, 30), u"09:30AM"_s);
        QCOMPARE(time(11, 59), u"11:59AM"_s);
        QCOMPARE(time(12, 0), u"12:00PM"_s);
        QCOMPARE(time(13, 0), u"01:00PM"_s);
        QCOMPARE(time(23, 59), u"11:59PM"_s);
    }

    void dayComparisons()
    {
        const auto at = [](int day, int hour, int minute) {
            return Calendar::instantOf(QDateTime(QDate(2024, 3, day), QTime(hour, minute)));
        };
        QCOMPARE(util().compareDays(at(7, 23, 59), at(8, 0, 1)), 1);
        QCOMPARE(util().compareDays(at(7, 23, 59), at(7, 0, 0)), 0);
        QCOMPARE(util().compareDays(at(8, 0, 0), at(7, 23, 59)), -1);
        CapturedOutput output;
        QVERIFY(util().isSameDayOrEarlier(at(7, 23, 59), at(8, 0, 1)));
        QVERIFY(util().isSameDayOrEarlier(at(7, 23, 59), at(7, 0, 1)));
        QVERIFY(!util().isSameDayOrEarlier(at(8, 0, 0), at(7, 23, 59)));
        QCOMPARE(output.takeLines(), QStringList({u"ASCENDING"_s, u"SAME"_s, u"DESCENDING"_s}));
    }

    void questionsAndMessages()
    {
        for (const QString &answer : {u"Yes"_s, u"No"_s}) {
            AlertAnswer alert(answer);
            QCOMPARE(util().askYesNo(u"Really?"_s, u"<b>a task</b>"_s), answer == u"Yes");
            QVERIFY(alert.wasShown());
            QCOMPARE(alert.text, u"Really?"_s);
            QCOMPARE(alert.informativeText, u"<b>a task</b>"_s);
            QCOMPARE(alert.buttons, QStringList({u"Yes"_s, u"No"_s}));
            QVERIFY(alert.isWarning);
            QVERIFY(alert.isPlain);
        }
        QTimer::singleShot(0, qApp,
                           [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
        QVERIFY(!util().askYesNo(u"Really?"_s, QString()));
    }

    void soundIsOptional()
    {
        const QTemporaryDir bundle;
        QDir::setSearchPaths(u"bundle"_s, {bundle.path()});
        CapturedOutput output;
        util().prepareSound();
        QVERIFY(qApp->findChildren<SoundPlayer *>().isEmpty());

        writeTo(bundle.filePath(u"ding.mp3"_s), "this is no sound");
        util().prepareSound();
        QStringList lines;
        QTRY_VERIFY(!(lines += output.takeLines()).isEmpty());
        QVERIFY2(lines.constFirst().startsWith(u"Sound player not available: "),
                 qPrintable(lines.constFirst()));
        QVERIFY(!player);

        QDir::setSearchPaths(u"bundle"_s, {u":/bundle"_s});
        util().prepareSound();
        QTRY_VERIFY(player);
        QPointer<SoundPlayer> first = player;
        first->play();
        util().prepareSound();
        QTRY_VERIFY(player != first);
        QCOMPARE(output.takeLines(), QStringList());
    }
};

static const TestClass<AppTest> registered;

#include "AppTest.moc"
