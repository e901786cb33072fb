#pragma once

#include "phone/NumberModule.h"

#include <QHash>
#include <QLocale>

/// What there is to say about a phone number to which texts are to go.
struct NumberRemark
{
    enum class Kind { None, MissingCountryCode, OtherForm, Impossible, Landline };

    Kind kind = Kind::None;
    QString sentence = {};  ///< one or two for the user; empty when there is nothing to say
    QString corrected = {}; ///< the number as it should be written; empty where that is not known
};

/// Checks phone numbers, and knows when two texts are the same number.
///
/// The library that knows the numbers of the world sits in a module of its own, which is loaded by the first
/// check. Where the module is not installed, there is nothing to say about any number.
class NumberCheck
{
public:
    /// \param sendingNumber  whose country is assumed for a number without a country code; any text
    /// \param locale         whose country is assumed when that one has none
    explicit NumberCheck(QString sendingNumber, const QLocale &locale = {});

    NumberRemark remark(const QString &number);
    /// A text that two spellings of the same number have in common; empty when there is no digit in it.
    QString identity(const QString &number);

private:
    void load();
    const NumberReading &read(const QString &number);

    QString sendingNumber;
    QString country; ///< ISO 3166 code; the locale's until the module is loaded
    bool isLoaded = false;
    const NumberModule *library = nullptr;   ///< ends with the program
    QHash<QString, NumberReading> readingOf; ///< those that were asked for
};
