#pragma once

#include <QStringList>

class QCommandLineParser;

/// What the program is asked to do by the arguments it is started with.
class CommandLine
{
public:
    enum class Purpose {
        Window,  ///< To run, in a window.
        Answer,  ///< To say `answer` on standard output.
        Listing, ///< To list the tasks of `view` on standard output.
        Unknown, ///< Says on standard error, by `answer`, why there is none.
    };

    /// \param arguments  the program's name and its arguments, those for Qt included
    explicit CommandLine(const QStringList &arguments);

    Purpose purpose = Purpose::Window;
    QString answer = {};
    QString action = {}; ///< to do once the window is shown, as the desktop entry names it; empty for none
    int view = 0;        ///< position of the view
    bool isJson = false;

    /// The object name of the main window's command for an action of the desktop entry; empty for no action.
    static QString commandOf(const QString &action);

private:
    void read(const QCommandLineParser &parser);
    void readListing(const QCommandLineParser &parser);
    void refuse(const QString &why);
};
