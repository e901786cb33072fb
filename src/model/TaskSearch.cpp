#include "model/TaskSearch.h"

#include <QStringView>

#include <cstring>

namespace {

/// Lower-cases an ASCII text into bytes; false when it has other characters.
bool lowerAscii(QStringView text, QByteArray &lowered)
{
    lowered.resize(text.size());
    const char16_t *from = text.utf16();
    char *to = lowered.data();
    unsigned seen = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const unsigned unit = from[i];
        seen |= unit;
        to[i] = char(unit - 'A' < 26U ? unit | 0x20U : unit);
    }
    return seen < 0x80;
}

} // namespace

TaskSearch::TaskSearch(const QString &text)
    : lowered(text.toLower())
{
    if (!lowerAscii(lowered, loweredAscii))
        loweredAscii = QByteArray();
}

bool TaskSearch::isIn(const QString &field)
{
    // Nearly every field is plain ASCII, where lower-casing needs no tables and finding is a search for
    // bytes.
    if (!lowerAscii(field, fieldAscii))
        return field.toLower().contains(lowered);
    return !loweredAscii.isNull() && memmem(fieldAscii.constData(), size_t(fieldAscii.size()),
                                            loweredAscii.constData(), size_t(loweredAscii.size())) != nullptr;
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
