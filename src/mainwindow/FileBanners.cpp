#include "mainwindow/FileBanners.h"

#include "taskfile/TaskListFile.h"
#include "widgets/Banner.h"

#include <QBoxLayout>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

FileBanners::FileBanners(TaskListFile &taskListFile, QBoxLayout &layout)
    : file(taskListFile)
    , unsavedBanner(new Banner(layout.parentWidget()))
    , newsBanner(new Banner(layout.parentWidget()))
{
    layout.insertWidget(0, newsBanner);
    layout.insertWidget(0, unsavedBanner);
}

void FileBanners::tell()
{
    if (file.isSaved())
        unsavedBanner->withdraw();
    else
        unsaved().tell(*unsavedBanner);
    QStringList news;
    const qsizetype rows = file.skippedRows();
    if (std::exchange(toldRows, rows) != rows && rows > 0)
        news.append(
            u"%1 of the rows in %2 could not be read and are not shown. The file is copied before it is "
            "overwritten."_s.arg(QString::number(rows), file.path()));
    if (const QString copy = file.takeCopyPath(); !copy.isEmpty())
        news.append(u"What the task list's file held before is kept in %1."_s.arg(copy));
    if (news.isEmpty())
        return;
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(file.path()).path());
    newsBanner->tell(news.join(u'\n'), {{u"&Show"_s,
                                         [folder] {
                                             QDesktopServices::openUrl(folder);
                                         }},
                                        {u"&Dismiss"_s, [this] {
                                             newsBanner->withdraw();
                                         }}});
}

bool FileBanners::mayQuit()
{
    return file.isSaved() || unsaved().mayBeLeft(*unsavedBanner->window(), u"&Quit Without Saving"_s);
}

Unsaved FileBanners::unsaved()
{
    const auto tryAgain = [this] {
        file.writeFile();
        tell();
        return file.isSaved();
    };
    return {.what = u"The task list"_s,
            .path = file.path(),
            .reason = [this] { return file.problem(); },
            .tryAgain = tryAgain,
            .content =
                [this] {
                    return file.text();
                }};
}
