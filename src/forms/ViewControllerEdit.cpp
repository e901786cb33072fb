#include "forms/ViewControllerEdit.h"

#include "app/UIUtil.h"
#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "ui_TaskFields.h"
#include "ui_ViewControllerEdit.h"

using namespace Qt::StringLiterals;

ViewControllerEdit::ViewControllerEdit(const TaskFormServices &formServices, QWidget *parent)
    : ViewControllerEdit(formServices, formServices.manager.selectedTask(), parent)
{
}

ViewControllerEdit::ViewControllerEdit(const TaskFormServices &formServices, const task &edited,
                                       QWidget *parent)
    : TaskForm(formServices, edited.color, edited.date, edited.due, parent)
    , ui(std::make_unique<Ui::ViewControllerEdit>())
    , editedKey(edited.key)
    , wasHidden(edited.hidden)
{
    ui->setupUi(this);
    loadView(*ui->taskFields);
    viewDidLoad();
    connectActions();
}

ViewControllerEdit::~ViewControllerEdit() = default;

void ViewControllerEdit::viewDidLoad()
{
    diagnostics::line("Edit");
    const task edited = manager.selectedTask();
    showWholeTask(edited);
    ui->key->setText(edited.key);
    diagnostics::line("client:", edited.client);
}

void ViewControllerEdit::connectActions()
{
    connect(ui->storeButton, &QPushButton::clicked, this,
            [this] { btnEditTask_ClickWithSender(ui->storeButton); });
    connect(fields->txtTaskName, &QLineEdit::returnPressed, ui->storeButton, &QPushButton::click);
    connect(ui->resetButton, &QPushButton::clicked, this, [this] { ResetToOriginal(ui->resetButton); });
    connect(ui->shareButton, &QPushButton::clicked, this, [this] { shareTask(ui->shareButton); });
    connect(fields->dtTaskDate, &DatePicker::dayChosen, this, [this] { SelectDate(fields->dtTaskDate); });
    connect(fields->dtTaskDueDate, &DatePicker::dayChosen, this,
            [this] { SelectDueDate(fields->dtTaskDueDate); });
    connect(fields->color, &ColorWell::colorChosen, this, [this] { SelectColorWell(fields->color); });
}

void ViewControllerEdit::viewWillAppear()
{
    setMinimumSize(565, 613);
}

void ViewControllerEdit::viewDidAppear()
{
    fields->txtTaskDescription->setTextColor(appearanceTextColor());
    // Only once, however often the form appears: each registration inverts the well at every change.
    if (!std::exchange(isRegistered, true))
        services.systemNotices.observe(notice::appearanceChanged, this,
                                       [this] { interfaceModeChangedWithSender(&services.systemNotices); });
    TaskForm::viewDidAppear();
}

void ViewControllerEdit::btnEditTask_ClickWithSender(QObject *)
{
    diagnostics::line("Button Pressed");
    if (!commitTyping())
        return;
    storeControls();
    close();
    services.notices.post(notice::reload);
}

void ViewControllerEdit::storeControls()
{
    const task stored = taskOfControls();
    manager.selectAgain(editedKey);
    if (hasGone())
        manager.restoreTask({.key = editedKey, .hidden = wasHidden});
    manager.editSelectedTask(stored);
}

/// Whether the task is no longer in the list, which may have been read anew since the form was opened.
bool ViewControllerEdit::hasGone() const
{
    return manager.selectedTask().key != editedKey;
}

void ViewControllerEdit::SelectDate(QObject *)
{
    logDates();
    if (fields->dtTaskDate->moment() > fields->dtTaskDueDate->moment())
        refuse(*fields->dtTaskDate, previousDate, u"Select a Start Date prior to Due Date"_s);
    previousDate = fields->dtTaskDate->moment();
}

void ViewControllerEdit::SelectDueDate(QObject *)
{
    logDates();
    if (fields->dtTaskDueDate->moment() < fields->dtTaskDate->moment())
        refuse(*fields->dtTaskDueDate, previousDueDate, u"Select a Due Date after Start Date"_s);
    previousDueDate = fields->dtTaskDueDate->moment();
}

void ViewControllerEdit::logDates() const
{
    diagnostics::line("Start Date:", fields->dtTaskDate->moment());
    diagnostics::line("Due Date:", fields->dtTaskDueDate->moment());
}

void ViewControllerEdit::SelectColorWell(QObject *sender)
{
    acceptColor(*sender);
}

void ViewControllerEdit::ResetToOriginal(QObject *)
{
    diagnostics::line("Reset");
    manager.selectAgain(editedKey);
    if (hasGone())
        return; // the form holds all that is left of the task
    const task stored = manager.selectedTask();
    showTask(stored);
    fields->color->setColor(stored.color);
}

void ViewControllerEdit::interfaceModeChangedWithSender(QObject *)
{
    diagnostics::line("Dark mode change");
    manager.invertColorWell(*fields->color, *fields->txtTaskDescription);
}

void ViewControllerEdit::shareTask(QObject *)
{
    if (!commitTyping())
        return;
    storeControls();
    services.notices.post(notice::reload);
    manager.shareSelectedTask(*ui->shareButton);
}
