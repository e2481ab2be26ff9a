/* Labels: the store, compact mode, templates, and where they stand. */
#include "tests/plot/page_fixture.h"

#include <cmath>
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

std::string expand(const char *text) {
    std::string out;
    PLT_expand_label(text, &out);
    return out;
}

const DrawnText &text_of(const std::string &text) {
    static const DrawnText kNone = {{NAN, NAN}, "", 0, 0, 0, 0.0f};
    for (const DrawnText &t : drawn.texts)
        if (t.text == text)
            return t;
    return kNone;
}
} // namespace

TEST_F(LabelsTest, LinesAreKeptBySlot) {
    PLT_label_ul("one");
    PLT_label_lr("info");
    EXPECT_EQ(PLT_next_label_line(), 1);
    PLT_label_ul("two");
    EXPECT_EQ(PLT_next_label_line(), 2);
    EXPECT_EQ(PLT_get_label_lines(), 2);
    EXPECT_EQ(draw(), "one|two|info");

    PLT_set_label_line(0);
    PLT_label_ul("1");
    EXPECT_EQ(draw(), "1|two|info") << "a later plot writes over it";
    PLT_clear_labels();
    EXPECT_EQ(draw(), "");
    EXPECT_EQ(PLT_get_label_lines(), 0);
}

TEST_F(LabelsTest, LinesBehindTheLastAreToldOf) {
    for (int line = 1; line <= 6; line++)
        EXPECT_EQ(PLT_next_label_line(), line);
    EXPECT_EQ(PLT_next_label_line(), -1);
    MSG_set_levels("mess");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    PLT_label_uc("lost");
    const std::string output =
        testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    EXPECT_NE(output.find("PLT_label_uc: No line left for: lost"), std::string::npos);
    PLT_set_label_line(9);
    PLT_label_uc("last");
    EXPECT_EQ(draw(), "last");
}

TEST_F(LabelsTest, LongTextsAreCutAndStay) {
    const std::string exact(69, 'x');
    PLT_label_ul((exact + "yz").c_str());
    EXPECT_EQ(draw(), exact);
    PLT_label_ul("short");
    EXPECT_EQ(draw(), exact) << "a full line is kept";
    RES_set("label", "ul:user");
    EXPECT_EQ(draw(), "user") << "the user's wins all the same";
}

TEST_F(LabelsTest, CompactModeAppendsToTheFirstLine) {
    PLT_set_label_mode(-1);
    PLT_label_ul("18Z");
    PLT_next_label_line();
    EXPECT_EQ(PLT_get_label_mode(), -2);
    PLT_label_ul("temp");
    PLT_label_ul("wind");
    EXPECT_EQ(draw(), "18Z wind") << "the same line again is written over";
    PLT_next_label_line();
    PLT_label_ul("rain");
    EXPECT_EQ(draw(), "18Z wind rain");

    PLT_label_ul(std::string(60 - 8 - 1, 'x').c_str());
    EXPECT_EQ(draw(), "18Z wind " + std::string(51, 'x'));
    PLT_label_ul(std::string(60 - 8, 'y').c_str());
    EXPECT_EQ(draw(), "18Z wind " + std::string(51, 'x')) << "60 characters are too many";

    ASSERT_EQ(PLT_reopen(1.0f), 0);
    EXPECT_EQ(PLT_get_label_mode(), -1);
    PLT_set_label_mode(5);
    PLT_next_label_line();
    EXPECT_EQ(PLT_get_label_mode(), 6);
    PLT_reopen(1.0f);
    EXPECT_EQ(PLT_get_label_mode(), 1);
}

TEST_F(LabelsTest, TemplatesNameTheTime) {
    DateTime date = *DT_make(1998, 3, 14, 18, 5);
    PLT_set_label_time(&date);
    PLT_set_label_forecast(24 * 3600);
    struct Template {
        const char *text, *expected;
    };
    const Template kTemplates[] = {
        {"%y%m%d_%h", "980314 18"},
        {"%b %n", "MAR 05"},
        {"%D", "1805Z 14 MAR 98"},
        {"%V", "18Z SUN 15 MAR 98"},
        {"%W", "SUN 15 MAR 98"},
        {"%f/%F", "24 hour/1 day"},
        {"a%qb%", "ab"},
        {"5%%|", "5 |"},
        {"", ""},
    };
    for (const Template &t : kTemplates)
        EXPECT_EQ(expand(t.text), t.expected) << t.text;
    std::string held = "0123456789";
    PLT_expand_label("ab%%c", &held);
    EXPECT_EQ(held, "ab2c") << "the character that was there";

    date = DateTime{};
    PLT_set_label_time(&date);
    PLT_set_label_forecast(std::numeric_limits<int>::max());
    EXPECT_EQ(expand("%y%b%h"), "0000");
    EXPECT_EQ(expand("%f"), "99 month");
}

TEST_F(LabelsTest, TheLabelResourceWins) {
    struct UserCase {
        const char *why, *label, *expected;
    };
    const UserCase kCases[] = {
        {"a first line stands alone", "ul:A_b", "A b|centre"},
        {"an empty one blanks the slot", "UL:", "centre"},
        {"a numbered line stands beside the others", "ul2:third", "one|two|third|centre"},
        {"a numbered first line too", "ul0:first", "first|two|centre"},
        {"a number beyond the last is the last", "uc9:last", "one|two|centre|last"},
        {"what has no slot is passed over", "xx:no,ul,ulx:no,lr:yes", "one|two|centre|yes"},
    };
    for (const UserCase &c : kCases) {
        SCOPED_TRACE(c.why);
        PLT_clear_labels();
        PLT_label_ul("one");
        PLT_label_uc("centre");
        PLT_set_label_line(1);
        PLT_label_ul("two");
        RES_set("label", c.label);
        EXPECT_EQ(draw(), c.expected);
    }
}

