#include "platform/Color.h"

#include <QColor>

#include <algorithm>
#include <cmath>

QColor painted(const Color &color)
{
    const auto component = [](double value) {
        return float(std::clamp(value, 0.0, 1.0));
    };
    return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                            component(color.alpha));
}

/// Relative luminance, 0…1 (WCAG 2.1).
static double luminance(double red, double green, double blue)
{
    const auto linear = [](double component) {
        return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}

QColor readableTextColor(const QColor &color, const QColor &behind)
{
    // On this luminance black and white are equally far away.
    constexpr double middle = 0.179;
    const double alpha = double(color.alphaF());
    const auto shown = [alpha](float over, float under) {
        return alpha * double(over) + (1 - alpha) * double(under);
    };
    const double shownLuminance =
        luminance(shown(color.redF(), behind.redF()), shown(color.greenF(), behind.greenF()),
                  shown(color.blueF(), behind.blueF()));
    return shownLuminance > middle ? Qt::black : Qt::white;
}
