/* Barbs, arrows, sky cover and symbols: the lines and areas that they draw. */
#include "plot/weather_marks.h"

#include "kernel/attributes.h"
#include "kernel/gph.h"
#include "plot/symbol_file.h"
#include "plot/wind_barb.h"
#include "tests/plot/page_fixture.h"

namespace {
constexpr float kX = -100.0f, kY = 40.0f; // where all is drawn

struct MarksTest : PageTest {
    MarksTest() {
        open_page();
        gsel_norm_tran(2);
    }
    ~MarksTest() override { WX_symbol_reset(); }

    /* What was drawn since the last call, in hundredths from a place. */
    static std::string picture(Point from = {kX, kY}) {
        for (DrawnLine &line : drawn.lines)
            for (Point &p : line.points)
                p = {p.x - from.x, p.y - from.y};
        const std::string shapes = drawn.shapes(100.0f);
        drawn = Drawn{};
        return shapes;
    }

    static int symbol(const char *name) { return WX_symbol(kX, kY, 1.0f, name); }
};
} // namespace

TEST_F(MarksTest, BarbsCountFeathers) {
    const std::string flag = "{0,100 50,100 0,88 0,100}[0,100 50,100 0,88 0,100]";
    const std::pair<float, std::string> cases[] = {
        // knots, and feathers behind the shaft; side is to the right of it
        {2.0f, ""},
        {2.99f, "[0,88 25,94]"}, // to the nearest 5
        {7.0f, "[0,88 25,94]"},
        {25.0f, "[0,100 50,112][0,88 50,100][0,76 25,82]"},
        {65.0f, flag + "[0,76 50,88][0,64 25,70]"},
        {98.0f, flag + "{0,88 50,88 0,76 0,88}[0,88 50,88 0,76 0,88]"},
    };
    for (const auto &[knots, feathers] : cases) {
        EXPECT_EQ(WX_barb(kX, kY, 0.0f, knots, 1.0f, 0.1f), 0);
        EXPECT_EQ(picture(), "[0,10 0,100]" + feathers) << knots;
    }
    WX_barb(kX, kY, 90.0f, 1e30f, 1.0f, 0.0f);
    EXPECT_EQ(drawn.areas().size(), 6u);
    EXPECT_TRUE(picture().starts_with("[0,0 100,0]{100,0 100,-50 88,0 100,0}"));
}

TEST_F(MarksTest, ArrowsGoDownTheWind) {
    WX_arrow(kX, kY, 0.0f, 2.0f, 0.5f, 1.0f);
    EXPECT_EQ(picture(), "[0,0 0,-100][0,-100 20,-80][0,-100 -20,-80]");
    WX_ticked_arrow(kX, kY, 90.0f, 1.0f, 0.5f, 2);
    EXPECT_EQ(picture(), "[0,0 -100,0][0,-10 0,10][-50,-10 -50,10]"
                         "[-100,0 -90,-10][-100,0 -90,10]");
    Domain polar = page_latlon(kY, kX, 0.5f);
    polar.proj = PROJ_POLAR;
    polar.plat = 90.0f;
    polar.plon = kX - 90.0f; // north is to the left
    polar.nx = polar.ny = 100;
    open(polar);
    gsel_norm_tran(2);
    Point at;
    PRJ_latlon_to_xy(kY, kX, &at.x, &at.y);
    WX_arrow_north(at.x, at.y, 0.0f, 1.0f, 1.0f, 0.0f);
    WX_barb_north(at.x, at.y, 0.0f, 2.0f, 1.0f, 0.0f);
    EXPECT_EQ(picture(at), "[0,0 100,0][0,0 -100,0]");
}

TEST_F(MarksTest, NoWindDrawsNothing) {
    const std::pair<float, float> winds[] = {
        {MISSING_F, 5.0f}, {90.0f, MISSING_F}, {90.0f, 0.0f}, {90.0f, NAN}, {INFINITY, 5.0f}};
    for (auto [direction, speed] : winds)
        for (auto draw : {WX_barb, WX_barb_north, WX_arrow, WX_arrow_north})
            EXPECT_EQ(draw(kX, kY, direction, speed, 1.0f, 1.0f), -1) << direction << " " << speed;
    EXPECT_EQ(WX_ticked_arrow(kX, kY, MISSING_F, 1.0f, 1.0f, 4), -1);
    EXPECT_EQ(picture(), "");
}

