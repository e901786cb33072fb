#include "gateway/MessageParts.h"

#include <algorithm>

namespace {

/// The most units in a message of one part, and in each part of a longer one.
struct Alphabet
{
    qint64 single;
    qint64 part;
};
constexpr Alphabet gsm7{160, 153};
constexpr Alphabet ucs2{70, 67};

/// The septets that the character takes; 0 when it is not in the alphabet.
int septets(char16_t unit)
{
    constexpr QStringView extension = u"\f^{}\\[~]|€";
    constexpr QStringView basic = u"@£$¥èéùìòÇ\nØø\rÅåΔ_ΦΓΛΩΠΨΣΘΞÆæßÉ¤¡ÄÖÑÜ§¿äöñüà";
    const bool isPlain = (unit >= u' ' && unit <= u'Z' && unit != u'[') || (unit >= u'a' && unit <= u'z');
    if (isPlain || basic.contains(unit))
        return 1;
    return extension.contains(unit) ? 2 : 0;
}

/// Units of a character that is never split between two parts: an escaped one, or a pair of surrogates.
int unitsAt(QStringView text, qsizetype index, bool isUcs2)
{
    return isUcs2 ? (text[index].isHighSurrogate() && index + 1 < text.size() ? 2 : 1)
                  : septets(text[index].unicode());
}

} // namespace

MessageParts::MessageParts(QStringView text)
{
    const auto strange = std::ranges::find(text, 0, [](QChar unit) { return septets(unit.unicode()); });
    isUcs2 = strange != text.end();
    if (isUcs2) {
        const qsizetype place = strange - text.begin();
        unusual = text.sliced(place, unitsAt(text, place, true)).toString();
    }
    const Alphabet &alphabet = isUcs2 ? ucs2 : gsm7;
    qint64 inPart = 0;
    for (qsizetype index = 0; index < text.size();) {
        const int size = unitsAt(text, index, isUcs2);
        index += isUcs2 ? size : 1;
        units += size;
        inPart += size;
        if (inPart > alphabet.part) {
            ++parts;
            inPart = size;
        }
    }
    if (units <= alphabet.single)
        parts = 1;
}
