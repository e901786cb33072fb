#pragma once

#include "cloud/CloudSync.h"
#include "cloud/SqlCloudContainer.h"
#include "mainwindow/Screens.h"
#include "mainwindow/ViewController.h"
#include "messaging/ScheduleRuns.h"
#include "platform/NotificationCenter.h"
#include "widgets/ColorWell.h"

/// One user's program: all objects that the program itself builds, over folders of its own.
class Profile
{
public:
    struct Folders
    {
        QString documents;
        QString data;
        QString state;
    };

    Profile(TaskManager &manager, NotificationCenter &systemNotices, const CloudHome &cloudHome,
            const GatewayAddress &gateway, const Folders &folders);

    NotificationCenter notices;
    ColorPanel colorPanel;
    ScheduleRuns scheduleRuns;
    Screens screens;
    SqlCloudContainer container;
    CloudSync cloud;
    ViewController window;
};
