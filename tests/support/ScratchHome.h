#pragma once

#include <QTemporaryDir>

/// A home folder of the test's own: home and every XDG folder point into it as long as it lives.
class ScratchHome
{
public:
    ScratchHome();

    QString path(const QString &name = {}) const { return folder.filePath(name); }
    /// Leaves the folder behind; its path.
    QString keep();

private:
    QTemporaryDir folder;
};

QByteArray contentOf(const QString &path);
void writeTo(const QString &path, const QByteArray &content);
