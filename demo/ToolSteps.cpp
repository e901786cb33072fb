#include "Steps.h"
#include "Tour.h"
#include "platform/Folders.h"
#include "support/Mouse.h"
#include "support/ScratchHome.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>

using namespace Qt::StringLiterals;

constexpr QRgb white = qRgb(255, 255, 255);

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
    auto &findField = hand::child<QLineEdit>(screen, u"findField"_s);
    tour.stage.check(notes.textCursor().atEnd(), u"the text goes on at its end"_s);
    hand::fill(findField, u"TH"_s);
    for (const auto &[button, found] : {std::pair(u"Next"_s, u"the"_s),
                                        {u"Next"_s, u"th Frau"_s},
                                        {u"Next"_s, u"the"_s},
                                        {u"Previous"_s, u"th Frau"_s}}) {
        hand::click(hand::child<QPushButton>(screen, u"find%1Button"_s.arg(button)));
        tour.stage.same(notes.textCursor().selectionStart(), text.indexOf(found), u"the place of "_s + found);
    }
    hand::fill(findField, u"prune"_s);
    hand::press(findField, Qt::Key_Return);
    tour.stage.same(hand::child<QLabel>(screen, u"findResult"_s).text(), u"Not found", u"the result"_s);
    hand::fill(findField, u"TWINE"_s);
    hand::press(findField, Qt::Key_Return);
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
    tour.stage.step(u"A sketch is drawn, partly erased, taken back and done again, and shared"_s);
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

    const QString file = u"zandulistwhiteboard.png"_s;
    const QImage drawn(file);
    tour.stage.check(drawn.pixel(200, 400) != white && drawn.pixel(300, 500) == white, u"a straight line"_s);
    tour.stage.check(drawn.pixel(340, 400) == white, u"what was rubbed out"_s);
    hand::shortcut(screen, Qt::Key_Z, Qt::ControlModifier);
    tour.stage.check(QImage(file).pixel(340, 400) != white, u"the line is whole again"_s);
    tour.stage.picture(screen, u"whiteboard-undone"_s);
    hand::click(hand::child<QToolButton>(screen, u"redoButton"_s));
    for (const QString &answer : {u"No"_s, u"Yes"_s}) {
        tour.stage.check(QImage(file) == drawn, u"the picture is still there"_s);
        tour.throughAlert([&screen] { hand::click(hand::child<QToolButton>(screen, u"deleteButton"_s)); },
                          u"Are you sure you want to erase the Whiteboard ?"_s, answer,
                          u"erase-question-"_s + answer.toLower());
    }
    tour.stage.check(screen.grab().toImage().pixel(200, 400) == white, u"nothing is left"_s);
    hand::shortcut(screen, Qt::Key_Z, Qt::ControlModifier);
    tour.stage.check(screen.grab().toImage().pixel(200, 400) != white, u"all is back"_s);
    hand::shortcut(screen, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    tour.stage.check(QImage(file).pixel(200, 400) == white, u"and gone once more, from the file as well"_s);
    hand::shortcut(screen, Qt::Key_Z, Qt::ControlModifier);
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
