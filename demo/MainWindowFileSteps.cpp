#include "MainWindowFileSteps.h"

#include "ExpectedList.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Stage.h"

#include <QApplication>
#include <QHeaderView>
#include <QTableView>

#include <algorithm>

using namespace Qt::StringLiterals;

MainWindowFileSteps::MainWindowFileSteps(Stage &tourStage, const ExpectedList &expectedList)
    : stage(tourStage)
    , expected(expectedList)
{
}

void MainWindowFileSteps::closeWindow(const MainWindowHandle &main, const QString &filePath)
{
    stage.step(u"The window closes, the program ends, and the file holds it all"_s);
    main.showView(TaskView::GlobalAll);
    const QStringList shown = main.taskNames();
    main.table.horizontalHeader()->resizeSection(main.column(u"Task"_s), 300);
    stage.picture(main.window, u"before-closing"_s);
    hand::shortcut(main.window, Qt::Key_Q, Qt::ControlModifier);
    stage.check(!main.window.isVisible(), u"the window is closed"_s);
    stage.same(QApplication::exec(), EXIT_SUCCESS, u"how the program ends"_s);

    QStringList written;
    for (const ListRow &row : ExpectedList::readRows(filePath))
        written.append(row.field(ListRow::Name));
    stage.same(written, shown, u"the order in the file"_s);
    checkFile(filePath);
}

void MainWindowFileSteps::checkFile(const QString &filePath)
{
    const QList<ListRow> rows = ExpectedList::readRows(filePath);
    stage.same(rows.size(), expected.rows().size(), u"rows in the file"_s);
    QStringList keys;
    for (const ListRow &row : rows) {
        const QString name = row.field(ListRow::Name);
        const QString key = row.field(ListRow::Key);
        stage.same(row.fields.size(), ListRow::fullRow, u"fields of "_s + name);
        stage.check(key.size() == 36 && !keys.contains(key), u"the key of "_s + name);
        keys.append(key);
    }
    for (const ListRow &wanted : expected.rows()) {
        const qsizetype known = wanted.fields.size();
        QList<QStringList> found;
        for (const ListRow &row : rows)
            if (row.field(ListRow::Name) == wanted.field(ListRow::Name) &&
                (known <= ListRow::Key || row.field(ListRow::Key) == wanted.field(ListRow::Key)))
                found.append(row.fields.first(known));
        stage.same(found, QList<QStringList>{wanted.fields}, u"rows of "_s + wanted.field(ListRow::Name));
    }
}

void MainWindowFileSteps::openAgain(const MainWindowHandle &main)
{
    stage.step(u"Opened again, the tasks and the columns are as they were left"_s);
    hand::activate(main.window);
    main.checkView(stage, expected, TaskView::All);
    main.checkTaskButtons(stage, false);
    stage.same(main.table.columnWidth(main.column(u"Task"_s)), 300, u"the width of a column"_s);
    stage.same(main.table.horizontalHeader()->sortIndicatorSection(), main.column(u"Task"_s),
               u"the column of the sort indicator"_s);
    stage.check(std::ranges::is_sorted(main.taskNames(), std::greater()), u"the names descend as before"_s);
    stage.picture(main.window, u"opened-again"_s);
}
