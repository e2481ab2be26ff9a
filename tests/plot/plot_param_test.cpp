/* Keywords of plot_param, and where they take effect. */
#include "kernel/colors.h"
#include "kernel/redraw_store.h"
#include "plot/domain.h"
#include "tests/plot/page_fixture.h"

#include <cmath>

namespace {
struct ParamTest : PageTest {};

const PlotParams &params() { return *PLT_params(); }

float margin(int i) {
    float margins[4];
    PLT_start_page();
    PLT_get_page(margins);
    return margins[i];
}

bool grid_is(float lat, float lon) {
    float found[2];
    MAP_get_grid(&found[0], &found[1]);
    return found[0] == lat && found[1] == lon;
}

/* words are taken after before, and only then the effect is there. */
struct WordCase {
    const char *words;
    bool (*holds)();
    const char *before = "";
};
constexpr WordCase kWordCases[] = {
    {"full", [] { return margin(2) == 0.0f && margin(3) == 0.0f && !PLT_is_fullab(); }},
    {"FULLAB", [] { return margin(2) == 0.0f && PLT_is_fullab() == 1; }},
    {"tz=-EST:-5",
     [] { return DT_zone_offset() == -18000 && DT_zone_name() == std::string(" EST"); }},
    {"over=1:3", [] { return PLT_get_label_lines() == 3; }},
    {"over=0:-2", [] { return PLT_get_label_lines() == 2; }, "over=0:5"},
    {"lalo=5", [] { return grid_is(5.0f, 5.0f); }},
    {"lalo:5:10:30:60", [] { return grid_is(5.0f, 10.0f); }},
    {"gridx=7", [] { return params().grid_x == 7; }},
    {"plt_skip=2", [] { return CONT_state()->skip_x == 2 && CONT_state()->skip_y == 2; }},
    {"plt_skip=3:0", [] { return CONT_state()->skip_x == 3 && CONT_state()->skip_y == 1; }},
    {"plt_grid=8", [] { return params().thin_grid == 1; }},
    {"loc_pr=2", [] { return DOM_get_location_priority() == 2; }},
    {"font=2",
     [] {
         GPH_set_font(nullptr);
         return gstate().text.font == 2;
     }},
    {"gif_inter", [] { return PLT_dump_options()->gif_interlace == 1; }},
    {"gif_norm", [] { return PLT_dump_options()->gif_interlace == 0; }, "gif_inter"},
    {"gif_trans", [] { return PLT_dump_options()->gif_transparent == 1; }},
    {"inv", [] { return gget_inverse() == 1; }},
    {"lcmap", [] { return gget_private_cmap() == 1; }},
    {"nolcmap", [] { return gget_private_cmap() == 0; }, "lcmap"},
    {"norwclr", [] { return gget_rw_colors() == 0; }},
    {"rwclr", [] { return gget_rw_colors() == 1; }, "norwclr"},
    {"nolooptitle", [] { return params().loop_title == 0; }},
    {"pscolor", [] { return gget_inverse() == 1; }},
    {"clear", [] { return params().attach_mode == 1; }},
    {"new", [] { return params().attach_mode == 2; }},
    {"kill", [] { return params().attach_mode == 9; }},
    {"bar", [] { return CONT_get_bar() == 2 && CONT_state()->bar_min == MISSING_F; }},
    {"bar=-5:70", [] { return CONT_state()->bar_min == -5.0f && CONT_state()->bar_max == 70.0f; }},
    {"nobar", [] { return CONT_get_bar() == -2; }},
    {"nohdr", [] { return PLT_dump_options()->image_header == 0; }},
    {"shadow", [] { return GPH_get_shadow() == 4; }},
    {"shadow=2", [] { return GPH_get_shadow() == 2; }},
    {"shadow=2000000000", [] { return GPH_get_shadow() == 100; }},
    {"max_bad=0", [] { return params().max_bad == 5; }},
    {"min_size=99999999999", [] { return FILE_get_min_size() == 2147483647; }},
    {"min_size=-5", [] { return FILE_get_min_size() == 0; }, "min_size=7"},
    {"grdfmt=nc", [] { return params().grid_format == "nc"; }},
    {"gif", [] { return PLT_dump_name() == std::string("qra.gif"); }},
    {"gif=a%h.gif",
     [] { return PLT_dump_format() == DUMP_GIF && PLT_dump_name() == std::string("a%h.gif"); }},
    {"png=", [] { return PLT_dump_name() == std::string("qra.png"); }},
    {"img", [] { return PLT_dump_format() == DUMP_IMG && *PLT_dump_name(); }},
    {"xwd=x", [] { return PLT_dump_format() == DUMP_XWD && PLT_dump_name() == std::string("x"); }},
};

void take(const char *words) {
    RES_set("plot_param", words);
    PLT_param();
}
} // namespace

