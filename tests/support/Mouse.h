#pragma once

#include <QTest>

/// Moves the mouse over the widget with these buttons held down.
inline void moveMouse(QWidget &widget, QPoint point, Qt::MouseButtons buttons)
{
    QMouseEvent event(QEvent::MouseMove, point, widget.mapToGlobal(point), Qt::NoButton, buttons, {});
    QCoreApplication::sendEvent(&widget, &event);
}

/// Moves the mouse from point to point with its left button held down.
inline void dragMouse(QWidget &widget, const QList<QPoint> &points)
{
    QTest::mousePress(&widget, Qt::LeftButton, {}, points.first());
    for (const QPoint &point : points.sliced(1))
        moveMouse(widget, point, Qt::LeftButton);
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, points.last());
}
