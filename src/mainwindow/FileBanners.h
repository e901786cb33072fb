#pragma once

#include "widgets/FileReport.h"

class QBoxLayout;
class TaskListFile;

/// Tells in the main window what has become of the task list's file: that the list is not in it, which rows
/// of it were left out, where it was copied to.
class FileBanners
{
public:
    /// \param layout  of the window's content, at the top of which the banners stand
    FileBanners(TaskListFile &file, QBoxLayout &layout);

    /// Brings the banners up to date, after the file was read or written.
    void tell();
    /// Whether the program may end; while the list is not saved, that is asked of the user.
    bool mayQuit();

private:
    Unsaved unsaved();

    TaskListFile &file;
    FileReport report;
    qsizetype toldRows = 0; ///< that were left out
};
