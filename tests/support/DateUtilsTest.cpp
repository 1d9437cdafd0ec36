#include "support/DateUtils.h"
#include "support/Exception.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(DateUtils, EncodeAndDecodeRoundTripAcrossTheCalendar) {
    EXPECT_EQ(EncodeDate(1899, 12, 30), 0.0);
    EXPECT_EQ(EncodeDate(1970, 1, 1), UnixDateDelta);
    EXPECT_EQ(EncodeDate(1, 1, 1), -DateDelta + 1.0);
    for (int y : {1, 1600, 1899, 1900, 2000, 2004, 2100, 9999}) {
        for (int m = 1; m <= 12; ++m) {
            for (int d : {1, DaysInMonth(y, m)}) {
                int yy, mm, dd;
                DecodeDate(EncodeDate(y, m, d), yy, mm, dd);
                EXPECT_EQ(yy * 10000 + mm * 100 + dd, y * 10000 + m * 100 + d);
            }
        }
    }
    EXPECT_THROW(EncodeDate(2003, 2, 29), EConvertError);
    EXPECT_THROW(EncodeTime(24, 0, 0, 0), EConvertError);
}

TEST(DateUtils, NegativeDatesKeepTheTimeOfDayAsTheAbsoluteFraction) {
    const TDateTime dt = EncodeDateTime(1899, 12, 29, 6, 0, 0, 0);
    EXPECT_DOUBLE_EQ(dt, -1.25);
    int h, n, s, ms;
    DecodeTime(dt, h, n, s, ms);
    EXPECT_EQ(h, 6);
}

TEST(DateUtils, FormatDateTimeUsesTheBoardLetters) {
    TFormatSettings fs;
    const TDateTime dt = EncodeDateTime(2004, 1, 12, 10, 20, 30, 45);
    EXPECT_EQ(FormatDateTime("yyyy-mm-dd\"T\"hh:nn:ss", dt, fs), "2004-01-12T10:20:30");
    EXPECT_EQ(FormatDateTime("hh:mm", dt, fs), "10:20");
    EXPECT_EQ(FormatDateTime("d/m/yy zzz", dt, fs), "12/1/04 045");
    EXPECT_EQ(FormatDateTime("c", dt, fs), "12/01/2004 10:20:30");
    EXPECT_EQ(FormatDateTime("c", EncodeDate(2004, 1, 12), fs), "12/01/2004");
    EXPECT_EQ(FormatDateTime("ddd mmm", dt, fs), "Mon Jan");
    EXPECT_EQ(FormatDateTime("h:nn am/pm", EncodeTime(13, 5, 0, 0), fs), "1:05 pm");
}

TEST(DateUtils, ValuesOutsideTheCalendarFormatWithoutReadingOutOfBounds) {
    TFormatSettings fs;
    const std::string names = "Sun Mon Tue Wed Thu Fri Sat";
    for (TDateTime dt : {-700000.0, -693594.5, -1e12}) {
        const std::string day = FormatDateTime("ddd", dt, fs);
        EXPECT_NE(names.find(day), std::string::npos) << dt << " gave " << day;
    }
    for (TDateTime dt : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300})
        EXPECT_EQ(FormatDateTime("yyyy-mm-dd hh:nn:ss", dt, fs), "0000-00-00 00:00:00") << dt;
    EXPECT_EQ(DayOfWeek(EncodeDate(2004, 1, 12)), 2); // a Monday: dates inside the calendar are unchanged
}

TEST(DateUtils, StrToDateTimeFollowsTheDateOrderOfTheSettings) {
    TFormatSettings dmy;
    TFormatSettings mdy;
    mdy.ShortDateFormat = "m/d/yyyy";
    TFormatSettings ymd;
    ymd.ShortDateFormat = "yyyy-mm-dd";
    ymd.DateSeparator = '-';
    EXPECT_EQ(StrToDateTime("12/1/2004", dmy), EncodeDate(2004, 1, 12));
    EXPECT_EQ(StrToDateTime("1/12/2004", mdy), EncodeDate(2004, 1, 12));
    EXPECT_EQ(StrToDateTime("2004-01-12 10:20:30", ymd), EncodeDateTime(2004, 1, 12, 10, 20, 30, 0));
    EXPECT_EQ(StrToDateTime("12/1/2004 1:05 PM", dmy), EncodeDateTime(2004, 1, 12, 13, 5, 0, 0));
    EXPECT_EQ(StrToDateTime("10:20", dmy), EncodeTime(10, 20, 0, 0));
    EXPECT_THROW(StrToDateTime("31/2/2004", dmy), EConvertError);
    EXPECT_THROW(StrToDateTime("2004-01-12", dmy), EConvertError);
    EXPECT_THROW(StrToDateTime("", dmy), EConvertError);
}
