#include "widgets/TaskRowDelegate.h"

#include <QPainter>

namespace {

/// The text as it fits on one line of that many pixels.
QString oneLine(QString text, const QFontMetrics &metrics, int width)
{
    // No column is wide enough for more, and laying out a text takes time in proportion to its length.
    constexpr qsizetype mostShown = 500;
    text.truncate(mostShown);
    for (QChar &unit : text)
        if (unit == u'\n' || unit == u'\r' || unit == u'\t')
            unit = u' ';
    return metrics.horizontalAdvance(text) <= width ? text : metrics.elidedText(text, Qt::ElideRight, width);
}

} // namespace

void TaskRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const
{
    constexpr int margin = 4;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QColor background = isSelected ? option.palette.color(QPalette::Highlight)
                                         : index.data(Qt::BackgroundRole).value<QColor>();
    const QColor foreground = isSelected ? option.palette.color(QPalette::HighlightedText)
                                         : index.data(Qt::ForegroundRole).value<QColor>();
    const QVariant ownFont = index.data(Qt::FontRole);
    const QFont font = ownFont.isValid() ? ownFont.value<QFont>().resolve(option.font) : option.font;
    const QFontMetrics metrics = ownFont.isValid() ? QFontMetrics(font) : option.fontMetrics;
    const int width = option.rect.width() - 2 * margin;
    const int baseline = option.rect.center().y() + (metrics.ascent() - metrics.descent()) / 2 + 1;

    painter->fillRect(option.rect, background);
    painter->setPen(foreground);
    painter->setFont(font);
    painter->drawText(option.rect.left() + margin, baseline,
                      oneLine(index.data(Qt::DisplayRole).toString(), metrics, width));
    if (option.state.testFlag(QStyle::State_HasFocus))
        painter->drawRect(option.rect.adjusted(0, 0, -2, -1));
    painter->setPen(option.palette.color(QPalette::Mid));
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
}
