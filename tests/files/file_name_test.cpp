#include "files/file_current.h"
#include "files/file_input.h"
#include "files/file_name.h"
#include "files/file_series.h"
#include "files/file_template.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "tests/support/input.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

namespace {

/* Every test begins with the state of a fresh process and a silent one. */
class FileName : public testing::Test {
  protected:
    Scratch scratch;

    void SetUp() override {
        unsetenv("qracurtime");
        RES_reset();
        FILE_name_reset();
        FILE_series_reset();
        PAR_fill(MISSING);
        MSG_reset();
        MSG_set_levels("none");
    }
    void TearDown() override {
        unsetenv("qracurtime");
        RES_reset();
        FILE_name_reset();
        FILE_series_reset();
        MSG_reset();
    }

    std::string made(const char *text) {
        std::string out;
        FILE_make_name(text, &out);
        return out;
    }
    std::string current(const char *text) {
        std::string out;
        FILE_current(text, &out);
        return out;
    }
};

TEST_F(FileName, ConventionFileIsSearchedInOrder) {
    const std::string file = scratch.write("conv", "# comment\n"
                                                   "nids_day %D/%y.day - 7\n"
                                                   "nids %D/%y.nid %D/second 100\n"
                                                   "rad  %D/%y.%e\n");
    RES_set("name_conv", file.c_str());
    struct Case {
        const char *text;
        int result;
        const char *input, *output, *extension;
        int min_size;
    };
    const Case cases[] = {
        {"NIDS", 1, "%D/%y.nid", "%D/second", "", 100},
        {"nids_day", 1, "%D/%y.day", "", "", 7},
        {"rad_cvt", 1, "%D/%y.%e", "", "cvt", 0},
        {"other", 0, "other", "", "", 0},
        {"@%y.x", 1, "%y.x", "", "", 0},
        {"None", 0, "", "", "", 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.text);
        FILE_state().extension.clear();
        EXPECT_EQ(FILE_set_name(c.text), c.result);
        EXPECT_EQ(FILE_state().conv_input, c.input);
        EXPECT_EQ(FILE_state().extension, c.extension);
        if (c.result) {
            EXPECT_EQ(FILE_state().conv_output, c.output);
            EXPECT_EQ(FILE_get_min_size(), c.min_size);
        }
    }
    EXPECT_EQ(FILE_set_name("nids:s=K TLX:q=N0R"), 1);
    std::string key;
    FILE_get_key('s', &key);
    EXPECT_EQ(key, "K_TLX");
    FILE_get_key('q', &key);
    EXPECT_EQ(key, "N0R");
}

TEST_F(FileName, DatesFillTemplates) {
    struct Case {
        const char *why, *form, *hour, *name;
        int step;
    };
    const Case cases[] = {
        {"fields", "%Y-%y%m%d_%h%n.%b.%j", nullptr, "1998-980314_1837.mar.073", 60},
        {"multiples round down", "%y%m%d%6h%30n", nullptr, "9803141830", 1800},
        {"steps of six hours", "%y%m%d%h", "-6", "98031418", 21600},
        {"every six hours from three", "%h", "-306", "21", 21600},
        {"a fixed hour", "%y%m%d%h", "14", "98031414", 3600},
        {"a fixed hour is rounded to the width", "%6h", "14", "12", 21600},
        {"every five days", "%d", "-5d0", "10", 432000},
        {"literals, braces, blanks, keys", "{a b}%%%k%z", nullptr, "a_b%KEY0", MISSING},
        {"resources", "%D/%{con_path}/%h", nullptr, "/data//con/18", 3600},
        {"a path that is not set", "%C%h", nullptr, "/con18", 3600},
    };
    RES_set("data_path", "/data");
    RES_set("con_path", "/con");
    FILE_set_name("none");
    FILE_set_key('k', "KEY");
    const DateTime date = *DT_make(1998, 3, 14, 18, 37);
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        FILE_clear_user_date();
        if (c.hour)
            FILE_parse_hour(c.hour, nullptr);
        FILE_state().conv_input = c.form;
        FILE_state().name_given = 0;
        std::string out;
        EXPECT_EQ(FILE_date_name(&date, &out), 0);
        EXPECT_EQ(out, c.name);
        EXPECT_EQ(FILE_get_step(), c.step);
        EXPECT_EQ(FILE_get_current(), out);
    }
}

TEST_F(FileName, MissingDatesAndOddTemplates) {
    std::string out;
    FILE_set_name("none");
    EXPECT_EQ(FILE_date_name(nullptr, &out), 1);
    EXPECT_EQ(out, "filename");
    FILE_set_name("@-");
    EXPECT_EQ(FILE_date_name(nullptr, &out), 1);
    EXPECT_EQ(out, "-");
    FILE_set_name("@%Y%b%d");
    EXPECT_EQ(FILE_date_name(nullptr, &out), 0);
    EXPECT_EQ(out, "0000xxx00");
    FILE_clear_date_fields(&FILE_state().file_date);
    FILE_set_current("kept");
    EXPECT_EQ(FILE_date_name(nullptr, &out), 1);
    EXPECT_EQ(out, "kept");
    for (const char *form : {"%", "%99999999999999h", "%{", "%5", "{", "%{no close"}) {
        FILE_state().conv_input = form;
        const DateTime date = *DT_make(1998, 3, 14, 18, 37);
        FILE_date_name(&date, &out);
        made("98031418");
    }
}

