#include "widgets/TypedText.h"
#include "support/TestProgram.h"

using namespace Qt::StringLiterals;

namespace {

const QDate today(2026, 11, 23);

QString dayOf(const QString &text, const QLocale &locale)
{
    const std::optional<QDate> day = typedText::day(text, today, locale);
    return day ? day->toString(Qt::ISODate) : u"none"_s;
}

QString timeOf(const QString &text, const QLocale &locale)
{
    const std::optional<QTime> time = typedText::time(text, locale);
    return time ? time->toString(u"H:mm") : u"none"_s;
}

} // namespace

class TypedTextTest : public QObject
{
    Q_OBJECT

private slots:
    void whatALocaleShowsItReads()
    {
        for (const char *name :
             {"C", "en_US", "de_DE", "en_GB", "fr_CH", "hr_HR", "hu_HU", "ko_KR", "ja_JP", "ar_EG", "fa_IR",
              "th_TH", "bg_BG", "en_CA", "sk_SK", "fi_FI", "hi_IN", "zh_TW"}) {
            const QLocale locale(QString::fromLatin1(name));
            const QString format = locale.dateFormat(QLocale::ShortFormat);
            for (QDate day(2027, 1, 1); day.year() < 2029; day = day.addDays(1))
                for (const QString &text :
                     {locale.toString(day, typedText::dateFormat(locale)), locale.toString(day, format),
                      u"%1-%2-%3"_s.arg(day.year()).arg(day.month()).arg(day.day())})
                    QVERIFY2(dayOf(text, locale) == day.toString(Qt::ISODate), qPrintable(text));
            for (int minute = 0; minute < 24 * 60; ++minute) {
                const QTime time(minute / 60, minute % 60);
                const QString text = locale.toString(time, typedText::timeFormat(locale));
                QVERIFY2(timeOf(text, locale) == time.toString(u"H:mm"), qPrintable(text));
            }
        }
    }

    void days()
    {
        using Case = std::tuple<const char *, QString, QString>;
        const QDate first(QDate::currentDate().year() - 80, 1, 1); // that two digits mean
        const QDate last = first.addYears(100).addDays(-1);
        for (const auto &[locale, text, day] :
             {Case("de_DE", u" 1.7. "_s, u"2026-07-01"_s), Case("de_DE", u"24/12/2026"_s, u"2026-12-24"_s),
              Case("hu_HU", u"26.12.24"_s, u"2026-12-24"_s),
              Case("en_US", first.toString(u"M/d/yy"), first.toString(Qt::ISODate)),
              Case("en_US", last.toString(u"M/d/yy"), last.toString(Qt::ISODate)),
              // Without a year, the nearer one.
              Case("en_US", u"1/7"_s, u"2027-01-07"_s), Case("en_US", u"10/30"_s, u"2026-10-30"_s),
              Case("en_US", u"Today"_s, u"2026-11-23"_s), Case("en_US", u"tomorrow"_s, u"2026-11-24"_s),
              Case("en_US", u"+3"_s, u"2026-11-26"_s), Case("en_US", u"-1"_s, u"2026-11-22"_s)})
            QCOMPARE(dayOf(text, QLocale(QString::fromLatin1(locale))), day);
        for (const QString &text : {u""_s, u"x"_s, u"5"_s, u"24/12/26"_s, u"2/30/2027"_s, u"2/29"_s,
                                    u"1/2/345"_s, u"1/2/3/4"_s, u"12/24/26 x"_s, u"12242026"_s})
            QCOMPARE(dayOf(text, QLocale(u"en_US"_s)), u"none"_s);
    }

    void times()
    {
        const QLocale locale(u"en_US"_s);
        for (const auto &[text, time] : {std::pair(u"9"_s, u"9:00"_s),
                                         {u"930"_s, u"9:30"_s},
                                         {u"1445"_s, u"14:45"_s},
                                         {u"2:45 pm"_s, u"14:45"_s},
                                         {u"2.45 P.M."_s, u"14:45"_s},
                                         {u"12am"_s, u"0:00"_s},
                                         {u"12 pm"_s, u"12:00"_s},
                                         {u"9h30"_s, u"9:30"_s},
                                         {u"13:00 am"_s, u"none"_s},
                                         {u"24:00"_s, u"none"_s},
                                         {u"9:60"_s, u"none"_s},
                                         {u"12345"_s, u"none"_s},
                                         {u""_s, u"none"_s},
                                         {u"pm"_s, u"none"_s},
                                         {u"9:30 x"_s, u"none"_s}})
            QCOMPARE(timeOf(text, locale), time);
    }
};

static const TestClass<TypedTextTest> registered;

#include "TypedTextTest.moc"
