#include "Steps.h"
#include "Tour.h"
#include "platform/Color.h"
#include "platform/Folders.h"
#include "support/Dialogs.h"

#include <QApplication>
#include <QHeaderView>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// The task's colour in the file, which is that of the light appearance.
Color storedColor(const ListRow &row)
{
    return {.red = row.field(ListRow::Red).toDouble(),
            .green = row.field(ListRow::Green).toDouble(),
            .blue = row.field(ListRow::Blue).toDouble(),
            .alpha = row.field(ListRow::Alpha).toDouble()};
}

/// What the row is painted with beside its texts.
QColor paintedColor(const Tour &tour, const QString &taskName)
{
    const QModelIndex cell = tour.cell(tour.rowOf(taskName), u"Task"_s);
    tour.table.scrollTo(cell);
    const QPoint corner = tour.table.visualRect(cell).topLeft() + QPoint(1, 1);
    return tour.table.viewport()->grab(QRect(corner, QSize(1, 1))).toImage().pixelColor(0, 0);
}

/// True when the two look the same on a screen of eight bits a component.
bool looksLike(const QColor &painted, const Color &color)
{
    const auto isNear = [](float a, double b) {
        return std::abs(double(a) - b) < 0.01;
    };
    return isNear(painted.redF(), color.red) && isNear(painted.greenF(), color.green) &&
           isNear(painted.blueF(), color.blue);
}

void checkColors(Tour &tour, bool dark)
{
    for (const QString &name : {u"Water the seedlings"_s, u"Ice on the steps: grit box empty"_s}) {
        const Color stored = storedColor(tour.expected.row(name));
        tour.stage.check(looksLike(paintedColor(tour, name), dark ? stored.inverted() : stored),
                         u"the painted colour of "_s + name);
    }
    const QColor behind = tour.table.palette().color(QPalette::Base);
    tour.stage.same(behind.lightness() < 128, dark, u"dark behind the rows"_s);
}

/// Every task in the file once, with all its fields and a key of its own.
void checkFile(Stage &stage, const ExpectedList &expected, const QList<ListRow> &rows)
{
    stage.same(rows.size(), expected.rows.size(), u"rows in the file"_s);
    QStringList keys;
    for (const ListRow &row : rows) {
        const QString key = row.field(ListRow::Key);
        stage.same(row.fields.size(), ListRow::fullRow, u"fields of "_s + row.field(ListRow::Name));
        stage.check(key.size() == 36 && !keys.contains(key), key + u" is a key of its own"_s);
        keys.append(key);
    }
    for (const ListRow &wanted : expected.rows) {
        const qsizetype known = wanted.fields.size(); // short rows are filled up when they are read
        const auto found = std::ranges::count_if(
            rows, [&](const ListRow &row) { return row.fields.first(known) == wanted.fields; });
        stage.same(found, 1, u"rows of "_s + wanted.fields.join(u'|'));
    }
}

} // namespace

void switchToDarkAndBack(Tour &tour)
{
    tour.stage.step(u"The desktop turns dark, and light again"_s);
    tour.showView(TaskView::GlobalAll);
    const QStringList before = tour.taskNames();
    tour.setDark(true, tour.table);
    checkColors(tour, true);
    tour.takePicture(u"dark"_s);

    tour.selectTask(before.first());
    tour.takePicture(u"dark-selected"_s);
    // Has the file written in the dark, which is looked at when the program has ended.
    hand::press(tour.table, Qt::Key_Down, Qt::AltModifier);
    hand::press(tour.table, Qt::Key_Up, Qt::AltModifier);
    tour.stage.same(tour.taskNames(), before, u"the order after moving down and up"_s);

    tour.setDark(false, tour.table);
    tour.stage.same(tour.taskNames(), before, u"the tasks in the light"_s);
    checkColors(tour, false);
    tour.takePicture(u"light-again"_s);
}

static const QString begunTask = u"Prune the quince"_s;

void closeWindow(Tour &tour)
{
    tour.stage.step(u"The window closes, the program ends, and the file holds it all"_s);
    tour.showView(TaskView::GlobalAll);
    const QStringList shown = tour.taskNames();
    tour.table.horizontalHeader()->resizeSection(tour.column(u"Task"_s), 300);
    tour.takePicture(u"before-closing"_s);
    hand::shortcut(tour.window, Qt::Key_N, Qt::ControlModifier);
    hand::typeInto(hand::openWindow(u"ViewControllerAdd"_s), begunTask);
    hand::shortcut(tour.window, Qt::Key_Q, Qt::ControlModifier);
    tour.stage.check(!tour.window.isVisible(), u"the window is closed"_s);
    tour.stage.same(QApplication::exec(), EXIT_SUCCESS, u"how the program ends"_s);

    const QList<ListRow> rows = ExpectedList::readRows(folders::documents() + u"/zandulist.txt"_s);
    QStringList written;
    for (const ListRow &row : rows)
        written.append(row.field(ListRow::Name));
    tour.stage.same(written, shown, u"the order in the file"_s);
    checkFile(tour.stage, tour.expected, rows);
}

void openAgain(Tour &tour)
{
    tour.stage.step(
        u"Opened again, the tasks, the columns and a task that was begun are as they were left"_s);
    tour.checkView(TaskView::All);
    tour.checkTaskButtons(false);
    const int column = tour.column(u"Task"_s);
    tour.stage.same(tour.table.columnWidth(column), 300, u"the width of a column"_s);
    tour.stage.same(tour.table.horizontalHeader()->sortIndicatorSection(), -1,
                    u"the column of the sort indicator, none since a task was moved by hand"_s);
    tour.takePicture(u"opened-again"_s);
    tour.showView(TaskView::GlobalAll);
    QStringList filed;
    for (const ListRow &row : ExpectedList::readRows(folders::documents() + u"/zandulist.txt"_s))
        filed.append(row.field(ListRow::Name));
    tour.stage.same(tour.taskNames(), filed, u"the order made by hand"_s);
    hand::shortcut(tour.window, Qt::Key_N, Qt::ControlModifier);
    QDialog &form = hand::openWindow(u"ViewControllerAdd"_s);
    tour.stage.check(toldIn(form).contains(begunTask), u"the task that was begun is on offer"_s);
    choose(form, u"Discard"_s);
    hand::shortcut(form, Qt::Key_Escape, {});
}
