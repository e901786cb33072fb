#pragma once

#include "widgets/Screen.h"

#include <memory>

class Preferences;

namespace Ui {
class ViewControllerSettings;
}

/// The settings of the message gateway's account and of the schedule messages.
class ViewControllerSettings : public Screen
{
    Q_OBJECT

public:
    explicit ViewControllerSettings(Preferences &preferences, QWidget *parent = nullptr);
    ~ViewControllerSettings() override;

public slots:
    void setSettings(QObject *sender);
    void resetToOriginal(QObject *sender);

protected:
    void viewWillAppear() override;

private:
    void connectActions();
    bool saveControls();
    void revealSecret(bool reveal);

    std::unique_ptr<Ui::ViewControllerSettings> ui;
    Preferences &preferences;
};
