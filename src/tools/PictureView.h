#pragma once

#include <QImage>
#include <QWidget>

class QPainter;
class WhiteboardLine;

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

    /// The picture with the stroke on it, at the display's resolution, or the picture's own where that is
    /// finer.
    /// \param line  of the same area
    QImage capture(const WhiteboardLine &line);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Paints the picture into an area of so many pixels.
    void paint(QPainter &painter, const QSize &area);

    QImage shown;
    QImage painted; ///< the same as it was painted last: in the size and the format that take no more work
};
