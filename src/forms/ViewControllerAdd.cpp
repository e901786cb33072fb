#include "forms/ViewControllerAdd.h"

#include "app/UIUtil.h"
#include "forms/TaskDraft.h"
#include "model/Appearance.h"
#include "model/TaskManager.h"
#include "model/TaskShareText.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "ui_TaskFields.h"
#include "ui_ViewControllerAdd.h"
#include "widgets/Banner.h"
#include "widgets/Unsaved.h"

#include <tuple>

using namespace Qt::StringLiterals;

ViewControllerAdd::ViewControllerAdd(const TaskFormServices &formServices, QWidget *parent)
    : TaskForm(formServices, Color(), Calendar::now(), Calendar::now(), parent)
    , ui(std::make_unique<Ui::ViewControllerAdd>())
    , damage(new Banner(this))
    , offer(new Banner(this))
{
    ui->setupUi(this);
    ui->mainLayout->insertWidget(0, offer);
    ui->mainLayout->insertWidget(0, damage);
    loadView(*ui->taskFields);
    viewDidLoad();
    connectActions();
    offerDraft();
    tellOfDamage();
}

ViewControllerAdd::~ViewControllerAdd() = default;

void ViewControllerAdd::viewDidLoad()
{
    const Instant now = Calendar::now();
    showTask({.date = now, .due = now});
    services.systemNotices.observe(notice::appearanceChanged, this,
                                   [this] { interfaceModeChangedWithSender(&services.systemNotices); });
    manager.resetColorWell(*fields->color, *fields->txtTaskDescription);
    util().setTime(*fields->startTime, manager.defaultStartHour, manager.defaultStartMin);
    util().setTime(*fields->endTime, manager.defaultEndHour, manager.defaultEndMin);
    untouched = taskOfControls();
}

void ViewControllerAdd::connectActions()
{
    connect(ui->addButton, &QPushButton::clicked, this, [this] { btnAddTask_Click(ui->addButton); });
    connect(fields->txtTaskName, &QLineEdit::returnPressed, ui->addButton, &QPushButton::click);
    connect(ui->resetButton, &QPushButton::clicked, this, [this] { ResetToOriginal(ui->resetButton); });
    connect(fields->dtTaskDate, &DatePicker::dayChosen, this, [this] { SelectDate(fields->dtTaskDate); });
    connect(fields->dtTaskDueDate, &DatePicker::dayChosen, this,
            [this] { SelectDueDate(fields->dtTaskDueDate); });
    connect(fields->color, &ColorWell::colorChosen, this, [this] { selectColorWell(fields->color); });
    connect(fields->startTime, &TimePicker::timeChosen, this, [this] { chooseStartTime(fields->startTime); });
    connect(fields->endTime, &TimePicker::timeChosen, this, [this] { chooseEndTime(fields->endTime); });
}

void ViewControllerAdd::viewWillAppear()
{
    setMinimumSize(565, 452);
    if (std::exchange(isKept, false))
        services.draft.takeUp(); // the form was hidden for a moment, and still holds it
    colorWell = appearanceTextColor().inverted();
    for (const TimePicker *picker : {fields->startTime, fields->endTime})
        diagnostics::line(util().getHour(*picker), ":", util().getMinute(*picker));
}

bool ViewControllerAdd::viewShouldClose()
{
    if (keepBegun())
        return true;
    const Unsaved unkept{.what = {},
                         .path = services.draft.path(),
                         .reason = {},
                         .tryAgain = [this] { return services.draft.store(); },
                         .content = [this] { return taskShareText(taskOfControls(), newKey()).toUtf8(); },
                         .copySuffix = u"txt"_s,
                         .sentence =
                             u"What you have begun cannot be kept: %1."_s.arg(services.draft.problem())};
    if (unkept.mayBeLeft(*this, u"Close All the &Same"_s))
        return true;
    isKept = false;
    services.draft.takeUp(); // the form still holds it
    return false;
}

void ViewControllerAdd::viewWillDisappear()
{
    if (!isKept)
        keepBegun();
}

/// Keeps what the form holds, if anything was entered; false when that goes with the program.
bool ViewControllerAdd::keepBegun()
{
    takeTyping();
    isKept = isTouched();
    if (isKept)
        return services.draft.keep(taskOfControls());
    services.draft.letGo();
    return true;
}

/// Takes what is still being typed into the pickers as far as it can be read, and without a question: there
/// is nobody left to answer it.
void ViewControllerAdd::takeTyping()
{
    for (PickerField *picker : pickers())
        picker->takeTyped();
    if (util().compareDays(fields->dtTaskDate->moment(), fields->dtTaskDueDate->moment()) >= 0)
        return;
    fields->dtTaskDate->setMoment(previousDate);
    fields->dtTaskDueDate->setMoment(previousDueDate);
}

