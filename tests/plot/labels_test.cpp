/* Labels: the store, compact mode, templates, and where they stand. */
#include "tests/plot/page_fixture.h"

#include <limits>

namespace {
struct LabelsTest : PageTest {
    /* Draws the labels on a page and gives their words. */
    std::string draw() {
        if (!gis_open())
            open_page();
        drawn = Drawn{};
        result = PLT_labels();
        return drawn.words();
    }
    int result = -2;
};

/* Puts its own code into each slot. */
void put_all() {
    const char *codes[] = {"ul", "uc", "ur", "ll", "lc", "lr"}, **code = codes;
    for (auto put :
         {PLT_label_ul, PLT_label_uc, PLT_label_ur, PLT_label_ll, PLT_label_lc, PLT_label_lr})
        put(*code++);
}

std::string expand(const char *text, std::string out = "") {
    PLT_expand_label(text, &out);
    return out;
}
} // namespace

TEST_F(LabelsTest, LinesAreKeptBySlotUntilTheyEnd) {
    put_all();
    PLT_next_label_line();
    PLT_label_ul("two");
    PLT_set_label_line(0);
    PLT_label_ul(std::string(70, 'x').c_str()); // a later plot writes over it; 69 are kept
    PLT_label_ul("short");
    EXPECT_EQ(draw(), std::string(69, 'x') + "|two|uc|ur|ll|lc|lr") << "a full line stays";
    PLT_clear_labels();
    EXPECT_EQ(PLT_get_label_lines(), 0);
    for (int line : {1, 2, 3, 4, 5, 6, -1})
        EXPECT_EQ(PLT_next_label_line(), line);
    PLT_label_uc("lost");
    PLT_set_label_line(9);
    PLT_label_uc("last");
    EXPECT_EQ(draw(), "last");
}

TEST_F(LabelsTest, CompactModeAppendsToTheFirstLine) {
    PLT_set_label_mode(-1);
    PLT_label_ul("18Z");
    PLT_next_label_line();
    PLT_label_ul("temp");
    PLT_label_ul("wind");
    EXPECT_EQ(draw(), "18Z wind") << "the same line again is written over";
    PLT_next_label_line();
    EXPECT_EQ(PLT_get_label_mode(), -3);
    const std::string fits(60 - 8 - 1, 'x');
    PLT_label_ul(fits.c_str());
    PLT_label_ul((fits + "y").c_str());
    EXPECT_EQ(draw(), "18Z wind " + fits) << "60 characters are too many";
    PLT_reopen(1.0f);
    EXPECT_EQ(PLT_get_label_mode(), -1);
    PLT_set_label_mode(5);
    PLT_next_label_line();
    EXPECT_EQ(PLT_get_label_mode(), 6);
}

TEST_F(LabelsTest, TemplatesNameTheTime) {
    DateTime date = *DT_make(1998, 3, 14, 18, 5);
    PLT_set_label_time(&date);
    PLT_set_label_forecast(24 * 3600);
    EXPECT_EQ(expand("%y%m%d_%h|%b %n|%D"), "980314 18|MAR 05|1805Z 14 MAR 98");
    EXPECT_EQ(expand("%V|%W|%f/%F"), "18Z SUN 15 MAR 98|SUN 15 MAR 98|24 hour/1 day");
    EXPECT_EQ(expand("a%qb5%%|%"), "ab5 |");
    EXPECT_EQ(expand("ab%%c", "0123456789"), "ab2c") << "the character that was there";
    date = DateTime{};
    PLT_set_label_time(&date);
    PLT_set_label_forecast(std::numeric_limits<int>::max());
    EXPECT_EQ(expand("%y%b%h%f"), "000099 month");
}

TEST_F(LabelsTest, TheLabelResourceWins) {
    for (const auto &[why, label, expected] : {
             std::tuple{"a first line stands alone", "ul:A_b", "A b|centre"},
             {"an empty one blanks the slot", "UL:", "centre"},
             {"a numbered first line too", "ul0:first", "first|two|centre"},
             {"a number beyond the last is the last", "uc9:last", "one|two|centre|last"},
             {"what has no slot is passed over", "xx:no,ul,ulx:no,lr:yes", "one|two|centre|yes"},
         }) {
        PLT_clear_labels();
        PLT_label_ul("one");
        PLT_label_uc("centre");
        PLT_set_label_line(1);
        PLT_label_ul("two");
        RES_set("label", label);
        EXPECT_EQ(draw(), expected) << why;
    }
}

/* Two lines share the margin of 0.032, on a page of 1 by 0.8. */
TEST_F(LabelsTest, SlotsStandAroundThePlot) {
    put_all();
    PLT_next_label_line();
    PLT_label_ul("above");
    draw();
    EXPECT_EQ(drawn.words(10000), "ul@1394,7712 14|above@1394,7872 14|uc@5000,7712 24|"
                                  "ur@8606,7712 34|ll@1394,128 12|lc@5000,128 22|lr@8606,128 32");
    EXPECT_EQ(drawn.shapes(1000), "[132,32 868,32 868,768 132,768 132,32]") << "the border";
    EXPECT_EQ(drawn.texts[0].transform, 1);
    EXPECT_NEAR(drawn.texts[0].height, 0.012f, 1e-6);
    PLT_set_label_offset(2);
    draw();
    EXPECT_NEAR(drawn.texts[0].at.y, 0.8032f, 1e-5);
    PLT_close();
    RES_set("plot_param", "fullab,over=0"); // inside the plot
    put_all();
    draw();
    EXPECT_EQ(drawn.words(10000), "ul@1080,7712 14|uc@5000,7712 24|ur@8920,7712 34|"
                                  "ll@1080,288 12|lc@5000,288 22|lr@8920,288 32");
}

TEST_F(LabelsTest, WhatIsLeftOut) {
    const auto left = [&](const char *parts, int bar, int legend) { // with borders and result
        DRAW_reset();
        DRAW_parse(parts);
        CONT_set_bar(bar);
        PLT_set_wind_legend(legend);
        put_all();
        const std::string words = draw();
        return page_list(words, drawn.lines.size(), result);
    };
    EXPECT_EQ(left("", 0, 0), "ul|uc|ur|ll|lc|lr 1 0");
    EXPECT_EQ(left("", 2, 0), "ul|uc|ur|lr 1 0") << "the bar needs its place";
    EXPECT_EQ(left("", 0, 1), "ul|uc|ur|ll|lc 1 0") << "so does the wind legend";
    EXPECT_EQ(left("-text_ll", 0, 0), "ul|uc|ur|lc|lr 1 0");
    EXPECT_EQ(left("-text", 0, 0), " 0 0") << "the border with it";
    PLT_close();
    RES_set("plot_param", "full");
    EXPECT_EQ(left("", 0, 0), " 1 -1") << "no room";
}
