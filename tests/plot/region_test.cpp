/* Region files, the menu table, built-in regions. */
#include "plot/region.h"

#include "shell/message.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "tests/support/input.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

namespace {
struct RegionTest : testing::Test {
    Scratch scratch;

    RegionTest() {
        MSG_reset();
        RES_reset();
        REG_reset();
        DOM_reset();
        PAR_fill(MISSING);
        RES_set("file_path", scratch.dir.c_str());
    }
    ~RegionTest() override {
        RES_reset();
        REG_reset();
        MSG_reset();
    }
};

TEST_F(RegionTest, ALookupEndsAtTheFirstOddLine) {
    const std::string kLong(600, 'x');
    const struct {
        const char *why;
        std::string file;
        const char *region;
        int found;
        std::string text;
    } kCases[] = {
        {"ignoring case", "a A 1 one\nbB B 0 two\n", "Bb", 1, "two"},
        {"null is the first record", "# note\na A 1 one\nb B 1 two\n", nullptr, 1, "one"},
        {"not there", "a A 1 one\n", "b", 0, ""},
        {"an empty line ends the search", "a A 1 one\n\nb B 1 two\n", "b", 0, ""},
        {"a short line is the answer", "short line\nb B 1 two\n", "b", 1, "short"},
        {"so is one without a number", "short line x two\nb B 1 two\n", "b", 1, "short"},
        {"carriage returns", "a A 1 one\r\nb B 1 two\r\n", "b", 1, "two"},
        {"a line is cut to 500", "# " + kLong + "\nb B 1 two\n", "b", 1, std::string(102, 'x')},
        {"an empty file", "", "b", 0, ""},
    };
    for (const auto &c : kCases) {
        SCOPED_TRACE(c.why);
        scratch.write("t.reg", c.file);
        std::string text;
        EXPECT_EQ(REG_lookup("t.reg", c.region, &text), c.found);
        EXPECT_EQ(text, c.text);
    }
    std::string text;
    testing::internal::CaptureStderr();
    EXPECT_EQ(REG_lookup("absent", "a", &text), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to open region file: absent\n");
}

TEST_F(RegionTest, AFileReplacesTheMenu) {
    EXPECT_STREQ(REG_first_abbr(), "us");
    EXPECT_EQ(MENU_find("Southern Plains", REG_menu()), 6);
    EXPECT_EQ(MENU_find("BACK", REG_menu()), 0);
    scratch.write("t.reg", "# is_no_comment 1 x\nhid Hidden 0 x\n\nabcdefg "
                           "A_very_long_description_indeed 1 y\nshort\nlast Last 2 z");
    MSG_set_mask(0, 0);
    REG_read_table("t.reg");
    EXPECT_TRUE(REG_table_read());
    const MenuItem *menu = REG_menu();
    EXPECT_STREQ(menu[1].abbr, "#");
    EXPECT_STREQ(menu[1].label, "is no comment");
    EXPECT_STREQ(menu[2].abbr, "abcde");
    EXPECT_STREQ(menu[2].label, "A very long descript");
    EXPECT_STREQ(menu[3].abbr, "last");
    EXPECT_EQ(menu[3].value, 3);
    EXPECT_EQ(menu[4].label, nullptr);

    std::string many;
    for (int i = 1; i < 30; i++)
        many += "r" + std::to_string(i) + " R 1 x\n";
    scratch.write("many.reg", many);
    REG_read_table("many.reg");
    EXPECT_STREQ(menu[19].abbr, "r19");
    EXPECT_EQ(menu[20].label, nullptr);
    scratch.write("none.reg", "");
    REG_read_table("none.reg");
    EXPECT_STREQ(REG_first_abbr(), "");
}

TEST_F(RegionTest, AnUnreadableFileDropsTheBuiltInRowsOnce) {
    testing::internal::CaptureStderr();
    REG_read_table("absent");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to open region file: absent\n");
    EXPECT_STREQ(REG_first_abbr(), "");
    scratch.write("t.reg", "a A 1 x\n");
    REG_read_table("t.reg");
    MSG_set_mask(0, 0);
    REG_read_table("absent");
    EXPECT_STREQ(REG_first_abbr(), "a");
}

TEST_F(RegionTest, ListsEveryRecord) {
    scratch.write("t.reg", "gl Great_Lakes 1 x\nhidden Hidden_one 0 y\n");
    testing::internal::CaptureStdout();
    REG_list("t.reg");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              " Abbr    Description\n"
              "gl       Great_Lakes                                       \n"
              "hidden   Hidden_one                                        \n");
}

TEST_F(RegionTest, BuiltInRegionsAreDomains) {
    Domain d;
    d.nx = 7;
    EXPECT_EQ(DOM_region_builtin("mars", &d), 0);
    EXPECT_EQ(d.nx, 7);
    EXPECT_EQ(DOM_region_builtin("SP", &d), 1);
    EXPECT_EQ(d.clat, 32.5f);
    EXPECT_EQ(d.plon, -100.0f);
    EXPECT_EQ(d.plat, MISSING_F);
    EXPECT_EQ(d.nx, 25);
    EXPECT_EQ(d.dy, 1.2f);
    EXPECT_EQ(PAR_get(PAR_DOMAIN), 1);
    EXPECT_EQ(DOM_get_priority(), 3); // 16 * 1.2

    TypedInput typed("-30.5\n150\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(DOM_region_builtin("var", &d), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Enter the central latitude: Enter the central longitude: ");
    EXPECT_EQ(d.clat, -30.5f);
    EXPECT_EQ(d.clon, 150.0f);
    EXPECT_EQ(d.plon, 150.0f);
}
} // namespace
