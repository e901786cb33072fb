#pragma once

#include "app/AppDelegate.h"
#include "cloud/CloudSync.h"
#include "cloud/SqlCloudContainer.h"
#include "forms/TaskDraft.h"
#include "mainwindow/Screens.h"
#include "mainwindow/ViewController.h"
#include "messaging/ScheduleRuns.h"
#include "platform/NotificationCenter.h"
#include "versions/VersionStore.h"
#include "widgets/ColorWell.h"

#include <functional>

/// One user's program: builds the objects, hands them to each other, and ends them. The only place that knows
/// all of them.
class Program
{
public:
    /// Where the user's files are.
    struct Folders
    {
        QString documents; ///< empty when the desktop names none
        QString config;
        QString data;
        QString state;

        static Folders ofUser();
    };

    /// \param systemNotices  the system-wide notification centre; has to outlive the program, as the manager
    ///                       has to
    Program(TaskManager &manager, NotificationCenter &systemNotices, const Folders &folders,
            const GatewayAddress &gateway = {});

    /// Shows the main window, runs the event loop and ends what is still under way; the exit code. Does not
    /// return when something under way cannot be ended in time.
    /// \param cutShort  what is left to be done then
    int run(const std::function<void()> &cutShort);

    /// Shows the main window in front, and does what the desktop entry's action of this name says; nothing
    /// more for another name.
    void perform(const QString &action);

    ViewController &mainWindow() { return window; }
    NotificationCenter &applicationNotices() { return notices; }
    CloudSync &cloudSync() { return cloud; }

private:
    bool finish(std::chrono::nanoseconds limit);

    QStringList news; ///< first: from before any file is read
    AppDelegate delegate;
    NotificationCenter notices;
    ColorPanel colorPanel;
    TaskDraft draft;
    ScheduleRuns scheduleRuns;
    VersionStore versions;
    Screens screens;
    SqlCloudContainer container;
    CloudSync cloud;
    ViewController window;
};