/// Whether anything was entered; a colour alone is not worth keeping.
bool ViewControllerAdd::isTouched() const
{
    const auto entered = [](const task &entry) {
        return std::tie(entry.date, entry.name, entry.desc, entry.client, entry.teamMember, entry.due,
                        entry.statusName, entry.priorityName, entry.startHour, entry.startMin, entry.endHour,
                        entry.endMin);
    };
    const task shown = taskOfControls();
    return entered(shown) != entered(untouched);
}

/// \param problem  why it has not been taken up, in whole sentences
void ViewControllerAdd::offerDraft(const QString &problem)
{
    const std::optional<task> begun = services.draft.begun();
    if (!begun) {
        offer->withdraw();
        return;
    }
    constexpr int widest = 250; // pixels
    const QString name = fontMetrics().elidedText(begun->name.simplified(), Qt::ElideRight, widest);
    const QString sentence = name.isEmpty() ? u"You had begun a task that has no name yet."_s
                                            : u"You had begun the task “%1”."_s.arg(name);
    offer->tell((sentence + u' ' + problem).trimmed(), {{u"Take It Up"_s,
                                                         [this] {
                                                             takeUpDraft();
                                                         }},
                                                        {u"Discard"_s, [this] {
                                                             services.draft.discard();
                                                             offerDraft();
                                                         }}});
}

void ViewControllerAdd::tellOfDamage()
{
    if (const QString path = services.draft.takeSetAside(); !path.isEmpty())
        damage->tell(u"Not every task that you had begun could be read. The file is kept in %1."_s.arg(path),
                     {{u"Dismiss"_s, [this] {
                           damage->withdraw();
                       }}});
}

/// Exchanges it for what has been entered meanwhile, if anything.
void ViewControllerAdd::takeUpDraft()
{
    const std::optional<task> entered = isTouched() ? std::optional(taskOfControls()) : std::nullopt;
    const std::optional<task> begun = services.draft.takeUp(entered);
    if (!begun) {
        offerDraft(u"It has not been taken up, since what you have entered cannot be kept: %1."_s.arg(
            services.draft.problem()));
        return;
    }
    showWholeTask(*begun);
    colorWell = begun->color;
    previousDate = begun->date;
    previousDueDate = begun->due;
    offerDraft();
    fields->txtTaskName->setFocus();
}

void ViewControllerAdd::focusInEvent(QFocusEvent *event)
{
    TaskForm::focusInEvent(event);
    fields->txtTaskDescription->setFocus();
    diagnostics::line("Description has the focus:", fields->txtTaskDescription->hasFocus());
}

void ViewControllerAdd::btnAddTask_Click(QObject *)
{
    diagnostics::line("Button Pressed");
    if (!commitTyping())
        return;
    const QString key = manager.addTask(taskOfControls());
    fields->txtTaskName->clear();
    fields->txtTaskDescription->setText({});
    hideColorPanel();
    untouched = taskOfControls();
    services.notices.post(notice::reload);
    emit added(key);
    close();
}

void ViewControllerAdd::SelectDate(QObject *)
{
    if (util().compareDays(fields->dtTaskDate->moment(), fields->dtTaskDueDate->moment()) < 0)
        refuse(*fields->dtTaskDate, previousDate, u"Select a Start Date prior to Due Date"_s);
    previousDate = fields->dtTaskDate->moment();
}

void ViewControllerAdd::SelectDueDate(QObject *)
{
    diagnostics::line("Start Date:", fields->dtTaskDate->moment());
    diagnostics::line("Due Date:", fields->dtTaskDueDate->moment());
    if (util().compareDays(fields->dtTaskDueDate->moment(), fields->dtTaskDate->moment()) > 0)
        refuse(*fields->dtTaskDueDate, previousDueDate, u"Select a Due Date after Start Date"_s);
    previousDueDate = fields->dtTaskDueDate->moment();
}

void ViewControllerAdd::selectColorWell(QObject *sender)
{
    acceptColor(*sender);
}

void ViewControllerAdd::ResetToOriginal(QObject *)
{
    diagnostics::line("Reset");
    const Instant now = Calendar::now();
    showTask({.date = now, .due = now});
    untouched.date = untouched.due = now;
    manager.resetColorWell(*fields->color, *fields->txtTaskDescription);
}

void ViewControllerAdd::chooseStartTime(QObject *) {}

void ViewControllerAdd::chooseEndTime(QObject *) {}

void ViewControllerAdd::interfaceModeChangedWithSender(QObject *)
{
    diagnostics::line("Dark mode change");
    manager.resetColorWell(*fields->color, *fields->txtTaskDescription);
}
