#include "support/Appearance.h"
#include "support/Dialogs.h"
#include "support/FullDisk.h"
#include "support/Mouse.h"
#include "support/TestProgram.h"
#include "tools/PictureStep.h"
#include "tools/PictureView.h"
#include "tools/ViewControllerNotes.h"
#include "tools/ViewControllerWhiteboard.h"
#include "widgets/ColorWell.h"
#include "widgets/Palettes.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

class ToolsTest : public QObject
{
    Q_OBJECT

public slots:
    void openFolder(const QUrl &folderUrl) { opened = folderUrl; }

private slots:
    void initTestCase() { QDesktopServices::setUrlHandler(u"file"_s, this, "openFolder"); }
    void init()
    {
        whiteboard.reset();
        notes.reset();
        folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(folder->path());
        pen = {};
    }
    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(u"file"_s); }
    void cleanup() { QApplication::setPalette(palettes::light()); }

    void notesAreKept()
    {
        for (const auto &[before, typed, after] : std::initializer_list<std::array<QByteArray, 3>>{
                 {"", "", ""}, // no notes yet
                 {"a\r\nb\u2028c\u00a0d\n", "", "a\r\nb\u2028c\u00a0d\n"},
                 {"ü😀\u00a0x\n", "end", "ü😀\u00a0x\nend"},
                 {"a\r\nb\n", "c", "a\nb\nc"},
                 {"a\r\nb\r\n", "c", "a\r\nb\r\nc"},
                 {"caf\xe9", "", ""}, // nor is it UTF-8: it is copied aside
                 {"cut short \xc3", "", ""}}) {
            init();
            if (!before.isEmpty())
                writeTo(notesPath(), before);
            QTest::keyClicks(&openNotes(), QString::fromUtf8(typed));
            const bool isCopied = !before.isEmpty() && after.isEmpty();
            QCOMPARE(toldIn(*notes).startsWith(notesPath() + u" could not be read"_s), isCopied);
            const AlertAnswer news(u"Show"_s);
            notes->close();
            QCOMPARE(contentOf(notesPath()), after);
            QCOMPARE(news.informativeText.contains(u".damaged-"), isCopied);
            QCOMPARE(std::exchange(opened, {}), isCopied ? QUrl::fromLocalFile(folder->path()) : QUrl());
            QCOMPARE(copiesIn(folder->path()).join(), after.isEmpty() ? before : QByteArray());
        }
    }

    void notesStayReadable()
    {
        Appearance appearance(false);
        for (const bool dark : {false, true}) {
            appearance.set(dark);
            QApplication::setPalette(dark ? palettes::dark() : palettes::light());
            const QPlainTextEdit &text = openNotes();
            for (const QPalette &later :
                 {QApplication::palette(), dark ? palettes::light() : palettes::dark()}) {
                QApplication::setPalette(later); // the text keeps its colour
                QCOMPARE(text.palette().color(QPalette::Text), QColor(dark ? Qt::white : Qt::black));
                QCOMPARE(text.palette().color(QPalette::Base).lightness() < 128, dark);
            }
        }
    }

    void notesSurviveAFullDisk()
    {
        QPlainTextEdit &text = openNotes();
        text.insertPlainText(u"before"_s);
        notes->tick(nullptr);
        text.insertPlainText(u"x"_s.repeated(5000));
        {
            const FullDisk full(1000);
            notes->tick(nullptr);
            QVERIFY(toldIn(*notes).startsWith(u"The notes could not be saved to "_s + notesPath()));
            const QPointer<QPushButton> button = notes->findChild<QPushButton *>();
            notes->tick(nullptr);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(button); // it may have the focus
            const AlertAnswer answer(u"Cancel"_s);
            notes->close();
            QVERIFY(answer.wasShown() && notes->isVisible());
        }
        QCOMPARE(contentOf(notesPath()), "before");
        QTimer::singleShot(0, qApp, [] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
        });
        choose(*notes, u"Save a Copy As…"_s);
        QCOMPARE(contentOf(folder->filePath(u"zandunotes-copy.txt"_s)).size(), 5006);
        notes->tick(nullptr);
        QCOMPARE(toldIn(*notes), QString());
        QCOMPARE(contentOf(notesPath()).size(), 5006);
    }

    void otherProgramsWriteTheFiles()
    {
        writeTo(notesPath(), "before and after");
        QPlainTextEdit &text = openNotes();
        text.moveCursor(QTextCursor::Start);
        text.moveCursor(QTextCursor::NextWord);
        writeTo(notesPath(), "before and later");
        notes->tick(nullptr);
        QCOMPARE(contentOf(notesPath()), "before and later");
        QCOMPARE(text.toPlainText(), u"before and later"_s);
        QCOMPARE(text.textCursor().position(), 7);
        for (const QByteArray &noText : {QByteArray("\xff\xfe"), QByteArray("before and later")}) {
            writeTo(notesPath(), noText);
            notes->tick(nullptr);
            QCOMPARE(contentOf(notesPath()), noText);
        }
        text.insertPlainText(u"now "_s);
        writeTo(notesPath(), "from elsewhere");
        notes->tick(nullptr);
        QCOMPARE(contentOf(notesPath()), "before now and later");
        QCOMPARE(copiesIn(folder->path()), QByteArrayList{"from elsewhere"});
        for (const int told : {2, 3, 4, 5, 5}) {
            text.insertPlainText(u"and then "_s);
            writeTo(notesPath(), "once more");
            notes->tick(nullptr);
            QCOMPARE(toldIn(*notes).count(u".damaged-"), told); // until it is dismissed
        }
        choose(*notes, u"Dismiss"_s);
        QCOMPARE(toldIn(*notes).count(u".damaged-"), 1);

        open();
        drag({{100, 100}, {200, 100}});
        const QByteArray first = contentOf(picturePath());
        drag({{100, 200}, {200, 200}});
        writeTo(picturePath(), first.first(100));
        QVERIFY(whiteboard->savePicture());
        QCOMPARE(contentOf(picturePath()).size(), 100);
        writeTo(picturePath(), first);
        whiteboard->close();
        QCOMPARE(contentOf(picturePath()), first);

        // A disk that is not mounted: nothing is made in its place, and what is there later is shown.
        QVERIFY(QFile::remove(notesPath()) && QFile::link(folder->filePath(u"disk/notes"_s), notesPath()));
        const QPlainTextEdit &away = openNotes();
        notes->tick(nullptr);
        QVERIFY(toldIn(*notes).contains(u" cannot be read: "));
        writeTo(folder->filePath(u"disk/notes"_s), "on the disk");
        notes->tick(nullptr);
        notes->close();
        QCOMPARE(away.toPlainText(), u"on the disk"_s);
        QCOMPARE(contentOf(notesPath()), "on the disk");
    }

    void notesAreSavedByOneTimerWhileShown()
    {
        const auto timers = [this] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return notes->findChildren<QTimer *>(Qt::FindDirectChildrenOnly);
        };
        openNotes();
        notes->hide();
        QVERIFY(timers().isEmpty());
        notes->show();
        QCOMPARE(timers().size(), 1);
        QFile::remove(notesPath());
        notes->findChild<QPlainTextEdit *>()->insertPlainText(u"typed"_s);
        timers().first()->start(0);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(notesPath()), 20'000);
    }

    void strokesReachTheFile()
    {
        QApplication::setPalette(palettes::dark());
        ViewControllerWhiteboard &board = open();
        auto &well = *board.findChild<ColorWell *>(u"color"_s);
        QCOMPARE(well.color(), pen.lineColor);
        const QSize size = board.size();
        board.resize(size / 2);
        QCOMPARE(board.size(), size);
        drag({{100, 100}, {150, 100}, {200, 100}});
        for (const QPoint place : {QPoint(5, 5), QPoint(5, board.height() - 2)})
            QCOMPARE(board.grab().toImage().pixel(place), qRgb(255, 255, 255));
        QCOMPARE(QImage(picturePath()).size(), line().size());
        QCOMPARE(filed({{0, 0}, {150, 96}, {150, 98}, {150, 101}, {150, 103}}), u"wwkkw"_s);
        QCOMPARE(filed({{201, 100}, {204, 100}}), u"kw"_s);
        QVERIFY(filed({{201, 102}}) != u"k"); // a round cap

        press("eraserButton");
        drag({{150, 80}, {150, 120}});
        QCOMPARE(filed({{143, 100}, {146, 100}, {153, 100}, {156, 100}}), u"kwwk"_s);

        well.setColor({0.0, 0.0, 1.0, 1.0});
        emit well.colorChosen();
        drag({{100, 300}, {200, 300}});
        QCOMPARE(filed({{150, 300}, {150, 304}}), u"bw"_s);
        const QImage before(picturePath());
        press("eraserButton");
        board.repaint(); // shows the last stroke in the new pen
        board.close();
        QCOMPARE(QImage(picturePath()), before);
        QCOMPARE(open().findChild<ColorWell *>(u"color"_s)->color(), (Color{1.0, 1.0, 1.0, 1.0}));
    }

    void theKeyboardDraws()
    {
        QVERIFY(QTest::qWaitForWindowActive(&open()));
        const QPoint center = line().rect().center();
        line().setFocus(Qt::TabFocusReason);
        const auto type = [this](const QList<Qt::Key> &keys) {
            for (const Qt::Key key : keys)
                QTest::keyClick(&line(), key);
        };
        type({Qt::Key_Left, Qt::Key_Space, Qt::Key_Right, Qt::Key_Right, Qt::Key_Space, Qt::Key_Down});
        QCOMPARE(filed({center, center + QPoint(10, 10)}), u"kw"_s); // a line, and none with the pen up
        type({Qt::Key_Space, Qt::Key_Down});
        line().clearFocus(); // the pen does not stay down
        QCOMPARE(filed({center + QPoint(10, 15)}), u"k"_s);
    }

    /// Also run on a display of another scale.
    void theFileIsWhatTheDisplayShows()
    {
        pen.lineColor = {1.0, 0.0, 0.0, 0.5};
        ViewControllerWhiteboard &board = open();
        drag({{100, 100}, {205, 151}, {130, 230}});
        const QImage drawn = board.grab().toImage();
        QTest::mousePress(&line(), Qt::LeftButton, {}, {1, 1}); // the layer above is empty again
        QCOMPARE(board.grab().toImage(), drawn);
        const QImage picture = QImage(picturePath()).convertToFormat(QImage::Format_RGB32);
        QCOMPARE(picture.size(), line().size() * board.devicePixelRatioF());
        const QImage shown = board.grab().toImage().convertToFormat(QImage::Format_RGB32);
        QVERIFY(shown.copy(picture.rect()) == picture);
        QTest::mouseRelease(&line(), Qt::LeftButton, {}, {1, 1});
    }

    void stepsAreTakenBackAndDoneAgain()
    {
        QImage foreign(50, 40, QImage::Format_ARGB32);
        foreign.fill(QColor(200, 100, 0, 128));
        for (const QImage &first : {QImage(), foreign}) {
            init();
            if (!first.isNull())
                QVERIFY(first.save(picturePath()));
            ViewControllerWhiteboard &board = open();
            QList<QImage> shown{canvas()};
            const auto step = [&](const char *button, const QList<QPoint> &stroke = {}) {
                press(button, u"Yes"_s);
                if (!stroke.isEmpty())
                    drag(stroke);
                shown.append(canvas());
            };
            pen.lineColor = {1.0, 0.0, 0.0, 0.5};
            step("lineButton", {{10, 10}, {900, 550}});
            step("eraserButton", {{300, 0}, {300, 500}});
            step("deleteButton");
            step("revertButton");
            step("deleteButton");
            pen = {.straightLineMode = true};
            step("lineButton", {{100, 100}, {959, 100}, {400, 500}});
            QTest::mouseClick(&line(), Qt::LeftButton); // which changes nothing
            board.activateWindow();                     // once more, after the questions
            QVERIFY(QTest::qWaitForWindowActive(&board));
            for (qsizetype last = shown.size() - 1; last > 0; --last) {
                QTest::keyClick(&board, Qt::Key_Z, Qt::ControlModifier);
                QCOMPARE(canvas(), shown[last - 1]);
                const QImage &kept = last > 1 || first.isNull() ? shown[last - 1] : first;
                QCOMPARE(QImage(picturePath()).convertToFormat(kept.format()), kept);
            }
            for (const QImage &next : shown.sliced(1)) {
                press("redoButton");
                QVERIFY(canvas() == next && QImage(picturePath()) == next);
            }
            QTest::mousePress(&line(), Qt::LeftButton, {}, {10, 10});
            move({500, 10}, Qt::LeftButton);
            press("undoButton"); // by its key, in the middle of a stroke
            QCOMPARE(canvas(), shown.last());
            press("redoButton");
            QCOMPARE(canvas().pixel(300, 10), qRgb(0, 0, 0));
            QVERIFY(foreign.save(picturePath()));
            press("undoButton"); // what others have drawn is not among the steps
            QCOMPARE(QImage(picturePath()).convertToFormat(foreign.format()), foreign);
            press("deleteButton", u"Yes"_s);
            board.close();
            QCOMPARE(filed({{5, 5}}), u"w"_s);
        }
    }

    void theOldestStepsGoWhereTheyTakeTooMuch()
    {
        for (const auto &[room, kept] : {std::pair(0, 50), {1 << 30, 70}}) {
            PictureView view;
            PictureHistory history(room);
            QList<QImage> pictures{QImage()};
            QRandomGenerator random(7);
            for (int number = 0; number < 70; ++number) {
                QImage noise(20 + number % 2, 20, QImage::Format_RGB32); // some of another size
                for (int pixel = 0; pixel < 400; ++pixel)
                    noise.setPixel(pixel % 20, pixel / 20, random.generate());
                pictures.append(noise);
                view.setPicture(noise);
                history.add(std::make_unique<PictureStep>(
                    QString(), pictures[number], noise, view,
                    [&view](const QImage &picture) { view.setPicture(picture); }));
            }
            QCOMPARE(history.count(), kept);
            for (qsizetype last = pictures.size() - 2; history.canUndo(); --last) {
                history.undo();
                QVERIFY(last == 0 || view.picture() == pictures[last]);
            }
            while (history.canRedo())
                history.redo();
            QCOMPARE(view.picture(), pictures.last());
        }
    }

    void aDragThatIsInterrupted()
    {
        ViewControllerWhiteboard &board = open();
        QTest::mousePress(&line(), Qt::LeftButton, {}, {100, 100});
        move({200, 100}, Qt::LeftButton);
        move({300, 200}, Qt::NoButton); // the release went to another window
        move({400, 200}, Qt::NoButton);
        QCOMPARE(filed({{150, 100}}), u"k"_s);
        QTest::mousePress(&line(), Qt::LeftButton, {}, {100, 300});
        move({200, 300}, Qt::LeftButton);
        QTest::mousePress(&line(), Qt::LeftButton, {}, {100, 400}); // no release was seen
        move({200, 400}, Qt::LeftButton);
        press("lineButton");
        QTest::mousePress(&line(), Qt::LeftButton, {}, {100, 500});
        QTest::mouseRelease(&line(), Qt::LeftButton, {}, {200, 500}); // without a move in between
        QTest::mouseClick(&line(), Qt::LeftButton, {}, {50, 50});
        QTest::keyClick(&board, Qt::Key_Escape);
        QVERIFY(board.isVisible());
        board.close();
        QCOMPARE(filed({{150, 100}, {150, 300}, {150, 400}, {150, 500}}), u"kkkk"_s);
        QCOMPARE(filed({{350, 200}, {150, 350}, {50, 50}}), u"www"_s);
    }

    void picturesOfOtherDisplaysKeepEveryPixel()
    {
        open();
        const QSize canvas = line().size();
        const QSize finer(canvas.width() * 167 / 100, canvas.height() * 167 / 100); // not quite of its shape
        for (const QSize &size : {finer, canvas / 2, QSize(canvas.width() * 2, canvas.height() / 10)}) {
            init();
            QImage noise(size, QImage::Format_ARGB32);
            std::generate_n(noise.bits(), noise.sizeInBytes(),
                            [shade = 0U]() mutable { return uchar((shade += 7919) >> 8 | 64U); });
            QVERIFY(noise.save(picturePath()));
            for (int time = 0; time < 3; ++time)
                open().close();
            QCOMPARE(QImage(picturePath()).convertToFormat(noise.format()), noise);
            open();
            drag({{10, 590}, {20, 590}});
            QCOMPARE(QImage(picturePath()).size(), size == finer ? finer : canvas);
        }
    }

    void picturesSurviveAFullDisk()
    {
        open();
        drag({{100, 100}, {200, 100}});
        const QByteArray good = contentOf(picturePath());
        {
            const FullDisk full(100);
            drag({{100, 200}, {200, 200}});
        }
        QCOMPARE(contentOf(picturePath()), good);
        QVERIFY(toldIn(*whiteboard).startsWith(u"The whiteboard could not be saved to "_s + picturePath()));
        choose(*whiteboard, u"Try Again"_s);
        QCOMPARE(toldIn(*whiteboard), QString());
        drag({{100, 300}, {200, 300}});
        QCOMPARE(filed({{150, 100}, {150, 200}, {150, 300}}), u"kkk"_s);
    }

    void picturesThatCannotBeRead()
    {
        open().close();
        const QByteArray half = contentOf(picturePath()).first(300);
        writeTo(picturePath(), half);
        open();
        drag({{100, 100}, {200, 100}});
        QVERIFY(toldIn(*whiteboard).contains(u".damaged-"));
        choose(*whiteboard, u"Dismiss"_s);
        QCOMPARE(toldIn(*whiteboard), QString());
        QCOMPARE(copiesIn(folder->path()).join(), half);
        QCOMPARE(QImage(picturePath()).size(), line().size());
    }

