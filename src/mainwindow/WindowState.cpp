#include "mainwindow/WindowState.h"

#include <QHeaderView>
#include <QMainWindow>

using namespace Qt::StringLiterals;

namespace {

const QString widthKey = u"width"_s;
const QString heightKey = u"height"_s;
const QString maximizedKey = u"maximized"_s;
const QString sortColumnKey = u"sortColumn"_s; // −1 for an order of the user's own
const QString descendingKey = u"descending"_s;

QString widthKeyOf(int column)
{
    return u"column%1"_s.arg(column);
}

/// The number under the key; nothing when there is none within these limits.
std::optional<int> number(const QSettings &settings, const QString &key, int least, int most)
{
    bool isNumber = false;
    const int value = settings.value(key).toString().toInt(&isNumber);
    return isNumber && value >= least && value <= most ? std::optional(value) : std::nullopt;
}

} // namespace

WindowState::WindowState(const QString &stateFolder)
    : settings(stateFolder + u"/window.ini"_s, QSettings::IniFormat)
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
    const auto width = number(settings, widthKey, window.minimumWidth(), widest);
    const auto height = number(settings, heightKey, window.minimumHeight(), widest);
    window.resize(width.value_or(window.width()), height.value_or(window.height()));
    if (number(settings, maximizedKey, 1, 1))
        window.setWindowState(Qt::WindowMaximized);
    for (int column = 0; column < header.count(); ++column)
        if (const auto kept = number(settings, widthKeyOf(column), narrowest, widest))
            header.resizeSection(column, *kept);
    if (const auto column = number(settings, sortColumnKey, 0, header.count() - 1))
        header.setSortIndicator(*column, number(settings, descendingKey, 1, 1) ? Qt::DescendingOrder
                                                                               : Qt::AscendingOrder);
}

void WindowState::save(const QMainWindow &window, const QHeaderView &header)
{
    const QSize size = window.isMaximized() ? window.normalGeometry().size() : window.size();
    settings.setValue(widthKey, size.width());
    settings.setValue(heightKey, size.height());
    settings.setValue(maximizedKey, int(window.isMaximized()));
    for (int column = 0; column < header.count(); ++column)
        settings.setValue(widthKeyOf(column), header.sectionSize(column));
    saveOrder(header);
}

void WindowState::saveOrder(const QHeaderView &header)
{
    settings.setValue(sortColumnKey, header.sortIndicatorSection());
    settings.setValue(descendingKey, int(header.sortIndicatorOrder() == Qt::DescendingOrder));
}
