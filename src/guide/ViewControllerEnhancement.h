#pragma once

#include <QDialog>
#include <QWebEngineView>

/// The web page screen: shows the guide that comes with the program, and nothing from elsewhere.
class ViewControllerEnhancement : public QDialog
{
    Q_OBJECT

public:
    ViewControllerEnhancement();

protected:
    void changeEvent(QEvent *event) override;

private:
    void viewDidLoad();
    void showAppearance();

    QWebEngineView *browserView;
};
