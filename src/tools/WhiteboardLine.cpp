#include "tools/WhiteboardLine.h"

#include "platform/Diagnostics.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The point in the window, counted from its lower left corner.
QString windowPoint(const QMouseEvent &event, const QWidget &window)
{
    const QPointF point = event.scenePosition();
    return u"(%1, %2)"_s.arg(point.x(), 0, 'f', 1).arg(window.height() - point.y(), 0, 'f', 1);
}

} // namespace

WhiteboardLine::WhiteboardLine(const WhiteboardPen &sharedPen, QWidget &owner)
    : QWidget(&owner)
    , pen(sharedPen)
    , parentVC(owner)
{
    setObjectName(u"line"_s);
    setAccessibleName(tr("Drawing: the arrow keys move the pen, Space puts it down and lifts it"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(pen.straightLineMode ? Qt::CrossCursor : Qt::ArrowCursor);
}

void WhiteboardLine::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    finish();
    diagnostics::line("Mouse Down");
    if (pen.straightLineMode)
        diagnostics::line("LineStart:", windowPoint(*event, parentVC));
    cross.reset();
    begin(event->position());
}

void WhiteboardLine::begin(QPointF point)
{
    isStraight = pen.straightLineMode;
    myPath = QPainterPath(point);
    mergedWith.reset();
    isDrawing = true;
    update(); // the stroke before may have been painted with another pen
}

void WhiteboardLine::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        finish();
    if (!isDrawing) {
        diagnostics::line("Mouse Moved");
        return;
    }
    diagnostics::line("Mouse Dragged");
    extendTo(event->position());
}

void WhiteboardLine::extendTo(QPointF point)
{
    const QPointF start = myPath.elementAt(0);
    QPointF last = myPath.currentPosition();
    if (isStraight) {
        update(covered(start, last).toAlignedRect());
        myPath = QPainterPath(start);
        last = start;
    }
    myPath.lineTo(point);
    emit extended();
    update(covered(last, point).toAlignedRect());
}

void WhiteboardLine::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !isDrawing)
        return;
    diagnostics::line("Mouse Up");
    if (isStraight) {
        diagnostics::line("LineEnd:", windowPoint(*event, parentVC));
        if (myPath.elementCount() > 1 || event->position() != myPath.currentPosition())
            extendTo(event->position());
    }
    finish();
}

void WhiteboardLine::keyPressEvent(QKeyEvent *event)
{
    if (!cross) // goes on from where the mouse was
        cross = myPath.isEmpty() ? QPointF(rect().center()) : myPath.currentPosition();
    const qreal step = event->modifiers() & Qt::ShiftModifier ? 1 : 10; // points
    switch (event->key()) {
    case Qt::Key_Left:
        return moveCross({-step, 0});
    case Qt::Key_Right:
        return moveCross({step, 0});
    case Qt::Key_Up:
        return moveCross({0, -step});
    case Qt::Key_Down:
        return moveCross({0, step});
    case Qt::Key_Space:
        if (event->isAutoRepeat())
            return;
        return isDrawing ? finish() : begin(*cross);
    default:
        QWidget::keyPressEvent(event);
    }
}

void WhiteboardLine::moveCross(QPointF step)
{
    const QPointF wanted = *cross + step;
    cross = {std::clamp(wanted.x(), 0.0, qreal(width() - 1)),
             std::clamp(wanted.y(), 0.0, qreal(height() - 1))};
    if (isDrawing)
        extendTo(*cross);
    update();
}

void WhiteboardLine::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    const bool isByKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (isByKey && !cross)
        cross = rect().center();
    update();
}

void WhiteboardLine::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    finish(); // the pen does not stay down where no key reaches it
    update();
}

/// Black on white on black, so that it is seen on whatever has been drawn.
void WhiteboardLine::paintCross(QPainter &painter) const
{
    constexpr qreal arm = 9; // points
    const std::array lines{QLineF(*cross - QPointF(arm, 0), *cross + QPointF(arm, 0)),
                           QLineF(*cross - QPointF(0, arm), *cross + QPointF(0, arm))};
    for (const QPen &stroke : {QPen(Qt::black, 5), QPen(Qt::white, 3), QPen(Qt::black, 1)}) {
        painter.setPen(stroke);
        painter.drawLines(lines.data(), int(lines.size()));
    }
}

/// Also called when the release has gone elsewhere, as to a dialog that came up in the middle.
void WhiteboardLine::finish()
{
    if (!std::exchange(isDrawing, false))
        return;
    emit finished();
    mergedWith = pen;
}

void WhiteboardLine::paintEvent(QPaintEvent *event)
{
    diagnostics::line("Draw... Draw... Draw...");
    QWidget::paintEvent(event);
    diagnostics::line("Drawing");
    // Painted once more over itself in the picture, a translucent stroke would be twice as strong.
    const bool isShown =
        mergedWith && mergedWith->lineColor == pen.lineColor && mergedWith->lineWidth == pen.lineWidth;
    QPainter painter(this);
    if (!isShown)
        draw(painter, event->rect());
    if (hasFocus() && cross)
        paintCross(painter);
}

QRectF WhiteboardLine::covered(QPointF from, QPointF to) const
{
    const double margin = pen.lineWidth / 2 + 1;
    return QRectF(from, to).normalized().adjusted(-margin, -margin, margin, margin);
}

void WhiteboardLine::draw(QPainter &painter, const QRectF &part) const
{
    // A long stroke has thousands of segments, of which a repaint touches a few.
    QPainterPath seen;
    bool isConnected = false;
    for (int i = 1; i < myPath.elementCount(); ++i) {
        const QPointF from = myPath.elementAt(i - 1);
        const QPointF to = myPath.elementAt(i);
        const bool isSeen = covered(from, to).intersects(part);
        if (isSeen && !isConnected)
            seen.moveTo(from);
        if (isSeen)
            seen.lineTo(to);
        isConnected = isSeen;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(
        seen, QPen(painted(pen.lineColor), pen.lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}
