#include "phone/NumberCheck.h"

#include "platform/Diagnostics.h"

#include <QPluginLoader>

#include <utility>

using namespace Qt::StringLiterals;

/// The text without what people put between the digits to make them readable.
static QString withoutSeparators(const QString &number)
{
    static const QString separators = u"-.()/\u2010\u2011\u2012\u2013"_s;
    QString rest;
    for (const QChar character : number)
        if (!character.isSpace() && !separators.contains(character))
            rest += character;
    return rest;
}

NumberCheck::NumberCheck(QString ofSender, const QLocale &locale)
    : sendingNumber(std::move(ofSender))
    , country(QLocale::territoryToCode(locale.territory()))
{
}

void NumberCheck::load()
{
    if (std::exchange(isLoaded, true))
        return;
    QPluginLoader loader(u"quorvanephone"_s);
    library = qobject_cast<NumberModule *>(loader.instance());
    if (!library) {
        diagnostics::line("Phone numbers are not checked:", loader.errorString());
        return;
    }
    const QString ofSender = library->read(sendingNumber, country).country;
    if (!ofSender.isEmpty())
        country = ofSender;
}

const NumberReading &NumberCheck::read(const QString &number)
{
    auto known = readingOf.constFind(number);
    if (known == readingOf.cend())
        known = readingOf.insert(number, library->read(number, country));
    return *known;
}

QString NumberCheck::identity(const QString &number)
{
    load();
    const QString dialled = library ? read(number).dialled : QString();
    if (!dialled.isEmpty())
        return dialled;
    QString digits;
    for (const QChar character : number)
        if (character.isDigit())
            digits += QString::number(character.digitValue());
    return digits;
}

static QString impossibility(NumberReading::Shape shape)
{
    switch (shape) {
    case NumberReading::Shape::UnknownCountryCode:
        return u"No country has this country code."_s;
    case NumberReading::Shape::TooShort:
        return u"The number is too short."_s;
    case NumberReading::Shape::TooLong:
        return u"The number is too long."_s;
    default:
        return u"This is not a phone number."_s;
    }
}

/// What there is to put right in the text of a number that there can be.
static QString fault(const QString &number, const NumberReading &reading)
{
    if (reading.isCountryAssumed)
        return u"The country code is missing (assumed: %1)."_s.arg(
            QLocale::territoryToString(QLocale::codeToTerritory(reading.country)));
    if (withoutSeparators(number) == reading.dialled)
        return {};
    return number.trimmed().startsWith(u'+') ? u"There is more in it than a phone number."_s
                                             : u"The country code has to come after a plus sign."_s;
}

NumberRemark NumberCheck::remark(const QString &number)
{
    using enum NumberRemark::Kind;
    load();
    if (!library)
        return {};
    const NumberReading &reading = read(number);
    if (reading.shape == NumberReading::Shape::NoCountryCode)
        return {MissingCountryCode, u"The country code is missing."_s};
    if (reading.shape != NumberReading::Shape::Possible)
        return {Impossible, impossibility(reading.shape)};
    NumberRemark remark;
    if (const QString sentence = fault(number, reading); !sentence.isEmpty())
        remark = {reading.isCountryAssumed ? MissingCountryCode : OtherForm, sentence, reading.written};
    if (reading.isLandline) {
        remark.kind = remark.kind == None ? Landline : remark.kind;
        remark.sentence += (remark.sentence.isEmpty() ? u""_s : u" "_s) +
                           u"This is a landline, where texts may not arrive."_s;
    }
    return remark;
}
