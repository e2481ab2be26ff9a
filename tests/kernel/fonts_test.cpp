#include "kernel/fonts.h"

#include "kernel/attributes.h"
#include "tests/kernel/kernel_fixture.h"

using Fonts = KernelTest;

TEST_F(Fonts, FilesAreReadWholeOrNotAtAll) {
    std::string endless = "255";
    for (int i = 0; i < 20000; i++)
        endless += " 1";
    const struct {
        const char *why;
        std::string strokes;
        int place;
        const char *glyph; // m: pen up, d: pen down; null for a damaged file
        int width = 0;
    } cases[] = {
        {"without names", "255 128 140 0 35 70 35 255 254", 1, "m0,140 d0,35 d70,35 ", 70},
        {"with names", "0 A 130 9 255 L 128 140 5 35 255 last 254", 3, "m0,140 d5,35 ", 5},
        {"a move counts without its 128", "255 227 7 255 254", 1, "m99,7 ", 99},
        {"no end but that of the table", "255 128 140 5 35 254", 1, "m0,140 d5,35 ", 5},
        {"the end stands where a y should", "255 128 9 5 254", 1, "m0,9 d5,255 ", 5},
        {"no number", "font", 1, nullptr},
        {"no end of the table", "255 128 140 0 35", 1, nullptr},
        {"too long", endless + " 254", 1, nullptr},
        {"a value beyond a byte", "255 128 300 255 254", 1, nullptr},
        {"a negative value", "255 -1 3 255 254", 1, nullptr},
        {"an offset behind the table", "255 128 140 255 254", 5, nullptr},
        {"too few offsets", "255 128 140 255 254 -1 -1 x", 1, nullptr},
    };
    open_ps();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(read_font("modern.fnt"), 0);
        scratch.write("t.fnt", c.strokes + font_offsets('L', c.place));
        EXPECT_EQ(said_by([&] { EXPECT_EQ(read_font("t.fnt"), c.glyph ? 0 : -1); }),
                  c.glyph ? "" : "read_font: unable to load font file: t.fnt\n");
        std::string glyph;
        int at = gglyph_start('L');
        for (GlyphStep step; gglyph_step(&at, &step);)
            glyph += (step.move ? "m" : "d") + std::to_string(step.x) + "," +
                     std::to_string(step.y) + " ";
        EXPECT_EQ(glyph, c.glyph ? c.glyph : "");
        EXPECT_EQ(gglyph_width('L'), c.width);
        EXPECT_EQ(gglyph_start('A'), -1);
    }
    scratch.write("t.fnt", font_text(' ', "128 0 99 0"));
    EXPECT_EQ(read_font("t.fnt"), 0);
    EXPECT_EQ(gglyph_width(' '), 40) << "whatever its glyph";
    GPH_end(ws);
    EXPECT_EQ(read_font("modern.fnt"), -1) << "not on a closed workstation";
}

TEST_F(Fonts, TheListComesFromResourceOrFile) {
    scratch.write("one.fnt", font_text('1', "128 0 11 0"));
    scratch.write("two.fnt", font_text('1', "128 0 22 0"));
    scratch.write("list.fnl", "first one.fnt a_very_long_name two.fnt");
    scratch.write("qra.fnl", "Plain two.fnt  \r\nbold one.fnt");
    const struct {
        const char *list; // null: none is named, so it is qra.fnl
        int width;        // of "1" in the font that is loaded
        int bold;         // number of the font "BOLD"
    } cases[] = {{nullptr, 22, 2}, {"one.fnt,two.fnt", 11, 1}, {"FI:list.fnl", 11, 1}};
    for (const auto &c : cases) {
        if (c.list)
            RES_set("font_list", c.list);
        open_ps();
        EXPECT_EQ(gglyph_width('1'), c.width);
        EXPECT_EQ(GPH_font_id("BOLD"), c.bold);
        GPH_end(ws);
    }
    EXPECT_EQ(GPH_font_id("a_very_lo"), 2) << "nine characters count";
    EXPECT_EQ(GPH_font_id("3x"), 3);
    RES_set("font_list", "fi:none.fnl");
    EXPECT_EQ(said_by([&] { open_ps(); }),
              "gsetup_fonts: unable to load font list file: none.fnl\n");
    EXPECT_NE(gglyph_start('L'), -1) << "the default font instead";
}

TEST_F(Fonts, ANumberOutsideTheListIsKeptAndReported) {
    RES_set("font_list", "modern.fnt,gone.fnt");
    open_ps();
    const int third[2] = {3, 2}, second[2] = {2, 2}, first[2] = {1, 2};
    EXPECT_EQ(said_by([&] { EXPECT_EQ(gset_fontprec(third), -1); }),
              "gset_fontprec: invalid font id: 3\n");
    EXPECT_EQ(gset_fontprec(third), 0) << "the bad number is the current one now";
    EXPECT_EQ(said_by([&] { EXPECT_EQ(gset_fontprec(second), -1); }),
              "read_font: unable to load font file: gone.fnt\n");
    EXPECT_EQ(gset_fontprec(first), 0);
    EXPECT_NE(gglyph_start('L'), -1);
}
