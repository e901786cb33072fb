#pragma once

#include "widgets/Unsaved.h"

#include <QStringList>
#include <QTimer>

class Banner;
class QBoxLayout;

/// Tells at the top of a window what becomes of the file that holds what it shows: that something is not in
/// it, as long as that is so, and once whatever else there is to know, with a way to the file.
class FileReport
{
public:
    /// \param layout   at the top of which the banners stand
    /// \param unsaved  what is to be in the file; called when it is needed
    FileReport(QBoxLayout &layout, std::function<Unsaved()> unsaved);

    /// Brings the banners up to date, after the file was read or written. What is not saved is tried again by
    /// and by.
    /// \param news      whole sentences; they are added to what is told, until the user dismisses it
    /// \param copyPath  where the file was copied to; empty for no copy
    void tell(bool isSaved, QStringList news, const QString &copyPath);
    /// \param over  sentences that are no longer so; whatever else was told stays
    void withdrawNews(const QStringList &over);
    /// Saves once more, and says whether the window may go; while that fails, it is asked of the user. News
    /// that come up on the way are told in an alert, since nobody would see them in the window.
    /// \param goOn  text of the button that lets go what is not saved
    bool mayClose(const QString &goOn);
    /// Asks in the same way, without saving once more.
    bool mayBeLeft(const QString &goOn) const;

private:
    void showNews();
    QStringList newestNews() const;
    void showFolder() const;
    void tryAgain();
    void waitToTryAgain();

    std::function<Unsaved()> unsaved;
    Banner *unsavedBanner;
    Banner *newsBanner;
    QStringList shownNews;
    QStringList newsOnTheWay; ///< since it was last asked whether the window may go
    QTimer retry;
    size_t retries = 0; ///< since it could be saved
};
