#include "app/UIUtil.h"
#include "gateway/GatewayRequest.h"
#include "gateway/MessagingSettings.h"
#include "messaging/PreviewPane.h"
#include "messaging/ScheduleRuns.h"
#include "messaging/ViewControllerSending.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"
#include "ui_ViewControllerSending.h"

#include <QEvent>
#include <QLocale>

using namespace Qt::StringLiterals;

// What the user learns of what would be sent, before anything is.

void ViewControllerSending::connectPreview()
{
    previewDelay.setSingleShot(true);
    previewDelay.setInterval(0); // several changes at once are one
    connect(&previewDelay, &QTimer::timeout, this, &ViewControllerSending::showPreview);
    const auto update = qOverload<>(&QTimer::start);
    for (const QTableView *table : {ui->clientsTable, ui->teamMembers}) {
        connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, &previewDelay, update);
        connect(table->model(), &QAbstractItemModel::modelReset, &previewDelay, update);
        connect(table->model(), &QAbstractItemModel::dataChanged, &previewDelay,
                [this](const QModelIndex &, const QModelIndex &, const QList<int> &roles) {
                    if (roles.isEmpty()) // more than how it looks
                        previewDelay.start();
                });
    }
    for (const DatePicker *picker : {ui->startSendDate, ui->endSendDate})
        connect(picker, &DatePicker::dayChosen, &previewDelay, update);
}

/// Tasks and settings may have changed in another window.
void ViewControllerSending::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        for (QTimer *delay : {&previewDelay, &historyDelay})
            delay->start();
    Screen::changeEvent(event);
}

/// Sorts the tasks anew when they have changed.
void ViewControllerSending::followTasks()
{
    if (tasksSeen == manager.changeCount())
        return;
    tasksSeen = manager.changeCount();
    for (const RecipientKind kind : {RecipientKind::Client, RecipientKind::TeamMember})
        scheduledTasks[size_t(kind)] = tasksForSchedules(kind, manager.workingList());
}

void ViewControllerSending::showPreview()
{
    followTasks();
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

/// Asks before the same people are sent the same again.
bool ViewControllerSending::isWanted(const RunSnapshot &snapshot)
{
    const std::optional<QTime> before = runs.timeOfSame(snapshot);
    if (!before)
        return true;
    const Preferences &preferences = manager.defaults;
    const bool isTest = preferences.boolean(messagingKey::overwrite);
    const QString testNumber = preferences.text(messagingKey::testPhoneNo).value_or(QString());
    QStringList people;
    for (const Recipient &recipient : snapshot.recipients)
        if (!snapshot.scheduleOf(recipient).empty())
            people.append(u"%1 (%2)"_s.arg(recipient.name.value_or(QString()),
                                           isTest ? testNumber : recipient.phoneNo.value_or(u"–"_s)));
    return isConfirmed(u"The same messages were sent at %1. Send them again?"_s.arg(
                           QLocale().toString(*before, QLocale::ShortFormat)),
                       people);
}

/// Asks before something is sent to these people, a line each.
bool ViewControllerSending::isConfirmed(const QString &question, QStringList people)
{
    constexpr qsizetype mostShown = 20; // on a small screen
    const QStringList more = people.mid(mostShown);
    if (!more.isEmpty())
        people = people.first(mostShown) << u"and %1 more"_s.arg(more.size());
    const bool isConfirmed = util().askYesNo(question, people.join(u'\n'), more.join(u'\n'));
    lastPress.start();
    return isConfirmed;
}
