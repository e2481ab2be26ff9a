/* Domains: the record, its text forms, the ways to obtain one. */
#include "plot/domain.h"
#include "plot/domain_input.h"
#include "plot/domain_text.h"
#include "plot/region.h"

#include "files/file_name.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "tests/support/input.h"
#include "tests/support/scratch.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {
struct DomainTest : testing::Test {
    Scratch scratch;

    DomainTest() {
        MSG_reset();
        RES_reset();
        FILE_name_reset();
        DOM_reset();
        REG_reset();
        DOM_set_ask(1);
        PAR_fill(MISSING);
        RES_set("file_path", scratch.dir.c_str());
        scratch.write("sao.cty", "Chicago IL US KORD 1 41.98 -87.9 204 72530\n");
        scratch.write("qra.reg", "gl Great_Lakes 1 ps,44.5,-84.5,0.8\n");
    }
    ~DomainTest() override {
        RES_reset();
        REG_reset();
        MSG_reset();
    }
};

constexpr int M = MISSING;

struct TextCase {
    const char *text;
    int result;
    int proj;
    float plat, plon, clat, clon;
    int nx, ny;
    float dx, dy;
};
constexpr TextCase kTexts[] = {
    // The forms, in the order of trial.
    {"size,640,480", 1, 51, M, M, M, M, 640, 480, M, M},
    {"ps,-100,40,-95,31,21,1.5,2.5", 1, 1, M, -100, 40, -95, 31, 21, 1.5f, 2.5f},
    {"ps:60:-100,40,-100,25,17,1.2,1.2", 1, 1, 60, -100, 40, -100, 25, 17, 1.2f, 1.2f},
    {"me,-100,40,-95,1.5,2.5", 1, 3, M, -100, 40, -95, 25, 17, 1.5f, 2.5f},
    {"40,-95,31,21,1.5,2.5", 1, 1, M, M, 40, -95, 31, 21, 1.5f, 2.5f},
    {"ll,40,-95,1.5,2.5", 1, 2, M, M, 40, -95, 25, 17, 1.5f, 2.5f},
    {"40,-95,31,21,1.5", 1, 1, M, M, 40, -95, 31, 21, 1.5f, 1.5f},
    {"lc,40,-95,1.5", 1, 4, M, M, 40, -95, 25, 17, 1.5f, 1.5f},
    {"40,-95,31,21", 1, 1, M, M, 40, -95, 31, 21, 1.2f, 1.2f},
    {"40,-95,1.5", 1, 1, M, M, 40, -95, 25, 17, 1.5f, 1.5f},
    {"or,40,-95", 1, 5, M, M, 40, -95, 25, 17, 1.2f, 1.2f},
    {"zoom,40,-95", 1, 50, M, M, 40, -95, 25, 17, 1, 1},
    {"40,-95", 1, 1, M, M, 40, -95, 25, 17, 1.2f, 1.2f},
    // A station stands for a latitude and a longitude in every form.
    {"id:KORD", 1, 1, M, M, 41.98f, -87.9f, 25, 17, 1.2f, 1.2f},
    {"ID:72530", 1, 1, M, M, 41.98f, -87.9f, 25, 17, 1.2f, 1.2f},
    {"ps,id:KORD,1.0", 1, 1, M, M, 41.98f, -87.9f, 25, 17, 1, 1},
    {"ps,id:KORD,31,21,1.5", 1, 1, M, M, 41.98f, -87.9f, 31, 21, 1.5f, 1.5f},
    {"ps,id:sao.cty:kord,1,2", 1, 1, M, M, 41.98f, -87.9f, 25, 17, 1, 2},
    {"id:KXXX", -1, M, M, M, M, M, M, M, M, M},
    // Sub-fields of the projection, and numbers with text behind.
    {"ps:-100,40,-95", 1, 1, M, -100, 40, -95, 25, 17, 1.2f, 1.2f},
    {"ps::-100,40,-95", 1, 1, M, -100, 40, -95, 25, 17, 1.2f, 1.2f},
    {"lambaz,40,-95", 1, 4, M, M, 40, -95, 25, 17, 1.2f, 1.2f},
    {"laz,40,-95", 1, 8, M, M, 40, -95, 25, 17, 1.2f, 1.2f},
    {"sat:e:0:-75,0,-75,800,600,0.1", 1, 9, 0, 0, -75, 800, 25, 17, 600, 0.1f},
    {"40N,95W,1.5x", 1, 1, M, M, 40, 95, 25, 17, 1.5f, 1.5f},
    {"sizes,640.9,480.2", 1, 51, M, M, M, M, 640, 480, M, M},
    {"sizes,nan,1e30", 1, 51, M, M, M, M, M, M, M, M},
    {"size,640,99999999999", 1, 51, M, M, M, M, 640, INT32_MAX, M, M},
    // Nothing.
    {"", MISSING, M, M, M, M, M, M, M, M, M},
    {"Miss", MISSING, M, M, M, M, M, M, M, M, M},
    {"none", 1, 1, M, M, M, M, 25, 17, 1.2f, 1.2f},
    {"miss,1,2", 1, 1, M, M, M, M, 25, 17, M, M},
    // Wrong ones.
    {"size,640", -1, M, M, M, M, M, M, M, M, M},
    {"40,x", -1, M, M, M, M, M, M, M, M, M},
    {"1,2,3,4,5,6,7,8,9", -1, M, M, M, M, M, M, M, M, M},
    // Regions.
    {"gl", 2, 1, M, M, 44.5f, -84.5f, 25, 17, 0.8f, 0.8f},
    {"GL,", 2, 1, M, M, 44.5f, -84.5f, 25, 17, 0.8f, 0.8f},
    {"mw", 2, 1, M, -93, 43, -93, 25, 17, 1.1f, 1.1f},
    {"nowhere", 2, -1, M, M, M, M, M, M, M, M},
    {"qra.reg:gl", 2, 1, M, M, 44.5f, -84.5f, 25, 17, 0.8f, 0.8f},
    {"qra.reg:us", 2, -1, M, M, M, M, M, M, M, M},
    {"fi:qra.reg", 2, 1, M, M, 44.5f, -84.5f, 25, 17, 0.8f, 0.8f},
    {"fi:absent.reg", 2, -1, M, M, M, M, M, M, M, M},
    {"fi:", 2, M, M, M, M, M, M, M, M, M},
    {":gl", 2, -1, M, M, M, M, M, M, M, M},
    {",,", 2, -1, M, M, M, M, M, M, M, M},
};

