#include "mainwindow/TaskTable.h"

#include "model/TaskManager.h"
#include "platform/Diagnostics.h"

#include <QGuiApplication>
#include <QPalette>
#include <QTextDocument>

#include <cmath>

namespace {

constexpr qsizetype mostInToolTip = 1000;

/// Relative luminance, 0…1 (WCAG 2.1).
double luminance(double red, double green, double blue)
{
    const auto linear = [](double component) {
        return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}

} // namespace

TaskTable::TaskTable(TaskManager &taskManager, QObject *parent)
    : QAbstractTableModel(parent)
    , manager(taskManager)
{
}

void TaskTable::reloadData(int view)
{
    beginResetModel();
    numberOfRows(view);
    endResetModel();
}

void TaskTable::numberOfRows(int view)
{
    diagnostics::line("Index of Selected:", view);
    manager.buildTasksInView(view);
    diagnostics::line("Number of Rows:", manager.tasksInView().size());
}

int TaskTable::rowOfKey(const QString &key) const
{
    int row = rowCount() - 1;
    while (row >= 0 && manager.tasksInView()[row]->key != key)
        --row;
    return row;
}

int TaskTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(manager.tasksInView().size());
}

int TaskTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(taskColumns().size());
}

QString TaskTable::cellText(qsizetype row, TaskColumn column) const
{
    return infoOf(column).cellText(*manager.tasksInView()[row]);
}

QVariant TaskTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return cellText(index.row(), TaskColumn(index.column()));
    case Qt::BackgroundRole:
        if (index.column() == 0)
            diagnostics::line("Row:", index.row());
        return painted(manager.tasksInView()[index.row()]->color);
    case Qt::ForegroundRole:
        return readableTextColor(painted(manager.tasksInView()[index.row()]->color),
                                 QGuiApplication::palette().color(QPalette::Base));
    case Qt::ToolTipRole:
        if (TaskColumn(index.column()) == TaskColumn::Description)
            return Qt::convertFromPlainText(manager.tasksInView()[index.row()]->desc.left(mostInToolTip));
        return {};
    default:
        return {};
    }
}

QVariant TaskTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < columnCount())
        return taskColumns()[section].title;
    return {};
}

QColor readableTextColor(const QColor &color, const QColor &behind)
{
    // On this luminance black and white are equally far away.
    constexpr double middle = 0.179;
    const double alpha = double(color.alphaF());
    const auto shown = [alpha](float over, float under) {
        return alpha * double(over) + (1 - alpha) * double(under);
    };
    const double shownLuminance =
        luminance(shown(color.redF(), behind.redF()), shown(color.greenF(), behind.greenF()),
                  shown(color.blueF(), behind.blueF()));
    return shownLuminance > middle ? Qt::black : Qt::white;
}
