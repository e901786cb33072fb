#include "mainwindow/FileBanners.h"

#include "taskfile/TaskListFile.h"

#include <utility>

using namespace Qt::StringLiterals;

FileBanners::FileBanners(TaskListFile &taskListFile, QBoxLayout &layout)
    : file(taskListFile)
    , report(layout, [this] { return unsaved(); })
{
}

void FileBanners::tell()
{
    QStringList news;
    const qsizetype rows = file.skippedRows();
    if (std::exchange(toldRows, rows) != rows && rows > 0)
        news.append(
            u"%1 of the rows in %2 could not be read and are not shown. The file is copied before it is "
            "overwritten."_s.arg(QString::number(rows), file.path()));
    report.tell(file.isSaved(), news, file.takeCopyPath());
}

bool FileBanners::mayQuit()
{
    return file.isSaved() || report.mayBeLeft(u"&Quit Without Saving"_s);
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
