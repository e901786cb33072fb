#pragma once

#include "contacts/PersistentContainer.h"
#include "model/task.h"
#include "widgets/Screen.h"

#include <array>
#include <memory>

class ColorPanel;
class DatePicker;
class NotificationCenter;
class PickerField;
class QComboBox;
class TaskDraft;
class TaskManager;

namespace Ui {
class TaskFields;
}

/// What the task forms are given to work with.
struct TaskFormServices
{
    TaskManager &manager;
    NotificationCenter &notices;       ///< the application's own
    NotificationCenter &systemNotices; ///< the system-wide ones
    ColorPanel &colorPanel;
    TaskDraft &draft;
    QString dataFolder; ///< where the contact store is
};

/// What the form of a new task and the form of an existing one share: the controls for a task, the contacts'
/// names, the rule for colours.
class TaskForm : public Screen
{
    Q_OBJECT

public:
    ~TaskForm() override;

protected:
    TaskForm(const TaskFormServices &services, const Color &color, Instant date, Instant due,
             QWidget *parent);

    /// Puts the controls into the widget, and the contacts' names into the lists to choose from.
    void loadView(QWidget &place);
    void viewDidAppear() override;
    void viewDidDisappear() override;

    /// All of them, in the order in which what is being typed into them is taken.
    std::array<PickerField *, 4> pickers() const;
    /// Takes what is still being typed into the pickers; false when one of the dates was refused.
    bool commitTyping();
    /// The controls' values as a task without key.
    task taskOfControls() const;
    /// Shows what both forms also reset: name, description, dates, status and priority.
    void showTask(const task &shown);
    /// Shows all of the task.
    void showWholeTask(const task &shown);

    /// Accepts the colour that was chosen in the well, unless the description could not be read on it.
    void acceptColor(const QObject &sender);
    /// Says why a date is refused, and returns the picker to the previous one.
    void refuse(DatePicker &picker, Instant previous, const QString &reason);
    void hideColorPanel();

    TaskFormServices services;
    TaskManager &manager;
    std::unique_ptr<Ui::TaskFields> fields;
    PersistentContainer persistentContainer;
    ObjectContext *managedObjectContext = nullptr;
    Color colorWell;
    Instant previousDate;
    Instant previousDueDate;

private:
    bool isRefused = false;
};
