#include "platform/Preferences.h"

#include "platform/Folders.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

Preferences::Preferences(const QString &filePath)
    : settings(filePath, QSettings::IniFormat)
{
}

Preferences &Preferences::standard()
{
    static Preferences instance(folders::config() + QLatin1StringView("/preferences.ini"));
    return instance;
}

std::optional<QString> Preferences::text(const QString &key) const
{
    const QMutexLocker lock(&mutex);
    if (const QVariant value = settings.value(key); value.isValid())
        return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
    if (const auto global = globalTexts.constFind(key); global != globalTexts.cend())
        return *global;
    return std::nullopt;
}

bool Preferences::boolean(const QString &key) const
{
    return text(key) == u"true"_s;
}

qint64 Preferences::integer(const QString &key) const
{
    return text(key).value_or(QString()).toLongLong();
}

bool Preferences::store(std::initializer_list<std::pair<QString, QVariant>> values)
{
    const QMutexLocker lock(&mutex);
    // The file keeps its mode when it is written, so it is made with the right one.
    constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
    QFile file(settings.fileName());
    QDir().mkpath(QFileInfo(file).path());
    if (!file.exists() && file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
        file.close();
    const bool isPrivate = file.setPermissions(ownerOnly);
    for (const auto &[key, value] : values)
        settings.setValue(key, value.toString()); // as it is read back from the file
    if (isPrivate)
        settings.sync();
    return isPrivate && settings.status() == QSettings::NoError;
}

void Preferences::setGlobalText(const QString &key, const std::optional<QString> &text)
{
    const QMutexLocker lock(&mutex);
    if (text)
        globalTexts.insert(key, *text);
    else
        globalTexts.remove(key);
}
