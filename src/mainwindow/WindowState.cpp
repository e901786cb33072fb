#include "mainwindow/WindowState.h"

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

void WindowState::restore(QMainWindow &window, QHeaderView &header) const
{
    constexpr int narrowest = 20;
    constexpr int widest = 10'000; // pixels
    windowSize::restore(window, file);
    for (int column = 0; column < header.count(); ++column)
        if (const auto kept = number(file, widthKeyOf(column), narrowest, widest))
            header.resizeSection(column, *kept);
    if (const auto column = number(file, sortColumnKey, 0, header.count() - 1))
        header.setSortIndicator(*column,
                                number(file, descendingKey, 1, 1) ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void WindowState::save(const QMainWindow &window, const QHeaderView &header)
{
    windowSize::Values values = windowSize::valuesOf(window);
    for (int column = 0; column < header.count(); ++column)
        values.append({widthKeyOf(column), QString::number(header.sectionSize(column))});
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
