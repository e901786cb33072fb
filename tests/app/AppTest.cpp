#include "app/Alert.h"
#include "app/UIUtil.h"
#include "support/CapturedOutput.h"
#include "support/Dialogs.h"
#include "support/TestProgram.h"

#include <QDateTimeEdit>
#include <QDir>
#include <QTimer>

using namespace Qt::StringLiterals;

class AppTest : public QObject
{
    Q_OBJECT

private slots:
    void firstLine_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("measures");
        QTest::newRow("no line feed") << u"häuser"_s << u"häuser"_s << u"Index Truncate: 7 End Index: 7"_s;
        QTest::newRow("two lines") << u"ä\nb\nc"_s << u"ä..."_s << u"Index Truncate: 2 End Index: 6"_s;
        QTest::newRow("ends in a line feed") << u"a\n"_s << u"a..."_s << u"Index Truncate: 1 End Index: 2"_s;
        QTest::newRow("only a line feed") << u"\n"_s << u"..."_s << u"Index Truncate: 0 End Index: 1"_s;
        QTest::newRow("carriage return and line feed")
            << u"a\r\nb"_s << u"a\r\nb"_s << u"Index Truncate: 4 End Index: 4"_s;
        QTest::newRow("both kinds") << u"a\r\nb\nc"_s << u"a\r\nb..."_s
                                    << u"Index Truncate: 4 End Index: 6"_s;
    }
    void firstLine()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, line);
        QFETCH(const QString, measures);
        CapturedOutput output;
        QCOMPARE(util().truncateAtLineBreak(text), line);
        QVERIFY(output.takeLines().join(u'\n').startsWith(measures));
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

    void timePickers()
    {
        QDateTimeEdit picker;
        for (const QTime time : {QTime(0, 0), QTime(8, 5), QTime(23, 59)}) {
            util().setTime(picker, time.hour(), time.minute());
            QCOMPARE(util().getHour(picker), time.hour());
            QCOMPARE(util().getMinute(picker), time.minute());
        }
        QCOMPARE(picker.date(), picker.minimumDate());
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

        AlertAnswer alert(u"OK"_s);
        alertMessage(nullptr, u"Task already closed"_s);
        QCOMPARE(alert.informativeText, u"Task already closed"_s);
        QCOMPARE(alert.buttons, QStringList(u"OK"_s));
        QVERIFY(alert.isWarning);
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

int main(int argc, char **argv)
{
    QCoreApplication::addLibraryPath(u"" BINARY_DIR "/bin/" MODULE_PATH ""_s);
    return runTests<AppTest>(argc, argv);
}

#include "AppTest.moc"
