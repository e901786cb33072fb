#include "platform/WholeFile.h"

#include "platform/FileDescriptor.h"

#include <QFile>

#include <fcntl.h>

std::optional<QByteArray> readWholeFile(const QString &path, qint64 most)
{
    if (!FileDescriptor(path, O_RDONLY).isOpen())
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > most)
        return std::nullopt;
    const QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(content) : std::nullopt;
}