private:
    QString notesPath() const { return folder->filePath(u"zandunotes.txt"_s); }
    QString picturePath() const { return folder->filePath(u"zandulistwhiteboard.png"_s); }

    /// What of the picture is (w)hite, blac(k) and (b)lue.
    QString filed(const QList<QPoint> &places) const
    {
        const QImage picture(picturePath());
        const QHash<QRgb, QChar> letters{
            {qRgb(255, 255, 255), u'w'}, {qRgb(0, 0, 0), u'k'}, {qRgb(0, 0, 255), u'b'}};
        QString found;
        for (const QPoint place : places)
            found += letters.value(picture.pixel(place), u'?');
        return found;
    }

    QPlainTextEdit &openNotes()
    {
        notes = std::make_unique<ViewControllerNotes>(
            ViewControllerNotes::Folders{folder->path(), folder->filePath(u"state"_s)});
        notes->show();
        return *notes->findChild<QPlainTextEdit *>(u"textEdit"_s);
    }

    ViewControllerWhiteboard &open()
    {
        whiteboard = std::make_unique<ViewControllerWhiteboard>(
            ViewControllerWhiteboard::Services{pen, colorPanel, folder->filePath(u"state"_s)}, &mainWindow);
        whiteboard->show();
        return *whiteboard;
    }

    QImage canvas() const
    {
        return whiteboard->grab(line().geometry()).toImage().convertToFormat(QImage::Format_RGB32);
    }

    QWidget &line() const { return *whiteboard->findChild<QWidget *>(u"line"_s); }

    /// Presses the button and answers the question that comes up.
    void press(const char *button, const QString &answer = {}) const
    {
        const AlertAnswer alert(answer);
        QTest::mouseClick(whiteboard->findChild<QToolButton *>(QString::fromLatin1(button)), Qt::LeftButton);
    }

    void move(QPoint point, Qt::MouseButtons buttons) const { moveMouse(line(), point, buttons); }
    void drag(const QList<QPoint> &points) const { dragMouse(line(), points); }

    std::unique_ptr<QTemporaryDir> folder;
    QUrl opened;
    QWidget mainWindow;
    WhiteboardPen pen;
    ColorPanel colorPanel;
    std::unique_ptr<ViewControllerWhiteboard> whiteboard;
    std::unique_ptr<ViewControllerNotes> notes;
};

static const TestClass<ToolsTest> registered;
#include "ToolsTest.moc"