TEST_F(DomainTest, EveryFormOfText) {
    MSG_set_mask(0, 0);
    for (const TextCase &c : kTexts) {
        SCOPED_TRACE(c.text);
        Domain d;
        d.nx = 99;
        EXPECT_EQ(DOM_decode(c.text, &d), c.result);
        EXPECT_EQ(PAR_get(PAR_DOMAIN), c.result);
        EXPECT_EQ(d.proj, c.proj);
        EXPECT_EQ(d.plat, c.plat);
        EXPECT_EQ(d.plon, c.plon);
        EXPECT_EQ(d.clat, c.clat);
        EXPECT_EQ(d.clon, c.clon);
        EXPECT_EQ(d.nx, c.nx);
        EXPECT_EQ(d.ny, c.ny);
        EXPECT_EQ(d.dx, c.dx);
        EXPECT_EQ(d.dy, c.dy);
        EXPECT_EQ(d.ellipse, strstr(c.text, ":e:") ? 1 : 0);
    }
    Domain d;
    EXPECT_EQ(DOM_decode(nullptr, &d), MISSING);
    EXPECT_EQ(DOM_convert("40,-95", nullptr), 0);
    EXPECT_EQ(DOM_convert("40,-95", &d), 1);
    EXPECT_EQ(d.clat, 40.0f);
}

TEST_F(DomainTest, ParametersKeepTheirPlaceAndEndAtFour) {
    Domain d;
    DOM_decode("lamb:e:40:-97:30::0.5:7:8,40,-97", &d);
    EXPECT_EQ(d.plat, 40.0f);
    EXPECT_EQ(d.plon, -97.0f);
    EXPECT_EQ(d.parm[0], 30.0f);
    EXPECT_EQ(d.parm[1], M);
    EXPECT_EQ(d.parm[2], 0.5f);
    EXPECT_EQ(d.parm[3], 7.0f);
    EXPECT_EQ(d.parm[4], M);
    EXPECT_EQ(d.ellipse, 1);
}