TEST_F(ParamTest, KeywordsHaveTheirEffect) {
    for (const WordCase &c : kWordCases) {
        SCOPED_TRACE(c.words);
        page_fresh();
        take(c.before);
        EXPECT_FALSE(c.holds());
        take(c.words);
        EXPECT_TRUE(c.holds());
    }
}

TEST_F(ParamTest, WordsThatAreNotTheirsChangeNothing) {
    take("fuller,inverse,pl,lalo,lalo=x,over=,gridx=-3,loc_pr=,plt_off,plt_off=1:2,grdfmt=,nobars");
    EXPECT_EQ(margin(2), 0.04f);
    EXPECT_EQ(gget_inverse(), 0);
    EXPECT_TRUE(grid_is(0.0f, 0.0f));
    EXPECT_EQ(PLT_get_label_lines(), 0);
    EXPECT_EQ(params().grid_x, 0);
    EXPECT_EQ(DOM_get_location_priority(), 4);
    EXPECT_EQ(CONT_state()->off_x, 0.0f);
    EXPECT_EQ(params().grid_format, "");
    EXPECT_EQ(CONT_get_bar(), 0);
}

TEST_F(ParamTest, StationLabelsFollowTheirWord) {
    scratch.write("c.cty", "Chicago IL US KORD 1 41.98 -87.90 204 72530\n"
                           "Lake    IL US -    1 42.10 -87.50   0 72534\n");
    const Domain domain = page_latlon(42.0f, -88.0f, 10.0f);
    const auto labels = [&](const char *word) {
        take(word);
        CTY_load("c.cty", 2, &domain, 9);
        std::string text;
        for (const char *wmo : {"72530", "72534"})
            if (const auto *entry = static_cast<StationEntry *>(CTY_find(wmo)))
                text += std::string(text.empty() ? "" : " ") + entry->label;
        return text;
    };
    EXPECT_EQ(labels("wmo"), "72530 72534");
    EXPECT_EQ(labels("id"), "KORD 72534");
    EXPECT_EQ(labels("cod_wmo"), "KORD K2534");
}

TEST_F(ParamTest, ViewportsAndTiles) {
    struct Tile {
        const char *why, *text;
        float rect[4]; // x0, x1, y0, y1
        bool warns = false;
    };
    const Tile kTiles[] = {
        {"upper right quarter", "vp_size=2x2+1+0", {0.5f, 1.0f, 0.5f, 1.0f}},
        {"lower left quarter", "vp_size=2x2+0+1", {0.0f, 0.5f, 0.0f, 0.5f}},
        {"at most 8 tiles, and at least 1", "vp_size=99x0.5+7+0", {0.875f, 1.0f, 0.0f, 1.0f}},
        {"fractions", "vp_size=.5x.25+.1+.2", {0.1f, 0.6f, 0.2f, 0.45f}},
        {"all four are needed", "vp_size=2x2+1", {0.0f, 1.0f, 0.0f, 1.0f}},
        {"no height", "vp_size=1x0+0+0", {0.0f, 1.0f, 0.0f, 1.0f}, true},
        {"no number", "vp_size=nanx1+0+0", {0.0f, 1.0f, 0.0f, 1.0f}, true},
    };
    for (const Tile &tile : kTiles) {
        SCOPED_TRACE(tile.why);
        page_fresh();
        const std::string errors = page_errors_of([&] { take(tile.text); });
        EXPECT_EQ(errors.find("PLT_param: No room on the page") != std::string::npos, tile.warns);
        float rect[4];
        GPH_get_area(rect);
        for (int i = 0; i < 4; i++)
            EXPECT_NEAR(rect[i], tile.rect[i], 1e-6);
    }
}

TEST_F(ParamTest, OutFileChoosesPictures) {
    RES_set("out_file", "qra,xwd,png=b.png");
    PLT_param();
    EXPECT_EQ(PLT_dump_format(), DUMP_PNG);
    EXPECT_STREQ(PLT_dump_name(), "b.png");
    page_fresh();
    RES_set("out_file", "xwd,full");
    PLT_param();
    EXPECT_EQ(PLT_dump_format(), DUMP_NONE);
    EXPECT_EQ(margin(2), 0.04f);
}
