#pragma once

#include "forms/TaskForm.h"

class Banner;

namespace Ui {
class ViewControllerAdd;
}

/// The form of a new task. What is closed without being added is offered when the form is opened again; where
/// that cannot be kept, it is asked before the form closes.
class ViewControllerAdd : public TaskForm
{
    Q_OBJECT

public:
    explicit ViewControllerAdd(const TaskFormServices &services, QWidget *parent = nullptr);
    ~ViewControllerAdd() override;

public slots:
    void btnAddTask_Click(QObject *sender);
    void SelectDate(QObject *sender);
    void SelectDueDate(QObject *sender);
    void selectColorWell(QObject *sender);
    void ResetToOriginal(QObject *sender);
    void chooseStartTime(QObject *sender);
    void chooseEndTime(QObject *sender);
    /// The desktop switched between light and dark.
    void interfaceModeChangedWithSender(QObject *sender);

signals:
    /// A task with this key was added, and the main window shows it.
    void added(const QString &key);

protected:
    bool viewShouldClose() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void viewDidLoad();
    void connectActions();
    void offerDraft(const QString &problem = {});
    void takeUpDraft();
    bool isTouched() const;
    void takeTyping();
    bool keepBegun();
    void tellOfDamage();

    std::unique_ptr<Ui::ViewControllerAdd> ui;
    Banner *damage;
    Banner *offer;
    task untouched;      ///< what the controls show when nothing has been entered
    bool isKept = false; ///< as a begun task, when the form was hidden
};
