#pragma once

#include "mainwindow/CloudStatus.h"
#include "mainwindow/FileBanners.h"
#include "mainwindow/TableColumns.h"
#include "mainwindow/TaskCommands.h"
#include "mainwindow/TaskTable.h"
#include "mainwindow/WindowState.h"
#include "platform/DayWatch.h"
#include "taskfile/TaskListFile.h"
#include "widgets/EmptyNote.h"

#include <QMainWindow>

#include <memory>
#include <optional>

class CloudSync;
class NotificationCenter;
class QAction;
class Screens;
class TaskManager;
struct TaskStep;
class VersionStore;

namespace Ui {
class ViewController;
}

/// The main window: the task table with its views, search and sorting, and the commands on the selected task.
///
/// Every command works on the task manager, then shows the table anew and, where the list changed, writes the
/// task list file.
class ViewController : public QMainWindow
{
    Q_OBJECT

public:
    /// \param notices          the application's own notification centre
    /// \param systemNotices    the system-wide one
    /// \param screens          opens the further screens
    /// \param cloud            copies tasks to and from the cloud
    /// \param versions         keeps what the list has been
    /// \param documentsFolder  where the task list file is; empty when there is no such folder
    /// \param stateFolder      where window state and unfinished writes are kept
    /// \param news             whole sentences that the user has to be told
    ViewController(TaskManager &manager, NotificationCenter &notices, NotificationCenter &systemNotices,
                   Screens &screens, CloudSync &cloud, VersionStore &versions, const QString &documentsFolder,
                   const QString &stateFolder, const QStringList &news = {});
    ~ViewController() override;

public slots:
    void ChangeView(QObject *sender);
    void search(QObject *sender);
    void hideClicked(QObject *sender);
    void upper(QObject *sender);
    void downer(QObject *sender);
    void cloneTask(QObject *sender);
    void closeTask(QObject *sender);
    void btnDeleteTask_ClickWithSender(QObject *sender);
    void sharingTask(QObject *sender);
    void undo(QObject *sender);
    void redo(QObject *sender);
    /// A double click on the table, on a row or below the rows.
    void doubleClickTable(QObject *sender);
    void UpdateToCloud(QObject *sender);
    void UpdateFromCoud(QObject *sender);
    void addEnhancement(QObject *sender);
    /// The desktop switched between light and dark.
    void interfaceModeChangedWithSender(QObject *sender);

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void connectActions();
    void connectScreens();
    void connectTable();
    void addViewActions();
    void viewDidLoad();
    void viewWillAppear();
    bool closeScreens();
    void windowShouldClose();

    void tableViewSelectionDidChange();
    void sortDescriptorsDidChange();
    void reloadTableData();
    void updateComplete();
    void showToday();
    void showListAgain();

    void chooseView(int position);
    void showOrder();
    void showStep(const std::optional<TaskStep> &step);
    void moveTask(bool up, const QString &wrongViewMessage);
    void moveTaskTo(int row);
    void showMoved(const QString &key, qint64 changesBefore);
    void showTableMenu(const QPoint &place);
    void copyRow();
    void reloadTable();
    void showCounts();
    void explainEmptyTable();
    void leaveEmptyTable();
    void writeList();

    std::unique_ptr<Ui::ViewController> ui;
    TaskCommands taskCommands;
    TaskManager &manager;
    NotificationCenter &notices;
    NotificationCenter &systemNotices;
    Screens &screens;
    CloudSync &cloud;
    TaskListFile taskListFile;
    FileBanners fileBanners;
    CloudStatus cloudStatus;
    TaskTable table;
    TableColumns columns;
    EmptyNote emptyNote;
    WindowState keptState;
    DayWatch dayWatch{this};
};
