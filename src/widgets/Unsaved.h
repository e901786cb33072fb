#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class Banner;
class QWidget;

/// Something of the user's that could not be written to its file.
struct Unsaved
{
    QString what;                        ///< as the beginning of a sentence: The task list
    QString path;                        ///< of the file
    std::function<QString()> reason;     ///< of the last failure, in the words of the operating system
    std::function<bool()> tryAgain;      ///< true when it is written now
    std::function<QByteArray()> content; ///< what a copy is to hold
    QString copySuffix = {};             ///< of the copy's name, where it is not the file's
    bool isRepeatable = true;            ///< may be tried again while the user is at work
    QString sentence = {};               ///< what there is to say, where it is more than a failed save

    /// Says in the banner what could not be saved, why and where, and offers to try again and to save a copy.
    void tell(Banner &banner) const;
    /// Asks in front of the window whether to go on without saving; true when it is written now, a copy is
    /// saved, or the user wants to let it go. \param goOn  text of the button for that
    bool mayBeLeft(QWidget &window, const QString &goOn) const;
};
