#include "tools/PictureStep.h"

#include "tools/PictureView.h"

#include <cstring>
#include <utility>

namespace {

constexpr auto format = QImage::Format_RGB32;

/// The picture; white in this size for an empty board.
QImage filled(const QImage &picture, QSize size)
{
    if (!picture.isNull())
        return picture;
    QImage white(size, format);
    white.fill(Qt::white);
    return white;
}

const QRgb *rowOf(const QImage &picture, int row)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(row));
}

} // namespace

PictureStep::PictureStep(const QString &name, const QImage &before, const QImage &after,
                         const PictureView &pictureView, Show showPicture)
    : QUndoCommand(name)
    , view(pictureView)
    , show(std::move(showPicture))
    , size(after.isNull() ? before.size() : after.size())
{
    if (size.isEmpty())
        return;
    const QImage first = filled(before, size);
    const QImage second = filled(after, size);
    if (first.size() == second.size() && first.format() == format && second.format() == format) {
        compare(first, second);
    } else {
        wholeBefore.emplace(first);
        wholeAfter.emplace(second);
    }
}

PictureStep::PictureStep(const PictureStep &other)
    : QUndoCommand(other.text())
    , view(other.view)
    , show(other.show)
    , size(other.size)
    , runs(other.runs)
    , differences(other.differences)
    , wholeBefore(other.wholeBefore)
    , wholeAfter(other.wholeAfter)
{
}

qsizetype PictureStep::byteCount() const
{
    const qsizetype whole = wholeBefore ? wholeBefore->byteCount() + wholeAfter->byteCount() : 0;
    return whole + differences.size() + runs.size() * qsizetype(sizeof(Run));
}

void PictureStep::compare(const QImage &before, const QImage &after)
{
    constexpr int fast = 1;
    QList<QRgb> pixels;
    const int width = size.width();
    for (int row = 0; row < size.height(); ++row) {
        const QRgb *const from = rowOf(before, row);
        const QRgb *const to = rowOf(after, row);
        if (std::memcmp(from, to, size_t(width) * sizeof(QRgb)) == 0)
            continue;
        for (int column = 0; column < width; ++column) {
            if (from[column] == to[column])
                continue;
            const int start = column;
            for (; column < width && from[column] != to[column]; ++column)
                pixels.append(from[column] ^ to[column]);
            runs.append({row, start, column - start});
        }
    }
    runs.squeeze();
    differences = qCompress(reinterpret_cast<const uchar *>(pixels.constData()),
                            pixels.size() * qsizetype(sizeof(QRgb)), fast);
}

QImage PictureStep::exchanged() const
{
    // An empty board has whatever size the display gives it.
    const bool isEmptyBoard = view.picture().size() != size || view.picture().format() != format;
    QImage picture = filled(isEmptyBoard ? QImage() : view.picture(), size);
    const QByteArray bytes = qUncompress(differences);
    auto difference = reinterpret_cast<const QRgb *>(bytes.constData());
    for (const Run &run : runs) {
        QRgb *const pixels = reinterpret_cast<QRgb *>(picture.scanLine(run.row)) + run.column;
        for (int pixel = 0; pixel < run.length; ++pixel)
            pixels[pixel] ^= *difference++;
    }
    return picture;
}

void PictureStep::undo()
{
    isDone = false;
    show(wholeBefore ? wholeBefore->unpacked() : exchanged());
}

void PictureStep::redo()
{
    if (!std::exchange(isDone, true))
        show(wholeAfter ? wholeAfter->unpacked() : exchanged());
}
