/* The skeleton of every plot, with an input that only notes what it is asked for. */
#include "decoders/frame_driver.h"
#include "files/file_series.h"
#include "files/file_template.h"
#include "tests/plot/page_fixture.h"

namespace {
DateTime asked;        // time of the plot
std::string steps_log; // what was done, a word each

int open_file(const char *name) {
    const std::string file = name;
    FILE *in = fopen(name, "r");
    steps_log += (in ? " open:" : " no:") + file.substr(file.rfind('/') + 1);
    if (in)
        fclose(in);
    return in ? 1 : 0;
}

const PlotSteps kFake = {
    .prepare = [] { steps_log += " prepare"; },
    .opened = [] { steps_log += " opened"; },
    .open = open_file,
    .draw = [] { steps_log += asked.hour == MISSING ? " draw-anew" : " draw"; },
    .close = [] { steps_log += " close"; },
    .time = [] { return &asked; },
    .data_domain =
        [] {
            static const Domain own = page_latlon(40.0f, -100.0f, 40.0f);
            return &own;
        },
    .plot = [](Domain *domain) { return FRAME_plot(kFake, domain); },
    .pointer = [](float, float, int, const char *) {},
};

struct FrameDriver : PageTest {
    Domain domain;

    FrameDriver() {
        steps_log.clear();
        FRAME_reset();
        FILE_series_reset();
        scratch.write("name_conv", "fake %D/%Y%m%d_%h%n - 0\n");
        RES_set("data_path", scratch.dir.c_str());
        FILE_set_name("fake");
        asked = *DT_make(2013, 5, 20, 20, 10);
    }
    ~FrameDriver() override {
        FRAME_reset();
        FILE_series_reset();
        unsetenv("qracurtime");
    }

    /* What FRAME_refresh does at a time of the clock. */
    std::string refresh(const char *now) {
        setenv("qracurtime", now, 1);
        steps_log.clear();
        FRAME_refresh(&domain);
        return steps_log;
    }
};
} // namespace

TEST_F(FrameDriver, ASingleFileIsLookedAtFirst) {
    scratch.write("20130520_2010", "x");
    FRAME_plot(kFake, &domain);
    EXPECT_EQ(steps_log, " prepare open:20130520_2010 close opened open:20130520_2010 draw close");
    EXPECT_EQ(domain.clat, 40.0f) << "an unset domain is the data's own";
    EXPECT_FALSE(gis_open());
    asked = *DT_make(2013, 5, 20, 20, 11);
    EXPECT_EXIT(FRAME_plot(kFake, &domain), testing::ExitedWithCode(10), "");
}

TEST_F(FrameDriver, ASeriesPassesOverWhatCannotBeRead) {
    scratch.write("a", "x");
    scratch.write("c", "x");
    RES_set("num_hour", "0,1");
    RES_set("filename",
            (scratch.path("a") + "," + scratch.path("b") + "," + scratch.path("c")).c_str());
    open_page();
    domain = page_latlon(40.0f, -100.0f, 40.0f);
    FRAME_plot(kFake, &domain);
    EXPECT_EQ(steps_log, " open:a draw close no:b open:c draw close");
    EXPECT_TRUE(gis_open()) << "what replots does not close";
}

TEST_F(FrameDriver, ARefreshDrawsNewerDataOnce) {
    scratch.write("20130520_2010", "x");
    open_page();
    domain = page_latlon(40.0f, -100.0f, 40.0f);
    std::string name;
    FILE_date_name(&asked, &name);
    FILE_set_current(name.c_str());
    FRAME_plot(kFake, &domain);
    EXPECT_EQ(refresh("201305202012"), "") << "nothing is newer";
    scratch.write("20130520_2014", "x");
    EXPECT_EQ(refresh("201305202016"), " open:20130520_2014 draw-anew close");
    EXPECT_EQ(refresh("201305202017"), "") << "that was drawn";
}