TEST_F(DomainTest, ADecodeLeavesTokenPriorityAndMessage) {
    Domain d;
    std::string token;
    DOM_decode("ll,40,-95,1.5,2.5", &d);
    FILE_get_key('r', &token);
    EXPECT_EQ(token, "ll,40,-95,1.5,2.5");
    EXPECT_EQ(DOM_get_priority(), 2); // 16 * 2.5 is above 25
    DOM_decode("gl", &d);
    FILE_get_key('r', &token);
    EXPECT_EQ(token, "gl"); // the outer text, last

    testing::internal::CaptureStderr();
    DOM_decode("40,x", &d);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "DOM_decode: Invalid plot domain\n");
    testing::internal::CaptureStdout();
    MSG_set_mask(1, MSG_DEBUG_C);
    DOM_decode("40,-95", &d);
    const std::string trace = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(trace.starts_with("******** PARSING DOMAIN: 2 40,-95\n 0 proj,plon,"));
    EXPECT_TRUE(trace.ends_with(" 0 proj,clat,clon\n 1 clat,clon\n"));
}

TEST_F(DomainTest, RegionsThatNameEachOtherEnd) {
    scratch.write("qra.reg", "a A 1 b\nb B 1 fi:loop.reg\nvar Variable 1 var\n");
    scratch.write("loop.reg", "c C 1 a\n");
    for (const char *text : {"a", "var", "fi:loop.reg"}) {
        SCOPED_TRACE(text);
        Domain d;
        testing::internal::CaptureStderr();
        EXPECT_EQ(DOM_decode(text, &d), 2);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "DOM_decode: Invalid plot domain\n");
        EXPECT_EQ(d.clat, M);
    }
    Domain d;
    EXPECT_EQ(DOM_decode("40,-95", &d), 1); // the depth is back at 0
}

TEST_F(DomainTest, NoCityFileNoStation) {
    RES_set("city_file", "none");
    Domain d;
    testing::internal::CaptureStderr();
    EXPECT_EQ(DOM_decode("id:KORD", &d), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "DOM_decode: Invalid plot domain\n");
}

TEST_F(DomainTest, KeywordsCountByTheirFirstLetters) {
    const struct {
        const char *text;
        int code;
    } kCases[] = {{"latlon", 2},   {"polar", 1},     {"PSTEREO", 1}, {"lambert", 4},
                  {"lcc", 4},      {"la", 8},        {"gnom", 6},    {"ortho", 5},
                  {"moll", 7},     {"merc", 3},      {"skewt", 40},  {"therm", 40},
                  {"hodo", 23},    {"vertical", 22}, {"pi", -1},     {"miss", MISSING},
                  {"missing", -1}, {"", -1},         {"40", -1},     {nullptr, -1}};
    for (const auto &c : kCases)
        EXPECT_EQ(DOM_projection_code(c.text), c.code) << (c.text ? c.text : "null");
}

TEST_F(DomainTest, AMissingOriginEqualsTheCentre) {
    Domain a, b;
    DOM_decode("ps,40,-95", &a);
    b = a;
    b.plat = 40;
    b.plon = -95;
    EXPECT_TRUE(DOM_equal(&a, &b));
    EXPECT_TRUE(DOM_equal(&b, &a));
    b.plon = -96;
    EXPECT_FALSE(DOM_equal(&a, &b));
    EXPECT_FALSE(DOM_same_projection(&b, &a));
    b = a;
    b.dx = 3;
    EXPECT_FALSE(DOM_equal(&a, &b));
    EXPECT_TRUE(DOM_same_projection(&a, &b));
    b.parm[4] = 1;
    EXPECT_FALSE(DOM_same_projection(&a, &b));
}

TEST_F(DomainTest, PrintsTheTextForm) {
    Domain d;
    DOM_decode("sat:e::-75:421.6,0,-75,800,600,0.1,0.2", &d);
    testing::internal::CaptureStdout();
    DOM_print(MSG_MESS, &d);
    d.proj = PROJ_SIZE;
    DOM_print(MSG_MESS, &d);
    DOM_print(MSG_DEBUG, &d);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "sat:e::-75.000:421.600::,0.000,-75.000,800,600,0.1000,0.2000\n"
              ":e::-75.000:421.600::,0.000,-75.000,800,600,0.1000,0.2000\n");
}

TEST_F(DomainTest, PriorityFollowsTheHeight) {
    const struct {
        float extent;
        const char *resource;
        int priority;
    } kCases[] = {{50.1f, "", 1},   {50.0f, "", 2},  {12.6f, "x", 3},   {6.26f, "", 4},
                  {3.01f, "", 5},   {3.0f, "", 6},   {20.0f, "+2", 5},  {20.0f, "-1", 2},
                  {20.0f, "47", 4}, {20.0f, "-", 3}, {20.0f, "+99", 12}};
    for (const auto &c : kCases) {
        RES_set("stat_prior", c.resource);
        DOM_set_priority(c.extent);
        EXPECT_EQ(DOM_get_priority(), c.priority) << c.extent << " " << c.resource;
    }
}

