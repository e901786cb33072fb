#pragma once

#include <QString>

class Desktop;
class MainWindowHandle;
class Stage;

/// The steps with the notes pad, the whiteboard and the guide.
class ToolSteps
{
public:
    ToolSteps(Stage &stage, const MainWindowHandle &main, Desktop &desktop);

    /// \param path  of the notes file
    void writeNotes(const QString &path);
    /// \param path  of the picture file
    void drawOnWhiteboard(const QString &path);
    void readGuide();

private:
    Stage &stage;
    const MainWindowHandle &main;
    Desktop &desktop;
};
