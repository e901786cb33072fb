#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>

ScratchHome::ScratchHome()
{
    qputenv("HOME", folder.path().toUtf8());
    for (const char *name : {"CONFIG", "STATE", "DATA", "CACHE", "RUNTIME"}) {
        const QString path = folder.filePath(QString::fromLatin1(name).toLower());
        QDir().mkpath(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QByteArray suffix = qstrcmp(name, "RUNTIME") == 0 ? "_DIR" : "_HOME";
        qputenv("XDG_" + QByteArray(name) + suffix, path.toUtf8());
    }
}

QString ScratchHome::keep()
{
    folder.setAutoRemove(false);
    return folder.path();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeTo(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}
