#include "platform/Preferences.h"

#include "platform/Folders.h"

using namespace Qt::StringLiterals;

Preferences::Preferences(const QString &filePath)
    : file(filePath)
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
    if (file.contains(key))
        return file.text(key);
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
    QList<std::pair<QString, QString>> texts;
    for (const auto &[key, value] : values)
        texts.append({key, value.toString()});
    const QMutexLocker lock(&mutex);
    return file.store(texts);
}

void Preferences::setGlobalText(const QString &key, const std::optional<QString> &text)
{
    const QMutexLocker lock(&mutex);
    if (text)
        globalTexts.insert(key, *text);
    else
        globalTexts.remove(key);
}
