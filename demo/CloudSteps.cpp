#include "Steps.h"
#include "Tour.h"
#include "program/Program.h"

#include <QLabel>

using namespace Qt::StringLiterals;

static const QString task = u"Repair the dry-stone wall"_s;

static void waitForAnswers(Tour &tour)
{
    tour.stage.check(tour.program.cloudSync().finish(std::chrono::minutes(1)), u"the cloud answers"_s);
}

static void askForUpdate(Tour &tour, const QString &answer, const QString &pictureName = {})
{
    tour.throughAlert([&tour] { hand::choose(tour.window, u"Cloud"_s, u"Update from Cloud"_s); },
                      u"Do you want to update from the Cloud?"_s, answer, pictureName);
}

static void update(Tour &tour)
{
    auto &status = hand::child<QLabel>(tour.window, u"statusMessageLabel"_s);
    status.clear();
    askForUpdate(tour, u"Yes"_s);
    tour.throughAlert([] {}, u"Sync from iCloud succesfully!"_s, u"OK"_s); // comes with the last answer
    waitForAnswers(tour);
    tour.stage.same(status.text(), u"----iCloud:Update Complete!----", u"the status line"_s);
}

void copyToCloud(Tour &tour)
{
    tour.stage.step(u"The list is copied to the cloud"_s);
    tour.showView(TaskView::GlobalAll);
    tour.throughAlert(
        [&tour] {
            hand::clickTool(tour.window, u"actionCopyToCloud"_s);
            tour.takePicture(u"copying-to-cloud"_s);
        },
        u"Sync to iCloud succesfully!"_s, u"OK"_s, u"copied-to-cloud"_s);
    tour.checkView(TaskView::GlobalAll);
}

void updateFromCloud(Tour &tour)
{
    tour.stage.step(u"A task that was changed here takes the cloud's values again"_s);
    tour.showView(TaskView::GlobalAll);
    tour.selectTask(task);
    hand::click(tour.button(u"hide"_s));
    tour.expected.setHidden(task, true);
    tour.showView(TaskView::Hidden);
    tour.checkView(TaskView::Hidden);
    askForUpdate(tour, u"No"_s, u"update-question"_s);
    waitForAnswers(tour); // to what has not been asked
    tour.checkView(TaskView::Hidden);
    update(tour);
    tour.expected.setHidden(task, false);
    tour.checkView(TaskView::Hidden);
    tour.showView(TaskView::GlobalAll);
    tour.checkView(TaskView::GlobalAll);
    tour.takePicture(u"updated-from-cloud"_s);
}

void deleteTask(Tour &tour)
{
    tour.stage.step(u"A task is deleted, here and in the cloud"_s);
    const QString question =
        u"The task will be deleted locally as well as from the Cloud if present. Are you sure you want to "
        "delete ?"_s;
    tour.selectTask(task);
    tour.throughAlert([&tour] { hand::press(tour.table, Qt::Key_Delete); }, question, u"No"_s);
    tour.checkView(TaskView::GlobalAll);
    tour.checkTaskButtons(false);
    tour.selectTask(task);
    tour.throughAlert([&tour] { hand::click(tour.button(u"delete"_s)); }, question, u"Yes"_s,
                      u"delete-question"_s);
    tour.expected.remove(task);
    tour.checkView(TaskView::GlobalAll);
    tour.checkTaskButtons(false);
    waitForAnswers(tour);
}

void receiveElsewhere(Tour &other)
{
    other.stage.step(u"On another machine the same user receives the list"_s);
    other.takePicture(u"another-machine-before"_s);
    other.stage.same(other.taskNames(), QStringList(), u"tasks before"_s);
    other.showView(TaskView::GlobalAll);
    update(other);
    other.checkView(TaskView::GlobalAll);
    other.takePicture(u"another-machine"_s);
}
