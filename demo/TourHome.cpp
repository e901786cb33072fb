#include "TourHome.h"

#include "TourFailure.h"
#include "platform/Folders.h"

#include <QDate>
#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

TourHome::TourHome()
    : folder(QDir::temp().filePath(u"quorvane-tour-XXXXXX"_s))
{
    require(folder.isValid(), folder.errorString());
    qputenv("HOME", QFile::encodeName(folder.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath(u".config"_s)));
    qputenv("XDG_STATE_HOME", QFile::encodeName(folder.filePath(u".local/state"_s)));
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(u".local/share"_s)));
}

void TourHome::placeTaskList(const QString &samplePath, QDate today) const
{
    QFile sample(samplePath);
    const bool found = sample.open(QIODevice::ReadOnly);
    require(found, samplePath + u": "_s + sample.errorString());
    const QByteArray text = sample.readAll();
    require(text.contains("@TODAY@"), u"the sample has a task that is due today"_s);

    require(QDir().mkpath(folders::documents()), u"no documents folder can be made"_s);
    QFile list(taskListPath());
    const bool copied =
        list.open(QIODevice::WriteOnly) &&
        list.write(QByteArray(text).replace("@TODAY@", today.toString(u"M/d/yy"_s).toUtf8())) > 0 &&
        list.flush();
    require(copied, list.fileName() + u": "_s + list.errorString());
}

QString TourHome::taskListPath() const
{
    return folders::documents() + u"/zandulist.txt"_s;
}

int TourHome::divertStandardOutput() const
{
    const int kept = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const QByteArray path = QFile::encodeName(folder.filePath(u"diagnostics.txt"_s));
    const int diverted = ::open(path.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    require(kept >= 0 && diverted >= 0 && ::dup2(diverted, STDOUT_FILENO) >= 0,
            u"standard output cannot be diverted"_s);
    ::close(diverted);
    return kept;
}

QString TourHome::keep()
{
    folder.setAutoRemove(false);
    return folder.path();
}
