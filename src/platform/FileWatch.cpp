#include "platform/FileWatch.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

#include <chrono>

using namespace std::chrono_literals;

FileWatch::FileWatch(const QString &filePath, QObject *parent)
    : QObject(parent)
    , path(filePath)
{
    pause.setSingleShot(true);
    pause.setInterval(200ms);
    connect(&pause, &QTimer::timeout, this, &FileWatch::look);
    if (path.isEmpty())
        return;
    const auto wait = [this] {
        if (!pause.isActive()) // or a folder with many changes would never be looked at
            pause.start();
    };
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, wait);
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, wait);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            look();
    });
    watchAnew();
}

void FileWatch::look()
{
    watchAnew(); // a file that was replaced is no longer watched
    emit mayHaveChanged();
}

/// Watches the file, the folder in which it is or will be, and the same for what it is a link to.
void FileWatch::watchAnew()
{
    QStringList places;
    for (QFileInfo file(path); places.size() < 20; file.setFile(file.symLinkTarget())) {
        QFileInfo folder(file.absolutePath());
        while (!folder.exists() && !folder.isRoot())
            folder.setFile(folder.absolutePath());
        places << folder.absoluteFilePath() << folder.absolutePath(); // which may be replaced as well
        if (file.exists())
            places.append(file.absoluteFilePath());
        if (!file.isSymLink())
            break;
    }
    places.removeDuplicates();
    // All of them anew: a name may stand for another file or folder by now.
    if (const QStringList watched = watcher.files() + watcher.directories(); !watched.isEmpty())
        watcher.removePaths(watched);
    watcher.addPaths(places);
}
