#include "mainwindow/CloudStatus.h"

#include "cloud/CloudSync.h"
#include "platform/TerminationSignals.h"
#include "ui_ViewController.h"
#include "widgets/Alert.h"

#include <chrono>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

CloudStatus::CloudStatus(CloudSync &cloudSync, Ui::ViewController &windowUi, QMainWindow &mainWindow)
    : cloud(cloudSync)
    , ui(windowUi)
    , window(mainWindow)
{
    pause.setSingleShot(true);
    pause.setInterval(50ms);
    connect(&cloud, &CloudSync::transferProgressed, this, &CloudStatus::progress);
    connect(&pause, &QTimer::timeout, this, &CloudStatus::showProgress);
    // Queued: the answers behind the last one must not wait until the alert is dismissed.
    connect(&cloud, &CloudSync::transferEnded, this, &CloudStatus::tellEnd, Qt::QueuedConnection);
    connect(ui.cloudStopButton, &QToolButton::clicked, this, &CloudStatus::stop);
}

static QString progressText(const CloudTransfer &transfer, bool isQuitting)
{
    const bool isToCloud = transfer.direction == CloudTransfer::Direction::ToCloud;
    const QString what = transfer.stop.stop_requested() ? u"Stopping"_s
                         : isQuitting                   ? u"Quorvane quits when the cloud is done"_s
                         : isToCloud                    ? u"Copying to the cloud"_s
                                                        : u"Updating from the cloud"_s;
    if (transfer.tasks == 0)
        return what + u'…';
    return u"%1: %2 of %3 tasks"_s.arg(what).arg(transfer.done + transfer.failed).arg(transfer.tasks);
}

/// Shows it as often as can be seen: there may be thousands of answers a second.
void CloudStatus::progress()
{
    if (pause.isActive())
        return;
    showProgress();
    pause.start();
}

void CloudStatus::showProgress()
{
    const std::optional<CloudTransfer> &transfer = cloud.transfer();
    for (QAction *action : {ui.actionCopyToCloud, ui.actionUpdateFromCloud})
        action->setEnabled(!transfer);
    ui.cloudProgress->setVisible(transfer.has_value());
    if (!transfer)
        return;
    constexpr qint64 most = std::numeric_limits<int>::max();
    ui.cloudProgressLabel->setText(progressText(*transfer, isQuitting));
    ui.cloudProgressBar->setRange(0, int(std::min(transfer->tasks, most))); // busy while that is 0
    ui.cloudProgressBar->setValue(int(std::min(transfer->done + transfer->failed, most)));
    ui.cloudStopButton->setEnabled(transfer->canBeStopped());
}

void CloudStatus::stop()
{
    cloud.stopTransfer();
    showProgress();
}

bool CloudStatus::mayQuit()
{
    if (!cloud.transfer())
        return true;
    if (std::exchange(isQuitting, true) || terminationSignals::isReceived())
        cloud.stopTransfer();
    showProgress();
    return cloud.transfer()->stop.stop_requested();
}

void CloudStatus::tellEnd(const CloudTransfer &transfer)
{
    showProgress();
    if (transfer.isEmptyFetch())
        ui.statusMessageLabel->setText(transfer.outcome());
    const bool isStopped = transfer.stop.stop_requested() && !transfer.hasSucceeded;
    const bool isToCloud = transfer.direction == CloudTransfer::Direction::ToCloud;
    // A failure is told before the window may close.
    if (std::exchange(isQuitting, false) && (isStopped || transfer.hasSucceeded) && window.close())
        return;
    if (isStopped || !window.isVisible())
        return;
    if (transfer.hasSucceeded)
        alertMessage(&window,
                     isToCloud ? u"Sync to iCloud succesfully!"_s : u"Sync from iCloud succesfully!"_s);
    else
        alertMessage(&window, isToCloud ? u"Error sync to iCloud!"_s : u"Error sync from iCloud!"_s);
}
