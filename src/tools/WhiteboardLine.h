#pragma once

#include "tools/ViewControllerWhiteboard.h"

#include <QPainterPath>
#include <QWidget>

/// The layer above the canvas that holds the stroke being drawn, until the next one is begun.
class ViewControllerWhiteboard::Line : public QWidget
{
public:
    Line(const WhiteboardPen &pen, ViewControllerWhiteboard &parentVC);

    /// Strokes what of the path is seen in this part of the layer.
    void draw(QPainter &painter, const QRectF &part) const;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void extendTo(QPointF point);
    void finish();
    /// The area that a straight line between the points covers.
    QRectF covered(QPointF from, QPointF to) const;

    const WhiteboardPen &pen;
    ViewControllerWhiteboard &parentVC;
    QPainterPath myPath;
    bool isDrawing = false;
    bool isStraight = false; ///< as the mode was when the stroke was begun
};
