#pragma once

#include <QDialog>

#include <memory>

class Preferences;

namespace Ui {
class ViewControllerSettings;
}

/// The settings of the message gateway's account and of the schedule messages.
class ViewControllerSettings : public QDialog
{
    Q_OBJECT

public:
    explicit ViewControllerSettings(Preferences &preferences, QWidget *parent = nullptr);
    ~ViewControllerSettings() override;

public slots:
    void setSettings(QObject *sender);
    void resetToOriginal(QObject *sender);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void connectActions();
    void viewWillAppear();
    bool saveControls();
    void revealSecret(bool reveal);

    std::unique_ptr<Ui::ViewControllerSettings> ui;
    Preferences &preferences;
};
