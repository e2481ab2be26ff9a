/* Sweeps of Level II archives on the page: which is drawn, its cells, colours and labels. */
#include "decoders/level2_plot.h"
#include "decoders/level2_reader.h"
#include "decoders/radar_colors.h"
#include "plot/labels.h"
#include "tests/plot/page_fixture.h"
#include "tools/samples/level2_writer.h"

namespace {
/* A ray to the east with reflectivity; two sweeps have the wind alone, the last of coarse steps. */
std::string volume(bool old_form) {
    SampleRay ray;
    ray.azimuth = 90.0;
    ray.moments = {{"REF", 2000, 1000, 2.0f, 66.0f, {0, 1, char(86), char(96)}}};
    const auto message = old_form ? SMP_message1 : SMP_message31;
    std::string out =
        SMP_volume_header("KTLX", 15846, 72965000) + SMP_other_message(2) + message(ray);
    ray.moments = {{"VEL", 1000, 250, 2.0f, 129.0f, {0, 1, 2, char(149), char(254)}}};
    ray.elevation_number = 2;
    out += message(ray);
    ray.elevation_number = 3;
    ray.vcp = 31;
    ray.moments[0].scale = 1.0f;      // whole metres a second: bytes reach far below the levels
    ray.moments[0].gates += {34, 29}; // -95 is a wind like others, -100 stands for none
    ray.elevation = 1.5;
    return out + message(ray);
}

struct Level2Plot : PageTest {
    Level2Plot() {
        LEV2_reset();
        LEV2_options_reset();
        RADAR_colors_reset();
        std::filesystem::copy(RADAR_SOURCE_DIR "/data/qra.clr", scratch.path("qra.clr"),
                              std::filesystem::copy_options::overwrite_existing);
        scratch.write("rad.cty", "Twin_Lakes OK US TLX 1 35.333 -97.278 389 99999 0\n");
        COLOR_read_table(nullptr);
    }
    ~Level2Plot() override { LEV2_reset(); }

    /* Draws what a variable asks for.  Areas by colour and range in thousandths of the plot's
     * units, then the labels but for the time. */
    std::string draw(const std::string &bytes, const char *variable) {
        RES_set("variable", variable);
        PLT_clear_labels();
        EXPECT_EQ(LEV2_open_volume(scratch.write("volume", bytes).c_str()), 1);
        const Domain domain = *LEV2_data_domain();
        open(domain);
        float x = 0.0f, y = 0.0f;
        PRJ_latlon_to_xy(domain.clat, domain.clon, &x, &y);
        LEV2_draw_data();
        std::ostringstream out;
        for (const DrawnLine &area : drawn.areas())
            out << COLOR_name(area.color) << " " << std::lround((area.points[0].x - x) * 1000.0f)
                << "-" << std::lround((area.points[1].x - x) * 1000.0f) << ",";
        drawn = Drawn{};
        PLT_labels();
        LEV2_close_file();
        std::string words = drawn.words();
        const size_t time = words.find("2016Z 20 MAY 13|");
        EXPECT_NE(time, words.npos);
        return out.str() + words.erase(time, strlen("2016Z 20 MAY 13|"));
    }
};
} // namespace

