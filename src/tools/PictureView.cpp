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

void PictureView::paint(QPainter &painter, const QSizeF &area) const
{
    if (painted.isNull())
        return;
    const QSizeF place = QSizeF(painted.size()).scaled(area, Qt::KeepAspectRatio);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, place != QSizeF(painted.size()));
    painter.drawImage(QRectF(QPointF(), place), painted);
}

void PictureView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), Qt::white);
    const double scale = devicePixelRatioF();
    painter.scale(1 / scale, 1 / scale); // in the display's pixels
    paint(painter, QSizeF(size()) * scale);
}
