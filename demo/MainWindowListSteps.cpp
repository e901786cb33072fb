#include "MainWindowListSteps.h"

#include "ExpectedList.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Stage.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {
constexpr std::array views = {TaskView::All,       TaskView::Open,       TaskView::Closed,
                              TaskView::Hidden,    TaskView::HiddenOpen, TaskView::HiddenClosed,
                              TaskView::GlobalAll, TaskView::GlobalOpen, TaskView::GlobalClosed,
                              TaskView::DueToday};
}

MainWindowListSteps::MainWindowListSteps(Stage &tourStage, const MainWindowHandle &mainWindow,
                                         const ExpectedList &expectedList)
    : stage(tourStage)
    , main(mainWindow)
    , expected(expectedList)
{
}

void MainWindowListSteps::openWindow()
{
    stage.step(u"The main window opens with the tasks that are not hidden"_s);
    hand::activate(main.window);
    main.checkView(stage, expected, TaskView::All);
    main.checkTaskButtons(stage, false);
    stage.same(main.text(main.rowOf(u"Quote for the terrace of Café Sonnenhof"_s), u"Description"_s),
               u"Three variants:...", u"a description of several lines"_s);
    stage.picture(main.window, u"main-window"_s);
}

void MainWindowListSteps::pickEveryView()
{
    stage.step(u"Every view, by the chooser, by the keyboard and by the menu"_s);
    hand::press(main.viewChooser, Qt::Key_End);
    for (auto view = views.rbegin(); view != views.rend(); ++view) {
        main.checkView(stage, expected, *view);
        hand::press(main.viewChooser, Qt::Key_Up);
    }
    for (const TaskView view : views) {
        main.showView(view);
        main.checkView(stage, expected, view);
        if (view == TaskView::Hidden || view == TaskView::GlobalAll || view == TaskView::DueToday)
            stage.picture(main.window,
                          u"view-"_s + main.viewChooser.currentText().toLower().replace(u' ', u'-'));
    }
    QMenu &menu = hand::openMenu(main.window, u"View"_s);
    stage.picture(menu, u"view-menu"_s);
    hand::choose(menu, u"All"_s);
    main.checkView(stage, expected, TaskView::All);
}

void MainWindowListSteps::typeSearch(const char16_t *text)
{
    hand::shortcut(main.window, Qt::Key_F, Qt::ControlModifier);
    QString typed;
    for (const QChar character : QStringView(text)) {
        hand::type(main.searchField, character);
        typed += character;
        stage.same(main.searchField.text(), typed, u"the text in the search field"_s);
        QStringList found = main.taskNames();
        found.sort();
        stage.same(found, expected.namesHolding(typed, TaskView::All), u"tasks that hold "_s + typed);
    }
    stage.check(main.table.model()->rowCount() > 0, typed + u" is found"_s);
}

void MainWindowListSteps::search()
{
    stage.step(u"Search, letter by letter, and back to the whole list"_s);
    typeSearch(u"pond");
    auto &clearButton = hand::child<QToolButton>(main.searchField);
    const auto opacity = [&clearButton] {
        return clearButton.property("opacity").toReal();
    };
    stage.check(QTest::qWaitFor([&] { return opacity() == 1; }), u"the clear button fades in"_s);
    stage.picture(main.window, u"search-pond"_s);
    hand::click(clearButton);
    stage.check(QTest::qWaitFor([&] { return opacity() == 0; }), u"the clear button fades out"_s);
    stage.same(main.searchField.text(), QString(), u"the cleared search field"_s);
    main.checkView(stage, expected, TaskView::All);

    typeSearch(u"jörg");
    hand::press(main.searchField, Qt::Key_A, Qt::ControlModifier);
    hand::press(main.searchField, Qt::Key_Delete);
    stage.same(main.searchField.text(), QString(), u"the emptied search field"_s);
    main.checkView(stage, expected, TaskView::All);
}

void MainWindowListSteps::sortByName()
{
    stage.step(u"Sort by name, up and down, by a click on the header"_s);
    const int column = main.column(u"Task"_s);
    hand::clickHeader(main.table, column);
    stage.check(std::ranges::is_sorted(main.taskNames()), u"the names ascend"_s);
    stage.same(main.table.horizontalHeader()->sortIndicatorSection(), column,
               u"the column of the sort indicator"_s);
    stage.picture(main.window, u"sorted-ascending"_s);

    hand::clickHeader(main.table, column);
    stage.check(std::ranges::is_sorted(main.taskNames(), std::greater()), u"the names descend"_s);
    stage.picture(main.window, u"sorted-descending"_s);
    main.checkView(stage, expected, TaskView::All);
}

void MainWindowListSteps::selectTask()
{
    stage.step(u"A selected task can be worked on"_s);
    main.checkTaskButtons(stage, false);
    const QString name = u"Repair the dry-stone wall"_s;
    main.selectTask(name);
    stage.same(main.selectedRow(), main.rowOf(name), u"the selected row"_s);
    main.checkTaskButtons(stage, true);
    stage.check(main.upperButton.isEnabled() && main.downerButton.isEnabled(), u"the task can be moved"_s);
    stage.picture(main.window, u"task-selected"_s);
}
