#include "support/Zs_datetime.h"

#include "platform/LocaleFormats.h"
#include "support/Exception.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace {

// The message of the exception Call raises, or "no exception".
template <typename F> std::string MessageOf(F Call) {
    try {
        Call();
    } catch (const Exception& e) {
        return e.Message();
    }
    return "no exception";
}

// Day-first settings with "/" and ":", restored at the end of the test.
class DayFirstLocale : public ::testing::Test {
protected:
    DayFirstLocale() {
        TFormatSettings& fs = FormatSettings();
        fs.ShortDateFormat = "dd/mm/yyyy";
        fs.LongTimeFormat = "hh:nn:ss";
        fs.DateSeparator = '/';
        fs.TimeSeparator = ':';
    }
    TFormatSettingsGuard FSaved;
};

} // namespace

TEST(Iso8601, ReadsDateAndTimeByFixedPositions) {
    EXPECT_DOUBLE_EQ(ISO8601ToDate("2004-02-29T13:05:09Z"), EncodeDateTime(2004, 2, 29, 13, 5, 9, 0));
    EXPECT_DOUBLE_EQ(ISO8601ToDate("2004-02-29"), EncodeDate(2004, 2, 29));
    EXPECT_DOUBLE_EQ(ISO8601ToDate("T13:05:09"), EncodeTime(13, 5, 9, 0));
    EXPECT_DOUBLE_EQ(ISO8601ToDate(""), 0.0);
    // Separators are not checked; fractions and zones are ignored without conversion.
    EXPECT_DOUBLE_EQ(ISO8601ToDate("2004x02y29T13h05m09.750+05:00"),
                     EncodeDateTime(2004, 2, 29, 13, 5, 9, 0));
    EXPECT_DOUBLE_EQ(ISO8601ToDate("2004-02-2"), EncodeDate(2004, 2, 2));
    // Only a capital T splits date and time.
    EXPECT_DOUBLE_EQ(ISO8601ToDate("2004-02-29t13:05:09"), EncodeDate(2004, 2, 29));
}

TEST(Iso8601, BadPartsRaiseTheirOwnMessageWithTheWholeText) {
    EXPECT_EQ(MessageOf([] { ISO8601ToDate("2004-13-01"); }),
              "Error converting Date. Invalid DateTime string : 2004-13-01");
    EXPECT_EQ(MessageOf([] { ISO8601ToDate("2004-02-29T24:00:00"); }),
              "Error converting Time. Invalid DateTime string : 2004-02-29T24:00:00");
    EXPECT_EQ(MessageOf([] { ISO8601ToDate("T1"); }), "Error converting Time. Invalid DateTime string : T1");
}

TEST(Iso8601, WritesWithFixedSeparatorsWhateverTheLocale) {
    TFormatSettingsGuard saved;
    FormatSettings().DateSeparator = '.';
    FormatSettings().TimeSeparator = '.';
    const TDateTime t = EncodeDateTime(2004, 1, 12, 10, 20, 30, 0);
    EXPECT_EQ(DateToISO8601(t), "2004-01-12T10:20:30");
    EXPECT_EQ(DateToISO8601Time(t), "T10:20:30");
    EXPECT_EQ(MessageOf([] { DateToISO8601(std::numeric_limits<double>::quiet_NaN()); }),
              "Error converting DateTime to ISO8601 string");
    EXPECT_EQ(MessageOf([] { DateToISO8601Time(1e12); }), "Error converting DateTime to ISO8601Time string");
}

TEST(UnixTime, WholeDaysOnlyIn32BitArithmetic) {
    EXPECT_EQ(DateTimeToUnix(EncodeDateTime(1970, 1, 1, 23, 59, 0, 0)), 0);
    EXPECT_EQ(DateTimeToUnix(EncodeDate(1970, 1, 2)), 86400);
    EXPECT_EQ(DateTimeToUnix(EncodeDateTime(2004, 1, 12, 10, 20, 30, 0)), 1073865600);
    EXPECT_EQ(DateTimeToUnix(UnixDateDelta - 0.5), 0); // truncated toward zero
    EXPECT_EQ(DateTimeToUnix(UnixDateDelta - 1.5), -86400);
    EXPECT_EQ(DateTimeToUnix(EncodeDate(2038, 1, 20)), -2147408896); // wraps past 2^31
}

