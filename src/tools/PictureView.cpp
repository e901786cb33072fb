#include "tools/PictureView.h"

#include <QPaintEvent>
#include <QPainter>

PictureView::PictureView(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureView::setPicture(const QImage &picture)
{
    shown = picture;
    painted = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    update();
}

void PictureView::paint(QPainter &painter, const QSize &area) const
{
    if (painted.isNull())
        return;
    if (painted.size() == area) {
        painter.drawImage(QPoint(), painted);
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(QPointF(), QSizeF(painted.size()).scaled(area, Qt::KeepAspectRatio)), painted);
}

void PictureView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), Qt::white);
    const double scale = devicePixelRatioF();
    painter.scale(1 / scale, 1 / scale); // in the display's pixels
    paint(painter, size() * scale);
}
