#pragma once

#include <QStyledItemDelegate>

/// Paints the cells of the task table: the row's colour, one line of text and a vertical grid line at the
/// right.
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
};
