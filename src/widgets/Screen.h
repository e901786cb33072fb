#pragma once

#include <QDialog>

/// Shows the window and brings it to the user, also from the task bar.
void bringToFront(QWidget &window);

/// A window beside the main one. It is told when it comes and goes, and not when it is only minimised, or
/// covered by the desktop.
class Screen : public QDialog
{
    Q_OBJECT

public:
    using QDialog::QDialog;

protected:
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}
    virtual void viewDidDisappear() {}

    void showEvent(QShowEvent *event) final;
    void hideEvent(QHideEvent *event) final;
};
