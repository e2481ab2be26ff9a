/* Domains: the record, its text forms, the ways to obtain one. */
#include "plot/domain_text.h"

#include "tests/plot/page_fixture.h"
#include "tests/support/input.h"

namespace {
constexpr int M = MISSING;
constexpr const char *kInvalid = "DOM_decode: Invalid plot domain\n";

struct DomainTest : PlotTest {
    Domain d;

    DomainTest() {
        scratch.write("sao.cty", "Chicago IL US KORD 1 41.98 -87.9 204 72530\n");
        scratch.write("qra.reg", "gl Great_Lakes 1 ps,44.5,-84.5,0.8\n");
        MSG_set_mask(0, MSG_ERROR);
    }

    /* Sets the resources of these letters and no others; x is an invalid plot domain. */
    void set_only(const std::string &letters) {
        RES_reset();
        RES_set("file_path", scratch.dir.c_str());
        for (const auto &[letter, name, value] : {std::tuple{'p', "plot_domain", "40,-95"},
                                                  {'x', "plot_domain", "40,x"},
                                                  {'r', "region", "gl"},
                                                  {'g', "grid_domain", "10,20"}})
            if (letters.find(letter) != letters.npos)
                RES_set(name, value);
    }
};

/* Texts by the domains that they mean: result, projection, ellipse, origin, centre, size,
 * spacing. */
const std::pair<const char *, std::vector<const char *>> kTexts[] = {
    // The forms, in the order of trial.
    {"1 51 0 M M M M 640 480 M M", {"sizes,640.9,480.2"}},
    {"1 1 0 M -100 40 -95 31 21 1.5 2.5", {"ps,-100,40,-95,31,21,1.5,2.5"}},
    {"1 1 0 60 -100 40 -100 25 17 1.2 1.2", {"ps:60:-100,40,-100,25,17,1.2,1.2"}},
    {"1 3 0 M -100 40 -95 25 17 1.5 2.5", {"me,-100,40,-95,1.5,2.5"}},
    {"1 1 0 M M 40 -95 31 21 1.5 2.5", {"40,-95,31,21,1.5,2.5"}},
    {"1 2 0 M M 40 -95 25 17 1.5 2.5", {"ll,40,-95,1.5,2.5"}},
    {"1 1 0 M M 40 -95 31 21 1.5 1.5", {"40,-95,31,21,1.5"}},
    {"1 4 0 M M 40 -95 25 17 1.5 1.5", {"lc,40,-95,1.5"}},
    {"1 1 0 M M 40 -95 31 21 1.2 1.2", {"40,-95,31,21"}},
    {"1 1 0 M M 40 -95 25 17 1.5 1.5", {"40,-95,1.5", "40N,-95W,1.5x"}},
    {"1 50 0 M M 40 -95 25 17 1 1", {"zoom,40,-95"}},
    {"1 1 0 M M 40 -95 25 17 1.2 1.2", {"40,-95"}},
    // A station stands for a latitude and a longitude in every form.
    {"1 1 0 M M 41.98 -87.9 25 17 1.2 1.2", {"ID:72530"}},
    {"1 1 0 M M 41.98 -87.9 25 17 1 2", {"ps,id:sao.cty:kord,1,2"}},
    {"1 1 0 M -100 40 -95 25 17 1.2 1.2", {"ps:-100,40,-95", "ps::-100,40,-95"}},
    {"1 4 0 M M 40 -95 25 17 1.2 1.2", {"lambaz,40,-95"}},
    {"1 8 0 M M 40 -95 25 17 1.2 1.2", {"laz,40,-95"}},
    {"1 9 1 0 0 -75 800 25 17 600 0.1", {"sat:e:0:-75,0,-75,800,600,0.1"}},
    // Sizes that are none, or too large; nothing, and wrong ones.
    {"1 51 0 M M M M M M M M", {"sizes,nan,1e30"}},
    {"1 51 0 M M M M 640 2147483647 M M", {"size,640,99999999999"}},
    {"M M 0 M M M M M M M M", {"", "Miss", nullptr}},
    {"1 1 0 M M M M 25 17 M M", {"miss,1,2"}},
    {"-1 M 0 M M M M M M M M", {"id:KXXX", "size,640", "40,x", "1,2,3,4,5,6,7,8,9"}},
    // Regions.
    {"2 1 0 M M 44.5 -84.5 25 17 0.8 0.8", {"gl", "GL,", "qra.reg:gl", "fi:qra.reg"}},
    {"2 1 0 M -93 43 -93 25 17 1.1 1.1", {"mw"}},
    {"2 -1 0 M M M M M M M M", {"nowhere", "qra.reg:us", "fi:absent.reg", ":gl", ",,"}},
    {"2 M 0 M M M M M M M M", {"fi:"}},
};

TEST_F(DomainTest, EveryFormOfText) {
    MSG_set_mask(0, 0);
    for (const auto &[domain, texts] : kTexts)
        for (const char *text : texts) {
            const int result = DOM_decode(text, &d);
            EXPECT_EQ(page_list(result, d.proj, d.ellipse, d.plat, d.plon, d.clat, d.clon, d.nx,
                                d.ny, d.dx, d.dy),
                      domain)
                << (text ? text : "null");
            EXPECT_EQ(FILE_state().keys['r'], std::string(text ? text : "").substr(0, 29));
        }
}

TEST_F(DomainTest, PrintsTheTextFormAndCountsCells) {
    DOM_decode("sat:e::-75:421.6::0.5:7:8,0,-75,800,600,0.1,0.2", &d);
    EXPECT_EQ(page_list(d.parm[3], d.parm[4]), "7 M") << "parameters keep their place";
    EXPECT_EQ(page_output_of([&] { DOM_print(MSG_PRINT, &d); }),
              "sat:e::-75.000:421.600::0.500,0.000,-75.000,800,600,0.1000,0.2000\n");
    d.nx = 25;
    for (const auto &[ny, aspect] : {std::pair{17, 1.5f}, {2, 24.0f}, {1, 1.0f}, {INT32_MIN, 1}}) {
        d.ny = ny;
        EXPECT_EQ(DOM_aspect(&d), aspect);
    }
    EXPECT_LT(DOM_span(INT32_MIN, 1.0f), -2e9f);
}

TEST_F(DomainTest, WhatLeadsNowhereIsToldOfOnce) {
    scratch.write("qra.reg", "a A 1 b\nb B 1 fi:loop.reg\nvar Variable 1 var\n");
    scratch.write("loop.reg", "c C 1 a\n");
    for (const char *text : {"a", "var", "fi:loop.reg"}) { // regions that name each other
        int result = 0;
        EXPECT_EQ(page_errors_of([&] { result = DOM_decode(text, &d); }), kInvalid) << text;
        EXPECT_EQ(result, 2);
        EXPECT_EQ(d.clat, M);
    }
    EXPECT_EQ(DOM_decode("40,-95", &d), 1); // the depth is back at 0
    RES_set("city_file", "none");
    EXPECT_EQ(page_errors_of([&] { DOM_decode("id:KORD", &d); }), kInvalid);
}

TEST_F(DomainTest, AMissingOriginEqualsTheCentre) {
    for (const auto &[text, equal, same_projection] : {std::tuple{"ps:40:-95,40,-95", 1, 1},
                                                       {"ps:40:-96,40,-95", 0, 0},
                                                       {"ps:40:-95,40,-95,3", 0, 1},
                                                       {"ps:40:-95:::1,40,-95", 0, 0},
                                                       {"ps:e:40:-95,40,-95", 0, 0}}) {
        Domain b;
        DOM_decode("ps,40,-95", &d);
        DOM_decode(text, &b);
        EXPECT_TRUE(DOM_equal(&d, &b) == equal && DOM_equal(&b, &d) == equal) << text;
        EXPECT_EQ(DOM_same_projection(&b, &d), same_projection) << text;
    }
}

TEST_F(DomainTest, PriorityFollowsTheHeight) {
    const auto priority = [](float extent, const char *resource) {
        RES_set("stat_prior", resource);
        DOM_set_priority(extent);
        return DOM_get_priority();
    };
    EXPECT_EQ(
        page_list(priority(50.1f, ""), priority(50, ""), priority(3.01f, ""), priority(3, "")),
        "1 2 5 6");
    EXPECT_EQ(
        page_list(priority(20, "+2"), priority(20, "-1"), priority(20, "47"), priority(20, "-")),
        "5 2 4 3");
}

TEST_F(DomainTest, ResourcesInTheOrderOfTheMode) {
    const auto found = [&](const char *resources, int mode) { // mode 0: for a grid
        set_only(resources);
        const int result = mode ? DOM_from_resources(&d, mode) : DOM_grid_from_resources(&d);
        return page_list(result, d.clat);
    };
    MSG_set_mask(0, 0);
    EXPECT_EQ(found("", 3) + "," + found("xr", 3) + "," + found("r", 3), "0 M,-1 M,2 44.5");
    EXPECT_EQ(found("pr", 1) + "," + found("pr", 2) + "," + found("pr", 4), "1 40,2 44.5,1 40");
    EXPECT_EQ(found("", 4) + "," + found("pr", 0) + "," + found("prg", 0), "2 44.5,2 44.5,1 10");
}

TEST_F(DomainTest, TheMenuTakesNumbersNamesAndTexts) {
    MSG_set_mask(0, 0);
    for (const auto &[text, expected] : {
             std::pair{"1\n", "2 44.5"},
             {"Great Lakes\ngl\n", "2 M"}, // the first word: a region that nobody knows
             {"40,x\n\n", "M M"},
             {"back\n", "0 7"},
             {"list\nlist\nlist\nlist\nlist\n1\n", "-1 7"},
         }) {
        TypedInput typed(text);
        d.clat = 7.0f;
        const int result = DOM_prompt(&d, 1);
        EXPECT_EQ(page_list(result, d.clat), expected) << text;
    }
}

TEST_F(DomainTest, WithoutAPersonItIsAskedForOnceOrEndsTheRun) {
    PAR_set(PAR_BATCH, 1);
    for (const auto &[resources, mode, result] :
         {std::tuple{"pr", 1, 1}, {"pr", 2, 2}, {"", 1, 2}}) {
        set_only(resources);
        DOM_set_ask(1);
        EXPECT_EQ(DOM_prompt(&d, mode), result);
        EXPECT_EQ(DOM_prompt(&d, mode), 0);
    }
    set_only("x");
    DOM_set_ask(1);
    EXPECT_EXIT(DOM_prompt(&d, 1), testing::ExitedWithCode(43), "Invalid domain\n");
}
} // namespace
