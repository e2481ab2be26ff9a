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
#include <sstream>

namespace {

/* Every test begins with the state of a fresh process and a silent one. */
struct FileName : testing::Test {
    Scratch scratch;
    const DateTime date = *DT_make(1998, 3, 14, 18, 37);
    std::string out;

    FileName() {
        fresh();
        MSG_set_levels("none");
    }
    ~FileName() override { fresh(); }

    static void fresh() {
        unsetenv("qracurtime");
        RES_reset();
        FILE_name_reset();
        FILE_series_reset();
        PAR_fill(MISSING);
        MSG_reset();
    }

    std::string made(const char *text) {
        FILE_make_name(text, &out);
        return out;
    }
    std::string current(const char *text) {
        FILE_current(text, &out);
        return out;
    }
};

std::string rest_of_series() {
    std::string name, names;
    while (names.size() < 60 && FILE_series_next(&name))
        names += " " + name;
    return names;
}

/* Year to minute, "M" for a missing one. */
std::string fields(void (*get)(DateTime *)) {
    DateTime d;
    get(&d);
    std::string text;
    for (const int field : {d.year, d.month, d.day, d.hour, d.minute})
        text += (text.empty() ? "" : " ") + (field == MISSING ? "M" : std::to_string(field));
    return text;
}

TEST_F(FileName, ConventionFileIsSearchedInOrder) {
    const std::string file = scratch.write("conv", "# comment\n"
                                                   "nids_day %D/%y.day - 7\n"
                                                   "nids %D/%y.nid %D/second 100\n"
                                                   "rad  %D/%y.%e\n");
    RES_set("name_conv", file.c_str());
    for (const auto &[text, expected] : {
             std::pair{"NIDS", "1 %D/%y.nid|%D/second|| 100"},
             {"nids_day", "1 %D/%y.day||| 7"},
             {"rad_cvt", "1 %D/%y.%e||cvt| 0"},
             {"other", "0 other||| 0"},
             {"@%y.x", "1 %y.x||| 0"},
             {"None", "0 ||| 0"},
             {"nids:s=K TLX:q=N0R", "1 %D/%y.nid|%D/second|| 100"},
         }) {
        std::ostringstream found;
        found << FILE_set_name(text) << " " << FILE_state().conv_input << "|"
              << FILE_state().conv_output << "|" << FILE_state().extension << "| "
              << FILE_get_min_size();
        EXPECT_EQ(found.str(), expected) << text;
        FILE_state().extension.clear();
    }
    EXPECT_EQ(FILE_state().keys['s'] + " " + FILE_state().keys['q'], "K_TLX N0R");
}

TEST_F(FileName, DatesFillTemplates) {
    const struct {
        const char *why, *form, *hour, *name;
        int step;
    } cases[] = {
        {"fields", "%Y-%y%m%d_%h%n.%b.%j", "", "1998-980314_1837.mar.073", 60},
        {"multiples round down", "%y%m%d%6h%30n", "", "9803141830", 1800},
        {"every six hours from three", "%h", "-306", "21", 21600},
        {"a fixed hour", "%y%m%d%h", "14", "98031414", 3600},
        {"a fixed hour is rounded to the width", "%6h", "14", "12", 21600},
        {"every five days", "%d", "-5d0", "10", 432000},
        {"literals, braces, blanks, keys", "{a b}%%%k%z", "", "a_b%KEY0", MISSING},
        {"resources", "%D/%{con_path}/%h", "", "/data//con/18", 3600},
        {"a path that is not set", "%C%h", "", "/con18", 3600},
    };
    RES_set("data_path", "/data");
    RES_set("con_path", "/con");
    FILE_set_name("none");
    FILE_set_key('k', "KEY");
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        FILE_parse_hour(c.hour, nullptr);
        FILE_state().conv_input = c.form;
        FILE_state().name_given = 0;
        EXPECT_EQ(FILE_date_name(&date, &out), 0);
        EXPECT_EQ(out, c.name);
        EXPECT_EQ(FILE_get_step(), c.step);
        EXPECT_EQ(FILE_get_current(), out);
    }
    // A current name with a path keeps its directory.
    FILE_state().conv_input = "%D/%y%m%d%h.nid";
    FILE_clear_user_date();
    FILE_set_current("/tmp/deep/98031401.nid");
    FILE_date_name(&date, &out);
    EXPECT_EQ(out, "/tmp/deep/98031418.nid");
}

