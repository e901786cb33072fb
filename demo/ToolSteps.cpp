#include "Steps.h"
#include "Tour.h"
#include "platform/Folders.h"
#include "support/Mouse.h"
#include "support/ScratchHome.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProcess>

using namespace Qt::StringLiterals;

void writeNotes(Tour &tour)
{
    tour.stage.step(u"Notes are written, searched, and kept when the window closes"_s);
    const QString text = u"Café Sonnenhof: the key is with Frau Öz 🌷\nOrder\u00a0twine, 2 rolls.\n"_s;
    hand::choose(tour.window, u"Tools"_s, u"Notes"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerNotes"_s);
    auto &notes = hand::child<QPlainTextEdit>(screen, u"textEdit"_s);
    QGuiApplication::clipboard()->setText(text);
    hand::press(notes, Qt::Key_V, Qt::ControlModifier);
    hand::shortcut(screen, Qt::Key_F, Qt::ControlModifier);
    hand::fill(hand::child<QLineEdit>(screen, u"findField"_s), u"TWINE"_s);
    hand::press(hand::child<QLineEdit>(screen, u"findField"_s), Qt::Key_Return);
    tour.stage.same(notes.textCursor().selectedText(), u"twine"_s, u"what was found"_s);
    tour.takePicturesOf(screen, u"notes"_s);
    hand::shortcut(screen, Qt::Key_Escape, {});
    tour.stage.check(screen.isVisible(), u"Escape closes the search only"_s);
    hand::shortcut(screen, Qt::Key_W, Qt::ControlModifier);
    tour.stage.check(!screen.isVisible(), u"the notes are closed"_s);
    const QByteArray written = contentOf(folders::documents() + u"/zandunotes.txt"_s);
    tour.stage.same(QString::fromUtf8(written), text, u"the notes in the file"_s);
}

void drawOnWhiteboard(Tour &tour)
{
    tour.stage.step(u"A sketch is drawn, partly erased, and shared"_s);
    hand::clickTool(tour.window, u"actionWhiteboard"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerWhiteboard"_s);
    QList<QPoint> wave;
    for (int x = 120; x <= 620; x += 5)
        wave.append({x, 220 + (x / 50 % 2 == 0 ? x % 50 : 50 - x % 50)});
    auto &canvas = hand::child<QWidget>(screen, u"line"_s);
    dragMouse(canvas, wave);
    hand::click(hand::child<QToolButton>(screen, u"lineButton"_s));
    dragMouse(canvas, {{120, 400}, {300, 500}, {620, 400}});
    hand::click(hand::child<QToolButton>(screen, u"eraserButton"_s));
    dragMouse(canvas, {{340, 380}, {340, 420}});
    tour.stage.picture(screen, u"whiteboard"_s);

    const QImage drawn(u"zandulistwhiteboard.png"_s);
    tour.throughAlert([&screen] { hand::click(hand::child<QToolButton>(screen, u"deleteButton"_s)); },
                      u"Are you sure you want to erase the Whiteboard ?"_s, u"Yes"_s, u"erase-question"_s);
    hand::click(hand::child<QToolButton>(screen, u"revertButton"_s));
    hand::click(hand::child<QToolButton>(screen, u"shareButton"_s));
    tour.stage.check(!screen.isVisible(), u"the whiteboard is closed"_s);
    hand::choose(hand::openPopup(), u"Copy"_s);
    const QMimeData &copied = *QGuiApplication::clipboard()->mimeData();
    tour.stage.check(
        copied.text().startsWith(u"Whiteboard\nSent with Quorvane. Download from the App Store for Mac:"_s),
        u"the copied text"_s);
    const auto picture = qvariant_cast<QImage>(copied.imageData()).convertToFormat(drawn.format());
    tour.stage.check(!drawn.isNull() && picture == drawn, u"the copied picture is the one in the file"_s);
}

void readGuide(Tour &tour)
{
    tour.stage.step(u"F1 opens the guide while a task is edited"_s);
    tour.selectTask(tour.taskNames().constFirst());
    hand::click(tour.button(u"edit"_s));
    QDialog &form = hand::openWindow(u"ViewControllerEdit"_s);
    hand::shortcut(form, Qt::Key_F1, {});
    auto &guide = hand::child<QProcess>(tour.window);
    guide.closeWriteChannel();
    constexpr int milliseconds = 30'000;
    tour.stage.check(guide.waitForFinished(milliseconds) && guide.exitStatus() == QProcess::NormalExit &&
                         guide.exitCode() == EXIT_SUCCESS,
                     u"the guide comes up and goes orderly"_s);
    hand::shortcut(form, Qt::Key_Escape, {});
}
