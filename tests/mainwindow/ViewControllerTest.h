#pragma once

#include "cloud/CloudSync.h"
#include "cloud/TaskRecord.h"
#include "mainwindow/Screens.h"
#include "mainwindow/ViewController.h"
#include "messaging/ScheduleRuns.h"
#include "model/TaskManager.h"
#include "platform/ColorWell.h"
#include "platform/MainThreadQueue.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "platform/SqlCloudContainer.h"
#include "support/CapturedOutput.h"

#include <QObject>
#include <QTemporaryDir>

class QTableView;
class QToolButton;

class ViewControllerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsSortedByDate();
    void buttonsFollowTheSelection();
    void commandsWithoutATask();
    void sortingKeepsTheSelectedTask();
    void searchesAsTheUserTypes();
    void doubleClickEditsTheTask();
    void addsDuringASearch();
    void deletesOnlyWhenConfirmed();
    void copiesToAndFromTheCloud();
    void sendingScreenComesBackDuringARun();
    void noticesReloadAndWrite();
    void appearanceReloadsTheList();

private:
    void open();
    void closeAll();
    QToolButton *button(const char *name) const;
    QString enabledButtons() const;
    QString rows() const;
    void selectRow(int row);
    void chooseView(int view);
    QByteArray fileContent() const;

    std::unique_ptr<QTemporaryDir> home;
    QTemporaryDir preferencesFolder;
    Preferences preferences{preferencesFolder.filePath(QStringLiteral("preferences.ini"))};
    std::unique_ptr<NotificationCenter> notices;
    std::unique_ptr<NotificationCenter> systemNotices;
    std::unique_ptr<TaskManager> manager;
    ColorPanel colorPanel;
    ScheduleRuns scheduleRuns{preferences,
                              {.host = QStringLiteral("127.0.0.1"), .port = 1}}; // where nobody listens
    std::unique_ptr<Screens> screens;
    std::unique_ptr<MainThreadQueue> cloudAnswers;
    std::unique_ptr<SqlCloudContainer> container;
    std::unique_ptr<CloudSync> cloud;
    std::unique_ptr<ViewController> window;
    std::unique_ptr<CapturedOutput> output;
    QTableView *table = nullptr;
};
