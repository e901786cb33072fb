#pragma once

#include <QString>
#include <QtPlugin>

/// What is found when a text is read as a phone number.
struct NumberReading
{
    enum class Shape { NotANumber, UnknownCountryCode, NoCountryCode, TooShort, TooLong, Possible };

    Shape shape = Shape::NotANumber;
    bool isCountryAssumed = false; ///< the text names none
    bool isLandline = false; ///< and surely no mobile number; there are countries where this cannot be told
    QString country = {};    ///< ISO 3166 code of two letters
    QString dialled = {};    ///< as by ITU-T E.164, such as `+4930123456`; empty unless possible
    QString written = {};    ///< the same number as it is written for people, such as `+49 30 123456`
};

/// What the phone number module offers once it is loaded.
class NumberModule
{
public:
    virtual ~NumberModule() = default;
    /// \param country  whose number the text is taken for when it names none; ISO 3166 code, empty for none
    virtual NumberReading read(const QString &text, const QString &country) const = 0;
};

Q_DECLARE_INTERFACE(NumberModule, "example.quorvane.NumberModule/1")
