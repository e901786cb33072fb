#include "mainwindow/ViewController.h"

#include "app/UIUtil.h"
#include "journal/MessageJournal.h"
#include "mainwindow/CommandKeys.h"
#include "mainwindow/GuideProgram.h"
#include "mainwindow/Screens.h"
#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "model/TaskView.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "ui_ViewController.h"
#include "versions/VersionStore.h"
#include "widgets/Screen.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QMenu>
#include <QShortcut>

using namespace Qt::StringLiterals;

ViewController::ViewController(TaskManager &taskManager, NotificationCenter &applicationNotices,
                               NotificationCenter &desktopNotices, Screens &furtherScreens,
                               CloudSync &cloudSync, VersionStore &versions, const QString &documentsFolder,
                               const QString &stateFolder, const QStringList &news)
    : ui(setUpForm<Ui::ViewController>(*this))
    , taskCommands(*ui)
    , manager(taskManager)
    , notices(applicationNotices)
    , systemNotices(desktopNotices)
    , screens(furtherScreens)
    , cloud(cloudSync)
    , taskListFile(taskManager, documentsFolder, stateFolder, versions.history())
    , fileBanners(taskListFile, *ui->mainLayout, [this] { showListAgain(); })
    , cloudStatus(cloudSync, *ui, *this)
    , table(taskManager)
    , columns(ui->tblView->showing(table))
    , emptyNote(*ui->tblView)
    , keptState(stateFolder)
{
    ui->viewSelection->addItems(taskViewTitles());
    addViewActions();
    connect(&versions, &VersionStore::told, this,
            [this](const QString &sentence) { fileBanners.tell({sentence}); });
    connect(&screens.messageJournal(), &MessageJournal::told, this,
            [this](const QString &sentence) { fileBanners.tell({sentence}); });
    viewDidLoad();
    fileBanners.tell(news);
    connectActions();
    keptState.restore(*this, columns);
    manager.history().clear(); // the list as it was found
}

ViewController::~ViewController() = default;

void ViewController::addViewActions()
{
    constexpr int digits = 10; // a further view has no key of its own
    auto *group = new QActionGroup(this);
    const QStringList &titles = taskViewTitles();
    for (int position = 0; position < titles.size(); ++position) {
        QAction *action = ui->menuView->addAction(titles[position]);
        if (position < digits)
            action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key((position + 1) % digits + Qt::Key_0)));
        action->setCheckable(true);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, position] { chooseView(position); });
    }
    ui->menuView->addSeparator();
    QMenu *menu = ui->menuView->addMenu(tr("&Columns"));
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        columns.fill(*menu);
    });
}