TEST_F(FileName, ANameWithAPathKeepsItsDirectory) {
    RES_set("data_path", "/data");
    FILE_set_name("@%D/%y%m%d%h.nid");
    FILE_set_current("/tmp/deep/98031418.nid");
    const DateTime date = *DT_make(1998, 3, 14, 19, 0);
    std::string out;
    FILE_date_name(&date, &out);
    EXPECT_EQ(out, "/tmp/deep/98031419.nid");
}

TEST_F(FileName, TypedNamesBecomePaths) {
    struct Case {
        const char *why, *form, *typed, *name;
    };
    const Case cases[] = {
        {"a bare date", "%D/%y%m%d%h.nid", "98031418", "/data/98031418.nid"},
        {"no date at all", "%D/%y%m%d%h.nid", "abc", "/data/abc"},
        {"a path that is no date", "%D/%y%m%d%h.nid", "/tmp/x.nid", "/tmp/x.nid"},
        {"a path with the date", "%D/%y%m%d%h.nid", "/t/98031418.nid", "/t/98031418.nid"},
        {"two full paths", "/a/%y", "/b/c", "/b/c"},
        {"braces are written and not compared", "%D/{day}%d", "14", "/data/day14"},
        {"a star takes the rest", "%D/%y*", "98rest", "/data/98rest"},
        {"a key takes its length", "%D/%s/%y", "KTLX/98", "/data/KTLX/98"},
        {"an empty key gives up", "%D/%z/%y", "a/98", "/data/a/98"},
        {"a month word", "%b%d", "mar14", "mar14"},
        {"an extension up to the rest", "%y.%e.z", "98.abc.z", "98.abc.z"},
        {"taken as it stands", "%D/%y", "@/any/98", "/any/98"},
        {"standard input", "%D/%y", "-", "-"},
        {"a template that is a stream", "-", "abc", "-"},
        {"none stands", "%D/%y", "none", "none"},
    };
    RES_set("data_path", "/data");
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        FILE_name_reset();
        FILE_set_name((std::string("@") + c.form).c_str());
        FILE_set_key('s', "KTLX");
        EXPECT_EQ(made(c.typed), c.name);
    }
}

TEST_F(FileName, ATypedDateIsLearned) {
    FILE_set_name("@%D/%Y%j%h%n");
    EXPECT_EQ(made("19980731837"), "./19980731837");
    DateTime date;
    FILE_get_date(&date);
    EXPECT_EQ(date.year, 1998);
    EXPECT_EQ(date.month * 100 + date.day, 314);
    EXPECT_EQ(date.hour * 100 + date.minute, 1837);
    EXPECT_EQ(FILE_get_step(), 60);
    made("98.x#2001020304");
    FILE_get_user_date(&date);
    EXPECT_EQ(date.year, 2001);
    EXPECT_EQ(date.hour, 4);
    EXPECT_EQ(date.minute, MISSING);
}

TEST_F(FileName, ModifiersAreCutOnlyFromTheNameItself) {
    FILE_set_name("@%D/*");
    FILE_set_suffix_mode(1);
    const std::string file = scratch.write("my-site/N0R-2", "x");
    struct Case {
        std::string typed, name, suffix;
    };
    for (const Case &c : {Case{scratch.path("my-site/N0R+1"), scratch.path("my-site/N0R"), "+1"},
                          Case{file, file, ""}, Case{"/a-b/ab#3", "/a-b/ab", "#3"},
                          Case{"ab-3", "./ab-3", ""}, Case{"abc:3", "./abc", ":3"}}) {
        SCOPED_TRACE(c.typed);
        EXPECT_EQ(made(c.typed.c_str()), c.name);
        EXPECT_EQ(FILE_get_suffix(), c.suffix);
    }
}

TEST_F(FileName, HourTexts) {
    struct Case {
        const char *text;
        int month, day, hour, minute;
    };
    for (const Case &c :
         {Case{"#1998031418", 3, 14, 18, MISSING}, Case{"031418", 3, 14, 18, MISSING},
          Case{"1418", MISSING, 14, 18, MISSING}, Case{"418", MISSING, 4, 18, MISSING},
          Case{":30", MISSING, MISSING, MISSING, 30}, Case{"-:30", MISSING, MISSING, MISSING, -30},
          Case{"6:30", MISSING, MISSING, 6, 30}, Case{"-0:15", MISSING, MISSING, MISSING, -15},
          Case{"-6", MISSING, MISSING, -6, MISSING}, Case{"2d6:30", MISSING, 2, 6, 30},
          Case{"", MISSING, MISSING, MISSING, MISSING}}) {
        SCOPED_TRACE(c.text);
        DateTime d;
        FILE_parse_hour(c.text, nullptr);
        FILE_get_user_date(&d);
        EXPECT_EQ(d.month, c.month);
        EXPECT_EQ(d.day, c.day);
        EXPECT_EQ(d.hour, c.hour);
        EXPECT_EQ(d.minute, c.minute);
    }
}

