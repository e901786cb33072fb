#include "tools/PictureView.h"

#include <QPainter>

void PictureView::setPicture(const QImage &picture)
{
    shown = picture;
    painted = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    update();
}

void PictureView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(rect(), painted);
}
