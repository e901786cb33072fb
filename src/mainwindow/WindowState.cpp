#include "mainwindow/WindowState.h"

#include "platform/Diagnostics.h"

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

using Values = QList<std::pair<QString, QString>>;

Values orderOf(const QHeaderView &header)
{
    const bool isDescending = header.sortIndicatorOrder() == Qt::DescendingOrder;
    return {{sortColumnKey, QString::number(header.sortIndicatorSection())},
            {descendingKey, QString::number(int(isDescending))}};
}

} // namespace

WindowState::WindowState(const QString &stateFolder)
    : file(stateFolder + u"/window.ini"_s)
{
}

bool WindowState::isOrderedByHand() const
{
    return number(sortColumnKey, -1, -1).has_value();
}

void WindowState::restore(QMainWindow &window, QHeaderView &header) const
{
    constexpr int narrowest = 20;
    constexpr int widest = 10'000; // pixels
    const auto width = number(widthKey, window.minimumWidth(), widest);
    const auto height = number(heightKey, window.minimumHeight(), widest);
    window.resize(width.value_or(window.width()), height.value_or(window.height()));
    if (number(maximizedKey, 1, 1))
        window.setWindowState(Qt::WindowMaximized);
    for (int column = 0; column < header.count(); ++column)
        if (const auto kept = number(widthKeyOf(column), narrowest, widest))
            header.resizeSection(column, *kept);
    if (const auto column = number(sortColumnKey, 0, header.count() - 1))
        header.setSortIndicator(*column,
                                number(descendingKey, 1, 1) ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void WindowState::save(const QMainWindow &window, const QHeaderView &header)
{
    const QSize size = window.isMaximized() ? window.normalGeometry().size() : window.size();
    Values values{{widthKey, QString::number(size.width())},
                  {heightKey, QString::number(size.height())},
                  {maximizedKey, QString::number(int(window.isMaximized()))}};
    for (int column = 0; column < header.count(); ++column)
        values.append({widthKeyOf(column), QString::number(header.sectionSize(column))});
    store(values + orderOf(header));
}

void WindowState::saveOrder(const QHeaderView &header)
{
    store(orderOf(header));
}

/// The number under the key; nothing when there is none within these limits.
std::optional<int> WindowState::number(const QString &key, int least, int most) const
{
    bool isNumber = false;
    const int value = file.text(key).value_or(QString()).toInt(&isNumber);
    return isNumber && value >= least && value <= most ? std::optional(value) : std::nullopt;
}

void WindowState::store(const Values &values)
{
    if (!file.store(values))
        diagnostics::line("Window state not kept");
}
