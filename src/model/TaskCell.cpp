#include "model/TaskCell.h"

#include "model/task.h"

#include <QColor>
#include <QGuiApplication>
#include <QPalette>
#include <QTextDocument>

QVariant taskCell(const task &entry, TaskColumn column, const Color &color, int role)
{
    constexpr qsizetype mostInToolTip = 1000;
    switch (role) {
    case Qt::DisplayRole:
        return infoOf(column).cellText(entry);
    case Qt::BackgroundRole:
        return painted(color);
    case Qt::ForegroundRole:
        return readableTextColor(painted(color), QGuiApplication::palette().color(QPalette::Base));
    case Qt::ToolTipRole:
        if (column == TaskColumn::Description)
            return Qt::convertFromPlainText(entry.desc.left(mostInToolTip));
        return {};
    default:
        return {};
    }
}
