#pragma once

#include "platform/IniFile.h"

#include <QHash>
#include <QMutex>
#include <QString>
#include <QVariant>

#include <initializer_list>
#include <optional>
#include <utility>

/// The user's preferences by key: an ini file of the user's own, behind it the desktop's global settings.
///
/// A key the file lacks is asked of the global settings, which live in memory and are fed by the desktop.
/// The file is read when the program starts. It holds an account secret, so that only its owner can read it.
/// Safe to use from any thread.
class Preferences
{
public:
    explicit Preferences(const QString &filePath);

    /// The store of the running program: `preferences.ini` in the config folder.
    static Preferences &standard();

    /// The text under the key, or nothing when there is none or it is not a text.
    std::optional<QString> text(const QString &key) const;

    /// False when there is none or it is not "true".
    bool boolean(const QString &key) const;
    /// 0 when there is none or it is no number.
    qint64 integer(const QString &key) const;

    /// Writes texts, booleans and integers, each under its key, to the file at once, all of them or none;
    /// false when that fails. The new values hold in any case.
    bool store(std::initializer_list<std::pair<QString, QVariant>> values);

    /// Sets one of the desktop's global settings, or removes it where there is no text.
    void setGlobalText(const QString &key, const std::optional<QString> &text);

private:
    mutable QMutex mutex;
    IniFile file;
    QHash<QString, QString> globalTexts;
};
