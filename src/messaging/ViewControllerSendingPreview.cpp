#include "messaging/GatewayRequest.h"
#include "messaging/PreviewPane.h"
#include "messaging/ViewControllerSending.h"
#include "model/TaskManager.h"
#include "ui_ViewControllerSending.h"

#include <QEvent>

using namespace Qt::StringLiterals;

// What the screen shows of what would be sent, before anything is.

void ViewControllerSending::connectPreview()
{
    previewDelay.setSingleShot(true);
    previewDelay.setInterval(0); // several changes at once are one
    connect(&previewDelay, &QTimer::timeout, this, &ViewControllerSending::showPreview);
    const auto update = qOverload<>(&QTimer::start);
    for (const QTableView *table : {ui->clientsTable, ui->teamMembers}) {
        connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, &previewDelay, update);
        connect(table->model(), &QAbstractItemModel::modelReset, &previewDelay, update);
    }
    for (const DatePicker *picker : {ui->startSendDate, ui->endSendDate})
        connect(picker, &DatePicker::dayChosen, &previewDelay, update);
}

/// Tasks and settings may have changed in another window.
void ViewControllerSending::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        previewDelay.start();
    Screen::changeEvent(event);
}

void ViewControllerSending::showPreview()
{
    if (tasksSeen != manager.changeCount()) {
        tasksSeen = manager.changeCount();
        for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember})
            scheduledTasks[size_t(kind)] = tasksForSchedules(kind, manager.workingList());
    }
    std::vector<SchedulePreview> previews;
    previews.emplace_back(snapshotOf(RecipientKind::Client, scheduledTasks[0]), manager.defaults);
    previews.emplace_back(snapshotOf(RecipientKind::TeamMember, scheduledTasks[1]), manager.defaults);
    const SendSettings settings(manager.defaults);
    const Calendar calendar;
    QStringList warnings;
    if (!settings.isOn)
        warnings.append(u"Messages are switched off in the message settings."_s);
    if (settings.testPhoneNo)
        warnings.append(
            u"Test number: every message goes to \"%1\" instead of the people."_s.arg(*settings.testPhoneNo));
    if (calendar.dayOf(ui->endSendDate->moment()) < calendar.dayOf(ui->startSendDate->moment()))
        warnings.append(u"The last day is before the first one: nobody has anything in these days."_s);
    ui->preview->show(std::move(previews), warnings);
}
