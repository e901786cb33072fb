#include "ContactSteps.h"

#include "Desktop.h"
#include "Hand.h"
#include "MainWindowHandle.h"
#include "Stage.h"

#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;

ContactSteps::ContactSteps(Stage &tourStage, const MainWindowHandle &mainWindow, Desktop &userDesktop)
    : stage(tourStage)
    , main(mainWindow)
    , desktop(userDesktop)
{
}

void ContactSteps::addClient(const QString &name, const QString &phoneNo)
{
    stage.step(u"A client is added, and is still there when the screen is opened again"_s);
    add(u"Clients…"_s, u"ViewControllerClientMgmt"_s, name, phoneNo);
}

void ContactSteps::addTeamMember(const QString &name, const QString &phoneNo)
{
    stage.step(u"So is a team member"_s);
    add(u"Team Members…"_s, u"ViewControllerTeamMgmt"_s, name, phoneNo);
}

QDialog &ContactSteps::open(const QString &menuEntry, const QString &screen)
{
    hand::choose(hand::openMenu(main.window, u"Contacts"_s), menuEntry);
    return hand::openWindow(screen);
}

void ContactSteps::add(const QString &menuEntry, const QString &screen, const QString &name,
                       const QString &phoneNo)
{
    QDialog &window = open(menuEntry, screen);
    hand::click(hand::child<QPushButton>(window, u"addButton"_s));
    hand::typeInto(window, name);
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    hand::typeInto(window, phoneNo); // and closes while it is being typed
    desktop.picturesOf(window, stage, screen);
    hand::click(hand::child<QPushButton>(window, u"okButton"_s));
    stage.check(!window.isVisible(), u"the screen is closed"_s);

    QDialog &again = open(menuEntry, screen);
    const QAbstractItemModel &contacts = *hand::child<QTableView>(again).model();
    stage.same(contacts.rowCount(), 1, u"contacts"_s);
    stage.same(contacts.index(0, 0).data().toString(), name, u"the name"_s);
    stage.same(contacts.index(0, 1).data().toString(), phoneNo, u"the phone number"_s);
    hand::shortcut(again, Qt::Key_Escape, {});
    stage.check(!again.isVisible(), u"the screen is closed again"_s);
}
