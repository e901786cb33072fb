#include "Steps.h"
#include "Tour.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

void bringBackTask(Tour &tour)
{
    tour.stage.step(u"A task that was closed is brought back from an earlier version, open as it was"_s);
    const QString name = u"Fallen branch at the Bellevue car park"_s;
    const int statusColumn = tour.column(u"Status"_s) + 1; // behind the one that compares
    hand::choose(tour.window, u"File"_s, u"Earlier Versions…"_s);
    QDialog &screen = hand::openWindow(u"ViewControllerVersions"_s);
    auto &versions = hand::child<QTreeWidget>(screen, u"versionsTree"_s);
    auto &table = hand::child<QTableView>(screen, u"tasksTable"_s);
    auto &changes = hand::child<QLabel>(screen, u"changesLabel"_s);
    hand::waitFor([&changes] { return changes.text() == u"Today's list is the same."; }, u"no version"_s);
    hand::press(versions, Qt::Key_End);
    hand::waitFor([&changes] { return changes.text().startsWith(u"Since then: "); }, u"the first version"_s);
    hand::click(hand::child<QCheckBox>(screen, u"compareBox"_s));
    tour.takePicturesOf(screen, u"earlier-versions"_s);
    hand::fill(hand::child<QLineEdit>(screen, u"filterField"_s), u"fallen"_s);
    tour.stage.same(table.model()->rowCount(), 1, u"tasks with that text"_s);
    tour.stage.same(table.model()->index(0, 0).data().toString(), u"~ changed: Status", u"what changed"_s);
    const QString status = table.model()->index(0, statusColumn).data().toString();
    hand::clickCell(table, table.model()->index(0, statusColumn));
    tour.stage.picture(screen, u"earlier-version-task"_s);
    hand::click(hand::child<QPushButton>(screen, u"bringBackTasksButton"_s));
    tour.expected.row(name).fields[ListRow::Status] = u"0"_s;
    tour.expected.row(name).fields[ListRow::StatusName] = status;
    tour.stage.same(tour.text(name, u"Status"_s), status, u"the status"_s);
    tour.checkView(TaskView::GlobalAll);
    hand::press(table, Qt::Key_Escape);
    tour.stage.check(!screen.isVisible(), u"the versions are closed"_s);
}
