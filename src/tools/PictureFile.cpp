#include "tools/PictureFile.h"

#include "platform/Diagnostics.h"

#include <QBuffer>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QByteArray PictureFile::encoded(const QImage &picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return picture.save(&buffer, "PNG") ? bytes : QByteArray();
}

QImage PictureFile::read()
{
    const std::optional<QByteArray> bytes = file.read();
    const QImage picture = decoded(bytes.value_or(QByteArray()));
    if (bytes && picture.isNull())
        file.keepCopy();
    holdsPicture = !picture.isNull() || (file.readProblem().isEmpty() && !QFileInfo::exists(path()));
    rejected = QImage();
    unread.clear();
    if (!file.readProblem().isEmpty())
        unread = {
            u"%1 cannot be read: %2. It is shown as soon as it can be read, unless you draw meanwhile."_s.arg(
                path(), file.readProblem())};
    else if (!holdsPicture)
        unread = {u"%1 could not be read as a picture. It is copied before it is overwritten."_s.arg(path())};
    return picture;
}

std::optional<QImage> PictureFile::readNewer()
{
    if (!file.readProblem().isEmpty()) {
        file.read();
        if (!file.readProblem().isEmpty())
            return QImage();
    } else if (!file.isChangedByOthers()) {
        return std::nullopt;
    }
    const QImage picture = decoded(content());
    holdsPicture = !picture.isNull(); // so that closing tells of the copy
    if (!holdsPicture)
        file.keepCopy(); // whoever writes it may not be done
    return picture;
}

bool PictureFile::write(const QImage &picture)
{
    const QByteArray bytes = encoded(picture);
    holdsPicture = !bytes.isEmpty() && file.write(bytes);
    rejected = holdsPicture ? QImage() : picture;
    if (bytes.isEmpty())
        problem = u"it cannot be turned into a PNG picture"_s;
    else
        problem = file.errorString();
    if (!holdsPicture && !bytes.isEmpty())
        diagnostics::line("caught:", problem);
    return holdsPicture;
}