TEST(UnixTime, SecondsTextKeepsTheFraction) {
    EXPECT_DOUBLE_EQ(UnixStrToDateTime("86400"), UnixDateDelta + 1);
    EXPECT_DOUBLE_EQ(UnixStrToDateTime("43200"), UnixDateDelta + 0.5);
    EXPECT_DOUBLE_EQ(UnixStrToDateTime("-86400"), UnixDateDelta - 1);
    EXPECT_EQ(MessageOf([] { UnixStrToDateTime("12x"); }),
              "Error converting Unix String to DateTime. String = 12x");
    EXPECT_EQ(MessageOf([] { UnixStrToDateTime("4294967296"); }),
              "Error converting Unix String to DateTime. String = 4294967296");
}

TEST_F(DayFirstLocale, RVistaTextsInBothForms) {
    EXPECT_DOUBLE_EQ(rvStrToDateTime("12-jan-2004 10:20:30"), EncodeDateTime(2004, 1, 12, 10, 20, 30, 0));
    EXPECT_DOUBLE_EQ(rvStrToDateTime(" 1-Feb-2004 08:00:00 "), EncodeDateTime(2004, 2, 1, 8, 0, 0, 0));
    EXPECT_DOUBLE_EQ(rvStrToDateTime("Mon Jan 12 10:20:30 2004"), EncodeDateTime(2004, 1, 12, 10, 20, 30, 0));
    EXPECT_DOUBLE_EQ(rvStrToDateTime("Fri Dec  2 23:59:59 2005"), EncodeDateTime(2005, 12, 2, 23, 59, 59, 0));
    // An unknown month word is read as January, without an error.
    EXPECT_DOUBLE_EQ(rvStrToDateTime("12-xyz-2004 10:20:30"), EncodeDateTime(2004, 1, 12, 10, 20, 30, 0));
}

TEST_F(DayFirstLocale, RVistaEmptyTextIsNowAndBadTextRaises) {
    const TDateTime before = Now();
    const TDateTime value = rvStrToDateTime("   ");
    EXPECT_GE(value, before);
    EXPECT_LE(value, Now());
    EXPECT_EQ(MessageOf([] { rvStrToDateTime("31-feb-2004 10:00:00"); }),
              "Error converting rvDateTime. Invalid DateTime string : 31-feb-2004 10:00:00");
    EXPECT_EQ(MessageOf([] { rvStrToDateTime("garbage"); }),
              "Error converting rvDateTime. Invalid DateTime string : garbage");
}

TEST(RVistaDates, UserSettingsComeBackAfterSuccessAndFailure) {
    TFormatSettingsGuard saved;
    FormatSettings().ShortDateFormat = "mm.dd.yyyy";
    FormatSettings().DateSeparator = '.';
    FormatSettings().LongTimeFormat = "h.nn";
    FormatSettings().TimeSeparator = '.';
    EXPECT_DOUBLE_EQ(rvStrToDateTime("12-jan-2004 10:20:30"), EncodeDateTime(2004, 1, 12, 10, 20, 30, 0));
    EXPECT_THROW(rvStrToDateTime("bad"), Exception);
    EXPECT_EQ(FormatSettings().ShortDateFormat, "mm.dd.yyyy");
    EXPECT_EQ(FormatSettings().DateSeparator, '.');
    EXPECT_EQ(FormatSettings().LongTimeFormat, "h.nn");
    EXPECT_EQ(FormatSettings().TimeSeparator, '.');
}

TEST_F(DayFirstLocale, ConvertDateReordersFieldsUntilTheLocaleAcceptsThem) {
    EXPECT_TRUE(isDateString("12/01/2004 10:20:30"));
    EXPECT_FALSE(isDateString("2004/01/12"));
    EXPECT_EQ(ConvertDate("12/01/2004 10:20:30"), "12/01/2004 10:20:30");
    EXPECT_EQ(ConvertDate("2004-01-12 10:20:30"), "12-01-2004 10:20:30"); // year first: reversed
    EXPECT_EQ(ConvertDate("01-13-2004 10:00:00"), "13-01-2004 10:00:00"); // month first: swapped
    EXPECT_EQ(ConvertDate("hello"), "hello");
    EXPECT_EQ(ConvertDate(""), "");
    EXPECT_EQ(ConvertDate("99-99-99 99"), "99-99-99 99");
}

