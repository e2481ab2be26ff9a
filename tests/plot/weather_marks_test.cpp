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

    /* What was drawn since the last call, in hundredths from the place. */
    static std::string picture() {
        for (DrawnLine &line : drawn.lines)
            for (Point &p : line.points)
                p = {p.x - kX, p.y - kY};
        const std::string shapes = drawn.shapes(100.0f);
        drawn = Drawn{};
        return shapes;
    }

    static int symbol(const char *name) { return WX_symbol(kX, kY, 1.0f, name); }
};
} // namespace

TEST_F(MarksTest, BarbsCountFeathers) {
    const struct {
        float speed;
        const char *feathers; // behind the shaft; side is to the right of it
    } kCases[] = {
        {2.0f, ""},
        {2.99f, "[0,88 25,94]"}, // to the nearest 5
        {7.0f, "[0,88 25,94]"},
        {8.0f, "[0,100 50,112]"},
        {15.0f, "[0,100 50,112][0,88 25,94]"},
        {25.0f, "[0,100 50,112][0,88 50,100][0,76 25,82]"},
        {48.0f, "{0,100 50,100 0,88 0,100}[0,100 50,100 0,88 0,100]"},
        {65.0f, "{0,100 50,100 0,88 0,100}[0,100 50,100 0,88 0,100][0,76 50,88][0,64 25,70]"},
        {100.0f, "{0,100 50,100 0,88 0,100}[0,100 50,100 0,88 0,100]"
                 "{0,88 50,88 0,76 0,88}[0,88 50,88 0,76 0,88]"},
    };
    for (const auto &c : kCases) {
        EXPECT_EQ(WX_barb(kX, kY, 0.0f, c.speed, 1.0f, 0.1f), 0);
        EXPECT_EQ(picture(), std::string("[0,10 0,100]") + c.feathers) << c.speed;
    }
    gset_fill_int_style(2);
    WX_barb(kX, kY, 90.0f, 1e30f, 1.0f, 0.0f);
    EXPECT_EQ(drawn.areas().size(), 6u);
    EXPECT_EQ(drawn.areas()[5].type, 1) << "solid";
    EXPECT_TRUE(picture().starts_with("[0,0 100,0]{100,0 100,-50 88,0 100,0}"));
}

TEST_F(MarksTest, Arrows) {
    WX_arrow(kX, kY, 0.0f, 2.0f, 0.5f, 1.0f); // from the north: down
    EXPECT_EQ(picture(), "[0,0 0,-100][0,-100 20,-80][0,-100 -20,-80]");
    WX_arrow(kX, kY, 270.0f, 1.0f, 1.0f, 0.0f);
    EXPECT_EQ(picture(), "[0,0 100,0]");
    WX_ticked_arrow(kX, kY, 90.0f, 1.0f, 0.5f, 2);
    EXPECT_EQ(picture(), "[0,0 -100,0][0,-10 0,10][-50,-10 -50,10]"
                         "[-100,0 -90,-10][-100,0 -90,10]");
}

TEST_F(MarksTest, NorthIsTurnedToThePage) {
    Domain polar = page_latlon(40.0f, -100.0f, 0.5f);
    polar.proj = PROJ_POLAR;
    polar.plat = 90.0f;
    polar.plon = -120.0f;
    polar.nx = polar.ny = 100;
    open(polar);
    gsel_norm_tran(2);
    float x, y;
    PRJ_latlon_to_xy(40.0f, -100.0f, &x, &y);
    const float turned = PRJ_dir_to_grid(10.0f, x, y);
    EXPECT_NEAR(std::abs(turned - 10.0f), 20.0f, 1.0f);
    WX_arrow_north(x, y, 10.0f, 1.0f, 1.0f, 0.0f);
    WX_arrow(x, y, turned, 1.0f, 1.0f, 0.0f);
    WX_barb_north(x, y, 10.0f, 2.0f, 1.0f, 0.0f);
    WX_barb(x, y, turned, 2.0f, 1.0f, 0.0f);
    ASSERT_EQ(drawn.lines.size(), 4u);
    for (size_t i : {0u, 2u}) {
        EXPECT_EQ(drawn.lines[i].points[1].x, drawn.lines[i + 1].points[1].x);
        EXPECT_EQ(drawn.lines[i].points[1].y, drawn.lines[i + 1].points[1].y);
    }
}

TEST_F(MarksTest, NoWindDrawsNothing) {
    for (auto draw : {WX_barb, WX_barb_north, WX_arrow, WX_arrow_north})
        for (auto [direction, speed] : {std::pair{MISSING_F, 5.0f},
                                        {90.0f, MISSING_F},
                                        {90.0f, 0.0f},
                                        {90.0f, NAN},
                                        {INFINITY, 5.0f},
                                        {90.0f, INFINITY}})
            EXPECT_EQ(draw(kX, kY, direction, speed, 1.0f, 1.0f), -1) << direction << " " << speed;
    EXPECT_EQ(WX_barb(kX, kY, 0.0f, -1e30f, 1.0f, 0.0f), -1);
    EXPECT_EQ(WX_ticked_arrow(kX, kY, MISSING_F, 1.0f, 1.0f, 4), -1);
    EXPECT_EQ(picture(), "");
}

