#pragma once

#include <QByteArray>
#include <QColorSpace>
#include <QImage>

/// A picture that takes little memory as long as nobody looks at it.
class PackedPicture
{
public:
    /// Of a null picture, too.
    explicit PackedPicture(const QImage &picture);

    /// The same, pixel by pixel.
    QImage unpacked() const;
    qsizetype byteCount() const { return rows.size(); }

private:
    QByteArray rows; ///< compressed; one after the other, each as long as in memory
    QSize size;
    QImage::Format format;
    QList<QRgb> colors;
    QColorSpace colorSpace;
};
