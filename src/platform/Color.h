#pragma once

class QColor;

/// A colour in device RGB, each component a double in 0…1. QColor would round the components.
struct Color
{
    double red = 1.0;
    double green = 1.0;
    double blue = 1.0;
    double alpha = 1.0;

    /// The colour with red, green and blue each replaced by one minus itself.
    Color inverted() const { return {1.0 - red, 1.0 - green, 1.0 - blue, alpha}; }

    bool operator==(const Color &) const = default;
};

/// The colour for painting only, since it is rounded.
QColor painted(const Color &color);
/// Black or white, whichever reads better on the colour.
/// \param behind  what shows through a colour that is not opaque
QColor readableTextColor(const QColor &color, const QColor &behind);
