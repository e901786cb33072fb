#include "platform/Color.h"

#include <QColor>

#include <algorithm>

QColor painted(const Color &color)
{
    const auto component = [](double value) {
        return float(std::clamp(value, 0.0, 1.0));
    };
    return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                            component(color.alpha));
}
