#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

/// Tells when a file may have been changed by another program: as soon as the system says so, also when the
/// file is replaced, is behind a link or does not exist yet; and where the system does not say so, as on
/// network folders, when the user comes back to a window of the program. It asks for nothing meanwhile.
class FileWatch : public QObject
{
    Q_OBJECT

public:
    explicit FileWatch(const QString &path, QObject *parent = nullptr);

signals:
    void mayHaveChanged();

private:
    void look();
    void watchAnew();

    QString path;
    QFileSystemWatcher watcher;
    QTimer pause; ///< until whoever writes the file is probably done
};
