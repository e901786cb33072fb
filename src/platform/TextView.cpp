#include "platform/TextView.h"

void TextView::setText(const QString &text)
{
    original = text;
    setPlainText(text);
}

QString TextView::text() const
{
    // The document's own line ends and blanks are not the text's, so an untouched one is not read back.
    if (!document()->isModified())
        return original;
    QString edited = document()->toRawText();
    edited.replace(QChar(QChar::ParagraphSeparator), u'\n');
    return edited.replace(QChar(QChar::LineSeparator), u'\n');
}

void TextView::setTextColor(const Color &textColor)
{
    color = textColor;
    QPalette changed = palette();
    changed.setColor(QPalette::Text, QColor::fromRgbF(float(color.red), float(color.green), float(color.blue),
                                                      float(color.alpha)));
    setPalette(changed);
}
