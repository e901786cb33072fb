#include "forms/ViewControllerEdit.h"

#include "app/UIUtil.h"
#include "model/Appearance.h"
#include "model/FiledFields.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "ui_TaskFields.h"
#include "ui_ViewControllerEdit.h"
#include "widgets/Alert.h"

using namespace Qt::StringLiterals;

ViewControllerEdit::ViewControllerEdit(const TaskFormServices &formServices, QWidget *parent)
    : ViewControllerEdit(formServices, formServices.manager.selectedTask(), parent)
{
}

ViewControllerEdit::ViewControllerEdit(const TaskFormServices &formServices, const task &edited,
                                       QWidget *parent)
    : TaskForm(formServices, edited.color, edited.date, edited.due, parent)
    , ui(std::make_unique<Ui::ViewControllerEdit>())
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
    showWhole(manager.selectedTask());
}

void ViewControllerEdit::showWhole(const task &shown)
{
    known = shown;
    showWholeTask(shown);
    ui->key->setText(shown.key);
    diagnostics::line("client:", shown.client);
    colorWell = shown.color;
    previousDate = shown.date;
    previousDueDate = shown.due;
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
    if (!commitTyping() || !storeControls())
        return;
    close();
    services.notices.post(notice::reload);
}

/// False when the user wants them not to be stored yet.
bool ViewControllerEdit::storeControls()
{
    manager.selectAgain(known.key);
    const QStringList others = hasGone() ? QStringList() : fieldsOfOthers();
    if (!others.isEmpty() && !mayReplace(others))
        return false;
    if (hasGone())
        return storeAsNew();
    if (others.isEmpty())
        manager.editSelectedTask(taskOfControls());
    else
        manager.editSelectedTaskKeepingOld(taskOfControls());
    known = manager.selectedTask();
    return true;
}

/// Asks whether the task, which is no longer in the list, is to be stored all the same.
bool ViewControllerEdit::storeAsNew()
{
    Alert alert(this, u"This task was deleted elsewhere while the form was open."_s,
                u"What the form holds can be stored as a new task."_s);
    const QPushButton *store = alert.addButton(u"&Store as a New Task"_s, QMessageBox::AcceptRole);
    alert.setDefaultButton(alert.addButton(QMessageBox::Cancel));
    alert.exec();
    if (alert.clickedButton() != store)
        return false;
    task added = taskOfControls();
    added.hidden = known.hidden;
    manager.selectTaskByKey(manager.addTask(added));
    showWhole(manager.selectedTask());
    return true;
}

/// The fields in which storing would undo what others have done to the task since the form was opened.
QStringList ViewControllerEdit::fieldsOfOthers() const
{
    QStringList changed = differingFields(known, manager.selectedTask());
    const QStringList replaced = differingFields(taskOfControls(), manager.selectedTask());
    changed.removeIf([&](const QString &field) { return !replaced.contains(field); });
    return known.key.isEmpty() ? QStringList() : changed;
}

/// Asks before that is undone. Of the two versions, the one that is not chosen becomes another task.
bool ViewControllerEdit::mayReplace(const QStringList &changed)
{
    Alert alert(this,
                u"This task was changed elsewhere while the form was open: %1."_s.arg(changed.join(u", "_s)),
                u"Store your version, or keep the other one and see it here. The version that you do not "
                "choose becomes a task of its own, so that nothing is lost."_s);
    const QPushButton *storeMine = alert.addButton(u"Store &Mine"_s, QMessageBox::AcceptRole);
    const QPushButton *keepOther = alert.addButton(u"&Keep the Other"_s, QMessageBox::ActionRole);
    alert.setDefaultButton(alert.addButton(QMessageBox::Cancel));
    alert.exec();
    manager.selectAgain(known.key); // others may have gone on meanwhile
    if (hasGone() || alert.clickedButton() != keepOther)
        return alert.clickedButton() == storeMine;
    const task other = manager.selectedTask();
    task mine = taskOfControls();
    mine.hidden = other.hidden;
    manager.addTask(mine);
    services.notices.post(notice::reload);
    showWhole(other);
    return false;
}

/// Whether the task is no longer in the list, which may have been read anew since the form was opened.
bool ViewControllerEdit::hasGone() const
{
    return manager.selectedTask().key != known.key;
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
    manager.selectAgain(known.key);
    if (hasGone())
        return; // the form holds all that is left of the task
    const task stored = manager.selectedTask();
    showTask(stored);
    fields->color->setColor(stored.color);
}

void ViewControllerEdit::interfaceModeChangedWithSender(QObject *)
{
    diagnostics::line("Dark mode change");
    known.color = known.color.inverted();
    manager.invertColorWell(*fields->color, *fields->txtTaskDescription);
}

void ViewControllerEdit::shareTask(QObject *)
{
    if (!commitTyping() || !storeControls())
        return;
    services.notices.post(notice::reload);
    manager.shareSelectedTask(*ui->shareButton);
}
