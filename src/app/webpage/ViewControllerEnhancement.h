#pragma once

#include "app/WebPageModule.h"

#include <QDialog>
#include <QWebEngineView>

/// The web page screen: shows the guide that comes with the program, and nothing from elsewhere.
class ViewControllerEnhancement : public QDialog
{
    Q_OBJECT

public:
    ViewControllerEnhancement(const WebPageModule::Host &host, QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;

private:
    void viewDidLoad(const WebPageModule::Host &host);
    void showAppearance();

    QWebEngineView *browserView;
};
