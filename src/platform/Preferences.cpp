#include "platform/Preferences.h"

#include "platform/Folders.h"

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

void Preferences::setGlobalText(const QString &key, const std::optional<QString> &text)
{
    const QMutexLocker lock(&mutex);
    if (text)
        globalTexts.insert(key, *text);
    else
        globalTexts.remove(key);
}
