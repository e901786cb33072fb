#pragma once

#include "widgets/WheelGuard.h"

#include <QApplication>

class NotificationCenter;

/// The application object: name, look and surroundings of the program.
class Application : public QApplication
{
    Q_OBJECT

public:
    Application(int &argc, char **argv);

    /// Shows the palette of the desktop's appearance, now and after every change.
    void followAppearance(NotificationCenter &systemNotices);
    /// Moves to the documents folder when nothing can be written in the working folder, where the
    /// whiteboard's picture is kept.
    static void findWritableFolder();
    /// Has Qt's own dialogs keep what they remember, such as custom colours, in the state folder, where no
    /// lock is left that they would wait for without limit. Only one running program may do so.
    static void keepDialogSettings();

private:
    WheelGuard wheelGuard;
};
