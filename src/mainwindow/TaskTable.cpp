#include "mainwindow/TaskTable.h"

#include "app/UIUtil.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"

#include <QGuiApplication>
#include <QLocale>
#include <QPalette>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace {

constexpr qsizetype mostInToolTip = 1000;

QString shortDate(Instant instant)
{
    return QLocale().toString(Calendar::localTime(instant).date(), QLocale::ShortFormat);
}

QString timeText(qint64 hour, qint64 minute)
{
    return QString::asprintf("%02lld:%02lld", qlonglong{hour}, qlonglong{minute});
}

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
    diagnostics::line("Number of Rows:", manager.tasksInView.size());
}

int TaskTable::rowOfKey(const QString &key) const
{
    int row = rowCount() - 1;
    while (row >= 0 && manager.tasksInView[row]->key != key)
        --row;
    return row;
}

int TaskTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(manager.tasksInView.size());
}

int TaskTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(taskColumns().size());
}

QString TaskTable::cellText(qsizetype row, TaskColumn column) const
{
    const task &entry = *manager.tasksInView[row];
    switch (column) {
    case TaskColumn::Date:
        return shortDate(entry.date);
    case TaskColumn::StartTime: {
        const QString text = timeText(entry.startHour, entry.startMin);
        diagnostics::line("Start Time", text);
        return text;
    }
    case TaskColumn::EndTime: {
        const QString text = timeText(entry.endHour, entry.endMin);
        diagnostics::line("End Time", text);
        return text;
    }
    case TaskColumn::Name:
        return entry.name;
    case TaskColumn::Client:
        return entry.client;
    case TaskColumn::TeamMember:
        return entry.teamMember;
    case TaskColumn::Description:
        return util().truncateAtLineBreak(entry.desc);
    case TaskColumn::Status:
        return entry.statusName;
    case TaskColumn::Priority:
        return entry.priorityName;
    case TaskColumn::Due:
        return shortDate(entry.due);
    case TaskColumn::Key:
        return entry.key;
    }
    return {};
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
        return rowColor(index.row());
    case Qt::ForegroundRole:
        return readableTextColor(rowColor(index.row()), QGuiApplication::palette().color(QPalette::Base));
    case Qt::ToolTipRole:
        if (TaskColumn(index.column()) == TaskColumn::Description)
            return Qt::convertFromPlainText(manager.tasksInView[index.row()]->desc.left(mostInToolTip));
        return {};
    default:
        return {};
    }
}

QVariant TaskTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < columnCount())
        return taskColumns()[size_t(section)].title;
    return {};
}

QColor TaskTable::rowColor(int row) const
{
    const Color &color = manager.tasksInView[row]->color;
    const auto component = [](double value) {
        return float(std::clamp(value, 0.0, 1.0));
    };
    return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                            component(color.alpha));
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
