#include "platform/TextView.h"

void TextView::setTextColor(const Color &textColor)
{
    color = textColor;
    QPalette changed = palette();
    changed.setColor(QPalette::Text, QColor::fromRgbF(float(color.red), float(color.green), float(color.blue),
                                                      float(color.alpha)));
    setPalette(changed);
}
