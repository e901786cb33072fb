#include "widgets/TaskRowDelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

namespace {

constexpr int margin = 4; // pixels at either side of a cell's text

/// Paints the mark as high as a capital letter; how much room it takes, in pixels.
int paintMark(QPainter &painter, CellMark mark, const QPoint &start, const QFontMetrics &metrics)
{
    if (mark == CellMark::None)
        return 0;
    const qreal size = metrics.capHeight();
    const QRectF place(start.x(), start.y() - size, size, size);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(painter.pen().color());
    if (mark == CellMark::Dot)
        painter.drawEllipse(place.adjusted(1, 1, -1, -1));
    else
        painter.drawPolygon(
            QPolygonF{{place.bottomLeft(), place.bottomRight(), {place.center().x(), place.top()}}});
    painter.restore();
    return int(size) + margin;
}

/// How wide the cell has to be for the whole of its text.
int wholeWidth(const QModelIndex &index, const QFontMetrics &metrics)
{
    const bool isMarked = index.data(cellMarkRole).toInt() != int(CellMark::None);
    const int text = metrics.horizontalAdvance(index.data(Qt::DisplayRole).toString());
    return text + 2 * margin + (isMarked ? metrics.capHeight() + margin : 0);
}

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
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QColor background = isSelected ? option.palette.color(QPalette::Highlight)
                                         : index.data(Qt::BackgroundRole).value<QColor>();
    const QColor foreground = isSelected ? option.palette.color(QPalette::HighlightedText)
                                         : index.data(Qt::ForegroundRole).value<QColor>();
    const QVariant ownFont = index.data(Qt::FontRole);
    const QFont font = ownFont.isValid() ? ownFont.value<QFont>().resolve(option.font) : option.font;
    const QFontMetrics metrics = ownFont.isValid() ? QFontMetrics(font) : option.fontMetrics;
    const int baseline = option.rect.center().y() + (metrics.ascent() - metrics.descent()) / 2 + 1;

    painter->fillRect(option.rect, background);
    painter->setPen(foreground);
    painter->setFont(font);
    const QRect room = option.rect.adjusted(margin, 0, -margin, 0);
    const int taken =
        paintMark(*painter, CellMark(index.data(cellMarkRole).toInt()), {room.left(), baseline}, metrics);
    painter->drawText(room.left() + taken, baseline,
                      oneLine(index.data(Qt::DisplayRole).toString(), metrics, room.width() - taken));
    if (option.state.testFlag(QStyle::State_HasFocus))
        painter->drawRect(option.rect.adjusted(0, 0, -2, -1));
    painter->setPen(option.palette.color(QPalette::Mid));
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
}

QSize TaskRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return {wholeWidth(index, option.fontMetrics), option.fontMetrics.height() + 2 * margin};
}

bool TaskRowDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                                const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const QString text = index.data(Qt::DisplayRole).toString();
    const bool isWhole = wholeWidth(index, option.fontMetrics) <= option.rect.width();
    if (event->type() != QEvent::ToolTip || isWhole || index.data(Qt::ToolTipRole).isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    constexpr qsizetype most = 1000;
    QToolTip::showText(event->globalPos(), Qt::convertFromPlainText(text.left(most)), view->viewport());
    return true;
}
