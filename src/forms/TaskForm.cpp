#include "forms/TaskForm.h"

#include "app/UIUtil.h"
#include "contacts/Contact.h"
#include "model/Appearance.h"
#include "platform/Diagnostics.h"
#include "ui_TaskFields.h"
#include "widgets/Alert.h"

#include <QAbstractButton>
#include <QCompleter>
#include <QLineEdit>
#include <QStringListModel>
#include <QTimer>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

void listNames(QComboBox &box, const QStringList &names)
{
    box.setModel(new QStringListModel(names, &box));
    box.setCurrentIndex(-1);
}

/// What is typed is stored as typed: suggestions are listed below the text and never complete it by
/// themselves, and leaving the box does not take an entry that is written in another case.
void suggestOnly(QComboBox &box)
{
    box.completer()->setCompletionMode(QCompleter::PopupCompletion);
    box.completer()->setCaseSensitivity(Qt::CaseSensitive);
}

/// Selects the entry at the position; where the list has none, the box shows the text.
void selectPosition(QComboBox &box, qint64 position, const QString &text)
{
    const bool isListed = position >= 0 && position < box.count();
    box.setCurrentIndex(isListed ? int(position) : -1);
    if (!isListed)
        box.setEditText(text);
}

/// Shows the text in the box, whether or not its list has it.
void showText(QComboBox &box, const QString &text)
{
    box.setCurrentIndex(box.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
    box.setEditText(text);
    box.lineEdit()->home(false); // a long name is read from its beginning
}

/// The position of the entry that equals the box's text, or −1. The current index does not follow typing.
int positionOf(const QComboBox &box)
{
    return box.findText(box.currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive);
}

} // namespace

TaskForm::TaskForm(const TaskFormServices &formServices, const Color &color, Instant date, Instant due,
                   QWidget *parent)
    : Screen(parent)
    , services(formServices)
    , manager(formServices.manager)
    , fields(std::make_unique<Ui::TaskFields>())
    , persistentContainer(contactModel(), formServices.dataFolder)
    , colorWell(color)
    , previousDate(date)
    , previousDueDate(due)
{
}

TaskForm::~TaskForm() = default;

void TaskForm::loadView(QWidget &place)
{
    fields->setupUi(&place);
    fields->color->setPanel(services.colorPanel);
    persistentContainer.loadPersistentStores();
    managedObjectContext = &persistentContainer.viewContext();
    diagnostics::line("Mngd Context:", *managedObjectContext);
    listNames(*fields->client, contactNames(*managedObjectContext, Clients::fetchRequest()));
    listNames(*fields->teamMember, contactNames(*managedObjectContext, TeamMembers::fetchRequest()));
    persistentContainer.close(); // a form may stay open for long
    for (QComboBox *box : {fields->inTaskStatus, fields->inTaskPriority, fields->client, fields->teamMember})
        suggestOnly(*box);
    // The task list file sets no limit to its texts, so the form does not either.
    constexpr int unlimited = std::numeric_limits<int>::max();
    fields->txtTaskName->setMaxLength(unlimited);
    for (QComboBox *box : {fields->inTaskStatus, fields->inTaskPriority, fields->client, fields->teamMember})
        box->lineEdit()->setMaxLength(unlimited);
    fields->txtTaskName->setFocus();
}

void TaskForm::viewDidAppear()
{
    resize(565, 613);
    repaint();
}

void TaskForm::viewDidDisappear()
{
    hideColorPanel();
}

std::array<PickerField *, 4> TaskForm::pickers() const
{
    return {fields->dtTaskDueDate, fields->dtTaskDate, fields->startTime, fields->endTime};
}

bool TaskForm::commitTyping()
{
    isRefused = false;
    for (PickerField *picker : pickers())
        if (!picker->commit())
            return false;
    return !isRefused;
}

task TaskForm::taskOfControls() const
{
    return {.date = fields->dtTaskDate->moment(),
            .name = fields->txtTaskName->text(),
            .desc = fields->txtTaskDescription->text(),
            .client = fields->client->currentText(),
            .teamMember = fields->teamMember->currentText(),
            .color = fields->color->color(),
            .due = fields->dtTaskDueDate->moment(),
            .status = positionOf(*fields->inTaskStatus),
            .priority = positionOf(*fields->inTaskPriority),
            .statusName = fields->inTaskStatus->currentText(),
            .priorityName = fields->inTaskPriority->currentText(),
            .startHour = util().getHour(*fields->startTime),
            .startMin = util().getMinute(*fields->startTime),
            .endHour = util().getHour(*fields->endTime),
            .endMin = util().getMinute(*fields->endTime)};
}

void TaskForm::showTask(const task &shown)
{
    fields->dtTaskDate->setMoment(shown.date);
    fields->txtTaskName->setText(shown.name);
    fields->txtTaskDescription->setText(shown.desc);
    fields->dtTaskDueDate->setMoment(shown.due);
    selectPosition(*fields->inTaskStatus, shown.status, shown.statusName);
    selectPosition(*fields->inTaskPriority, shown.priority, shown.priorityName);
}

void TaskForm::showWholeTask(const task &shown)
{
    showTask(shown);
    fields->color->setColor(shown.color);
    util().setTime(*fields->startTime, shown.startHour, shown.startMin);
    util().setTime(*fields->endTime, shown.endHour, shown.endMin);
    showText(*fields->client, shown.client);
    showText(*fields->teamMember, shown.teamMember);
}

void TaskForm::acceptColor(const QObject &sender)
{
    diagnostics::line("Select color well", sender.objectName());
    hideColorPanel();
    if (fields->color->color() == fields->txtTaskDescription->textColor()) {
        fields->color->setColor(colorWell);
        return;
    }
    colorWell = fields->color->color();
    fields->txtTaskDescription->setTextColor(appearanceTextColor());
}

void TaskForm::refuse(DatePicker &picker, Instant previous, const QString &reason)
{
    isRefused = true;
    if (isVisible()) // the form may have been closed while the date was being typed
        alertMessage(this, reason);
    picker.setMoment(previous);
    // Pressing a button takes the focus from the picker, which may bring this about. The button does not
    // learn of its release then, which goes to the alert.
    QTimer::singleShot(0, this, [this] {
        for (QAbstractButton *button : findChildren<QAbstractButton *>())
            button->setDown(false);
    });
}

void TaskForm::hideColorPanel()
{
    services.colorPanel.orderOut();
    fields->color->deactivate();
}
