#include "tools/WhiteboardLine.h"

#include "platform/Diagnostics.h"

#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

/// The point in the window, counted from its lower left corner.
QString windowPoint(const QMouseEvent &event, const QWidget &window)
{
    const QPointF point = event.scenePosition();
    return u"(%1, %2)"_s.arg(point.x(), 0, 'f', 1).arg(window.height() - point.y(), 0, 'f', 1);
}

} // namespace

ViewControllerWhiteboard::Line::Line(const WhiteboardPen &sharedPen, ViewControllerWhiteboard &owner)
    : QWidget(&owner)
    , pen(sharedPen)
    , parentVC(owner)
{
    setObjectName(u"line"_s);
    setMouseTracking(true);
    setCursor(pen.straightLineMode ? Qt::CrossCursor : Qt::ArrowCursor);
}

void ViewControllerWhiteboard::Line::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    diagnostics::line("Mouse Down");
    if (pen.straightLineMode)
        diagnostics::line("LineStart:", windowPoint(*event, parentVC));
    update(covered(myPath.boundingRect().topLeft(), myPath.boundingRect().bottomRight()).toAlignedRect());
    myPath = QPainterPath(event->position());
    isDrawing = true;
}

void ViewControllerWhiteboard::Line::mouseMoveEvent(QMouseEvent *event)
{
    if (isDrawing)
        mouseDragged(event->position());
    else
        diagnostics::line("Mouse Moved");
}

void ViewControllerWhiteboard::Line::mouseDragged(QPointF point)
{
    diagnostics::line("Mouse Dragged");
    const QPointF start = myPath.elementAt(0);
    const QPointF last = myPath.currentPosition();
    if (pen.straightLineMode) {
        update(covered(start, last).toAlignedRect());
        myPath = QPainterPath(start);
    }
    myPath.lineTo(point);
    parentVC.strokeChanged();
    update(covered(pen.straightLineMode ? start : last, point).toAlignedRect());
}

void ViewControllerWhiteboard::Line::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !std::exchange(isDrawing, false))
        return;
    diagnostics::line("Mouse Up");
    if (pen.straightLineMode)
        diagnostics::line("LineEnd:", windowPoint(*event, parentVC));
    parentVC.savePicture();
}

void ViewControllerWhiteboard::Line::paintEvent(QPaintEvent *event)
{
    diagnostics::line("Draw... Draw... Draw...");
    QWidget::paintEvent(event);
    diagnostics::line("Drawing");
    QPainter painter(this);
    draw(painter, event->rect());
}

QRectF ViewControllerWhiteboard::Line::covered(QPointF from, QPointF to) const
{
    const double margin = pen.lineWidth / 2 + 1;
    return QRectF(from, to).normalized().adjusted(-margin, -margin, margin, margin);
}

void ViewControllerWhiteboard::Line::draw(QPainter &painter, const QRectF &part) const
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
    const Color &color = pen.lineColor;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(seen, QPen(QColor::fromRgbF(float(color.red), float(color.green), float(color.blue),
                                                   float(color.alpha)),
                                  pen.lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}
