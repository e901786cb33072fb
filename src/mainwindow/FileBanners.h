#pragma once

#include "platform/FileWatch.h"
#include "widgets/FileReport.h"

class QBoxLayout;
class TaskListFile;

/// Tells in the main window what has become of the task list's file: that the list is not in it, which rows
/// of it were left out, where it was copied to. Has the list follow the file when another program writes it.
class FileBanners
{
public:
    /// \param layout  of the window's content, at the top of which the banners stand
    /// \param listChanged  is called when the list was read from the file again
    FileBanners(TaskListFile &file, QBoxLayout &layout, std::function<void()> listChanged);

    /// Brings the banners up to date, after the file was read or written.
    /// \param news  whole sentences to be told besides
    void tell(QStringList news = {});
    /// Whether the program may end; while the list is not saved, that is asked of the user.
    bool mayQuit();

private:
    bool tryAgain();
    Unsaved unsaved();

    TaskListFile &file;
    std::function<void()> showList;
    FileReport report;
    FileWatch watch;
    QStringList toldLasting; ///< sentences that are so as long as the file is what it is
};
