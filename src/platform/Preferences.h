#pragma once

#include <QHash>
#include <QMutex>
#include <QSettings>
#include <QString>

#include <optional>

/// The user's preferences by key: an ini file of the user's own, behind it the desktop's global settings.
///
/// A key the file lacks is asked of the global settings, which live in memory and are fed by the desktop.
/// The file is read when the program starts; nobody but the program changes it. It holds an account secret,
/// so that only its owner can read it. Safe to use from any thread.
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

    /// These write the file at once; false when that fails. The new value holds in any case.
    bool setText(const QString &key, const QString &text) { return store(key, text); }
    bool setBoolean(const QString &key, bool value) { return store(key, value); }
    bool setInteger(const QString &key, qint64 value) { return store(key, value); }

    /// Sets one of the desktop's global settings; nothing removes it.
    void setGlobalText(const QString &key, const std::optional<QString> &text);

private:
    bool store(const QString &key, const QVariant &value);

    mutable QMutex mutex;
    QSettings settings;
    QHash<QString, QString> globalTexts;
};
