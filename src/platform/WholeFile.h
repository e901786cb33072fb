#pragma once

#include <QByteArray>
#include <QString>

#include <limits>
#include <optional>

std::optional<QByteArray> readWholeFile(const QString &path,
                                        qint64 most = std::numeric_limits<qint64>::max());
