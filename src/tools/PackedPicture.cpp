#include "tools/PackedPicture.h"

#include <algorithm>

static constexpr int fast = 1;

PackedPicture::PackedPicture(const QImage &picture)
    : rows(qCompress(picture.constBits(), picture.sizeInBytes(), fast))
    , size(picture.size())
    , format(picture.format())
    , colors(picture.colorTable())
    , colorSpace(picture.colorSpace())
{
}

QImage PackedPicture::unpacked() const
{
    QImage picture(size, format);
    picture.setColorTable(colors);
    picture.setColorSpace(colorSpace);
    const QByteArray bytes = qUncompress(rows);
    std::copy_n(bytes.cbegin(), std::min(bytes.size(), picture.sizeInBytes()),
                reinterpret_cast<char *>(picture.bits()));
    return picture;
}
