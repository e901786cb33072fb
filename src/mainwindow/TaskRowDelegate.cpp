#include "mainwindow/TaskRowDelegate.h"

#include <QPainter>

void TaskRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    painter->save();
    painter->setPen(option.palette.color(QPalette::Mid));
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
    painter->restore();
}

void TaskRowDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    // No column is wide enough for more, and laying out a text takes time in proportion to its length.
    constexpr qsizetype mostShown = 500;
    QStyledItemDelegate::initStyleOption(option, index);
    option->text.truncate(mostShown);
    option->text.replace(QChar::LineSeparator, u' ');
}