TEST_F(FileName, CurrentDataIsSoughtFromAFixedNow) {
    setenv("qracurtime", "199803141830", 1);
    for (const char *hour : {"98031418", "98031415", "98031406"})
        scratch.write(hour, hour == std::string("98031418") ? "" : "content");
    RES_set("data_path", scratch.dir.c_str());
    FILE_set_name("@%D/%y%m%d%h");
    struct Case {
        const char *text, *name;
    };
    for (const Case &c : {Case{"la", "98031415"},   // the file of 18Z is empty
                          Case{"la#2", "98031416"}, // none within two steps
                          Case{"la-9", "98031406"}, // counted from the latest
                          Case{"-4la", "98031406"}, // at or before four hours ago
                          Case{"6", "98031412"},    // unsigned is the past
                          Case{"+6", "98031500"},   //
                          Case{"1d0", "98031318"},  //
                          Case{"", "98031418"},     //
                          Case{"#1999010203", "99010203"}}) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(current(c.text), scratch.path(c.name));
    }
    FILE_parse_hour("12", nullptr);
    EXPECT_EQ(current(""), scratch.path("98031412"));
    FILE_parse_hour("20", nullptr);
    EXPECT_EQ(current(""), scratch.path("98031320"));
    FILE_clear_user_date();
    for (const char *text : {"la#99999999999", "99999999999d99999999999:9", "l#", "++--", "##"})
        current(text);
}

TEST_F(FileName, SeriesOfTimes) {
    struct Case {
        const char *num_hour;
        std::vector<std::string> names;
    };
    const Case cases[] = {
        {"-3", {"98031415", "98031416", "98031417", "98031418"}},
        {"-6,2", {"98031412", "98031414", "98031416", "98031418"}},
        {"2", {"98031418", "98031419", "98031420"}},
        {"1,0:30", {"98031418", "98031419"}},
        {"-0:90", {"98031416", "98031417", "98031418"}},
        {nullptr, {"98031418"}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.num_hour ? c.num_hour : "none");
        RES_reset();
        if (c.num_hour)
            RES_set("num_hour", c.num_hour);
        FILE_set_name("@%y%m%d%h");
        const DateTime date = *DT_make(1998, 3, 14, 18, 0);
        std::string name;
        FILE_date_name(&date, &name);
        FILE_series_init(&date);
        EXPECT_EQ(FILE_series_count() != 0, c.num_hour != nullptr);
        std::vector<std::string> names;
        while (names.size() < 20 && FILE_series_next(&name))
            names.push_back(name);
        EXPECT_EQ(names, c.names);
    }
}

TEST_F(FileName, SeveralNamesRuleOverASpan) {
    RES_add(MISSING, "filename", "a\nb", OPT_LIST);
    RES_set("num_hour", "-6");
    FILE_set_name("@%D/*");
    const DateTime date = *DT_make(1998, 3, 14, 18, 0);
    FILE_series_init(&date);
    EXPECT_EQ(FILE_series_count(), 1);
    std::string name;
    EXPECT_EQ(FILE_series_next(&name), 1);
    EXPECT_EQ(name, "./a");
    EXPECT_EQ(FILE_series_next(&name), 1);
    EXPECT_EQ(name, "./b");
    EXPECT_EQ(FILE_series_next(&name), 0);
}

TEST_F(FileName, TheInputFileEndsTheProcessWhereNoneIsFound) {
    FILE_set_name("@%D/%y%m%d%h");
    RES_set("data_path", scratch.dir.c_str());
    std::string dest;
    {
        const TypedInput typed("a\nb\nc\nd\n");
        EXPECT_EXIT(FILE_get_filename("Name: ", &dest), testing::ExitedWithCode(10), "");
    }
    {
        const TypedInput typed("exit\n");
        EXPECT_EXIT(FILE_get_filename("Name: ", &dest), testing::ExitedWithCode(0), "");
    }
    RES_set("current", "la");
    EXPECT_EXIT(FILE_get_filename("Name: ", &dest), testing::ExitedWithCode(10), "");
    RES_add(MISSING, "filename", "98031418", OPT_LIST);
    EXPECT_EQ(FILE_get_filename("Name: ", &dest), 0);
    scratch.write("98031418", "x");
    EXPECT_EQ(FILE_get_filename("Name: ", &dest), 1);
    EXPECT_EQ(dest, scratch.path("98031418"));
}

} // namespace
