#include "files/date_time.h"

#include <gtest/gtest.h>

namespace {

DateTime make(int year, int month, int day, int hour, int minute, int second = 0) {
    DateTime d;
    d.year = year;
    d.month = month;
    d.day = day;
    d.hour = hour;
    d.minute = minute;
    d.second = second;
    return d;
}

TEST(DateTime, SecondsComeFromRepairedFields) {
    struct Case {
        const char *why;
        DateTime date;
        int64_t seconds;
    };
    const Case cases[] = {
        {"the epoch", make(1970, 1, 1, 0, 0), 0},
        {"a plain date", make(2013, 5, 20, 20, 16, 5), 1369080965},
        {"a missing hour is midnight", make(2013, 5, 20, MISSING, MISSING, MISSING), 1369008000},
        {"1 February 2000 has no leap day behind it", make(2000, 2, 1, 0, 0), 949363200},
        {"1 March 2000 has", make(2000, 3, 1, 0, 0), 951868800},
        {"no century rule: 1 March 2100 counts 29 February", make(2100, 3, 1, 0, 0),
         4107542400 + 86400},
        {"a missing year is 1980", make(MISSING, 1, 1, 0, 0), 315532800},
        {"49 is 2049", make(49, 1, 1, 0, 0), 2493072000},
        {"50 is 1950", make(50, 1, 1, 0, 0), -631152000},
        {"month 13 and day 40 are the first", make(1970, 13, 40, 25, 61, 61), 0},
        {"day 0 stays", make(1970, 1, 0, 0, 0), -86400},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        DateTime d = c.date;
        EXPECT_EQ(DT_to_seconds(&d), c.seconds);
        EXPECT_NE(d.hour, MISSING);
    }
}

TEST(DateTime, SecondsAndBackAgreeOverTwoCenturies) {
    int last_month = 0, last_day = 0;
    DT_yday_to_date(1999, 366, &last_month, &last_day);
    EXPECT_EQ(last_month * 100 + last_day, 1231);
    for (int64_t s = -2000000000; s < 4000000000; s += 7777777) {
        DateTime d;
        DT_from_seconds(&s, &d);
        int yday = 0, month = 0, day = 0;
        DT_date_to_yday(d.year, d.month, d.day, &yday);
        DT_yday_to_date(d.year, yday, &month, &day);
        ASSERT_EQ(yday, d.yday);
        ASSERT_EQ(month * 100 + day, d.month * 100 + d.day);
        ASSERT_EQ(DT_to_seconds(&d), s);
    }
}

TEST(DateTime, LabelFormFollowsTheFirstMissingField) {
    struct Case {
        const char *zone;
        DateTime date;
        const char *label;
    };
    const Case cases[] = {
        {nullptr, make(1998, MISSING, MISSING, MISSING, MISSING), "98"},
        {nullptr, make(1998, 3, MISSING, MISSING, MISSING), "MAR 98"},
        {nullptr, make(1998, 3, 4, MISSING, MISSING), " 4 MAR 98"},
        {nullptr, make(1998, 3, 14, 18, MISSING), "18Z 14 MAR 98"},
        {nullptr, make(1998, 3, 14, 18, 30), "1830Z 14 MAR 98"},
        {"EST:0", make(1998, 3, 14, 6, MISSING), "06 EST 14 MAR 98"},
        {"EST:-5", make(1998, 3, 14, 3, 30), "2230 EST 13 MAR 98"},
        {"+EST:-5", make(1998, 3, 14, 17, 5), "12:05 PM EST 14 MAR 98"},
        {"-EST:-5", make(1998, 3, 14, 5, 5), "12:05 AM EST [0505Z] 14 MAR 98"},
        {"-X:0", make(1998, 3, 14, 15, MISSING), "3 PM X [15Z] 14 MAR 98"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        DT_zone_reset();
        DT_set_zone(c.zone);
        DateTime d = c.date;
        std::string out;
        EXPECT_EQ(DT_format(&d, &out), 0);
        EXPECT_EQ(out, c.label);
    }
    DT_zone_reset();
}

TEST(DateTime, ValidTimeAddsTheSecondCountInHours) {
    const DateTime start = make(2013, 5, 20, 20, 16);
    std::string out;
    DT_format_valid(0, &start, &out);
    EXPECT_EQ(out, "20Z MON 20 MAY 13");
    DT_format_valid(1012006, &start, &out);
    EXPECT_EQ(out, "2Z TUE 21 MAY 13");
    DT_format_valid(800, &start, &out);
    EXPECT_EQ(out, "20Z MON 20 MAY 13");
    const DateTime day = make(2013, 5, 20, MISSING, MISSING);
    DT_format_valid(24, &day, &out);
    EXPECT_EQ(out, "TUE 21 MAY 13");
}

TEST(DateTime, ForecastLabels) {
    struct Case {
        int hours;
        bool half_days;
        const char *label;
    };
    for (const Case &c :
         {Case{901, false, "1 month"}, Case{803, false, "3 day"}, Case{12, true, "0.5 day"},
          Case{24, true, "1 day"}, Case{24, false, "24 hour"}, Case{60, true, "2.5 day"},
          Case{72, false, "3 day"}, Case{84, false, "3.5 day"}, Case{18, true, "18 hour"},
          Case{0, true, ""}, Case{MISSING, false, ""}}) {
        std::string out = "stale";
        DT_forecast_label(&out, c.hours, c.half_days);
        EXPECT_EQ(out, c.label) << c.hours;
    }
}

TEST(DateTime, BulletinTextIsReadFromItsEnd) {
    struct Case {
        const char *text;
        DateTime date;
    };
    const Case cases[] = {
        {"18Z 14 MAR 98", make(1998, 3, 14, 18, MISSING, MISSING)},
        {"VALID AT 18Z  4 MAR 08", make(2008, 3, 4, 18, MISSING, MISSING)},
        {"RADAR 1830Z 14 MAR 98", make(1998, 3, 14, 18, 30, MISSING)},
        {"RADAR  730Z 14 MAR 98", make(1998, 3, 14, 7, 30, MISSING)},
        {"SCAN 18:30:59Z 14 mar 98", make(1998, 3, 14, 18, 30, 59)},
        {"98 03 14 97", make(1997, 0, 14, MISSING, MISSING, MISSING)},
        {"", make(MISSING, 0, MISSING, MISSING, MISSING, MISSING)},
        {"nothing of a date in it", make(MISSING, 0, MISSING, MISSING, MISSING, MISSING)},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.text);
        DateTime d;
        EXPECT_EQ(DT_parse(c.text, &d), 0);
        EXPECT_EQ(d.year, c.date.year);
        EXPECT_EQ(d.month, c.date.month);
        EXPECT_EQ(d.day, c.date.day);
        EXPECT_EQ(d.hour, c.date.hour);
        EXPECT_EQ(d.minute, c.date.minute);
        EXPECT_EQ(d.second, c.date.second);
    }
}

TEST(DateTime, MonthWordsKeepOneCase) {
    for (int m = 1; m <= 12; m++) {
        EXPECT_EQ(DT_month_number(DT_month_name(m)), m);
        EXPECT_EQ(DT_month_number(DT_month_name_lower(m)), m);
    }
    for (const char *word : {"Jun", "jU", "", "xyz", "J", "MA"})
        EXPECT_EQ(DT_month_number(word), 0) << word;
    EXPECT_STREQ(DT_month_name(13), "");
}

TEST(DateTime, ZoneOffsetsOutOfReasonAreNone) {
    for (const char *text : {"A:", "A:inf", "A:nan", "A:1e30", "A"}) {
        DT_zone_reset();
        DT_set_zone(text);
        EXPECT_EQ(DT_zone_offset(), 0) << text;
        EXPECT_STREQ(DT_zone_name(), " A");
    }
    DT_zone_reset();
}

} // namespace
