#include "kernel/fonts.h"

#include "kernel/attributes.h"
#include "tests/kernel/kernel_fixture.h"

namespace {
struct Fonts : KernelTest {
    /* The pairs of a glyph as "m70,35 d0,35". */
    static std::string glyph(int code) {
        std::string text;
        int at = gglyph_start(code);
        for (GlyphStep step; gglyph_step(&at, &step);)
            text += (text.empty() ? "" : " ") + std::string(step.move ? "m" : "d") +
                    std::to_string(step.x) + "," + std::to_string(step.y);
        return text;
    }
    static std::string offsets(int code, int offset) {
        std::string text;
        for (int i = 0; i < 256; i++)
            text += std::to_string(i == code ? offset : -1) + " ";
        return text;
    }
};
} // namespace

TEST_F(Fonts, BothFormsOfFileGiveTheSameGlyphs) {
    const struct {
        const char *why;
        std::string text;
    } cases[] = {
        {"without names", "255 128 140 0 35 70 35 255 254 " + offsets('L', 1)},
        {"with names", "0 A 130 9 255 L 128 140 0 35 70 35 255 last 254 " + offsets('L', 3)}};
    open_ps();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        scratch.write("t.fnt", c.text);
        EXPECT_EQ(read_font("t.fnt"), 0);
        EXPECT_EQ(glyph('L'), "m0,140 d0,35 d70,35");
        EXPECT_EQ(gglyph_width('L'), 70);
        EXPECT_EQ(gglyph_width(' '), 40);
        EXPECT_EQ(gglyph_start('A'), -1);
    }
}

TEST_F(Fonts, ABlankIsFortyUnitsWhateverItsGlyph) {
    open_ps();
    scratch.write("t.fnt", font_text({{' ', {128, 0, 99, 0}}, {'M', {227, 7}}}));
    EXPECT_EQ(read_font("t.fnt"), 0);
    EXPECT_EQ(gglyph_width(' '), 40);
    EXPECT_EQ(gglyph_width('M'), 99) << "a move counts without its 128";
}

TEST_F(Fonts, DamagedFilesLeaveNoGlyphs) {
    std::string endless = "255";
    for (int i = 0; i < 20000; i++)
        endless += " 1";
    const std::string good = "255 128 140 0 35 255 254 ";
    const struct {
        const char *why;
        std::string text;
    } cases[] = {{"empty", ""},
                 {"no number", "font"},
                 {"no end of the table", "255 128 140 0 35"},
                 {"too long", endless + " 254 " + offsets('L', 1)},
                 {"a value beyond a byte", "255 128 300 255 254 " + offsets('L', 1)},
                 {"a negative value", "255 -1 3 255 254 " + offsets('L', 1)},
                 {"an offset behind the table", good + offsets('L', 8)},
                 {"no offsets", good},
                 {"too few offsets", good + "1 1 1"}};
    open_ps();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        scratch.write("t.fnt", c.text);
        EXPECT_EQ(read_font("modern.fnt"), 0);
        ASSERT_NE(gglyph_start('L'), -1);
        EXPECT_EQ(errors_of([] { EXPECT_EQ(read_font("t.fnt"), -1); }),
                  "read_font: unable to load font file: t.fnt\n");
        EXPECT_EQ(gglyph_start('L'), -1);
        EXPECT_EQ(gglyph_width('L'), 0);
    }
}

TEST_F(Fonts, AGlyphWithoutAnEndStopsAtTheTable) {
    open_ps();
    scratch.write("t.fnt", "255 128 140 5 35 254 " + offsets('L', 1));
    EXPECT_EQ(read_font("t.fnt"), 0);
    EXPECT_EQ(glyph('L'), "m0,140 d5,35");
    scratch.write("t.fnt", "255 128 140 5 254 " + offsets('L', 1));
    EXPECT_EQ(read_font("t.fnt"), 0);
    EXPECT_EQ(glyph('L'), "m0,140 d5,255") << "the end stands where a y should";
}

TEST_F(Fonts, TheListComesFromResourceOrFile) {
    scratch.write("one.fnt", font_text({{'1', {128, 0, 11, 0}}}));
    scratch.write("two.fnt", font_text({{'1', {128, 0, 22, 0}}}));
    scratch.write("list.fnl", "first one.fnt a_very_long_name two.fnt");
    const char *lines = "Plain two.fnt  \r\nbold one.fnt";
    const struct {
        const char *why, *resource, *file;
        int width; // of "1" in the font that is loaded
        int bold;  // number of the font "BOLD"
    } cases[] = {{"no list: the default font", nullptr, nullptr, 0, 1},
                 {"the list file by its usual name", nullptr, lines, 22, 2},
                 {"files, without names", "one.fnt,two.fnt", lines, 11, 1},
                 {"a list file", "FI:list.fnl", lines, 11, 1}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        if (c.resource)
            RES_set("font_list", c.resource);
        if (c.file)
            scratch.write("qra.fnl", c.file);
        open_ps();
        EXPECT_EQ(gglyph_width('1'), c.width);
        EXPECT_EQ(GPH_font_id("BOLD"), c.bold);
        GPH_end(ws);
    }
    EXPECT_EQ(GPH_font_id("a_very_lo"), 2) << "nine characters count";
    EXPECT_EQ(GPH_font_id("3x"), 3);
    EXPECT_EQ(GPH_font_id("x"), 1);
    EXPECT_EQ(GPH_font_id(nullptr), 1);

    RES_set("font_list", "fi:none.fnl");
    EXPECT_EQ(errors_of([&] { open_ps(); }),
              "gsetup_fonts: unable to load font list file: none.fnl\n");
    EXPECT_NE(gglyph_start('L'), -1) << "the default font instead";
}

TEST_F(Fonts, ANumberOutsideTheListIsKeptAndReported) {
    RES_set("font_list", "modern.fnt,gone.fnt");
    open_ps();
    const int third[2] = {3, 2}, second[2] = {2, 2}, first[2] = {1, 2};
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(gset_fontprec(third), -1); }),
              "gset_fontprec: invalid font id: 3\n");
    EXPECT_EQ(gset_fontprec(third), 0) << "the bad number is the current one now";
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(gset_fontprec(second), -1); }),
              "read_font: unable to load font file: gone.fnt\n");
    EXPECT_EQ(gglyph_start('L'), -1);
    EXPECT_EQ(gset_fontprec(first), 0);
    EXPECT_NE(gglyph_start('L'), -1);
    GPH_end(ws);
    EXPECT_EQ(read_font("modern.fnt"), -1) << "not on a closed workstation";
}
