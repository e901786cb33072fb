#pragma once

#include <QString>

/// The desktop's global setting that tells its appearance: `dark`, or absent while it is light.
namespace appearanceSetting {
inline const QString key = QStringLiteral("AppleInterfaceStyle");
inline const QString dark = QStringLiteral("Dark");
} // namespace appearanceSetting