TEST_F(DomainTest, AspectCountsCells) {
    Domain d;
    EXPECT_EQ(DOM_aspect(&d), 1.0f);
    d.nx = 25;
    d.ny = 17;
    EXPECT_EQ(DOM_aspect(&d), 1.5f);
    d.ny = INT32_MIN;
    EXPECT_EQ(DOM_aspect(&d), 1.0f);
    EXPECT_LT(DOM_span(INT32_MIN, 1.0f), -2e9f);
}

TEST_F(DomainTest, ResourcesInTheOrderOfTheMode) {
    const struct {
        const char *plot_domain, *region;
        int mode, result;
        float clat;
    } kCases[] = {
        {nullptr, nullptr, 3, 0, M},     {"40,-95", "gl", 1, 1, 40}, {"40,-95", "gl", 2, 2, 44.5f},
        {"40,-95", "gl", 4, 1, 40},      {"40,x", "gl", 3, -1, M},   {nullptr, "gl", 3, 2, 44.5f},
        {nullptr, nullptr, 4, 2, 44.5f},
    };
    MSG_set_mask(0, 0);
    for (const auto &c : kCases) {
        RES_reset();
        RES_set("file_path", scratch.dir.c_str());
        if (c.plot_domain)
            RES_set("plot_domain", c.plot_domain);
        if (c.region)
            RES_set("region", c.region);
        Domain d;
        d.clat = 1;
        EXPECT_EQ(DOM_from_resources(&d, c.mode), c.result) << c.mode;
        EXPECT_EQ(d.clat, c.clat) << c.mode;
    }
    RES_set("plot_domain", "40,-95");
    RES_set("region", "gl");
    Domain d;
    EXPECT_EQ(DOM_grid_from_resources(&d), 2);
    RES_set("grid_domain", "10,20");
    EXPECT_EQ(DOM_grid_from_resources(&d), 1);
    EXPECT_EQ(d.clat, 10.0f);
}

TEST_F(DomainTest, AResourceIsPromptedOnce) {
    RES_set("plot_domain", "40,-95");
    Domain d;
    EXPECT_EQ(DOM_prompt(&d, 1), 1);
    EXPECT_EQ(DOM_prompt(&d, 1), 0);
    DOM_set_ask(1);
    RES_set("region", "gl");
    EXPECT_EQ(DOM_prompt(&d, 2), 2);
    EXPECT_EQ(d.clat, 44.5f);
}

TEST_F(DomainTest, ABatchRunTakesTheFirstRegion) {
    PAR_set(PAR_BATCH, 1);
    Domain d;
    EXPECT_EQ(DOM_prompt(&d, 1), 2);
    EXPECT_EQ(d.clat, 44.5f);
    EXPECT_EQ(DOM_prompt(&d, 1), 0);
}

TEST_F(DomainTest, TheMenuTakesNumbersNamesAndTexts) {
    const struct {
        const char *typed;
        int result;
        float clat;
    } kCases[] = {
        {"1\n", 2, 44.5f},
        {"Great Lakes\ngl\n", 2, M}, // the first word: a region that nobody knows
        {"list\n40,-95\n", 1, 40},
        {"40,x\n\n", MISSING, M},
        {"0\n", 0, 7},
        {"back\n", 0, 7},
        {"list\nlist\nlist\nlist\nlist\n1\n", -1, 7},
    };
    MSG_set_mask(0, 0);
    for (const auto &c : kCases) {
        TypedInput typed(c.typed);
        Domain d;
        d.clat = 7;
        EXPECT_EQ(DOM_prompt(&d, 1), c.result) << c.typed;
        EXPECT_EQ(d.clat, c.clat) << c.typed;
    }
}

TEST_F(DomainTest, AnInvalidResourceEndsTheRun) {
    RES_set("plot_domain", "40,x");
    Domain d;
    EXPECT_EXIT(DOM_prompt(&d, 1), testing::ExitedWithCode(43), "Invalid domain\n");
    TypedInput typed("-1\n");
    MSG_set_mask(9, MSG_PRINT);
    EXPECT_EXIT(DOM_prompt(&d, 2), testing::ExitedWithCode(0), "");
}
} // namespace
