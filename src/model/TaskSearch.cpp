#include "model/TaskSearch.h"

#include <QStringView>

#include <cstring>

namespace {

/// Lower-cases a Latin-1 text into bytes; false when it has other characters.
bool lowerLatin1(QStringView text, QByteArray &lowered)
{
    lowered.resize(text.size());
    const char16_t *from = text.utf16();
    char *to = lowered.data();
    unsigned seen = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const unsigned unit = from[i];
        const bool isUpper = unit - 'A' < 26U || (unit - 0xc0U < 31U && unit != 0xd7U);
        seen |= unit;
        to[i] = char(unit + (isUpper ? 0x20U : 0U));
    }
    return seen < 0x100;
}

} // namespace

/// Lower-cases the text; a sigma is the same wherever it stands in a word.
static QString lowerCased(const QString &text)
{
    return text.toLower().replace(u'\u03c2', u'\u03c3');
}

TaskSearch::TaskSearch(const QString &text)
    : lowered(lowerCased(text))
{
    if (!lowerLatin1(lowered, loweredLatin1))
        loweredLatin1 = QByteArray();
}

bool TaskSearch::isIn(const QString &field)
{
    // Nearly every field is plain ASCII, where lower-casing needs no tables and finding is a search for
    // bytes.
    if (!lowerLatin1(field, fieldLatin1))
        return lowerCased(field).contains(lowered);
    return !loweredLatin1.isNull() &&
           memmem(fieldLatin1.constData(), size_t(fieldLatin1.size()), loweredLatin1.constData(),
                  size_t(loweredLatin1.size())) != nullptr;
}

bool TaskSearch::matches(const task &entry)
{
    return isIn(entry.name) || isIn(entry.desc) || isIn(entry.client) || isIn(entry.teamMember);
}

TaskList TaskSearch::matchesIn(const TaskList &tasks)
{
    TaskList found;
    for (const SharedTask &entry : tasks)
        if (matches(*entry))
            found.append(entry);
    return found;
}