/* Six slots of two lines on a page of 1 by 0.8, with margins of 0.04 of it. */
TEST_F(LabelsTest, SlotsStandAroundThePlot) {
    for (int line = 0; line < 2; line++) {
        PLT_set_label_line(line);
        const std::string n = std::to_string(line);
        PLT_label_ul(("ul" + n).c_str());
        PLT_label_uc(("uc" + n).c_str());
        PLT_label_ur(("ur" + n).c_str());
        PLT_label_ll(("ll" + n).c_str());
        PLT_label_lc(("lc" + n).c_str());
        PLT_label_lr(("lr" + n).c_str());
    }
    draw();
    EXPECT_EQ(result, 0);
    float page[4];
    PLT_get_page(page);
    ASSERT_NEAR(page[2], 0.032, 1e-6);
    const float height = page[3] - page[2], width = page[1] - page[0];
    const float step = 0.016f, gap = step * 0.2f; // two lines share the margin
    ASSERT_LT(step, height * 0.03f);
    struct Place {
        const char *text;
        float x, y;
        int align_h, align_v;
    };
    const Place kPlaces[] = {
        {"ul0", page[0] + width * 0.01f, page[3] + gap, 1, 4},
        {"uc1", (page[0] + page[1]) / 2, page[3] + gap + step, 2, 4},
        {"ur0", page[1] - width * 0.01f, page[3] + gap, 3, 4},
        {"ll0", page[0] + width * 0.01f, page[2] - gap - step, 1, 2},
        {"lc1", (page[0] + page[1]) / 2, page[2] - gap, 2, 2},
        {"lr1", page[1] - width * 0.01f, page[2] - gap, 3, 2},
    };
    ASSERT_EQ(drawn.texts.size(), 12u);
    for (const Place &place : kPlaces) {
        SCOPED_TRACE(place.text);
        const DrawnText &text = text_of(place.text);
        EXPECT_NEAR(text.at.x, place.x, 1e-5);
        EXPECT_NEAR(text.at.y, place.y, 1e-5);
        EXPECT_EQ(text.align_h, place.align_h);
        EXPECT_EQ(text.align_v, place.align_v);
        EXPECT_EQ(text.transform, 1);
        EXPECT_NEAR(text.height, step * 0.75f, 1e-6);
    }
    ASSERT_EQ(drawn.lines.size(), 1u) << "the border";
    EXPECT_EQ(drawn.lines[0].points.size(), 5u);

    PLT_set_label_offset(2);
    const float before = text_of("ll0").at.y;
    draw();
    EXPECT_NEAR(text_of("ll0").at.y, before + 2 * step, 1e-5);
}

TEST_F(LabelsTest, InsideThePlotWithFullab) {
    RES_set("plot_param", "fullab");
    PLT_label_ul("up");
    PLT_label_lr("down");
    EXPECT_EQ(draw(), "up|down");
    float page[4];
    PLT_get_page(page);
    const float step = (page[3] - page[2]) * 0.03f; // less than the room of 0.06
    EXPECT_NEAR(page[2], 0.0f, 1e-6);
    EXPECT_NEAR(text_of("up").at.y, page[3] - 1.2f * step, 1e-5);
    EXPECT_NEAR(text_of("down").at.y, page[2] + 1.2f * step, 1e-5);
}

TEST_F(LabelsTest, WhatIsLeftOut) {
    struct OutCase {
        const char *why;
        void (*prepare)();
        const char *expected;
        size_t borders;
    };
    const OutCase kCases[] = {
        {"nothing", [] {}, "ul|ll|lc|lr", 1},
        {"the bar needs its place", [] { CONT_set_bar(2); }, "ul|lr", 1},
        {"no bar, no place", [] { CONT_set_bar(-2); }, "ul|ll|lc|lr", 1},
        {"the wind legend", [] { PLT_set_wind_legend(1); }, "ul|ll|lc", 1},
        {"a slot", [] { DRAW_parse("-text_ll"); }, "ul|lc|lr", 1},
        {"all text, the border with it", [] { DRAW_parse("-text"); }, "", 0},
        {"the border", [] { DRAW_parse("-bord"); }, "ul|ll|lc|lr", 0},
    };
    for (const OutCase &c : kCases) {
        SCOPED_TRACE(c.why);
        DRAW_reset();
        CONT_set_bar(0);
        PLT_labels_reset();
        PLT_label_ul("ul");
        PLT_label_ll("ll");
        PLT_label_lc("lc");
        PLT_label_lr("lr");
        c.prepare();
        EXPECT_EQ(draw(), c.expected);
        EXPECT_EQ(drawn.lines.size(), c.borders);
    }
}

TEST_F(LabelsTest, NoRoomLeavesTheBorderAlone) {
    RES_set("plot_param", "full");
    PLT_label_ul("ul");
    EXPECT_EQ(draw(), "");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(drawn.lines.size(), 1u);
}
