#pragma once

#include <QObject>

/// The application's delegate. The main window does all the work of starting, so it has nothing of its own to
/// do.
class AppDelegate : public QObject
{
    Q_OBJECT

public slots:
    void applicationDidFinishLaunching() {}
    void applicationWillTerminate() {}
};
