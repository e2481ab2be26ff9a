/* Keywords of plot_param, and where they take effect. */
#include "kernel/colors.h"
#include "tests/plot/page_fixture.h"

namespace {
using ParamTest = PageTest;

void take(const char *words, const char *resource = "plot_param") {
    page_fresh();
    RES_set(resource, words);
    PLT_param();
    PLT_start_page();
}

std::string margins() {
    float page[4];
    PLT_get_page(page);
    return page_list(page[2], page[3], PLT_is_fullab());
}

std::string grid() {
    float lat, lon;
    MAP_get_grid(&lat, &lon);
    return page_list(lat, lon);
}

std::string picture() { return page_list(PLT_dump_format(), PLT_dump_name()); }

std::string content() {
    const ContState &c = *CONT_state();
    return page_list(c.bar, c.bar_min, c.bar_max, c.skip_x, c.skip_y, c.off_x);
}

std::string numbers() {
    return page_list(PLT_get_label_lines(), PLT_params()->grid_x, DOM_get_location_priority(),
                     FILE_get_min_size(), PLT_params()->grid_format, DT_zone_offset(),
                     GPH_get_shadow(), gget_inverse());
}
} // namespace

TEST_F(ParamTest, WordsAndTheirValues) {
    const struct {
        const char *words;
        std::string (*found)();
        const char *expected;
    } kCases[] = {
        {"full", margins, "0 0 0"},
        {"FULLAB", margins, "0 0 1"},
        {"lalo=5,lalo,lalo=x", grid, "5 5"},
        {"lalo:5:10:30:60", grid, "5 10"},
        {"bars,plt_skip=2,plt_off,plt_off=1:2", content, "2 M M 2 2 0"},
        {"bar=-5:70,plt_skip=3:0", content, "2 -5 70 3 1 0"},
        {"nobar", content, "-2 M M 1 1 0"},
        {"gif=a%h.gif,gif_inter,gif_trans", picture, "2 a%h.gif"},
        {"png=", picture, "4 qra.png"},
        {"xwd=x,img", picture, "3 qra.xwd"},
        {"over=0:5,gridx=7,loc_pr=2,min_size=99999999999,grdfmt=nc,tz=-EST:-5", numbers,
         "5 7 2 2147483647 nc -18000 0 0"},
        {"over=0:5,over=0:-2,over=,over=1,gridx=7,gridx=-3,loc_pr=,min_size=7,min_size=-5,grdfmt=",
         numbers, "2 7 4 0  0 0 0"},
        {"shadow=2000000000,pscolor", numbers, "0 0 4 0  0 100 1"},
        {"shadow,inverse", numbers, "0 0 4 0  0 4 0"},
    };
    for (const auto &c : kCases) {
        take(c.words);
        EXPECT_EQ(c.found(), c.expected) << c.words;
    }
    take("qra,png=b.png,xwd,full", "out_file"); // chooses pictures only
    EXPECT_EQ(picture() + " " + margins(), "4 b.png 0.04 0.04 0");
}

TEST_F(ParamTest, ViewportsAndTiles) {
    const auto area = [](const char *word) {
        const std::string errors = page_errors_of([&] { take(word); });
        float a[4]; // x0, x1, y0, y1
        GPH_get_area(a);
        const bool warned = errors.find("PLT_param: No room on the page: vp_size=") != errors.npos;
        return page_list(a[0], a[1], a[2], a[3], warned ? "and a warning" : "");
    };
    EXPECT_EQ(area("vp_size=99x0.5+7+0"), "0.875 1 0 1 ") << "at most 8 tiles, and at least 1";
    EXPECT_EQ(area("vp_size=.5x.25+.125+.25"), "0.125 0.625 0.25 0.5 ") << "fractions";
    EXPECT_EQ(area("vp_size=2x2+1"), "0 1 0 1 ") << "all four are needed";
    EXPECT_EQ(area("vp_size=1x0+0+0"), "0 1 0 1 and a warning");
    EXPECT_EQ(area("vp_size=nanx1+0+0"), "0 1 0 1 and a warning");
}