TEST_F(FileName, MissingDatesAndOddTemplates) {
    for (const auto &[form, result, name] :
         {std::tuple{"none", 1, "filename"}, {"@-", 1, "-"}, {"@%Y%b%d", 0, "0000xxx00"}}) {
        FILE_set_name(form);
        EXPECT_EQ(FILE_date_name(nullptr, &out), result);
        EXPECT_EQ(out, name);
    }
    FILE_clear_date_fields(&FILE_state().file_date);
    FILE_set_current("kept");
    EXPECT_EQ(FILE_date_name(nullptr, &out), 1);
    EXPECT_EQ(out, "kept");
    for (const auto &[form, name] :
         {std::pair{"%", ""}, {"a%5", "a"}, {"a%{b c", "a"}, {"a%99999999999999h", "a00"}}) {
        FILE_set_name(form);
        FILE_date_name(&date, &out);
        EXPECT_EQ(out, name) << form;
    }
}

TEST_F(FileName, TypedNamesBecomePaths) {
    const struct {
        const char *why, *form, *typed, *name;
    } cases[] = {
        {"a bare date", "%D/%y%m%d%h.nid", "98031418", "/data/98031418.nid"},
        {"no date at all", "%D/%y%m%d%h.nid", "abc", "/data/abc"},
        {"a path that is no date", "%D/%y%m%d%h.nid", "/tmp/x.nid", "/tmp/x.nid"},
        {"two full paths", "/a/%y", "/b/c", "/b/c"},
        {"braces are written and not compared", "%D/{day}%d", "14", "/data/day14"},
        {"a star takes the rest", "%D/%y*", "98rest", "/data/98rest"},
        {"a key takes its length", "%D/%s/%y", "KTLX/98", "/data/KTLX/98"},
        {"an empty key gives up", "%D/%z/%y", "a/98", "/data/a/98"},
        {"a month word", "%b%d", "mar14", "mar14"},
        {"an extension up to the rest", "%y.%e.z", "98.abc.z", "98.abc.z"},
        {"taken as it stands", "%D/%y", "@/any/98", "/any/98"},
        {"a brace that nothing closes", "{ab", "98", "ab"},
        {"an item that is cut off", "%5", "98", ""},
        {"standard input", "%D/%y", "-", "-"},
        {"a template that is a stream", "-", "abc", "-"},
    };
    RES_set("data_path", "/data");
    for (const auto &c : cases) {
        FILE_name_reset();
        FILE_set_name((std::string("@") + c.form).c_str());
        FILE_set_key('s', "KTLX");
        EXPECT_EQ(made(c.typed), c.name) << c.why;
    }
}

TEST_F(FileName, ATypedDateIsLearned) {
    FILE_set_name("@%D/%Y%j%h%n");
    EXPECT_EQ(made("19980731837"), "./19980731837");
    EXPECT_EQ(fields(FILE_get_date), "1998 3 14 18 37");
    EXPECT_EQ(FILE_get_step(), 60);
    made("98.x#2001020304");
    EXPECT_EQ(fields(FILE_get_user_date), "2001 2 3 4 M");
}

TEST_F(FileName, ModifiersAreCutOnlyFromTheNameItself) {
    FILE_set_name("@%D/*");
    FILE_set_suffix_mode(1);
    const std::string file = scratch.write("my-site/N0R-2", "x"), site = scratch.path("my-site/");
    for (const auto &[typed, name_and_suffix] : {std::pair{site + "N0R+1", site + "N0R +1"},
                                                 {file, file + " "},
                                                 {"ab-3", "./ab-3 "},
                                                 {"abc:3", "./abc :3"}})
        EXPECT_EQ(made(typed.c_str()) + " " + FILE_get_suffix(), name_and_suffix);
}

