#include "widgets/TextView.h"

#include <algorithm>

using namespace Qt::StringLiterals;

void TextView::setText(const QString &text)
{
    original = text;
    const qsizetype carriageReturns = text.count(u"\r\n");
    hasCarriageReturns = carriageReturns > 0 && carriageReturns == text.count(u'\n');
    setPlainText(text);
}

QString TextView::text() const
{
    // The document's own line ends and blanks are not the text's, so an untouched one is not read back.
    if (!document()->isModified())
        return original;
    QString edited = document()->toRawText();
    const auto lineFeed = [](QChar unit) {
        return unit == QChar::ParagraphSeparator || unit == QChar::LineSeparator ? QChar(u'\n') : unit;
    };
    std::ranges::transform(edited, edited.begin(), lineFeed); // faster than to search and replace
    return hasCarriageReturns ? edited.replace(u"\n"_s, u"\r\n"_s) : edited;
}

void TextView::setTextColor(const Color &textColor)
{
    color = textColor;
    QPalette changed = palette();
    changed.setColor(QPalette::Text, painted(color));
    setPalette(changed);
}
