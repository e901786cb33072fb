#include "app/UIUtil.h"
#include "support/CapturedOutput.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QTimer>

using namespace Qt::StringLiterals;

class AppTest : public QObject
{
    Q_OBJECT

private slots:
    void firstLine()
    {
        for (const auto &[text, line] : {std::pair(u"häuser"_s, u"häuser"_s),
                                         {u"ä\nb\nc"_s, u"ä..."_s},
                                         {u"a\n"_s, u"a..."_s},
                                         {u"a\r\nb"_s, u"a\r\nb"_s},
                                         {u"a\r\nb\nc"_s, u"a\r\nb..."_s}})
            QCOMPARE(util().truncateAtLineBreak(text), line);
    }

    void twelveHourTimes()
    {
        for (const auto &[hour, minute, text] : {std::tuple(0, 5, u"12:05AM"_s),
                                                 {11, 59, u"11:59AM"_s},
                                                 {12, 0, u"12:00PM"_s},
                                                 {13, 0, u"01:00PM"_s},
                                                 {23, 59, u"11:59PM"_s}})
            QCOMPARE(util().formatTime(hour, minute), text);
    }

    void escapeMeansNo()
    {
        QTimer::singleShot(0, qApp,
                           [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
        QVERIFY(!util().askYesNo(u"Really?"_s, QString()));
    }

    void sound()
    {
        constexpr int limit = 30'000; // milliseconds
        QCoreApplication::addLibraryPath(u"" BINARY_DIR "/bin/" MODULE_PATH ""_s);
        const QTemporaryDir bundle;
        QDir::setSearchPaths(u"bundle"_s, {bundle.path()});
        const QString journal = bundle.filePath(u"gstreamer.log"_s); // of the sound system's own
        qputenv("GST_DEBUG", "GST_STATES:4");
        qputenv("GST_DEBUG_NO_COLOR", "1");
        qputenv("GST_DEBUG_FILE", journal.toUtf8());
        CapturedOutput output;
        util().prepareSound();
        QVERIFY(qApp->findChildren<SoundPlayer *>().isEmpty()); // there is none to play

        writeTo(bundle.filePath(u"ding.mp3"_s), "this is no sound");
        util().prepareSound();
        QStringList lines;
        QTRY_VERIFY_WITH_TIMEOUT(!(lines += output.takeLines()).isEmpty(), limit);
        QVERIFY2(lines.constFirst().startsWith(u"Sound player not available: "),
                 qPrintable(lines.constFirst()));
        QVERIFY(!player);

        QDir::setSearchPaths(u"bundle"_s, {u":/bundle"_s});
        util().prepareSound();
        QTRY_VERIFY_WITH_TIMEOUT(player, limit);
        const QByteArray played = "<audioOutput> completed state change to PLAYING";
        QVERIFY(!contentOf(journal).contains(played));
        player->play();
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(journal).contains(played), limit);
    }
};

static const TestClass<AppTest> registered;
#include "AppTest.moc"
