#pragma once

#include <QStyledItemDelegate>

/// What stands before a cell's text: a shape in the text's colour, which rests on no colour of its own.
enum class CellMark { None, Dot, Warning };

/// Under which a model gives a cell's mark, as a number.
constexpr int cellMarkRole = Qt::UserRole;

/// Paints the cells of the task table: the row's colour, one line of text and a vertical grid line at the
/// right. A text that does not fit is told in whole by a tool tip.
///
/// The style's own item painting lays every text out several times over; a table full of text is painted at
/// every letter of a search.
class TaskRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;
};
