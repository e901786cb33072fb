#include "platform/Preferences.h"
#include "support/CapturedOutput.h"
#include "support/Dialogs.h"
#include "support/FullDisk.h"
#include "support/Mouse.h"
#include "support/TestProgram.h"
#include "tools/ViewControllerNotes.h"
#include "tools/ViewControllerWhiteboard.h"
#include "widgets/ColorWell.h"
#include "widgets/Palettes.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

QStringList copiesIn(const QTemporaryDir &folder)
{
    return QDir(folder.path()).entryList({u"*.damaged-*"_s});
}

} // namespace

class ToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        whiteboard.reset();
        folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(folder->path());
        pen = {};
    }
    void cleanup()
    {
        QApplication::setPalette(palettes::light());
        Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s, std::nullopt);
    }

    void notesAreKept()
    {
        struct Case
        {
            QByteArray before;
            QString typed;
            QByteArray after;
        };
        const QByteArray notUtf8 = "caf\xe9";
        for (const auto &[before, typed, after] :
             std::initializer_list<Case>{{"", u""_s, ""}, // no notes yet
                                         {"a\r\nb\u2028c\u00a0d\n", u""_s, "a\r\nb\u2028c\u00a0d\n"},
                                         {"ü😀\u00a0x\n", u"end"_s, "ü😀\u00a0x\nend"},
                                         {"a\r\nb\n", u"c"_s, "a\nb\nc"},
                                         {"a\r\nb\r\n", u"c"_s, "a\r\nb\r\nc"},
                                         {notUtf8, u""_s, ""}}) {
            init();
            if (!before.isEmpty())
                writeTo(notesPath(), before);
            CapturedOutput output;
            ViewControllerNotes screen({folder->path(), folder->filePath(u"state"_s)});
            screen.show();
            const bool isRead = !before.isEmpty() && before != notUtf8;
            QCOMPARE(output.takeLines().value(0),
                     isRead ? u"Read File "_s + QString::fromUtf8(before).section(u'\n', 0, 0) : u"Error"_s);
            QTest::keyClicks(textOf(screen), typed);
            screen.close();
            QCOMPARE(contentOf(notesPath()), after);
            const QStringList copies = copiesIn(*folder);
            QCOMPARE(contentOf(folder->filePath(copies.value(0))),
                     before == notUtf8 ? notUtf8 : QByteArray());
        }
    }

    void notesStayReadable()
    {
        for (const bool dark : {false, true}) {
            Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s,
                                                  dark ? std::optional(u"Dark"_s) : std::nullopt);
            QApplication::setPalette(dark ? palettes::dark() : palettes::light());
            ViewControllerNotes screen({folder->path(), folder->filePath(u"state"_s)});
            screen.show();
            const auto isReadable = [&screen, dark] {
                const QPalette &colors = textOf(screen)->palette();
                return colors.color(QPalette::Text) == QColor(dark ? Qt::white : Qt::black) &&
                       (colors.color(QPalette::Base).lightness() < 128) == dark;
            };
            QVERIFY(isReadable());
            QApplication::setPalette(dark ? palettes::light()
                                          : palettes::dark()); // the text keeps its colour
            QVERIFY(isReadable());
        }
    }

    void notesSurviveAFullDisk()
    {
        ViewControllerNotes screen({folder->path(), folder->filePath(u"state"_s)});
        screen.show();
        textOf(screen)->insertPlainText(u"before"_s);
        screen.tick(nullptr);
        textOf(screen)->insertPlainText(u"x"_s.repeated(5000));
        {
            const FullDisk full(1000);
            screen.tick(nullptr);
        }
        QCOMPARE(contentOf(notesPath()), "before");
        screen.tick(nullptr);
        QCOMPARE(contentOf(notesPath()).size(), 5006);
    }

    void notesAreSavedByOneTimerWhileShown()
    {
        ViewControllerNotes screen({folder->path(), folder->filePath(u"state"_s)});
        const auto timers = [&screen] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return screen.findChildren<QTimer *>(Qt::FindDirectChildrenOnly);
        };
        screen.show();
        screen.hide();
        QVERIFY(timers().isEmpty());
        screen.show();
        QShowEvent again;
        QCoreApplication::sendEvent(&screen, &again);
        QCOMPARE(timers().size(), 1);
        QCOMPARE(timers().first()->interval(), 30'000);
        QFile::remove(notesPath());
        CapturedOutput output;
        timers().first()->start(0);
        QTRY_VERIFY(QFile::exists(notesPath()));
        QCOMPARE(output.takeLines().first(2), QStringList({u"Write File "_s, u"Saved File"_s}));
    }

    void notesAreFound()
    {
        writeTo(notesPath(), "Rake\nmow, rake\n");
        ViewControllerNotes screen({folder->path(), folder->filePath(u"state"_s)});
        screen.show();
        QPlainTextEdit &text = *textOf(screen);
        QVERIFY(text.textCursor().atEnd());
        auto &field = *screen.findChild<QLineEdit *>(u"findField"_s);
        field.setText(u"RAKE"_s);
        for (const int place : {0, 10, 0}) {
            QTest::keyClick(&field, Qt::Key_Return);
            QCOMPARE(text.textCursor().selectionStart(), place);
        }
        field.setText(u"prune"_s);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(screen.findChild<QLabel *>(u"findResult"_s)->text(), u"Not found"_s);
        QCOMPARE(text.textCursor().selectionStart(), 0);
    }

    void strokesReachTheFile()
    {
        QApplication::setPalette(palettes::dark());
        ViewControllerWhiteboard &board = open();
        drag(board, {{100, 100}, {150, 100}, {200, 100}});
        for (const QPoint place : {QPoint(5, 5), QPoint(5, board.height() - 2)})
            QCOMPARE(board.grab().toImage().pixel(place), qRgb(255, 255, 255));
        QImage picture = QImage(picturePath());
        QCOMPARE(picture.size(), line(board).size());
        const auto isBlack = [&picture](int x, int y) {
            return picture.pixel(x, y) == qRgb(0, 0, 0);
        };
        const auto isWhite = [&picture](int x, int y) {
            return picture.pixel(x, y) == qRgb(255, 255, 255);
        };
        QVERIFY(isWhite(0, 0) && isBlack(150, 100) && isBlack(150, 98) && isBlack(150, 101));
        QVERIFY(isWhite(150, 96) && isWhite(150, 103));
        QVERIFY(isBlack(201, 100) && isWhite(204, 100) && !isBlack(201, 102)); // a round cap

        QTest::mouseClick(button(board, "eraserButton"), Qt::LeftButton);
        drag(board, {{150, 80}, {150, 120}});
        picture = QImage(picturePath());
        QVERIFY(isWhite(146, 100) && isWhite(153, 100) && isBlack(143, 100) && isBlack(156, 100));

        auto &well = *board.findChild<ColorWell *>(u"color"_s);
        well.setColor({0.0, 0.0, 1.0, 1.0});
        emit well.colorChosen();
        drag(board, {{100, 300}, {200, 300}});
        picture = QImage(picturePath());
        QCOMPARE(picture.pixel(150, 300), qRgb(0, 0, 255));
        QVERIFY(isWhite(150, 304));
        const auto before = picture;
        QTest::mouseClick(button(board, "eraserButton"), Qt::LeftButton);
        board.repaint(); // shows the last stroke in the new pen
        board.close();
        QCOMPARE(QImage(picturePath()), before);
        QCOMPARE(open().findChild<ColorWell *>(u"color"_s)->color(), (Color{1.0, 1.0, 1.0, 1.0}));
    }

    /// Also run on a display of another scale.
    void theFileIsWhatTheDisplayShows()
    {
        ViewControllerWhiteboard &board = open();
        drag(board, {{100, 100}, {205, 151}, {130, 230}});
        QTest::mousePress(&line(board), Qt::LeftButton, {}, {1, 1}); // the layer above is empty again
        const QImage picture = QImage(picturePath()).convertToFormat(QImage::Format_RGB32);
        QCOMPARE(picture.size(), line(board).size() * board.devicePixelRatioF());
        const QImage shown = board.grab().toImage().convertToFormat(QImage::Format_RGB32);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                QVERIFY2(shown.pixel(x, y) == picture.pixel(x, y), qPrintable(u"%1, %2"_s.arg(x).arg(y)));
        QTest::mouseRelease(&line(board), Qt::LeftButton, {}, {1, 1});
    }

    void straightLines()
    {
        ViewControllerWhiteboard &board = open();
        CapturedOutput output;
        QTest::mouseClick(button(board, "lineButton"), Qt::LeftButton);
        QCOMPARE(button(board, "lineButton")->toolTip(), u"STRAIGHT LINE"_s);
        QCOMPARE(line(board).cursor().shape(), Qt::CrossCursor);
        drag(board, {{100, 100}, {150, 200}, {200, 100}});
        QCOMPARE(output.takeLines(),
                 QStringList({u"Line Pressed"_s, u"Mouse Down"_s, u"LineStart: (100.0, 560.0)"_s,
                              u"Mouse Dragged"_s, u"Mouse Dragged"_s, u"Mouse Up"_s,
                              u"LineEnd: (200.0, 560.0)"_s}));
        QTest::mousePress(&line(board), Qt::LeftButton, {}, {300, 300});
        QTest::mouseRelease(&line(board), Qt::LeftButton, {}, {400, 300}); // without a move in between
        const QImage picture(picturePath());
        QCOMPARE(picture.pixel(150, 100), qRgb(0, 0, 0));
        QCOMPARE(picture.pixel(150, 200), qRgb(255, 255, 255));
        QCOMPARE(picture.pixel(350, 300), qRgb(0, 0, 0));
        QTest::mouseClick(button(board, "lineButton"), Qt::LeftButton);
        QCOMPARE(button(board, "lineButton")->toolTip(), u"DRAW"_s);
        QCOMPARE(line(board).cursor().shape(), Qt::ArrowCursor);
    }

    void erasingAndReverting()
    {
        ViewControllerWhiteboard &board = open();
        drag(board, {{100, 100}, {200, 100}});
        const auto isThere = [](const QImage &picture, int y) {
            return picture.pixel(150, y) == qRgb(0, 0, 0);
        };
        CapturedOutput output;
        const auto erase = [&board](const QString &answer) {
            const AlertAnswer alert(answer);
            QTest::mouseClick(button(board, "deleteButton"), Qt::LeftButton);
            QCOMPARE(alert.text, u"Are you sure you want to erase the Whiteboard ?"_s);
        };
        const auto lines = [&output] {
            return output.takeLines().filter(QRegularExpression(u"^(?!Draw)"_s));
        };
        erase(u"No"_s);
        QCOMPARE(lines(), QStringList());
        erase(u"Yes"_s);
        QVERIFY(!isThere(board.grab().toImage(), 100) && isThere(QImage(picturePath()), 100));
        QTest::mouseClick(button(board, "revertButton"), Qt::LeftButton);
        QVERIFY(isThere(board.grab().toImage(), 100));
        QCOMPARE(lines(), QStringList({u"Ok Pressed!"_s, u"Delete Image"_s, u"Subviews: 3"_s,
                                       u"Subviews: 3"_s, u"Revert Image"_s}));
        erase(u"Yes"_s);
        drag(board, {{100, 300}, {200, 300}});
        QVERIFY(!isThere(QImage(picturePath()), 100) && isThere(QImage(picturePath()), 300));
        erase(u"Yes"_s);
        board.close();
        QVERIFY(!isThere(QImage(picturePath()), 300));
    }

    void aDragThatIsInterrupted()
    {
        ViewControllerWhiteboard &board = open();
        QTest::mousePress(&line(board), Qt::LeftButton, {}, {100, 100});
        moveMouse(line(board), {200, 100}, Qt::LeftButton);
        moveMouse(line(board), {300, 200}, Qt::NoButton); // the release went to another window
        moveMouse(line(board), {400, 200}, Qt::NoButton);
        QImage picture(picturePath());
        QCOMPARE(picture.pixel(150, 100), qRgb(0, 0, 0));
        QTest::mousePress(&line(board), Qt::LeftButton, {}, {100, 300});
        moveMouse(line(board), {200, 300}, Qt::LeftButton);
        board.close();
        picture = QImage(picturePath());
        QCOMPARE(picture.pixel(150, 100), qRgb(0, 0, 0));
        QCOMPARE(picture.pixel(150, 300), qRgb(0, 0, 0));
        QCOMPARE(picture.pixel(350, 200), qRgb(255, 255, 255));
    }

    void picturesOfOtherDisplaysKeepEveryPixel()
    {
        const QSize canvas = line(open()).size();
        const QSize finer(canvas.width() * 167 / 100, canvas.height() * 167 / 100); // not quite of its shape
        for (const QSize &size : {finer, canvas / 2, QSize(canvas.width() * 2, canvas.height() / 10)}) {
            init();
            QImage noise(size, QImage::Format_ARGB32);
            for (int y = 0; y < noise.height(); ++y)
                for (int x = 0; x < noise.width(); ++x)
                    noise.setPixel(x, y,
                                   qRgba((x * 7) % 256, (y * 5) % 256, (x * y) % 256, x % 2 ? 255 : 128));
            QVERIFY(noise.save(picturePath()));
            for (int time = 0; time < 3; ++time)
                open().close();
            QCOMPARE(QImage(picturePath()).convertToFormat(noise.format()), noise);
            drag(open(), {{10, 590}, {20, 590}});
            QCOMPARE(QImage(picturePath()).size(), size == finer ? finer : canvas);
        }
    }

    void picturesSurviveAFullDisk()
    {
        ViewControllerWhiteboard &board = open();
        drag(board, {{100, 100}, {200, 100}});
        const QByteArray good = contentOf(picturePath());
        {
            const FullDisk full(100);
            drag(board, {{100, 200}, {200, 200}});
        }
        QCOMPARE(contentOf(picturePath()), good);
        drag(board, {{100, 300}, {200, 300}});
        const QImage picture(picturePath());
        for (const int y : {100, 200, 300})
            QCOMPARE(picture.pixel(150, y), qRgb(0, 0, 0));
    }

    void picturesThatCannotBeReadOrWritten()
    {
        open().close();
        const QByteArray half = contentOf(picturePath()).first(300);
        writeTo(picturePath(), half);
        open().close();
        QCOMPARE(contentOf(folder->filePath(copiesIn(*folder).value(0))), half);
        QCOMPARE(QImage(picturePath()).size(), line(*whiteboard).size());
        QDir::setCurrent(u"/proc"_s); // where nobody can make a file
        CapturedOutput output;
        drag(open(), {{100, 100}, {200, 100}});
        QCOMPARE(output.takeLines().filter(QRegularExpression(u"^caught: \\S"_s)).size(), 1);
    }

