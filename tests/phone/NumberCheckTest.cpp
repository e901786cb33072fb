#include "phone/NumberCheck.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;

/// The module that the program loads, with the library that it comes with.
class NumberCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsSaidWithoutTheModule()
    {
        NumberCheck numbers({}, german);
        QCOMPARE(numbers.remark(u"1"_s).sentence, QString());
        QCOMPARE(numbers.identity(u"+49 (151) ٥550142"_s), numbers.identity(u"491515550142"_s));
        QCoreApplication::addLibraryPath(u"" BINARY_DIR "/bin/" MODULE_PATH ""_s);
    }

    void whatIsSaid()
    {
        // The sending number, the number, what is said about it, and how it should be written.
        static const QString missing = u"The country code is missing (assumed: %1)."_s;
        static const QString landline = u"This is a landline, where texts may not arrive."_s;
        static const QString noPlus = u"The country code has to come after a plus sign."_s;
        static const QString more = u"There is more in it than a phone number."_s;
        static const QString inGermany = missing.arg(u"Germany"_s);
        static const QString none = u""_s;
        const QList<std::array<QString, 4>> cases{
            {none, u"+49 151 5550142"_s, none, none},
            {none, u" +49 (151) 555/01-42 "_s, none, none},
            {none, u"+1 212 555 0142"_s, none, none}, // landline or mobile phone: there this cannot be told
            {none, u"0151 5550142"_s, inGermany, u"+49 1515550142"_s},
            {none, u"030 123456"_s, inGermany + u' ' + landline, u"+49 30 123456"_s},
            {u"+43 664 1234567"_s, u"0664 7654321"_s, missing.arg(u"Austria"_s), u"+43 664 7654321"_s},
            {u"+1 555 010 0000"_s, u"(212) 555-0142"_s, missing.arg(u"United States"_s),
             u"+1 212-555-0142"_s},
            {u"ACME"_s, u"0151 5550142"_s, inGermany, u"+49 1515550142"_s},  // a sender's name
            {u"12345"_s, u"0151 5550142"_s, inGermany, u"+49 1515550142"_s}, // a short code
            {none, u"0043 664 7654321"_s, noPlus, u"+43 664 7654321"_s},
            {none, u"49 151 55501422"_s, noPlus, u"+49 1515 5501422"_s},
            {none, u"+49 (0)151 55501422"_s, more, u"+49 1515 5501422"_s},
            {none, u"+49 151 55501422 ext. 5"_s, more, u"+49 1515 5501422"_s},
            {none, u"+1 800 FLOWERS"_s, more, u"+1 800-356-9377"_s},
            {none, u"+49 30 123456"_s, landline, none},
            {none, u"110"_s, u"The number is too short."_s, none},
            {none, u"+1 555 0100"_s, u"The number is too short."_s, none},
            {none, u"+49 151 555014212345678"_s, u"The number is too long."_s, none},
            {none, u"+999 1234567"_s, u"No country has this country code."_s, none},
            {none, u"later"_s, u"This is not a phone number."_s, none},
        };
        for (const auto &[sender, number, sentence, corrected] : cases) {
            NumberCheck numbers(sender, german);
            const NumberRemark remark = numbers.remark(number);
            QCOMPARE(number + u": "_s + remark.sentence, number + u": "_s + sentence);
            QCOMPARE(remark.corrected, corrected);
            QCOMPARE(remark.kind == NumberRemark::Kind::None, sentence.isEmpty());
            if (!corrected.isEmpty()) {
                QVERIFY(numbers.remark(corrected).corrected.isEmpty());
                QCOMPARE(numbers.identity(number), numbers.identity(corrected));
            }
        }
        NumberCheck nowhere({}, QLocale::c());
        QCOMPARE(nowhere.remark(u"0151 5550142"_s).sentence, u"The country code is missing."_s);
    }

private:
    const QLocale german{QLocale::German, QLocale::Germany};
};

QTEST_GUILESS_MAIN(NumberCheckTest)
#include "NumberCheckTest.moc"
