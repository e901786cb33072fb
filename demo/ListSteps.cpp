#include "Steps.h"
#include "Tour.h"

#include <QComboBox>
#include <QHeaderView>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

void openWindow(Tour &tour)
{
    tour.stage.step(u"The main window opens with the tasks that are not hidden"_s);
    tour.checkView(TaskView::All);
    tour.checkTaskButtons(false);
    tour.stage.same(tour.text(u"Quote for the terrace of Café Sonnenhof"_s, u"Description"_s),
                    u"Three variants:...", u"a description of several lines"_s);
    tour.takePicture(u"main-window"_s);
}

void pickEveryView(Tour &tour)
{
    tour.stage.step(u"Every view, by the chooser, by the menu and by the keyboard"_s);
    auto &chooser = hand::child<QComboBox>(tour.window, u"viewSelection"_s);
    hand::press(chooser, Qt::Key_End);
    for (int view = chooser.count() - 1; view >= 0; --view) {
        tour.checkView(TaskView(view));
        hand::press(chooser, Qt::Key_Up);
    }
    for (int view = chooser.count() - 1; view >= 0; --view) {
        hand::choose(tour.window, u"View"_s, chooser.itemText(view));
        tour.checkView(TaskView(view));
    }
    for (int view = 0; view < chooser.count(); ++view) {
        tour.showView(TaskView(view));
        tour.checkView(TaskView(view));
        if (TaskView(view) == TaskView::Hidden || TaskView(view) == TaskView::GlobalAll ||
            TaskView(view) == TaskView::DueToday)
            tour.takePicture(u"view-"_s + chooser.currentText().toLower().replace(u' ', u'-'));
    }
    QMenu &menu = hand::openMenu(tour.window, u"View"_s);
    tour.stage.picture(menu, u"view-menu"_s);
    hand::choose(menu, u"All"_s);
}

static void typeSearch(Tour &tour, const QString &text)
{
    hand::shortcut(tour.window, Qt::Key_F, Qt::ControlModifier);
    QString typed;
    for (const QChar character : text) {
        hand::type(tour.searchField, character);
        typed += character;
        tour.stage.same(tour.searchField.text(), typed, u"the text in the search field"_s);
        QStringList found = tour.taskNames();
        found.sort();
        tour.stage.same(found, tour.expected.namesHolding(typed, TaskView::All),
                        u"tasks that hold "_s + typed);
    }
    tour.stage.check(!tour.taskNames().isEmpty(), typed + u" is found"_s);
}

void search(Tour &tour)
{
    tour.stage.step(u"Search, letter by letter, and back to the whole list"_s);
    typeSearch(tour, u"pond"_s);
    auto &clearButton = hand::child<QToolButton>(tour.searchField);
    const auto waitForOpacity = [&clearButton](qreal opacity) {
        hand::waitFor([&] { return clearButton.property("opacity").toReal() == opacity; },
                      u"the clear button does not fade"_s);
    };
    waitForOpacity(1);
    tour.takePicture(u"search-pond"_s);
    hand::click(clearButton);
    waitForOpacity(0);
    tour.checkView(TaskView::All);

    typeSearch(tour, u"jörg"_s);
    hand::press(tour.searchField, Qt::Key_A, Qt::ControlModifier);
    hand::press(tour.searchField, Qt::Key_Delete);
    tour.checkView(TaskView::All);
}

void sortByName(Tour &tour)
{
    tour.stage.step(u"Sort by name, up and down, by a click on the header"_s);
    const int column = tour.column(u"Task"_s);
    hand::clickHeader(tour.table, column);
    tour.stage.check(std::ranges::is_sorted(tour.taskNames()), u"the names ascend"_s);
    tour.stage.same(tour.table.horizontalHeader()->sortIndicatorSection(), column,
                    u"the column of the sort indicator"_s);
    tour.takePicture(u"sorted-ascending"_s);

    hand::clickHeader(tour.table, column);
    tour.stage.check(std::ranges::is_sorted(tour.taskNames(), std::greater()), u"the names descend"_s);
    tour.takePicture(u"sorted-descending"_s);
    tour.checkView(TaskView::All);
}

void selectTask(Tour &tour)
{
    tour.stage.step(u"A selected task can be worked on"_s);
    tour.checkTaskButtons(false);
    const QString name = u"Repair the dry-stone wall"_s;
    tour.selectTask(name);
    tour.stage.same(tour.selectedRow(), tour.rowOf(name), u"the selected row"_s);
    tour.checkTaskButtons(true);
    tour.takePicture(u"task-selected"_s);
}
