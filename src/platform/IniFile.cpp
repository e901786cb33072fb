#include "platform/IniFile.h"

#include "platform/WholeFile.h"

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largest = 1'000'000; // bytes; what is larger has not been written by this program

bool isDigit(QChar character, int base)
{
    const char16_t lower = character.toLower().unicode();
    return (lower >= u'0' && lower < u'0' + std::min(base, 10)) ||
           (base == 16 && lower >= u'a' && lower <= u'f');
}

/// Takes off what follows a backslash: the character that it stands for.
std::optional<QChar> takeEscaped(QStringView &rest)
{
    constexpr QStringView names = u"abfnrtv\"'?\\";
    constexpr QStringView characters = u"\a\b\f\n\r\t\v\"'?\\";
    if (rest.isEmpty())
        return std::nullopt;
    const int base = rest.front() == u'x' ? 16 : 8;
    if (base == 16 || isDigit(rest.front(), base)) {
        rest = rest.sliced(base == 16 ? 1 : 0);
        const auto *const end =
            std::find_if_not(rest.begin(), rest.end(), [base](QChar digit) { return isDigit(digit, base); });
        const qsizetype digits = end - rest.begin();
        bool isCharacter = false;
        const ushort code = rest.first(digits).toUShort(&isCharacter, base);
        rest = rest.sliced(digits);
        return isCharacter ? std::optional(QChar(code)) : std::nullopt;
    }
    const qsizetype name = names.indexOf(rest.front());
    rest = rest.sliced(1);
    return name >= 0 ? std::optional(characters[name]) : std::nullopt;
}

/// A value without its quotes, escapes, outer blanks and comment; nothing for a list or an error in it.
std::optional<QString> unescaped(QStringView value)
{
    QString text;
    qsizetype size = 0; // without the blanks at the end
    bool isQuoted = false;
    while (!value.isEmpty() && (isQuoted || value.front() != u';')) {
        const QChar character = value.front();
        value = value.sliced(1);
        if (character == u',' && !isQuoted)
            return std::nullopt;
        if (character == u'"') {
            isQuoted = !isQuoted;
        } else if (character == u'\\') {
            const std::optional<QChar> escaped = takeEscaped(value);
            if (!escaped)
                return std::nullopt;
            text += *escaped;
        } else if ((character == u' ' || character == u'\t') && !isQuoted) {
            if (!text.isEmpty())
                text += character;
            continue;
        } else {
            text += character;
        }
        size = text.size();
    }
    text.truncate(size);
    return isQuoted ? std::nullopt : std::optional(text);
}

/// What a value of the file says. With one @ begins what is not a text, with two a text that begins with one.
std::optional<QString> textOf(QStringView value)
{
    std::optional<QString> text = unescaped(value);
    if (!text || !text->startsWith(u'@'))
        return text;
    if (text->startsWith(u"@@"_s))
        return text->sliced(1);
    return text->endsWith(u')') ? std::nullopt : text;
}

QByteArray valueOf(const QString &text)
{
    const auto isPlain = [](QChar character) {
        return (character < u'\x80' && character.isLetterOrNumber()) || u"-+._"_s.contains(character);
    };
    if (std::all_of(text.begin(), text.end(), isPlain))
        return text.toLatin1();
    QString value = text.startsWith(u'@') ? u"\"@"_s : u"\""_s;
    bool isAfterCode = false; // which a digit would continue
    for (const QChar character : text) {
        const bool isCode = character < u' ' || (isAfterCode && isDigit(character, 16));
        if (isCode)
            value += u"\\x"_s + QString::number(character.unicode(), 16);
        else if (character == u'"' || character == u'\\')
            value += QString(u'\\') + character;
        else
            value += character;
        isAfterCode = isCode;
    }
    return value.toUtf8() + '"';
}

} // namespace

IniFile::IniFile(const QString &path)
    : filePath(path)
{
    removeUnfinished(path);
    read();
}

bool IniFile::store(const QList<std::pair<QString, QString>> &texts)
{
    for (const auto &[key, text] : texts)
        unwritten.insert(key, text);
    read();
    for (const auto &[key, text] : unwritten.asKeyValueRange())
        put(key, text);
    if (!isRead || !replaceWholeFile(filePath, lines.join('\n')))
        return false;
    unwritten.clear();
    return true;
}

/// What was read before holds where the file cannot be read any more.
void IniFile::read()
{
    const std::optional<QByteArray> content = readWholeFile(filePath, largest);
    isRead = content || errno == ENOENT || errno == ENOTDIR;
    if (!isRead || (!content && !lines.isEmpty())) // one that is gone for a moment keeps what it held
        return;
    hasUnreadableLine = false;
    entries.clear();
    lines = content.value_or(QByteArray()).split('\n');
    bool isGeneral = true;
    for (qsizetype number = 0; number < lines.size(); ++number)
        readLine(number, isGeneral);
    if (!lines.constLast().isEmpty())
        lines.append(QByteArray()); // so that the last line ends
}

/// \param isGeneral  whether keys count where the line stands, and then behind it
void IniFile::readLine(qsizetype number, bool &isGeneral)
{
    const QString line = QString::fromUtf8(lines[number].trimmed());
    const qsizetype equals = line.indexOf(u'=');
    if (line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#'))
        return;
    if (line.startsWith(u'[') && line.endsWith(u']'))
        isGeneral = line.sliced(1).chopped(1).trimmed().compare(u"general", Qt::CaseInsensitive) == 0;
    else if (equals < 1 || !lines[number].isValidUtf8())
        hasUnreadableLine = true;
    else if (isGeneral)
        entries.insert(line.first(equals).trimmed(), {textOf(QStringView(line).sliced(equals + 1)), number});
}

void IniFile::put(const QString &key, const QString &text)
{
    qsizetype end = 0; // of the lines that count
    for (const Entry &entry : std::as_const(entries))
        end = std::max(end, entry.line + 1);
    Entry &entry = entries[key];
    if (entry.line < 0) {
        entry.line = end;
        lines.insert(end, QByteArray());
    }
    entry.text = text;
    lines[entry.line] = key.toUtf8() + '=' + valueOf(text);
}
