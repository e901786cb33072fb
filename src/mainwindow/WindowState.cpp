#include "mainwindow/WindowState.h"

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

} // namespace

WindowState::WindowState(const QString &stateFolder)
    : settings(windowSize::path(stateFolder), QSettings::IniFormat)
{
}

bool WindowState::isOrderedByHand() const
{
    return number(settings, sortColumnKey, -1, -1).has_value();
}

void WindowState::restore(QMainWindow &window, QHeaderView &header) const
{
    constexpr int narrowest = 20;
    constexpr int widest = 10'000; // pixels
    windowSize::restore(window, settings);
    for (int column = 0; column < header.count(); ++column)
        if (const auto kept = number(settings, widthKeyOf(column), narrowest, widest))
            header.resizeSection(column, *kept);
    if (const auto column = number(settings, sortColumnKey, 0, header.count() - 1))
        header.setSortIndicator(*column, number(settings, descendingKey, 1, 1) ? Qt::DescendingOrder
                                                                               : Qt::AscendingOrder);
}

void WindowState::save(const QMainWindow &window, const QHeaderView &header)
{
    windowSize::save(window, settings);
    for (int column = 0; column < header.count(); ++column)
        settings.setValue(widthKeyOf(column), header.sectionSize(column));
    saveOrder(header);
}

void WindowState::saveOrder(const QHeaderView &header)
{
    settings.setValue(sortColumnKey, header.sortIndicatorSection());
    settings.setValue(descendingKey, int(header.sortIndicatorOrder() == Qt::DescendingOrder));
}
