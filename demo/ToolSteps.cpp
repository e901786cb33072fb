#include "ToolSteps.h"

#include "Desktop.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Stage.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

/// Draws with the mouse held down from point to point.
void drag(QWidget &canvas, const QList<QPoint> &points)
{
    QTest::mousePress(&canvas, Qt::LeftButton, {}, points.first());
    for (const QPoint &point : points.sliced(1)) {
        QMouseEvent move(QEvent::MouseMove, point, canvas.mapToGlobal(point), Qt::NoButton, Qt::LeftButton,
                         {});
        QCoreApplication::sendEvent(&canvas, &move);
    }
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, points.last());
}

} // namespace

ToolSteps::ToolSteps(Stage &tourStage, const MainWindowHandle &mainWindow, Desktop &userDesktop)
    : stage(tourStage)
    , main(mainWindow)
    , desktop(userDesktop)
{
}

void ToolSteps::writeNotes(const QString &path)
{
    stage.step(u"Notes are written, searched, and kept when the window closes"_s);
    const QString text = u"Café Sonnenhof: the key is with Frau Öz 🌷\nOrder\u00a0twine, 2 rolls.\n"_s;
    hand::choose(hand::openMenu(main.window, u"Tools"_s), u"Notes"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerNotes"_s);
    auto &notes = hand::child<QPlainTextEdit>(screen, u"textEdit"_s);
    QGuiApplication::clipboard()->setText(text);
    hand::press(notes, Qt::Key_V, Qt::ControlModifier);
    hand::shortcut(screen, Qt::Key_F, Qt::ControlModifier);
    hand::fill(hand::child<QLineEdit>(screen, u"findField"_s), u"TWINE"_s);
    hand::press(hand::child<QLineEdit>(screen, u"findField"_s), Qt::Key_Return);
    stage.same(notes.textCursor().selectedText(), u"twine"_s, u"what was found"_s);
    desktop.picturesOf(screen, stage, u"notes"_s);
    hand::shortcut(screen, Qt::Key_Escape, {});
    stage.check(screen.isVisible(), u"Escape closes the search only"_s);
    hand::shortcut(screen, Qt::Key_W, Qt::ControlModifier);
    stage.check(!screen.isVisible(), u"the notes are closed"_s);
    QFile file(path);
    stage.check(file.open(QIODevice::ReadOnly), path + u": is there"_s);
    stage.same(QString::fromUtf8(file.readAll()), text, u"the notes in the file"_s);
}

void ToolSteps::drawOnWhiteboard(const QString &path)
{
    stage.step(u"A sketch is drawn, partly erased, and shared; every stroke is in the file at once"_s);
    hand::choose(hand::openMenu(main.window, u"Tools"_s), u"Whiteboard"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerWhiteboard"_s);
    QList<QPoint> wave;
    for (int x = 120; x <= 620; x += 5)
        wave.append({x, 220 + (x / 50 % 2 == 0 ? x % 50 : 50 - x % 50)});
    auto &canvas = hand::child<QWidget>(screen, u"line"_s);
    drag(canvas, wave);
    stage.same(QImage(path).pixelColor(wave[20]).name(), u"#000000"_s, u"the stroke in the file"_s);
    hand::click(hand::child<QToolButton>(screen, u"lineButton"_s));
    drag(canvas, {{120, 400}, {300, 500}, {620, 400}});
    stage.same(QImage(path).pixelColor(370, 400).name(), u"#000000"_s, u"the straight line in the file"_s);
    hand::click(hand::child<QToolButton>(screen, u"eraserButton"_s));
    drag(canvas, {{340, 380}, {340, 420}});
    stage.same(QImage(path).pixelColor(340, 400).name(), u"#ffffff"_s, u"the place that was erased"_s);
    stage.picture(screen, u"whiteboard"_s);

    const QImage drawn(path);
    hand::throughDialog([&] { hand::click(hand::child<QToolButton>(screen, u"deleteButton"_s)); },
                        [&](QDialog &dialog) {
                            stage.picture(dialog, u"erase-question"_s);
                            for (QAbstractButton *button : static_cast<QMessageBox &>(dialog).buttons())
                                if (button->text() == u"Yes")
                                    hand::click(*button);
                        });
    hand::click(hand::child<QToolButton>(screen, u"revertButton"_s));
    hand::click(hand::child<QToolButton>(screen, u"shareButton"_s));
    stage.check(!screen.isVisible(), u"the whiteboard is closed"_s);
    hand::choose(hand::openPopup(), u"Copy"_s);
    const QMimeData &copied = *QGuiApplication::clipboard()->mimeData();
    stage.check(copied.text().startsWith(
                    u"Whiteboard\nSent with Quorvane. Download from the App Store for Mac:\n\nhttps://"_s),
                u"the copied text"_s);
    stage.check(qvariant_cast<QImage>(copied.imageData()).convertToFormat(drawn.format()) == drawn,
                u"the copied picture"_s);
    stage.check(QImage(path) == drawn, u"the picture in the file is still the same"_s);
}

void ToolSteps::readGuide()
{
    stage.step(u"F1 opens the guide while a task is edited"_s);
    main.selectTask(main.taskNames().constFirst());
    hand::click(main.editButton);
    QDialog &form = hand::openWindow(u"ViewControllerEdit"_s);
    hand::shortcut(form, Qt::Key_F1, {});
    auto &guide = hand::child<QProcess>(main.window);
    guide.closeWriteChannel();
    constexpr int milliseconds = 30'000;
    stage.check(guide.waitForFinished(milliseconds) && guide.exitStatus() == QProcess::NormalExit &&
                    guide.exitCode() == EXIT_SUCCESS,
                u"the guide comes up and goes orderly"_s);
    hand::shortcut(form, Qt::Key_Escape, {});
}
