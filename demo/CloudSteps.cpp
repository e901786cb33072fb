#include "CloudSteps.h"

#include "ExpectedList.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Profile.h"
#include "Stage.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QTableView>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

void press(QDialog &dialog, const QString &button)
{
    auto &alert = dynamic_cast<QMessageBox &>(dialog);
    for (QAbstractButton *choice : alert.buttons())
        if (choice->text().remove(u'&') == button) {
            hand::click(*choice);
            return;
        }
    throw TourFailure(button + u": not in the dialog"_s);
}

} // namespace

CloudSteps::CloudSteps(Stage &tourStage, const MainWindowHandle &mainWindow, ExpectedList &expectedList,
                       Profile &tourProfile)
    : stage(tourStage)
    , main(mainWindow)
    , expected(expectedList)
    , profile(tourProfile)
{
}

void CloudSteps::acknowledge(QDialog &dialog, const QString &message)
{
    stage.same(dynamic_cast<QMessageBox &>(dialog).informativeText(), message, u"what is told"_s);
    press(dialog, u"OK"_s);
}

void CloudSteps::command(const MainWindowHandle &window, const QString &entry, const QString &pictureName)
{
    hand::activate(window.window);
    hand::throughDialog([&] { hand::choose(hand::openMenu(window.window, u"Cloud"_s), entry); },
                        [&](QDialog &dialog) {
                            if (!pictureName.isEmpty())
                                stage.picture(dialog, pictureName);
                            if (entry.startsWith(u"Copy"))
                                acknowledge(dialog, u"Sync to iCloud succesfully!"_s);
                            else
                                press(dialog, u"Yes"_s);
                        });
}

void CloudSteps::waitForAnswers()
{
    stage.check(profile.cloud.finish(std::chrono::seconds(30)), u"the cloud answers"_s);
}

void CloudSteps::copyToCloud()
{
    stage.step(u"The list is copied to the cloud"_s);
    main.showView(TaskView::GlobalAll);
    command(main, u"Copy to Cloud"_s, u"copied-to-cloud"_s);
    waitForAnswers();
    main.checkView(stage, expected, TaskView::GlobalAll);
}

void CloudSteps::update(const MainWindowHandle &window)
{
    auto &status = hand::child<QLabel>(window.window, u"statusMessageLabel"_s);
    status.clear();
    command(window, u"Update from Cloud"_s,
            status.isVisible() && &window == &main ? u"update-question"_s : QString());
    // The alert comes a second after the answer.
    bool isAnswered = false;
    hand::throughDialog(
        [&] {
            stage.check(QTest::qWaitFor([&] { return isAnswered; }), u"the window tells of the update"_s);
        },
        [&](QDialog &dialog) {
            acknowledge(dialog, u"Sync from iCloud succesfully!"_s);
            isAnswered = true;
        });
    stage.same(status.text(), u"----iCloud:Update Complete!----", u"the status line"_s);
}

void CloudSteps::updateFromCloud()
{
    stage.step(u"A task that was changed here takes the cloud's values again"_s);
    const QString name = u"Repair the dry-stone wall"_s;
    main.showView(TaskView::GlobalAll);
    main.selectTask(name);
    hand::click(main.hideButton);
    expected.setHidden(name, true);
    main.showView(TaskView::Hidden);
    main.checkView(stage, expected, TaskView::Hidden);
    update(main);
    expected.setHidden(name, false);
    main.checkView(stage, expected, TaskView::Hidden);
    main.showView(TaskView::GlobalAll);
    main.checkView(stage, expected, TaskView::GlobalAll);
    stage.picture(main.window, u"updated-from-cloud"_s);
}

void CloudSteps::deleteTask()
{
    stage.step(u"A task is deleted, here and in the cloud"_s);
    const QString name = u"Repair the dry-stone wall"_s;
    main.selectTask(name);
    hand::throughDialog([&] { hand::press(main.table, Qt::Key_Delete); },
                        [&](QDialog &dialog) {
                            stage.picture(dialog, u"delete-question"_s);
                            press(dialog, u"Yes"_s);
                        });
    expected.remove(name);
    main.checkView(stage, expected, TaskView::GlobalAll);
    main.checkTaskButtons(stage, false);
    waitForAnswers();
}

void CloudSteps::receiveList(const MainWindowHandle &other)
{
    stage.step(u"On another machine the same user receives the list"_s);
    stage.picture(other.window, u"another-machine-before"_s);
    stage.same(other.taskNames().size(), 0, u"tasks before"_s);
    other.showView(TaskView::GlobalAll);
    update(other);
    other.checkView(stage, expected, TaskView::GlobalAll);
    stage.picture(other.window, u"another-machine"_s);
}