TEST_F(Level2Plot, TheVariableChoosesMomentAndSweep) {
    const struct {
        const char *variable, *want, *want_old; // old: null for the same
    } cases[] = {
        {"", "lblue 44-55,cyan 55-67,Reflectivity (Dbz)|Md=pr Sc=1 El=0.5 Mx=15", nullptr},
        {"vel",
         "blue 16-19,yellow 19-22,lmagenta 22-25,Velocity (m/s)|Md=pr Sc=2 El=0.5 Rng=-64,62",
         "blue 6-9,yellow 9-12,lmagenta 12-15,Velocity (m/s)|Md=pr Sc=2 El=0.5 Rng=-64,62"},
        {"vel3",
         "blue 16-19,brown 19-22,magenta 22-25,blue 25-28,Velocity (m/s)|Md=cl Sc=3 El=1.5 "
         "Rng=20,125",
         "blue 6-9,brown 9-12,magenta 12-15,blue 15-18,Velocity (m/s)|Md=cl Sc=3 El=1.5 "
         "Rng=20,125"},
        {"other",
         "blue 16-19,brown 19-22,magenta 22-25,blue 25-28,Velocity (m/s)|Md=cl Sc=3 El=1.5 "
         "Rng=20,125",
         "blue 6-9,brown 9-12,magenta 12-15,blue 15-18,Velocity (m/s)|Md=cl Sc=3 El=1.5 "
         "Rng=20,125"},
        {"ref7", "Reflectivity (Dbz)|Md=pr Sc=7 El=0.0 Mx=-100", nullptr},
    };
    for (const bool old_form : {false, true}) {
        LEV2_options_reset();
        for (const auto &c : cases)
            EXPECT_EQ(draw(volume(old_form), c.variable),
                      old_form && c.want_old ? c.want_old : c.want)
                << c.variable << (old_form ? ", message 1" : "");
    }
}

/* A sweep that was found holds for its own volume: in the next one the moment may stand elsewhere,
 * behind several sweeps without it. */
TEST_F(Level2Plot, EachVolumeIsSearchedAnew) {
    SampleRay ray;
    ray.azimuth = 90.0;
    std::string late = SMP_volume_header("KTLX", 15846, 72965000);
    for (int sweep = 1; sweep <= 4; sweep++) {
        ray.elevation_number = sweep;
        ray.moments = {{"REF", 2000, 1000, 2.0f, 66.0f, {char(86)}}};
        if (sweep >= 3)
            ray.moments.push_back({"VEL", 1000, 250, 2.0f, 129.0f, {char(149)}});
        if (sweep == 4)
            ray.moments.push_back({"SW ", 1000, 250, 2.0f, 129.0f, {char(149)}});
        late += SMP_message31(ray);
    }
    const std::string volumes[] = {volume(false), late, volume(false)}, found[] = {"2", "3", "2"};
    for (int i = 0; i < 3; i++)
        EXPECT_NE(draw(volumes[i], "vel").find("Sc=" + found[i]), std::string::npos) << i;
    EXPECT_NE(draw(late, "spect").find("Sc=4"), std::string::npos);
    EXPECT_NE(draw(late, "ref").find("Sc=1"), std::string::npos);
}

TEST_F(Level2Plot, NothingBehindTheSweepIsRead) {
    const std::string whole = volume(false);
    const std::string want = draw(whole, "vel2");
    const std::string cut = whole.substr(0, whole.size() - 4);
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(draw(cut, "vel2"), want); }), "")
        << "the message behind it tells by its head that the sweep is over";
    EXPECT_NE(page_errors_of([&] { draw(cut, "vel3"); }), "");
}

TEST_F(Level2Plot, ColorsWithoutValuesNeedAnInterval) {
    const struct {
        const char *colors, *interval, *said;
    } cases[] = {
        {"blue,red", "", "RADAR_check_interval: Colors without values need an interval\n"},
        {"blue,red", "0", "RADAR_check_interval: Colors without values need an interval\n"},
        {"blue,red", "10", ""},
        {"0:blue,9:red", "", ""},
    };
    for (const auto &c : cases) {
        RES_set("color_fill", c.colors);
        RES_set("con_interval", c.interval);
        CONT_reset();
        std::string found;
        EXPECT_EQ(page_errors_of([&] { found = draw(volume(false), "ref1"); }), c.said);
        EXPECT_EQ(found.find("red ") == std::string::npos, *c.said != 0) << found;
    }
}

TEST_F(Level2Plot, WordsSetTheOptions) {
    RES_set("plot_param", "site,dist=50,range:230.9,clutter,numplt=3");
    LEV2_parse_params();
    const Lev2Options &o = *LEV2_options();
    EXPECT_EQ(page_list(o.site, o.ring[0], o.plot_range, o.clutter), "1 50 230 25");
    RES_set("plot_param", "range=0,range,range=x,range=1e9");
    EXPECT_NE(page_errors_of(LEV2_parse_params), "");
    EXPECT_EQ(o.plot_range, 230) << "no page is made of these";
}