TEST(LocaleDates, SeparatorsAreAsciiPunctuationOutsideQuotedWords) {
    const TLocaleFormats de = LocaleFormatsNamed("de_DE");
    EXPECT_EQ(de.ShortDateFormat, "dd.mm.yyyy");
    EXPECT_EQ(std::string() + de.DateSeparator + de.TimeSeparator, ".:");
    // Japanese times are written with hour and minute signs, Canadian French ones with quoted "h" and
    // "min": neither gives a separator of its own, so times keep ":" (not a byte of a sign or the "m").
    const TLocaleFormats ja = LocaleFormatsNamed("ja_JP");
    EXPECT_EQ(std::string() + ja.DateSeparator + ja.TimeSeparator, "/:");
    const TLocaleFormats fr = LocaleFormatsNamed("fr_CA");
    EXPECT_EQ(std::string() + fr.DateSeparator + fr.TimeSeparator, "-:");

    TFormatSettingsGuard saved;
    FormatSettings().ShortDateFormat = ja.ShortDateFormat;
    FormatSettings().DateSeparator = ja.DateSeparator;
    FormatSettings().TimeSeparator = ja.TimeSeparator;
    EXPECT_TRUE(isDateString("2004/01/12 10:20:30"));
    EXPECT_EQ(ConvertDate("12-01-2004 10:20:30"), "2004-01-12 10:20:30");
}

TEST(TimeUnits, UnitWordsAreMatchedByFragmentInFixedOrder) {
    // "sec" is looked for first; a month is 28 days, a year 365.
    const struct {
        int32_t Count;
        const char* Unit;
        int32_t Seconds;
    } cases[] = {{2, "Minutes", 120},  {3, "fortnight", 0},   {5, "SECONDS", 5},
                 {2, "hours", 7200},   {1, "day", 86400},     {1, "minutes and seconds", 1},
                 {1, "weeks", 604800}, {1, "month", 2419200}, {1, "Year", 31536000}};
    for (const auto& c : cases)
        EXPECT_EQ(rvTimeUnitToSeconds(c.Count, c.Unit), c.Seconds) << c.Unit;
}

TEST(TimeUnits, SecondsBecomeTheLargestWholeUnit) {
    struct Case {
        int32_t Seconds, Count;
        const char* Unit;
    } cases[] = {{59, 59, "seconds(s)"},   {60, 1, "minute(s)"},    {3599, 59, "minute(s)"},
                 {3600, 1, "hour(s)"},     {86399, 23, "hour(s)"},  {86400, 1, "day(s)"},
                 {604800, 1, "week(s)"},   {2419199, 3, "week(s)"}, {2419200, 1, "month(s)"},
                 {31536000, 1, "year(s)"}, {-5, -5, "seconds(s)"}};
    for (const Case& c : cases) {
        int32_t count = 0;
        std::string unit;
        rvSecondsToTimeUnit(c.Seconds, count, unit);
        EXPECT_EQ(count, c.Count) << c.Seconds;
        EXPECT_EQ(unit, c.Unit) << c.Seconds;
    }
}

TEST(TimeZone, BiasIsPositiveWestOfGreenwich) {
    const char* old = std::getenv("TZ");
    const std::string saved = old ? old : "";
    ::setenv("TZ", "UTC0", 1);
    EXPECT_EQ(Get_Time_Zone_Bias(), 0);
    ::setenv("TZ", "EST5", 1);
    EXPECT_EQ(Get_Time_Zone_Bias(), 5 * 3600);
    ::setenv("TZ", "CET-1", 1);
    EXPECT_EQ(Get_Time_Zone_Bias(), -3600);
    if (old)
        ::setenv("TZ", saved.c_str(), 1);
    else
        ::unsetenv("TZ");
    ::tzset();
}
