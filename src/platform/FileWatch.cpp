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
    const auto wait = qOverload<>(&QTimer::start);
    connect(&watcher, &QFileSystemWatcher::fileChanged, &pause, wait);
    connect(&watcher, &QFileSystemWatcher::directoryChanged, &pause, wait);
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
        places.append(folder.absoluteFilePath());
        if (file.exists())
            places.append(file.absoluteFilePath());
        if (!file.isSymLink())
            break;
    }
    places.removeDuplicates();
    const QStringList watched = watcher.files() + watcher.directories();
    for (const QString &place : watched)
        if (!places.contains(place))
            watcher.removePath(place);
    for (const QString &place : std::as_const(places))
        if (!watched.contains(place))
            watcher.addPath(place);
}
