#include "Tour.h"

#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "program/Program.h"
#include "support/Dialogs.h"

#include <QApplication>
#include <QComboBox>
#include <QMessageBox>

using namespace Qt::StringLiterals;

Tour::Tour(Stage &tourStage, ExpectedList &expectedList, Program &shownProgram, NotificationCenter &notices)
    : stage(tourStage)
    , expected(expectedList)
    , program(shownProgram)
    , window(program.mainWindow())
    , table(hand::child<QTableView>(window, u"tblView"_s))
    , searchField(hand::child<QLineEdit>(window, u"searchField"_s))
    , systemNotices(notices)
{
    window.show();
    hand::activate(window);
}

QToolButton &Tour::button(const QString &name) const
{
    return hand::child<QToolButton>(window, name + u"Button"_s);
}

QString Tour::chosenView() const
{
    return hand::child<QComboBox>(window, u"viewSelection"_s).currentText();
}

int Tour::column(const QString &title) const
{
    const QAbstractItemModel &model = *table.model();
    for (int column = 0; column < model.columnCount(); ++column)
        if (model.headerData(column, Qt::Horizontal).toString() == title)
            return column;
    throw TourFailure(title + u": no such column"_s);
}

QModelIndex Tour::cell(int row, const QString &columnTitle) const
{
    return table.model()->index(row, column(columnTitle));
}

QStringList Tour::texts(const QString &columnTitle) const
{
    QStringList texts;
    for (int row = 0; row < table.model()->rowCount(); ++row)
        texts.append(cell(row, columnTitle).data().toString());
    return texts;
}

QString Tour::text(const QString &taskName, const QString &columnTitle) const
{
    return cell(rowOf(taskName), columnTitle).data().toString();
}

int Tour::rowOf(const QString &taskName) const
{
    const qsizetype row = taskNames().indexOf(taskName);
    require(row >= 0, taskName + u": not in this view"_s);
    return int(row);
}

int Tour::selectedRow() const
{
    const QModelIndexList rows = table.selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

void Tour::selectTask(const QString &name) const
{
    hand::clickCell(table, cell(rowOf(name), u"Task"_s));
}

void Tour::showView(TaskView view) const
{
    const int digit = (int(view) + 1) % 10;
    hand::shortcut(window, Qt::Key(Qt::Key_0 + digit), Qt::ControlModifier);
}

void Tour::checkView(TaskView view)
{
    stage.same(chosenView(), taskViewTitles().at(int(view)), u"the chosen view"_s);
    QStringList shown = taskNames();
    shown.sort();
    stage.same(shown, expected.namesIn(view), u"tasks in view "_s + chosenView());
}

void Tour::checkTaskButtons(bool enabled)
{
    for (const QString &name : {u"edit"_s, u"delete"_s, u"hide"_s, u"clone"_s, u"close"_s, u"share"_s})
        stage.same(button(name).isEnabled(), enabled, name + u" enabled"_s);
}

void Tour::throughAlert(const std::function<void()> &open, const QString &message, const QString &button,
                        const QString &pictureName)
{
    QPixmap picture;
    const AlertAnswer answer(button, [&picture](QMessageBox &alert) {
        hand::settle();
        picture = alert.grab();
    });
    open();
    hand::waitFor([&answer] { return answer.wasShown(); }, u"nothing is told or asked"_s);
    stage.check(answer.isPlain, u"a task's text is no markup"_s);
    stage.check(QStringList{answer.text, answer.informativeText}.contains(message), message + u" is told"_s);
    if (!pictureName.isEmpty())
        stage.keepPicture(picture, pictureName);
}

void Tour::setDark(bool dark, const QWidget &widget)
{
    Preferences::standard().setGlobalText(u"AppleInterfaceStyle"_s, dark ? u"Dark"_s : u"Light"_s);
    systemNotices.post(notice::appearanceChanged);
    hand::waitFor(
        [&widget] {
            return widget.palette().color(QPalette::Base) == QApplication::palette().color(QPalette::Base);
        },
        u"the window does not follow the palette"_s);
}

void Tour::takePicturesOf(QWidget &screen, const QString &name)
{
    stage.picture(screen, name);
    setDark(true, screen);
    stage.picture(screen, name + u"-dark"_s);
    setDark(false, screen);
}
