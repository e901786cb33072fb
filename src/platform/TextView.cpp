#include "platform/TextView.h"

using namespace Qt::StringLiterals;

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
    const bool hasCarriageReturns = original.contains(u"\r\n") && !edited.contains(u'\r');
    for (const QChar lineEnd : {QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)})
        edited.replace(lineEnd, hasCarriageReturns ? u"\r\n"_s : u"\n"_s);
    return edited;
}

void TextView::setTextColor(const Color &textColor)
{
    color = textColor;
    QPalette changed = palette();
    changed.setColor(QPalette::Text, QColor::fromRgbF(float(color.red), float(color.green), float(color.blue),
                                                      float(color.alpha)));
    setPalette(changed);
}
