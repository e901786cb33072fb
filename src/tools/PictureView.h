#pragma once

#include <QImage>
#include <QWidget>

class QPainter;

/// Shows a picture over its whole area, on white. A picture with as many pixels as the area has on the
/// display is shown pixel by pixel.
class PictureView : public QWidget
{
    Q_OBJECT

public:
    explicit PictureView(QWidget *parent = nullptr);

    const QImage &picture() const { return shown; }
    /// \param picture  null for an empty area
    void setPicture(const QImage &picture);

    /// Paints the picture into an area of so many pixels.
    void paint(QPainter &painter, const QSize &area);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage shown;
    QImage painted; ///< the same as it was painted last: in the size and the format that take no more work
};
