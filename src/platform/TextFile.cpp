#include "platform/TextFile.h"

std::optional<QString> TextFile::read()
{
    const std::optional<QByteArray> bytes = file.read();
    if (!bytes)
        return std::nullopt;
    if (!QByteArrayView(*bytes).isValidUtf8()) {
        file.keepCopy();
        return std::nullopt;
    }
    return QString::fromUtf8(*bytes);
}
