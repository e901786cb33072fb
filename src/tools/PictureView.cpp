#include "tools/PictureView.h"

#include "tools/WhiteboardLine.h"

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

QImage PictureView::capture(const WhiteboardLine &line)
{
    const QSize ofDisplay = size() * devicePixelRatioF();
    const QSize unfilled = ofDisplay - shown.size().scaled(ofDisplay, Qt::KeepAspectRatio);
    const bool isFiner = shown.width() > ofDisplay.width() && unfilled.width() <= 1 && unfilled.height() <= 1;
    QImage image(isFiner ? shown.size() : ofDisplay, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paint(painter, image.size());
    painter.scale(double(image.width()) / width(), double(image.height()) / height());
    line.draw(painter, rect());
    return image;
}

void PictureView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), Qt::white);
    const double scale = devicePixelRatioF();
    painter.scale(1 / scale, 1 / scale); // in the display's pixels
    paint(painter, size() * scale);
}
