#include "mainwindow/WindowState.h"

#include "mainwindow/TableColumns.h"
#include "platform/Diagnostics.h"
#include "widgets/WindowSize.h"

#include <QHeaderView>
#include <QMainWindow>

using namespace Qt::StringLiterals;
using windowSize::number;

namespace {

const QString sortColumnKey = u"sortColumn"_s; // −1 for an order of the user's own
const QString descendingKey = u"descending"_s;

QString widthKeyOf(int column)
{
    return u"column%1"_s.arg(column);
}

QString placeKeyOf(int column)
{
    return u"place%1"_s.arg(column);
}

QString hiddenKeyOf(int column)
{
    return u"hidden%1"_s.arg(column);
}

windowSize::Values orderOf(const QHeaderView &header)
{
    const bool isDescending = header.sortIndicatorOrder() == Qt::DescendingOrder;
    return {{sortColumnKey, QString::number(header.sortIndicatorSection())},
            {descendingKey, QString::number(int(isDescending))}};
}

} // namespace

WindowState::WindowState(const QString &stateFolder)
    : file(windowSize::path(stateFolder))
{
}

bool WindowState::isOrderedByHand() const
{
    return number(file, sortColumnKey, -1, -1).has_value();
}

void WindowState::restore(QMainWindow &window, TableColumns &columns) const
{
    windowSize::restore(window, file);
    restoreColumns(columns);
    QHeaderView &header = columns.header();
    if (const auto column = number(file, sortColumnKey, 0, header.count() - 1))
        header.setSortIndicator(*column,
                                number(file, descendingKey, 1, 1) ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void WindowState::restoreColumns(TableColumns &columns) const
{
    constexpr int narrowest = 20;
    constexpr int widest = 10'000; // pixels
    QHeaderView &header = columns.header();
    for (int column = 0; column < header.count(); ++column)
        if (const auto kept = number(file, widthKeyOf(column), narrowest, widest)) {
            columns.setWidth(column, *kept);
            // All were shown before there was a choice; one of them always is.
            const bool isHidden = number(file, hiddenKeyOf(column), 1, 1).has_value();
            header.setSectionHidden(column, isHidden && header.hiddenSectionCount() + 1 < header.count());
        }
    for (int place = 0; place < header.count(); ++place)
        for (int column = 0; column < header.count(); ++column)
            if (number(file, placeKeyOf(column), place, place))
                header.moveSection(header.visualIndex(column), place);
    columns.layOut();
}

void WindowState::save(const QMainWindow &window, const TableColumns &columns)
{
    windowSize::Values values = windowSize::valuesOf(window);
    const QHeaderView &header = columns.header();
    for (int column = 0; column < header.count(); ++column) {
        values.append({widthKeyOf(column), QString::number(columns.width(column))});
        values.append({placeKeyOf(column), QString::number(header.visualIndex(column))});
        values.append({hiddenKeyOf(column), QString::number(int(header.isSectionHidden(column)))});
    }
    store(values);
}

void WindowState::saveOrder(const QHeaderView &header)
{
    store(orderOf(header));
}

void WindowState::store(const QList<std::pair<QString, QString>> &values)
{
    if (!file.store(values))
        diagnostics::line("Window state not kept");
}