void ViewController::connectActions()
{
    const auto onTrigger = [this](QAction *action, void (ViewController::*command)(QObject *)) {
        connect(action, &QAction::triggered, this, [this, action, command] { (this->*command)(action); });
    };
    onTrigger(ui->actionHide, &ViewController::hideClicked);
    onTrigger(ui->actionUp, &ViewController::upper);
    onTrigger(ui->actionDown, &ViewController::downer);
    onTrigger(ui->actionClone, &ViewController::cloneTask);
    onTrigger(ui->actionClose, &ViewController::closeTask);
    onTrigger(ui->actionDelete, &ViewController::btnDeleteTask_ClickWithSender);
    onTrigger(ui->actionCopyToCloud, &ViewController::UpdateToCloud);
    onTrigger(ui->actionUpdateFromCloud, &ViewController::UpdateFromCoud);
    onTrigger(ui->actionShare, &ViewController::sharingTask);
    onTrigger(ui->actionUndo, &ViewController::undo);
    onTrigger(ui->actionRedo, &ViewController::redo);
    onTrigger(ui->actionGuide, &ViewController::addEnhancement);
    if (!GuideProgram::isInstalled()) {
        ui->actionGuide->setText(u"Guide (not installed)"_s);
        ui->actionGuide->setEnabled(false);
    }
    new CommandKeys(*ui->actionGuide, {ui->actionQuit, ui->actionAdd}, this);
    connectScreens();
    connectTable();
    connect(&dayWatch, &DayWatch::dayMayHaveChanged, this, &ViewController::showToday);
    connect(ui->shareButton, &QToolButton::pressed, this, [this] { sharingTask(ui->shareButton); });
    connect(ui->actionQuit, &QAction::triggered, this, &ViewController::close);
    connect(ui->actionFind, &QAction::triggered, ui->searchField, qOverload<>(&QLineEdit::setFocus));
    connect(new QShortcut(Qt::Key_Escape, ui->searchField, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this,
            [this] { ui->searchField->text().isEmpty() ? cloudStatus.stop() : ui->searchField->clear(); });
    connect(ui->viewSelection, &QComboBox::activated, this, [this] { ChangeView(ui->viewSelection); });
    connect(ui->searchField, &QLineEdit::textChanged, this, [this] { search(ui->searchField); });
}

void ViewController::connectTable()
{
    ui->tblView->addAction(ui->actionCopy); // so that the key is the table's alone
    connect(ui->actionCopy, &QAction::triggered, this, &ViewController::copyRow);
    connect(ui->tblView, &TaskTableView::doubleAction, this, [this] { doubleClickTable(ui->tblView); });
    connect(ui->tblView, &TaskTableView::opened, ui->actionEdit, &QAction::trigger);
    connect(ui->tblView, &TaskTableView::menuRequested, this, &ViewController::showTableMenu);
    connect(ui->tblView, &TaskTableView::rowMoved, this, &ViewController::moveTaskTo);
    connect(&emptyNote, &EmptyNote::stepTaken, this, &ViewController::leaveEmptyTable);
    connect(ui->tblView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ViewController::tableViewSelectionDidChange);
    connect(ui->tblView->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
            &ViewController::sortDescriptorsDidChange);
}

void ViewController::connectScreens()
{
    connect(ui->actionAdd, &QAction::triggered, this, [this] {
        screens.openAddForm(*this, [this](const QString &key) { ui->tblView->pointOut(key); });
    });
    connect(ui->actionEdit, &QAction::triggered, this, [this] { screens.openEditForm(*this); });
    connect(ui->actionClients, &QAction::triggered, this, [this] { screens.openClients(*this); });
    connect(ui->actionTeamMembers, &QAction::triggered, this, [this] { screens.openTeamMembers(*this); });
    connect(ui->actionMessages, &QAction::triggered, this, [this] { screens.openSending(*this); });
    connect(ui->actionJournal, &QAction::triggered, this, [this] { screens.openJournal(*this); });
    connect(ui->actionNotes, &QAction::triggered, this, [this] { screens.openNotes(*this); });
    connect(ui->actionWhiteboard, &QAction::triggered, this, [this] { screens.openWhiteboard(*this); });
    connect(ui->actionVersions, &QAction::triggered, this, [this] { screens.openVersions(*this); });
    connect(ui->actionSettings, &QAction::triggered, this, [this] { screens.openSettings(*this); });
}

void ViewController::viewDidLoad()
{
    util().prepareSound();
    taskListFile.parseFile(taskListFile.readFile());
    ui->viewSelection->setCurrentIndex(int(TaskView::All));
    QHeaderView *header = ui->tblView->horizontalHeader();
    header->setSortIndicator(keptState.isOrderedByHand() ? -1 : int(TaskColumn::Date), Qt::AscendingOrder);
    if (!keptState.isOrderedByHand())
        manager.sortByColumn({.key = infoOf(TaskColumn::Date).sortKey, .ascending = true});
    taskCommands.follow(manager.history().steps());
    reloadTable();
    taskCommands.disable();
    ui->tblView->setFocus();
    diagnostics::line("Dark Mode:", isDarkMode());
    notices.observe(notice::reload, this, [this] { reloadTableData(); });
    notices.observe(notice::update, this, [this] { updateComplete(); });
    systemNotices.observe(notice::appearanceChanged, this,
                          [this] { interfaceModeChangedWithSender(&systemNotices); });
}

void ViewController::viewWillAppear()
{
    ui->tblView->setLargeRows();
    reloadTable();
    taskCommands.disable();
    setMinimumSize(1040, 430);
}

void ViewController::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        viewWillAppear();
    QMainWindow::showEvent(event);
}

void ViewController::closeEvent(QCloseEvent *event)
{
    if (!cloudStatus.mayQuit() || !screens.mayQuit() || !closeScreens() || !fileBanners.mayQuit()) {
        event->ignore();
        return;
    }
    windowShouldClose();
    event->accept();
}

/// Escape that nothing in the window has taken.
void ViewController::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        cloudStatus.stop();
    else
        QMainWindow::keyPressEvent(event);
}

/// Closes the other windows; false when one of them stays open, since what is in it is not saved.
bool ViewController::closeScreens()
{
    for (Screen *screen : findChildren<Screen *>(Qt::FindDirectChildrenOnly))
        if (screen->isVisible() && !screen->close())
            return false;
    return true;
}

void ViewController::windowShouldClose()
{
    diagnostics::line("Close");
    keptState.save(*this, columns);
    // Queued: whatever else is open is closed after this window, not in the middle of it.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void ViewController::writeList()
{
    manager.endStep();
    taskListFile.writeFile();
    fileBanners.tell();
}

void ViewController::updateComplete()
{
    ui->statusMessageLabel->setText(manager.lastMessage);
}

void ViewController::interfaceModeChangedWithSender(QObject *)
{
    diagnostics::line("Dark mode change");
    taskListFile.followAppearance();
    showOrder();
    taskCommands.disable();
    reloadTable();
    fileBanners.tell();
}
