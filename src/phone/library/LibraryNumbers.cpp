#include "phone/NumberModule.h"

#include <QObject>

#include <phonenumbers/logger.h>
#include <phonenumbers/phonenumberutil.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

using i18n::phonenumbers::NullLogger;
using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;
using Shape = NumberReading::Shape;

PhoneNumberUtil &library()
{
    static PhoneNumberUtil &silenced = []() -> PhoneNumberUtil & {
        PhoneNumberUtil &instance = *PhoneNumberUtil::GetInstance();
        instance.SetLogger(new NullLogger); // taken over; another would write between the diagnostic lines
        return instance;
    }();
    return silenced;
}

QString textOf(const PhoneNumber &number, PhoneNumberUtil::PhoneNumberFormat format)
{
    std::string text;
    library().Format(number, format, &text);
    return QString::fromStdString(text);
}

Shape shapeOf(PhoneNumberUtil::ErrorType error)
{
    switch (error) {
    case PhoneNumberUtil::TOO_SHORT_AFTER_IDD:
    case PhoneNumberUtil::TOO_SHORT_NSN:
        return Shape::TooShort;
    case PhoneNumberUtil::TOO_LONG_NSN:
        return Shape::TooLong;
    default:
        return Shape::NotANumber;
    }
}

/// By the number's length only: a range that was assigned lately is not known here.
Shape shapeOf(const PhoneNumber &number)
{
    switch (library().IsPossibleNumberWithReason(number)) {
    case PhoneNumberUtil::IS_POSSIBLE:
        return Shape::Possible;
    case PhoneNumberUtil::INVALID_COUNTRY_CODE:
        return Shape::UnknownCountryCode;
    case PhoneNumberUtil::IS_POSSIBLE_LOCAL_ONLY: // the area code is missing
    case PhoneNumberUtil::TOO_SHORT:
        return Shape::TooShort;
    default:
        return Shape::TooLong;
    }
}

/// The number that was meant when just the plus sign was left out before the country's own code.
std::optional<PhoneNumber> withForgottenPlus(const std::string &text, const PhoneNumber &asItStands)
{
    PhoneNumber number;
    if (library().GetNumberType(asItStands) == PhoneNumberUtil::MOBILE ||
        library().Parse('+' + text, {}, &number) != PhoneNumberUtil::NO_PARSING_ERROR ||
        number.country_code() != asItStands.country_code() ||
        library().GetNumberType(number) != PhoneNumberUtil::MOBILE)
        return std::nullopt;
    return number;
}

std::string countryOf(const PhoneNumber &number)
{
    std::string country;
    library().GetRegionCodeForNumber(number, &country);
    if (country.size() != 2 || country == "ZZ") // of several with this code; the first is the largest one
        library().GetRegionCodeForCountryCode(number.country_code(), &country);
    return country.size() == 2 && country != "ZZ" ? country : std::string(); // a code may be no country's
}

class LibraryNumberModule : public QObject, public NumberModule
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "example.quorvane.NumberModule/1")
    Q_INTERFACES(NumberModule)

public:
    NumberReading read(const QString &text, const QString &country) const override
    {
        const std::string utf8 = text.trimmed().toStdString();
        PhoneNumber number;
        const auto error = library().ParseAndKeepRawInput(utf8, country.toStdString(), &number);
        if (error == PhoneNumberUtil::INVALID_COUNTRY_CODE_ERROR)
            return {utf8.starts_with('+') ? Shape::UnknownCountryCode : Shape::NoCountryCode};
        if (error != PhoneNumberUtil::NO_PARSING_ERROR)
            return {shapeOf(error)};
        bool isAssumed = number.country_code_source() == PhoneNumber::FROM_DEFAULT_COUNTRY;
        if (isAssumed)
            if (const std::optional<PhoneNumber> meant = withForgottenPlus(utf8, number)) {
                number = *meant;
                isAssumed = false;
            }
        number.clear_extension(); // no text is put through to it
        number.clear_raw_input();
        const Shape shape = shapeOf(number);
        NumberReading reading{shape, isAssumed, false, QString::fromStdString(countryOf(number))};
        if (shape == Shape::Possible) {
            reading.isLandline = library().GetNumberType(number) == PhoneNumberUtil::FIXED_LINE;
            reading.dialled = textOf(number, PhoneNumberUtil::E164);
            reading.written = textOf(number, PhoneNumberUtil::INTERNATIONAL);
        }
        return reading;
    }
};

} // namespace

#include "LibraryNumbers.moc"
