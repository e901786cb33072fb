#include "platform/Folders.h"

#include <QDir>
#include <QStandardPaths>

namespace folders {

namespace {
constexpr QLatin1StringView ownName("/quorvane");
}

QString documents()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString config()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + ownName;
}

QString data()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + ownName;
}

QString state()
{
    const QString home = qEnvironmentVariable("XDG_STATE_HOME");
    return (QDir::isAbsolutePath(home) ? home : QDir::homePath() + QLatin1StringView("/.local/state")) +
           ownName;
}

} // namespace folders
