#pragma once

#include <QDialog>

#include <memory>

/// Shows the window in front of the others, also when it was hidden or minimised.
void bringToFront(QWidget &window);

/// Fills the window with the form that was drawn for it.
template <typename Form, typename Window>
std::unique_ptr<Form> setUpForm(Window &window)
{
    auto form = std::make_unique<Form>();
    form->setupUi(&window);
    return form;
}

/// A window beside the main one. It is told when it comes and goes, and not when it is only minimised, or
/// covered by the desktop.
class Screen : public QDialog
{
    Q_OBJECT

public:
    using QDialog::QDialog;

protected:
    /// Whether the screen may be closed; the answer may come from the user.
    virtual bool viewShouldClose() { return true; }
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}
    virtual void viewDidDisappear() {}

    void done(int result) override;
    void showEvent(QShowEvent *event) final;
    void hideEvent(QHideEvent *event) final;
};