private:
    QString notesPath() const { return folder->filePath(u"zandunotes.txt"_s); }
    QString picturePath() const { return folder->filePath(u"zandulistwhiteboard.png"_s); }

    static QPlainTextEdit *textOf(const QWidget &screen)
    {
        return screen.findChild<QPlainTextEdit *>(u"textEdit"_s);
    }

    ViewControllerWhiteboard &open()
    {
        whiteboard = std::make_unique<ViewControllerWhiteboard>(
            ViewControllerWhiteboard::Services{pen, colorPanel, folder->filePath(u"state"_s)}, &mainWindow);
        whiteboard->show();
        return *whiteboard;
    }

    static QWidget &line(const ViewControllerWhiteboard &board)
    {
        return *board.findChild<QWidget *>(u"line"_s);
    }

    static QToolButton *button(const ViewControllerWhiteboard &board, const char *name)
    {
        return board.findChild<QToolButton *>(QString::fromLatin1(name));
    }

    static void drag(const ViewControllerWhiteboard &board, const QList<QPoint> &points)
    {
        dragMouse(line(board), points);
    }

    std::unique_ptr<QTemporaryDir> folder;
    QWidget mainWindow;
    WhiteboardPen pen;
    ColorPanel colorPanel;
    std::unique_ptr<ViewControllerWhiteboard> whiteboard;
};

static const TestClass<ToolsTest> registered;

#include "ToolsTest.moc"
