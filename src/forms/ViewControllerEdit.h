#pragma once

#include "forms/TaskForm.h"

namespace Ui {
class ViewControllerEdit;
}

/// The form of the task that is selected in the main window.
class ViewControllerEdit : public TaskForm
{
    Q_OBJECT

public:
    explicit ViewControllerEdit(const TaskFormServices &services, QWidget *parent = nullptr);
    ~ViewControllerEdit() override;

public slots:
    void btnEditTask_ClickWithSender(QObject *sender);
    void SelectDate(QObject *sender);
    void SelectDueDate(QObject *sender);
    void SelectColorWell(QObject *sender);
    void ResetToOriginal(QObject *sender);
    /// The desktop switched between light and dark.
    void interfaceModeChangedWithSender(QObject *sender);
    void shareTask(QObject *sender);

protected:
    void viewWillAppear() override;
    void viewDidAppear() override;

private:
    ViewControllerEdit(const TaskFormServices &services, const task &edited, QWidget *parent);
    void viewDidLoad();
    void connectActions();
    void showWhole(const task &shown);
    bool storeControls();
    bool storeAsNew();
    QStringList fieldsOfOthers() const;
    bool mayReplace(const QStringList &fieldsOfOthers);
    bool hasGone() const;
    void logDates() const;

    std::unique_ptr<Ui::ViewControllerEdit> ui;
    task known; ///< the task as it was when it was last shown whole or stored
    bool isRegistered = false;
};