TEST_F(MarksTest, SkyCover) {
    const std::string quarter = "0,100 50,87 87,50 100,0", half = quarter + " 87,-50 50,-87 0,-100",
                      rest = half + " -50,-87 -87,-50 -100,0", rim = rest + " -87,50 -50,87 0,100";
    const std::pair<const char *, std::string> cases[] = {
        // codes, and what stands in front of the circle
        {"0Cbosx", ""},
        {"1F", "[0,100 0,-100]"},
        {"2S", "{0,0 " + quarter + "}"},
        {"3", "{0,0 " + quarter + "}[0,0 0,-100]"},
        {"4", "{0,0 " + half + "}"},
        {"5", "{0,0 " + half + "}[0,0 -100,0]"},
        {"6B", "{0,0 " + rest + "}"},
        {"7", "{0,0 26,97 71,71 97,26 97,-26 71,-71 26,-97}"
              "{0,0 -26,-97 -71,-71 -97,-26 -97,26 -71,71 -26,97}"},
        {"8O", "{" + rim + "}"},
        {"9X", "[-71,-71 71,71][-71,71 71,-71]"},
        {"M+", "[-70,-70 -70,70 0,0 70,70 70,-70]"},
    };
    for (const auto &[codes, inside] : cases)
        for (const char *code = codes; *code; code++) {
            gset_fill_int_style(2);
            WX_sky(kX, kY, 1.0f, *code);
            EXPECT_EQ(gstate().fill.style, 1) << "solid";
            EXPECT_EQ(picture(), inside + "[" + rim + "]") << *code;
        }
}

TEST_F(MarksTest, SymbolsOfAFile) {
    scratch.write("wx.smb", "tsra\n0,0\n1,1\nL\n0,0 1,0 1, 1\nFill\n$\n"
                            "ts 0,0 0,1 $\nabcdefghijklmnop 0,0 1,0 L $");
    for (auto [name, h, v, want] : {std::tuple{"TSRAgr", 1, 4, "[0,0 100,100]{0,0 100,0 100,100}"},
                                    {"abcdefghijklmn", 1, 5, "[0,0 100,0]"},
                                    {"ts", 3, 1, "[-100,-100 -100,0]"},
                                    {"ts", 2, 2, "[-50,-100 -50,0]"},
                                    {"ts", 0, 3, "[0,-50 0,50]"},
                                    {"t", 1, 5, ""},
                                    {"+ts", 1, 5, ""}}) {
        GPH_text_align(h, v);
        EXPECT_EQ(symbol(name), *want != 0) << name;
        EXPECT_EQ(picture(), want) << name;
    }
    EXPECT_EQ(WX_symb_file(nullptr), -1) << "open already";
}

TEST_F(MarksTest, DamagedSymbolFiles) {
    std::string points, symbols;
    for (int i = 0; i < 99; i++) {
        points += "0,0 ";
        symbols += "s 0,0 $\n";
    }
    const std::pair<std::string, std::string> cases[] = {
        {"a 0,0 1,0 L " + points + "F $", "[0,0 100,0] told"},
        {symbols + "a 0,0 1,0 L $ b 0,0 $", "[0,0 100,0] told"},
        {"a 0,0 1,0 L $" + std::string(300000, ' '), "[0,0 100,0] told"},
        {"a inf,0 1,0 L $", ""},
        {"a 0,0 L 0,0 1,0 L", "[0,0 100,0]"}, // a point alone; no end
    };
    for (const auto &[content, want] : cases) {
        WX_symbol_reset();
        scratch.write("wx.smb", content);
        const std::string errors = page_errors_of([] { symbol("a"); });
        const bool told = errors == "WX_symb_file: Damaged symbol file: wx.smb\n";
        EXPECT_EQ(picture() + (told ? " told" : errors), want) << content.substr(0, 99);
    }
    const auto open_none = [] { WX_symb_file("none.smb"), symbol("a"), WX_symb_file("none.smb"); };
    EXPECT_EQ(page_errors_of(open_none), "WX_symb_file: Unable to open file: none.smb\n") << "once";
}
