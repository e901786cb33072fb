#include "widgets/FileReport.h"

#include "widgets/Alert.h"
#include "widgets/Banner.h"

#include <QBoxLayout>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPushButton>
#include <QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

static const QString showText = u"&Show"_s;

FileReport::FileReport(QBoxLayout &layout, std::function<Unsaved()> ofWindow)
    : unsaved(std::move(ofWindow))
    , unsavedBanner(new Banner(layout.parentWidget()))
    , newsBanner(new Banner(layout.parentWidget()))
{
    layout.insertWidget(0, newsBanner);
    layout.insertWidget(0, unsavedBanner);
    retry.setSingleShot(true);
    QObject::connect(&retry, &QTimer::timeout, &retry, [this] { tryAgain(); });
}

void FileReport::waitToTryAgain()
{
    constexpr std::array pauses{5s, 30s, 60s};
    if (!retry.isActive() && unsaved().isRepeatable)
        retry.start(pauses[std::min(retries++, pauses.size() - 1)]);
}

void FileReport::tryAgain()
{
    if (QGuiApplication::mouseButtons() != Qt::NoButton)
        waitToTryAgain(); // not in the middle of a stroke
    else
        unsaved().tryAgain(); // which tells how that went
}

void FileReport::tell(bool isSaved, QStringList news, const QString &copyPath)
{
    if (isSaved) {
        unsavedBanner->withdraw();
        retry.stop();
        retries = 0;
    } else {
        unsaved().tell(*unsavedBanner);
        waitToTryAgain();
    }
    if (!copyPath.isEmpty())
        news.append(u"What %1 held before is kept in %2."_s.arg(unsaved().path, copyPath));
    if (news.isEmpty())
        return;
    newsOnTheWay += news;
    shownNews.removeIf([&news](const QString &told) { return news.contains(told); });
    shownNews += news;
    showNews();
}

QStringList FileReport::newestNews() const
{
    constexpr qsizetype most = 5;
    return shownNews.last(std::min(most, shownNews.size()));
}

/// The newest sentences; those that there is no room for come up when these are dismissed.
void FileReport::showNews()
{
    if (shownNews.isEmpty()) {
        newsBanner->withdraw();
        return;
    }
    QStringList newest = newestNews();
    if (const qsizetype more = shownNews.size() - newest.size(); more > 0)
        newest.append(u"… and %1 more."_s.arg(more));
    newsBanner->tell(newest.join(u'\n'), {{showText,
                                           [this] {
                                               showFolder();
                                           }},
                                          {u"&Dismiss"_s, [this] {
                                               withdrawNews(newestNews());
                                           }}});
}

void FileReport::withdrawNews(const QStringList &over)
{
    if (shownNews.removeIf([&over](const QString &told) { return over.contains(told); }) > 0)
        showNews();
}

bool FileReport::mayClose(const QString &goOn)
{
    newsOnTheWay.clear();
    if (!unsaved().tryAgain() && !mayBeLeft(goOn))
        return false;
    if (newsOnTheWay.isEmpty())
        return true;
    Alert alert(newsBanner->window(), QString(), newsOnTheWay.join(u'\n'));
    const QPushButton *show = alert.addButton(showText, QMessageBox::ActionRole);
    alert.setDefaultButton(alert.addButton(QMessageBox::Ok));
    alert.setEscapeButton(QMessageBox::Ok);
    alert.exec();
    if (alert.clickedButton() == show)
        showFolder();
    return true;
}

bool FileReport::mayBeLeft(const QString &goOn) const
{
    return unsaved().mayBeLeft(*unsavedBanner->window(), goOn);
}

void FileReport::showFolder() const
{
    const QString folder = QFileInfo(unsaved().path).path();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        alertMessage(newsBanner->window(), u"No program could be opened that shows "_s + folder);
}
