/* Region files, the menu table, built-in regions. */
#include "tests/plot/page_fixture.h"
#include "tests/support/input.h"

namespace {
struct RegionTest : PlotTest {
    /* What a file of this text tells of a region; "none" when it does not. */
    std::string lookup(const std::string &file, const char *region) {
        scratch.write("t.reg", file);
        std::string text;
        return REG_lookup("t.reg", region, &text) == 1 ? text : "none";
    }

    /* The menu that a file of this text leaves, from its first row on. */
    std::string menu(const std::string &file) {
        scratch.write("t.reg", file);
        REG_read_table("t.reg");
        std::string all;
        for (const MenuItem *row = REG_menu() + 1; row->label; row++)
            all += page_list(row->value, row->abbr, row->label, "");
        return all;
    }
};
} // namespace

TEST_F(RegionTest, ALookupEndsAtTheFirstOddLine) {
    EXPECT_EQ(lookup("a A 1 one\nbB B 0 two\n", "Bb"), "two");
    EXPECT_EQ(lookup("# note\na A 1 one\nb B 1 two\n", nullptr), "one") << "the first record";
    EXPECT_EQ(lookup("a A 1 one\r\n\r\nb B 1 two\r\n", "b"), "none") << "an empty line ends it";
    EXPECT_EQ(lookup("short line x two\nb B 1 two\n", "b"), "short") << "so does a short one";
    EXPECT_EQ(lookup("# " + std::string(600, 'x') + "\nb B 1 two\n", "b"), std::string(102, 'x'))
        << "a line is cut to 500";
    EXPECT_EQ(lookup("a A_long_name 1 x\n", "c"), "none");
    EXPECT_TRUE(page_output_of([] {
                    REG_list("t.reg");
                }).starts_with(" Abbr    Description\na        A_long_name      "));
}

TEST_F(RegionTest, AFileReplacesTheMenu) {
    EXPECT_STREQ(REG_menu()[6].label, "Southern Plains");
    EXPECT_EQ(page_errors_of([] { REG_read_table("absent"); }),
              "Unable to open region file: absent\n");
    EXPECT_STREQ(REG_first_abbr(), "") << "the built-in rows are gone";
    MSG_set_mask(0, 0);
    EXPECT_EQ(
        menu("# no_comment 1 x\nhid Hidden 0 x\n\nabcdefg A_very_long_description 1 y\nshort"),
        "1 # no comment 2 abcde A very long descript ");
    std::string many;
    for (int i = 1; i < 30; i++)
        many += "r" + std::to_string(i) + " R 1 x\n";
    EXPECT_TRUE(menu(many).ends_with(" 19 r19 R "));
}

TEST_F(RegionTest, BuiltInRegionsAreDomains) {
    Domain d;
    EXPECT_EQ(DOM_region_builtin("mars", &d), 0);
    EXPECT_EQ(DOM_region_builtin("SP", &d), 1);
    EXPECT_EQ(page_output_of([&] { DOM_print(MSG_PRINT, &d); }),
              "pstereo::-100.000:::,32.500,-100.000,25,17,1.2000,1.2000\n");
    EXPECT_EQ(DOM_get_priority(), 3); // 16 * 1.2
    TypedInput typed("-30.5\n150\n");
    EXPECT_EQ(page_output_of([&] { DOM_region_builtin("var", &d); }),
              "Enter the central latitude: Enter the central longitude: ");
    EXPECT_TRUE(d.clat == -30.5f && d.clon == 150.0f && d.plon == 150.0f);
}
