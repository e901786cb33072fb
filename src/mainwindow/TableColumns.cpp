#include "mainwindow/TableColumns.h"

#include "model/TaskColumn.h"

#include <QEvent>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QTableView>

#include <algorithm>
#include <array>

namespace {

constexpr std::array roomy{TaskColumn::Name, TaskColumn::Client, TaskColumn::Description};
constexpr int widthStep = 20; // pixels

} // namespace

TableColumns::TableColumns(QTableView &table)
    : QObject(&table)
    , view(table)
    , chosen(taskColumns().size(), 0)
{
    QHeaderView &titles = header();
    titles.setSectionsMovable(true);
    titles.setContextMenuPolicy(Qt::CustomContextMenu);
    reset();
    connect(&titles, &QHeaderView::sectionResized, this, [this](int column, int, int size) {
        if (!isLayingOut && size > 0)
            setWidth(column, size);
    });
    connect(&titles, &QWidget::customContextMenuRequested, this, [this](const QPoint &place) {
        QMenu menu;
        clicked = header().logicalIndexAt(place);
        fill(menu);
        menu.exec(header().viewport()->mapToGlobal(place));
        clicked = -1;
    });
    view.viewport()->installEventFilter(this);
}

QHeaderView &TableColumns::header() const
{
    return *view.horizontalHeader();
}

void TableColumns::setWidth(int column, int width)
{
    chosen[column] = width;
    layOut();
}

void TableColumns::reset()
{
    for (const TaskColumnInfo &info : taskColumns()) {
        const int column = int(info.column);
        chosen[column] = info.width;
        header().moveSection(header().visualIndex(column), column);
        header().setSectionHidden(column, info.column == TaskColumn::Key);
    }
    layOut();
}

void TableColumns::layOut()
{
    const QScopedValueRollback laying(isLayingOut, true);
    QList<int> widths = chosen;
    QList<int> takers;
    for (const TaskColumn column : roomy)
        if (!header().isSectionHidden(int(column)) && chosen[int(column)] == infoOf(column).width)
            takers.append(int(column));
    int spare = view.viewport()->width();
    for (int column = 0; column < widths.size(); ++column)
        spare -= header().isSectionHidden(column) ? 0 : widths[column];
    int sharers = int(takers.size());
    for (const int column : std::as_const(takers)) {
        const int share = std::max(spare, 0) / sharers--;
        widths[column] += share;
        spare -= share;
    }
    for (int column = 0; column < widths.size(); ++column)
        if (!header().isSectionHidden(column))
            header().resizeSection(column, widths[column]);
}

bool TableColumns::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        layOut();
    return false;
}

bool TableColumns::mayHide(int column) const
{
    return header().isSectionHidden(column) || header().count() - header().hiddenSectionCount() > 1;
}

void TableColumns::setHidden(int column, bool isHidden)
{
    {
        const QScopedValueRollback laying(isLayingOut, true); // the width is the user's as before
        header().setSectionHidden(column, isHidden);
    }
    layOut();
}

/// Moves the column past the next one that is shown.
void TableColumns::move(int column, int step)
{
    int place = header().visualIndex(column) + step;
    while (place >= 0 && place < header().count() && header().isSectionHidden(header().logicalIndex(place)))
        place += step;
    if (place >= 0 && place < header().count())
        header().moveSection(header().visualIndex(column), place);
}

void TableColumns::widen(int column, int pixels)
{
    header().resizeSection(column, std::max(header().sectionSize(column) + pixels, widthStep));
}

void TableColumns::fill(QMenu &menu)
{
    const int current = clicked >= 0 ? clicked : view.currentIndex().column();
    if (current >= 0)
        addCommands(menu, current);
    menu.addAction(tr("Fit &All"), this, [this] {
        for (int column = 0; column < header().count(); ++column)
            if (!header().isSectionHidden(column))
                view.resizeColumnToContents(column);
    });
    menu.addSeparator();
    addVisibility(menu);
    menu.addSeparator();
    menu.addAction(tr("&As at First"), this, &TableColumns::reset);
}

void TableColumns::addCommands(QMenu &menu, int column)
{
    const QString &title = taskColumns()[column].title;
    menu.addAction(tr("&Sort by %1").arg(title), this,
                   [this, column] { header().setSortIndicator(column, Qt::AscendingOrder); });
    menu.addAction(tr("Sort by %1, &Last First").arg(title), this,
                   [this, column] { header().setSortIndicator(column, Qt::DescendingOrder); });
    menu.addSeparator();
    menu.addAction(tr("&Fit %1").arg(title), this, [this, column] { view.resizeColumnToContents(column); });
    menu.addAction(tr("&Wider"), this, [this, column] { widen(column, widthStep); });
    menu.addAction(tr("&Narrower"), this, [this, column] { widen(column, -widthStep); });
    menu.addAction(tr("Move &Towards the Start"), this, [this, column] { move(column, -1); });
    menu.addAction(tr("Move Towards the &End"), this, [this, column] { move(column, 1); });
    menu.addAction(tr("&Hide %1").arg(title), this, [this, column] { setHidden(column, true); })
        ->setEnabled(mayHide(column));
    menu.addSeparator();
}

void TableColumns::addVisibility(QMenu &menu)
{
    for (const TaskColumnInfo &info : taskColumns()) {
        const int column = int(info.column);
        QAction *action = menu.addAction(info.title);
        action->setCheckable(true);
        action->setChecked(!header().isSectionHidden(column));
        action->setEnabled(mayHide(column));
        connect(action, &QAction::toggled, this, [this, column](bool isOn) { setHidden(column, !isOn); });
    }
}