TEST_F(MarksTest, SkyCover) {
    const struct {
        const char *codes, *inside; // in front of the circle
    } kCases[] = {
        {"0Cbosx", ""},
        {"1F", "[0,100 0,-100]"},
        {"2S", "{0,0 0,100 50,87 87,50 100,0}"},
        {"3", "{0,0 0,100 50,87 87,50 100,0}[0,0 0,-100]"},
        {"4", "{0,0 0,100 50,87 87,50 100,0 87,-50 50,-87 0,-100}"},
        {"5", "{0,0 0,100 50,87 87,50 100,0 87,-50 50,-87 0,-100}[0,0 -100,0]"},
        {"6B", "{0,0 0,100 50,87 87,50 100,0 87,-50 50,-87 0,-100 -50,-87 -87,-50 -100,0}"},
        {"7", "{0,0 26,97 71,71 97,26 97,-26 71,-71 26,-97}"
              "{0,0 -26,-97 -71,-71 -97,-26 -97,26 -71,71 -26,97}"},
        {"9X", "[-71,-71 71,71][-71,71 71,-71]"},
        {"M+", "[-70,-70 -70,70 0,0 70,70 70,-70]"},
    };
    const std::string rim = "0,100 50,87 87,50 100,0 87,-50 50,-87 0,-100 -50,-87 -87,-50 -100,0 "
                            "-87,50 -50,87 0,100";
    for (const auto &c : kCases)
        for (const char *code = c.codes; *code; code++) {
            WX_sky(kX, kY, 1.0f, *code);
            EXPECT_EQ(picture(), c.inside + ("[" + rim + "]")) << *code;
        }
    WX_sky(kX, kY, 1.0f, '\0'); // no cover was told
    EXPECT_EQ(drawn.lines.size(), 2u);
    picture();
    gset_fill_int_style(2);
    WX_sky(kX, kY, 1.0f, 'O');
    EXPECT_EQ(drawn.areas()[0].type, 1) << "solid";
    EXPECT_EQ(picture(), "{" + rim + "}[" + rim + "]");
}

TEST_F(MarksTest, SymbolsOfAFile) {
    scratch.write("wx.smb", "tsra\n0,0\n1,1\nL\n0,0 1,0 1, 1\nFill\n$\n"
                            "ts 0,0 0,1 $\nabcdefghijklmnop 0,0 1,0 L $");
    GPH_text_align(1, 4);
    EXPECT_EQ(symbol("TSRAgr"), 1);
    EXPECT_EQ(picture(), "[0,0 100,100]{0,0 100,0 100,100}");
    for (auto [name, found] : {std::pair{"", 0}, {" ", 0}, {"t", 0}, {"+ts", 0}})
        EXPECT_EQ(symbol(name), found) << name;
    EXPECT_EQ(WX_symb_file(nullptr), -1);
    symbol("abcdefghijklmn");
    EXPECT_EQ(picture(), "[0,0 100,0]");
    for (auto [h, v, line] : {std::tuple{3, 1, "[-100,-100 -100,0]"},
                              {2, 2, "[-50,-100 -50,0]"},
                              {0, 3, "[0,-50 0,50]"},
                              {1, 5, "[0,0 0,100]"}}) {
        GPH_text_align(h, v);
        symbol("ts");
        EXPECT_EQ(picture(), line);
    }
}

TEST_F(MarksTest, DamagedSymbolFiles) {
    std::string points, symbols;
    for (int i = 0; i < 21; i++)
        points += "0,0 ";
    for (int i = 0; i < 101; i++)
        symbols += "s" + std::to_string(i) + " 0,0 1,0 L $\n";
    const struct {
        std::string content;
        const char *name, *drawn;
        bool told;
    } kCases[] = {
        {"a 0,0 1,0 L " + points + "F $ b 0,0 1,0 L $", "a", "[0,0 100,0]", true},
        {"a " + points + "L $ b 0,0 1,0 L $", "b", "", true},
        {symbols, "s99", "[0,0 100,0]", true},
        {"a 0,0 L 0,0 1,0 L", "a", "[0,0 100,0]", false}, // a point alone; no end
        {"a 0,0 1,0", "a", "[0,0 100,0]", false},
        {"a inf,0 1,0 L $", "a", "", false},
        {"a 0,0 1,0 L $" + std::string(300000, ' '), "a", "[0,0 100,0]", true},
        {"", "a", "", false},
    };
    for (const auto &c : kCases) {
        WX_symbol_reset();
        scratch.write("wx.smb", c.content);
        const std::string errors = page_errors_of([&] { symbol(c.name); });
        EXPECT_EQ(errors, c.told ? "WX_symb_file: Damaged symbol file: wx.smb\n" : "");
        EXPECT_EQ(picture(), c.drawn) << c.content.substr(0, 200);
    }
    const char *const missed = "WX_symb_file: Unable to open file: none.smb\n";
    EXPECT_EQ(page_errors_of([] {
                  WX_symb_file("none.smb");
                  symbol("a"); // of wx.smb, in its place
                  WX_symb_file("none.smb");
              }),
              missed);
}
