#include "widgets/Palettes.h"

#include <QColor>

namespace palettes {

namespace {

struct Shades
{
    QRgb window, base, alternateBase, button, text, faintText, highlight, link, toolTip;
};

QPalette fromShades(const Shades &shades)
{
    QPalette palette(QColor(shades.button), QColor(shades.window));
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, QColor(shades.text));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(shades.faintText));
    palette.setColor(QPalette::PlaceholderText, QColor(shades.faintText));
    palette.setColor(QPalette::Base, QColor(shades.base));
    palette.setColor(QPalette::AlternateBase, QColor(shades.alternateBase));
    palette.setColor(QPalette::ToolTipBase, QColor(shades.toolTip));
    palette.setColor(QPalette::Highlight, QColor(shades.highlight));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(shades.link));
    return palette;
}

} // namespace

QPalette light()
{
    return fromShades({.window = 0xf2f3f5,
                       .base = 0xffffff,
                       .alternateBase = 0xf6f7f9,
                       .button = 0xf2f3f5,
                       .text = 0x1d2125,
                       .faintText = 0x878d94,
                       .highlight = 0x1f66b8,
                       .link = 0x1f66b8,
                       .toolTip = 0xfffbe6});
}

QPalette dark()
{
    return fromShades({.window = 0x323438,
                       .base = 0x1b1c1f,
                       .alternateBase = 0x26282b,
                       .button = 0x393c40,
                       .text = 0xe6e8ea,
                       .faintText = 0x7f858c,
                       .highlight = 0x2f6fb8,
                       .link = 0x6fb0f5,
                       .toolTip = 0x3a3d41});
}

} // namespace palettes
