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
    painted = {};
    update();
}

void PictureView::paint(QPainter &painter, const QSize &area)
{
    if (shown.isNull())
        return;
    const QSize size = shown.size().scaled(area, Qt::KeepAspectRatio);
    if (painted.size() != size) {
        const auto format =
            shown.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
        painted = shown.convertToFormat(format);
        if (painted.size() != size)
            painted = painted.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    painter.drawImage(QPoint(), painted);
}

void PictureView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), Qt::white);
    const double scale = devicePixelRatioF();
    painter.scale(1 / scale, 1 / scale); // in the display's pixels
    paint(painter, size() * scale);
}