TEST_F(FileName, HourTexts) {
    for (const auto &[text, expected] : {std::pair{"#1998031418", "1998 3 14 18 M"},
                                         {"031418", "M 3 14 18 M"},
                                         {"1418", "M M 14 18 M"},
                                         {"418", "M M 4 18 M"},
                                         {":30", "M M M M 30"},
                                         {"-:30", "M M M M -30"},
                                         {"6:30", "M M M 6 30"},
                                         {"-0:15", "M M M M -15"},
                                         {"-6", "M M M -6 M"},
                                         {"2d6:30", "M M 2 6 30"},
                                         {"", "M M M M M"}}) {
        FILE_parse_hour(text, nullptr);
        EXPECT_EQ(fields(FILE_get_user_date), expected) << text;
    }
}

TEST_F(FileName, CurrentDataIsSoughtFromAFixedNow) {
    setenv("qracurtime", "199803141830", 1);
    scratch.write("98031418", "");
    scratch.write("98031415", "content");
    scratch.write("98031406", "content");
    RES_set("data_path", scratch.dir.c_str());
    FILE_set_name("@%D/%y%m%d%h");
    for (const auto &[text, name] : {std::pair{"la", "98031415"}, // the file of 18Z is empty
                                     {"la#2", "98031416"},        // none within two steps
                                     {"la-9", "98031406"},        // counted from the latest
                                     {"-4la", "98031406"},        // at or before four hours ago
                                     {"6", "98031412"},           // unsigned is the past
                                     {"+6", "98031500"},
                                     {"", "98031418"},
                                     {"#1999010203", "99010203"}})
        EXPECT_EQ(current(text), scratch.path(name)) << text;
    for (const auto &[hour, name] : {std::pair{"12", "98031412"}, {"20", "98031320"}}) {
        FILE_parse_hour(hour, nullptr);
        EXPECT_EQ(current(""), scratch.path(name));
    }
    FILE_clear_user_date();
    for (const char *text : {"la#99999999999", "99999999999d99999999999:9", "l#", "++--", "##"})
        current(text);
}

TEST_F(FileName, SeriesOfTimes) {
    for (const auto &[num_hour, expected] : {std::pair{"", " 18"},
                                             {"-3", " 15 16 17 18"},
                                             {"-6,2", " 12 14 16 18"},
                                             {"2", " 18 19 20"},
                                             {"1,0:30", " 18 19"},
                                             {"-0:90", " 16 17 18"}}) {
        if (*num_hour)
            RES_set("num_hour", num_hour);
        FILE_set_name("@%h");
        const DateTime full_hour = *DT_make(1998, 3, 14, 18, 0);
        FILE_date_name(&full_hour, &out);
        FILE_series_init(&full_hour);
        EXPECT_EQ(FILE_series_count() != 0, *num_hour != 0);
        EXPECT_EQ(rest_of_series(), expected) << num_hour;
    }
    RES_add(MISSING, "filename", "a\nb", OPT_LIST); // several names rule over a span
    RES_set("num_hour", "-6");
    FILE_series_init(&date);
    EXPECT_EQ(FILE_series_count(), 1);
    EXPECT_EQ(rest_of_series(), " a b");
}

TEST_F(FileName, TheInputFileEndsTheProcessWhereNoneIsFound) {
    FILE_set_name("@%D/%y%m%d%h");
    RES_set("data_path", scratch.dir.c_str());
    for (const auto &[text, code] : {std::pair{"a\nb\nc\nd\n", 10}, {"exit\n", 0}}) {
        const TypedInput typed(text);
        EXPECT_EXIT(FILE_get_filename("Name: ", &out), testing::ExitedWithCode(code), "");
    }
    RES_set("current", "la");
    EXPECT_EXIT(FILE_get_filename("Name: ", &out), testing::ExitedWithCode(10), "");
    RES_add(MISSING, "filename", "98031418", OPT_LIST);
    EXPECT_EQ(FILE_get_filename("Name: ", &out), 0);
    scratch.write("98031418", "x");
    EXPECT_EQ(FILE_get_filename("Name: ", &out), 1);
    EXPECT_EQ(out, scratch.path("98031418"));
}

} // namespace
