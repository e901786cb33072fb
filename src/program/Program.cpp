#include "program/Program.h"

#include "cloud/TaskRecord.h"
#include "model/TaskManager.h"
#include "platform/Diagnostics.h"
#include "platform/Folders.h"
#include "platform/ProtectedFile.h"
#include "program/CommandLine.h"
#include "widgets/Screen.h"

#include <QAction>
#include <QApplication>
#include <QDeadlineTimer>

#include <cstdlib>

using namespace Qt::StringLiterals;

Program::Folders Program::Folders::ofUser()
{
    return {folders::documents(), folders::config(), folders::data(), folders::state()};
}

/// Does what an earlier run could not; what the user has to be told of it.
static QStringList finishEarlierWrites(const QString &stateFolder)
{
    QStringList news;
    for (const auto &[path, copyPath, problem, redoPath] : ProtectedFile::replayAll(stateFolder)) {
        if (!copyPath.isEmpty())
            news << u"A file had two versions when the program started. The other one is kept in %1."_s.arg(
                copyPath);
        if (!problem.isEmpty())
            news
                << u"What was last changed in %1 is not in that file yet, since it could not be written: %2. "
                   "It is kept in %3 until it can be."_s.arg(path, problem, redoPath);
    }
    return news;
}

Program::Program(TaskManager &manager, NotificationCenter &systemNotices, const Folders &folders,
                 const GatewayAddress &gateway)
    : news(finishEarlierWrites(folders.state))
    , draft(folders.state + u"/begun-task"_s)
    , scheduleRuns(manager.defaults, gateway, folders.data)
    , versions(folders.state)
    , screens({manager, notices, systemNotices, colorPanel, draft, folders.data}, scheduleRuns, versions,
              {folders.documents, folders.state})
    , container(CloudHome::read(folders.config + u"/cloud.ini"_s, folders.data), taskRecordType())
    , cloud(manager, notices, container)
    , window(manager, notices, systemNotices, screens, cloud, versions, folders.documents, folders.state,
             news)
{
}

int Program::run(const std::function<void()> &cutShort)
{
    window.show();
    delegate.applicationDidFinishLaunching();
    const int result = QApplication::exec();
    delegate.applicationWillTerminate();
    if (!finish(std::chrono::seconds(5))) {
        // A server keeps one of the threads waiting, and the destructors would wait for that thread.
        diagnostics::drain();
        cutShort();
        std::_Exit(result);
    }
    return result;
}

void Program::perform(const QString &action)
{
    const QString name = CommandLine::commandOf(action);
    auto *command = name.isEmpty() ? nullptr : window.findChild<QAction *>(name); // no name: any command
    if (!command) {
        bringToFront(window);
        return;
    }
    // What opens comes to the front: where that takes leave, it is given once.
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.raise();
    command->trigger();
}

bool Program::finish(std::chrono::nanoseconds limit)
{
    const QDeadlineTimer deadline(limit);
    scheduleRuns.stop();
    const bool isCloudDone = cloud.finish(deadline.remainingTimeAsDuration());
    const bool areMessagesDone = scheduleRuns.finish(deadline.remainingTimeAsDuration());
    const bool isVersionKept = versions.finish(deadline.remainingTimeAsDuration()); // last: it may be missing
    return isCloudDone && areMessagesDone && isVersionKept;
}
