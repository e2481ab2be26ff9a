/* What each variable of a summary shows of a report. */
#include "decoders/summary_values.h"
#include "tests/plot/page_fixture.h"

namespace {
struct SummaryValues : PlotTest {
    PlotPoint station;

    SummaryValues() {
        const Domain domain = page_latlon(40.0f, -100.0f, 40.0f);
        PRJ_set_domain(&domain);
        station.x = -97.3f;
        station.y = 35.3f;
    }

    /* Text, values, and where the point went, "M" for a place without an image. */
    std::string told(const PlotPoint &point) const {
        std::string text = page_list(point.text, point.value, point.value2);
        if (point.x != station.x || point.y != station.y)
            text += " at " + (point.x == MISSING_F ? "M" : Drawn::point({point.x, point.y}, 10.0f));
        return text;
    }

    std::string show(const MdrReport &report, const char *variable) const {
        PlotPoint point = station;
        SUM_mdr_value(report, variable, &point);
        return told(point);
    }

    std::string show(const RcmReport &report, const char *variable, int index, int no_clear) const {
        PlotPoint point = station;
        return SUM_rcm_value(report, index, variable, no_clear, &point) ? told(point) : "end";
    }
};

template <size_t N>
void put(char (&field)[N], const char *text) {
    snprintf(field, N, "%s", text);
}

MdrReport line_report() {
    MdrReport r;
    put(r.station, "TLX");
    put(r.status, "LINE");
    put(r.precip, "TRW");
    put(r.trend, "NC");
    r.intensity = 3;
    r.top = 450;
    r.top_dir = 270;
    r.top_range = 60;
    r.moves[0] = {'A', 240, 25};
    r.moves[1] = {'C', 250, 30};
    r.moves[2] = {'L', 260, 35};
    return r;
}

void set_storms(RcmReport *r) {
    put(r->id, "TLX");
    r->status = RCM_NO_ECHOES;
    r->max_top = 510;
    r->max_col = 36.1f;
    r->max_row = -98.2f;
    r->storm_count = 2;
    r->storms[0] = {"A0", 36.0f, -98.0f, 450, 240, 25, 2};
    r->storms[1] = {"B1", 34.0f, -99.0f, MISSING, MISSING, MISSING, -1};
    r->tvs_count = r->meso_count = 1;
    r->tvs[0] = {"T1", 36.2f, -98.3f};
    r->meso[0] = {"M1", MISSING_F, MISSING_F};
}
} // namespace

TEST_F(SummaryValues, OfAnMdrReport) {
    const struct {
        const char *variable, *want;
        void (*change)(MdrReport *) = [](MdrReport *) {};
    } cases[] = {
        {"city", "TLX M M"},
        {"stat", " M M"},
        {"stat", "OM M M", [](MdrReport *r) { put(r->status, "OM"); }},
        {"pr_typ", "TRW+ M M"},
        {"pr_typ", "TRWu M M", [](MdrReport *r) { r->intensity = 9; }},
        {"pr_typ", "TRW M M", [](MdrReport *r) { r->intensity = 10; }},
        {"pr_typ", " M M", [](MdrReport *r) { put(r->precip, " "); }},
        {"pr_tt", "TRW- M M"},
        {"pr_tt", "TRW\\ M M", [](MdrReport *r) { put(r->trend, "-"); }},
        {"pr_tt", "TRW* M M", [](MdrReport *r) { put(r->trend, "NEW"); }},
        {"pr_tt", "TRW M M", [](MdrReport *r) { put(r->trend, " "); }},
        {"pr_tt", "TRW? M M", [](MdrReport *r) { put(r->trend, "?"); }},
        {"pr_tnd", "NC M M"},
        {"ECHTOP-2", "450 M M at -985,353"},
        {"echtop", "450* M M", [](MdrReport *r) { r->top_dir = r->top_range = 0; }},
        {"echtop", "450 M M", [](MdrReport *r) { r->top_range = MISSING; }},
        {"pr_amv", " 260 35"},
        {"pr_cmv", " 250 30"},
        {"watch", " M M"},
    };
    for (const auto &c : cases) {
        MdrReport r = line_report();
        c.change(&r);
        EXPECT_EQ(show(r, c.variable), c.want) << c.variable;
        EXPECT_TRUE(c.want[0] == 'T' || show(MdrReport{}, c.variable) == " M M") << c.variable;
    }
}

TEST_F(SummaryValues, OfAnRcmReport) {
    RcmReport r{};
    set_storms(&r);
    const struct {
        const char *variable, *want[3]; // of the indexes from 0
        const char *clear = " M M";     // in clear air, where that shows nothing
    } cases[] = {
        {"city", {"TLX M M", "end", "end"}, "TLX M M"},
        {"stat", {"NE M M", "end", "end"}, "NE M M"},
        {"mode", {"P M M", "end", "end"}, "C M M"},
        {"echotop", {" 510 M at -982,361", "end", "end"}},
        {"tvs", {"T 1 M at -983,362", "end", "end"}},
        {"meso", {"M 1 M at M", "end", "end"}},
        {"id", {"A0 1 M at -980,360", "B1 1 M at -990,340", "end"}},
        {"top-1", {" 450 M at -980,360", " M M at -990,340", "end"}},
        {"hail", {"* 2 M at -980,360", " M M at -990,340", "end"}},
        {"mvmt", {" 240 25 at -980,360", " M M at -990,340", "end"}},
        {"spd", {" 25 M at -980,360", " M M at -990,340", "end"}},
        {"watch", {"end", "end", "end"}, "end"},
    };
    for (const auto &c : cases) {
        r.mode = RCM_PRECIPITATION;
        for (int i = 0; i < 3; i++)
            EXPECT_EQ(show(r, c.variable, i, 1), c.want[i]) << c.variable << " " << i;
        r.mode = RCM_CLEAR_AIR;
        EXPECT_EQ(show(r, c.variable, 0, 1), c.clear) << c.variable;
        EXPECT_EQ(show(r, c.variable, 1, 0), c.want[1]) << "clear air that nobody hides";
    }
}

/* Counts come from a file. */
TEST_F(SummaryValues, CountsDoNotReachBehindTheLists) {
    RcmReport r{};
    r.storm_count = r.tvs_count = r.meso_count = 1000;
    EXPECT_EQ(show(r, "tvs", RCM_TVS, 0), "end");
    EXPECT_EQ(show(r, "meso", RCM_MESOS, 0), "end");
    EXPECT_EQ(show(r, "spd", RCM_STORMS, 0), "end");
    EXPECT_EQ(show(r, "spd", -1, 0), "end");
}
