#pragma once

#include <QByteArrayList>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

#include <optional>
#include <utility>

/// Texts by key in an ini file: lines `key=value` before any section or in the section General.
///
/// Takes hand-written lines as well as what QSettings writes. Waits for no lock, which a crash could have
/// left behind. Whatever else is in the file stays there as it is.
class IniFile
{
public:
    /// Reads the file, which need not exist.
    explicit IniFile(const QString &path);

    /// False when there is something under the path that could not be read, or a line in it that is none of
    /// an ini file.
    bool isWhole() const { return isRead && !hasUnreadableLine; }
    bool contains(const QString &key) const { return entries.contains(key); }
    /// The text under the key; nothing when there is none or its value is not a text, but a list, say.
    std::optional<QString> text(const QString &key) const { return entries.value(key).text; }

    /// Sets the texts and puts them into the file as it is by now, in one replacement of it. On false they
    /// hold here only, and are written with the next ones.
    bool store(const QList<std::pair<QString, QString>> &texts);

private:
    struct Entry
    {
        std::optional<QString> text;
        qsizetype line = -1; ///< where it stands in the file
    };

    void read();
    void readLine(qsizetype number, bool &isGeneral);
    void put(const QString &key, const QString &text);

    QString filePath;
    QByteArrayList lines;
    QHash<QString, Entry> entries;
    QMap<QString, QString> unwritten;
    bool isRead = false;
    bool hasUnreadableLine = false;
};
