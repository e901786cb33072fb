#pragma once

#include "platform/Color.h"

#include <QPainterPath>
#include <QWidget>

#include <optional>

/// The pen, which every whiteboard takes over from the one before.
struct WhiteboardPen
{
    Color lineColor{0.0, 0.0, 0.0, 1.0};
    double lineWidth = 5.0; ///< points
    bool straightLineMode = false;
};

/// The layer above the canvas that holds the stroke being drawn, until the next one is begun. With the
/// keyboard, the arrow keys move a cross (with Shift by single points), and Space puts the pen down there and
/// lifts it.
class WhiteboardLine : public QWidget
{
    Q_OBJECT

public:
    WhiteboardLine(const WhiteboardPen &pen, QWidget &parentVC);

    /// Strokes what of the path is seen in this part of the layer.
    void draw(QPainter &painter, const QRectF &part) const;
    /// Merges the stroke that is being drawn, if any, into the picture.
    void finish();

signals:
    /// The stroke has grown.
    void extended();
    /// The stroke is to be merged into the picture.
    void finished();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void begin(QPointF point);
    void moveCross(QPointF step);
    void paintCross(QPainter &painter) const;
    void extendTo(QPointF point);
    /// The area that a straight line between the points covers.
    QRectF covered(QPointF from, QPointF to) const;

    const WhiteboardPen &pen;
    QWidget &parentVC;
    QPainterPath myPath;
    std::optional<WhiteboardPen> mergedWith; ///< the pen that the stroke is in the picture with
    std::optional<QPointF> cross;            ///< where the keyboard draws, while it does
    bool isDrawing = false;
    bool isStraight = false; ///< as the mode was when the stroke was begun
};
