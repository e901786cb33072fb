#include "widgets/FileReport.h"

#include "widgets/Alert.h"
#include "widgets/Banner.h"

#include <QBoxLayout>
#include <QDesktopServices>
#include <QFileInfo>
#include <QPushButton>
#include <QUrl>

using namespace Qt::StringLiterals;

static const QString showText = u"&Show"_s;

FileReport::FileReport(QBoxLayout &layout, std::function<Unsaved()> ofWindow)
    : unsaved(std::move(ofWindow))
    , unsavedBanner(new Banner(layout.parentWidget()))
    , newsBanner(new Banner(layout.parentWidget()))
{
    layout.insertWidget(0, newsBanner);
    layout.insertWidget(0, unsavedBanner);
}

void FileReport::tell(bool isSaved, QStringList news, const QString &copyPath)
{
    if (isSaved)
        unsavedBanner->withdraw();
    else
        unsaved().tell(*unsavedBanner);
    if (!copyPath.isEmpty())
        news.append(u"What %1 held before is kept in %2."_s.arg(unsaved().path, copyPath));
    if (news.isEmpty())
        return;
    lastNews = news.join(u'\n');
    newsBanner->tell(lastNews, {{showText,
                                 [this] {
                                     showFolder();
                                 }},
                                {u"&Dismiss"_s, [this] {
                                     newsBanner->withdraw();
                                 }}});
}

bool FileReport::mayClose(const QString &goOn)
{
    lastNews.clear();
    if (!unsaved().tryAgain() && !mayBeLeft(goOn))
        return false;
    if (lastNews.isEmpty())
        return true;
    Alert alert(newsBanner->window(), QString(), lastNews);
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
