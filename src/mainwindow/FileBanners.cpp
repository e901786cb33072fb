#include "mainwindow/FileBanners.h"

#include "taskfile/TaskListFile.h"

#include <utility>

using namespace Qt::StringLiterals;

FileBanners::FileBanners(TaskListFile &taskListFile, QBoxLayout &layout, std::function<void()> listChanged)
    : file(taskListFile)
    , showList(std::move(listChanged))
    , report(layout, [this] { return unsaved(); })
    , watch(taskListFile.path())
{
    QObject::connect(&watch, &FileWatch::mayHaveChanged, &watch, [this] {
        if (file.followFile())
            showList();
        tell();
    });
}

void FileBanners::tell(QStringList news)
{
    QStringList lasting;
    if (const qsizetype rows = file.skippedRows(); rows > 0)
        lasting.append(
            u"%1 of the rows in %2 could not be read and are not shown. The file is copied before it is "
            "overwritten."_s.arg(QString::number(rows), file.path()));
    if (file.isGone())
        lasting.append(u"There is no task list in %1 any more, where there was one before; an empty list is "
                       u"shown. If it is on a disk that is not connected now, connect that disk before you "
                       u"add tasks."_s.arg(file.path()));
    const QStringList before = std::exchange(toldLasting, lasting);
    const auto leftOf = [](QStringList sentences, const QStringList &others) {
        sentences.removeIf([&others](const QString &one) { return others.contains(one); });
        return sentences;
    };
    report.withdrawNews(leftOf(before, lasting));
    news += leftOf(lasting, before);
    report.tell(file.isSaved() && file.readProblem().isEmpty(), news, file.takeCopyPath());
}

bool FileBanners::mayQuit()
{
    return file.isSaved() || report.mayClose(u"&Quit Without Saving"_s);
}

bool FileBanners::tryAgain()
{
    if (file.followFile())
        showList();
    else if (file.readProblem().isEmpty())
        file.writeFile();
    tell();
    return file.isSaved();
}

Unsaved FileBanners::unsaved()
{
    const QString unreadable =
        u"The task list in %1 cannot be read: %2. Tasks that you add are put together with it as soon as it "
        "can be read again."_s.arg(file.path(), file.readProblem());
    return {.what = u"The task list"_s,
            .path = file.path(),
            .reason = [this] { return file.problem(); },
            .tryAgain = [this] { return tryAgain(); },
            .content = [this] { return file.text(); },
            .isRepeatable = !file.isSaved(),
            .sentence = file.readProblem().isEmpty() ? QString() : unreadable};
}
