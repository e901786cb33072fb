#include "MainWindowAppearanceSteps.h"

#include "Desktop.h"
#include "ExpectedList.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Stage.h"
#include "model/TaskManager.h"

#include <QTableView>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

Color storedColor(const ListRow &row)
{
    return {.red = row.field(ListRow::Red).toDouble(),
            .green = row.field(ListRow::Green).toDouble(),
            .blue = row.field(ListRow::Blue).toDouble(),
            .alpha = row.field(ListRow::Alpha).toDouble()};
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

} // namespace

MainWindowAppearanceSteps::MainWindowAppearanceSteps(Stage &tourStage, const MainWindowHandle &mainWindow,
                                                     const ExpectedList &expectedList,
                                                     const QString &filePath, Desktop &userDesktop)
    : stage(tourStage)
    , main(mainWindow)
    , expected(expectedList)
    , taskListPath(filePath)
    , desktop(userDesktop)
{
}

void MainWindowAppearanceSteps::checkColors(bool dark)
{
    const TaskList &tasks = TaskManager::shared().tasks();
    stage.same(tasks.size(), expected.rows().size(), u"tasks held"_s);
    for (const SharedTask &held : tasks) {
        const Color stored = storedColor(expected.row(held->name));
        stage.check(held->color == (dark ? stored.inverted() : stored),
                    u"the held colour of "_s + held->name);
    }
    for (const QString &name : {u"Water the seedlings"_s, u"Ice on the steps: grit box empty"_s}) {
        const Color stored = storedColor(expected.row(name));
        stage.check(looksLike(main.paintedColor(main.rowOf(name)), dark ? stored.inverted() : stored),
                    u"the painted colour of "_s + name);
    }
    const QColor behind = main.table.palette().color(QPalette::Base);
    stage.same(behind.lightness() < 128, dark, u"dark behind the rows"_s);
}

void MainWindowAppearanceSteps::checkFile()
{
    constexpr qsizetype components = 4;
    for (const ListRow &row : ExpectedList::readRows(taskListPath)) {
        const QString name = row.field(ListRow::Name);
        stage.same(row.fields.mid(ListRow::Red, components),
                   expected.row(name).fields.mid(ListRow::Red, components),
                   u"the colour in the file of "_s + name);
    }
}

void MainWindowAppearanceSteps::switchToDarkAndBack()
{
    stage.step(u"The desktop turns dark, and light again"_s);
    main.showView(TaskView::GlobalAll);
    const QStringList before = main.taskNames();
    desktop.switchTo(u"Dark"_s, main.table);
    stage.same(main.taskNames(), before, u"the tasks in the dark"_s);
    checkColors(true);
    stage.picture(main.window, u"dark"_s);

    main.selectTask(before.first());
    stage.picture(main.window, u"dark-selected"_s);
    hand::press(main.table, Qt::Key_Down, Qt::AltModifier);
    checkFile();
    hand::press(main.table, Qt::Key_Up, Qt::AltModifier);
    checkFile();
    stage.same(main.taskNames(), before, u"the order after moving down and up"_s);
    checkColors(true);

    desktop.switchTo(u"Light"_s, main.table);
    stage.same(main.taskNames(), before, u"the tasks in the light"_s);
    checkColors(false);
    stage.picture(main.window, u"light-again"_s);
}
