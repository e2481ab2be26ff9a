/* Values at places: formats, what each type draws, and files of stations. */
#include "plot/station_plot.h"

#include "plot/number_format.h"
#include "plot/raw_file.h"
#include "plot/station_file.h"
#include "plot/symbol_file.h"
#include "shell/variables.h"
#include "tests/plot/page_fixture.h"

namespace {
constexpr float kX = -100.0f, kY = 40.0f; // where points are
constexpr float kParts = 100.0f;          // of a unit; the plot is 40 units high

/* Markers are kept as notes of their type. */
const Device kMarkingDevice = [] {
    Device device = kKeepingDevice;
    device.marker_begin = [](int) {
        drawn.notes.push_back("m" + std::to_string(gstate().marker.type));
    };
    return device;
}();

struct StationTest : PageTest {
    PlotPoint point;

    StationTest() {
        gset_device(WS_META, &kMarkingDevice);
        open_page();
        point.x = kX;
        point.y = kY;
    }
    ~StationTest() override {
        PLOT_reset();
        RAW_reset();
        WX_symbol_reset();
    }

    static void begin(const char *style = "red") {
        PlotAttr attr;
        ATTR_parse(style, &attr);
        PLOT_clear_lines();
        PLOT_begin(1.0f, &attr);
        drawn = Drawn{};
    }

    /* What was drawn since begin, relative to the place: markers, texts with their alignment,
     * lines, areas in braces; circles as their radius. */
    static std::string picture() {
        std::string all;
        for (const std::string &note : drawn.notes)
            all += note;
        Drawn texts;
        for (DrawnText text : drawn.texts) {
            text.at = {text.at.x - kX, text.at.y - kY};
            texts.texts.push_back(text);
        }
        all += texts.words(kParts);
        for (const DrawnLine &line : drawn.lines) {
            Drawn one;
            one.lines = {line};
            for (Point &p : one.lines[0].points)
                p = {p.x - kX, p.y - kY};
            const float r = hypotf(one.lines[0].points[0].x, one.lines[0].points[0].y);
            all += line.points.size() < 13
                       ? one.shapes(kParts)
                       : (line.filled ? "O" : "o") + std::to_string(std::lround(r * kParts));
        }
        return all;
    }

    std::string draw(int type, const char *text, float value, float value2, const char *format) {
        begin();
        point.type = type;
        point.text = text;
        point.value = value;
        point.value2 = value2;
        point.format = format;
        const int result = PLOT_point(&point);
        EXPECT_EQ(result, picture().empty() ? -1 : 0);
        return picture();
    }
};
} // namespace

TEST_F(StationTest, FormatsOfNumbers) {
    const struct {
        const char *format;
        float value;
        const char *text; // null where it is refused
    } cases[] = {
        {"%z.1f", 0.5f, ".5"},       {"%z.1f", -0.5f, "-.5"},  {"%z.0f", 0.0f, "0"},
        {"%+05.1f", 2.0f, "+02.0"},  {"%d%%", 7.9f, "7%"},     {"<%-4.0f>", 3.0f, "<3   >"},
        {"%d", 1e30f, "2000000000"}, {"%n", 1.0f, nullptr},    {"%*f", 1.0f, nullptr},
        {"%f%f", 1.0f, nullptr},     {"%s", 1.0f, nullptr},    {"%ld", 1.0f, nullptr},
        {"%99999f", 1.0f, nullptr},  {"%.99f", 1.0f, nullptr}, {"mb", 1.0f, nullptr},
        {"%", 1.0f, nullptr},        {"%z", 1.0f, nullptr},    {"%2$f", 1.0f, nullptr},
    };
    for (const auto &c : cases) {
        std::string text = "kept";
        EXPECT_EQ(FMT_number_z(c.format, c.value, &text), c.text != nullptr) << c.format;
        EXPECT_EQ(text, c.text ? c.text : "kept");
    }
    std::string longest;
    EXPECT_TRUE(FMT_number("%60.20f", -3e38f, &longest));
    EXPECT_EQ(longest.size(), 61u);
}

TEST_F(StationTest, TypesDrawTheirMarks) {
    scratch.write("wx.smb", "ra\n0,0\n1,1\nL\n$\n");
    constexpr float M = MISSING_F;
    const struct {
        int type;
        const char *text;
        float value, value2;
        const char *format, *picture;
    } cases[] = {
        {VAR_VALUE, "", 41.6f, M, "", "42@0,0 23"},
        {VAR_VALUE, "*", M, M, "ur", "*@48,80 13"},
        {VAR_VALUE, "", M, M, "", ""},
        {VAR_VALUE, "", 0.5f, M, "fm=%z.1f:ll:sc=2", ".5@-96,-160 33"},
        {0, "", 3.0f, M, "fm=%n", "3@0,0 23"},
        {VAR_TEXT, "KTLX", 3.0f, M, "xy=-1 2:ta=rb", "KTLX@-48,160 35"},
        {VAR_TEXT, "a", M, M, "value:tx=fixed:xy=1,2", "fixed@0,0 23"},
        {VAR_INTEGER, "", -2.7f, M, "", "-2@0,0 23"},
        {VAR_MARK, "star", M, M, "", "m3"},
        {VAR_TEXT, "a", M, M, "mk=dot", "m8"},
        {VAR_TEXT, "", M, M, "mk=dot", ""},
        {VAR_TEXT, "", 1.0f, M, "mk=1001", "o40"},
        {VAR_CLOUD, "8", M, M, "", "O40o40"},
        {VAR_WIND_BARB, "", 90.0f, 5.0f, "", "[0,0 200,0][176,0 188,-50]"},
        {VAR_WIND_BARB, "", M, 5.0f, "", ""},
        {VAR_WIND_BARB, "", M, 0.0f, "", "O12o12"},
        {VAR_CIRCLE_BARB, "", M, 0.0f, "", "o52"},
        {VAR_CIRCLE_BARB, "", 90.0f, 2.0f, "", "[40,0 200,0]"},
        {VAR_DOT_BARB, "", 90.0f, 2.0f, "", "O12o12[12,0 200,0]"},
        {VAR_DOT_BARB, "", M, 0.0f, "", "O12o12o24"},
        {VAR_DOT_BARB, "", 90.0f, M, "", ""},
        {VAR_ARROW, "", 270.0f, 54.0f, "", "[0,0 100,0][100,0 80,20][100,0 80,-20]"},
        {VAR_ARROW, "", 270.0f, 0.0f, "", ""},
        {VAR_TRACK, "", M, 10.0f, "", ""},
        {VAR_TRACK, "", 270.0f, 54.0f, "sc=.1",
         "[0,0 200,0][0,8 0,-8][50,8 50,-8][100,8 100,-8][150,8 150,-8][200,0 192,8][200,0 "
         "192,-8]"},
        {VAR_SYMBOL, "rain", M, M, "", "[-60,-60 60,60]"},
        {VAR_SYMBOL, "snow", M, M, "", ""},
        {VAR_LINE, "", 41.0f, -99.0f, "", "[0,0 100,100]"},
        {VAR_LINE, "pre", M, M, "", ""},
        {VAR_TEXT, "a", 5.0f, M, "mn=2:mx=4", ""},
        {VAR_TEXT, "a", M, M, "mn=2:mx=4", "a@0,0 23"},
        {VAR_TEXT, "a", M, M, "co=off", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::to_string(c.type) + " " + c.text + " " + c.format);
        EXPECT_EQ(draw(c.type, c.text, c.value, c.value2, c.format), c.picture);
    }
}

TEST_F(StationTest, SettingsOfTheUser) {
    const struct {
        const char *why, *resource, *value, *picture;
    } cases[] = {
        {"an old habit", "plot_param", "ur", "7@-48,80 33"},
        {"a place in steps", "plot_param", "skip=3,xy=2:-1,yba", "7@96,-80 13"},
        {"a format", "plot_format", "ur:fm=%.1f", "7.0@48,80 13"},
        {"a type", "plot_format", "text", "seven@0,0 23"},
        {"a fixed text", "plot_param", "text=T", "T@0,0 23"},
        {"a marker", "plot_param", "mark=sqr", "m6"},
        {"a sky circle", "plot_param", "mark=cld", "o40"},
        {"no data", "draw", "-data", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        RES_reset();
        RES_set(c.resource, c.value);
        DRAW_parse(RES_get("draw"));
        EXPECT_EQ(draw(0, "seven", 7.0f, MISSING_F, ""), c.picture);
    }
    DRAW_reset();
    PAR_set(PAR_PLOT_TYPE, PLOT_NONE);
    EXPECT_EQ(PLOT_begin(1.0f, nullptr), -1);
    EXPECT_EQ(draw(0, "seven", 7.0f, MISSING_F, ""), "");
}

TEST_F(StationTest, LevelsColourTheValues) {
    RES_set("color_fill", "0:green,10:blue,20:off");
    const struct {
        int type;
        float value, value2;
        const char *format;
        int color; // -1 for nothing
    } cases[] = {
        {VAR_VALUE, 5.0f, MISSING_F, "", 3},      {VAR_VALUE, 15.0f, MISSING_F, "", 4},
        {VAR_VALUE, 25.0f, MISSING_F, "", -1},    {VAR_VALUE, 25.0f, MISSING_F, "co=red", 2},
        {VAR_VALUE, MISSING_F, MISSING_F, "", 2}, {VAR_WIND_BARB, 5.0f, 15.0f, "", 4},
    };
    for (const auto &c : cases) {
        const std::string shown = draw(c.type, "t", c.value, c.value2, c.format);
        EXPECT_EQ(shown.empty() ? -1 : gstate().text.color, c.color) << c.value;
    }
    RES_set("con_base", ">2,<8");
    begin();
    EXPECT_EQ(page_list(CONT_get_base(), CONT_state()->con_min, CONT_state()->con_max), "2 2 8");
}

TEST_F(StationTest, PointsAreJoined) {
    const auto move = [&](float x, const char *text) {
        point.x = kX + x;
        point.text = text;
        PLOT_point(&point);
    };
    RES_set("plot_param", "line");
    begin();
    for (const float x : {0.0f, 1.0f, 1.0f, 3.0f})
        move(x, "");
    EXPECT_EQ(picture(), "[0,0 100,0][100,0 300,0]");
    RES_reset();
    begin();
    point.type = VAR_LINE;
    move(0, "post");
    move(0, "post");
    move(2, "pre");
    move(3, "bar");
    EXPECT_EQ(picture(), "[0,0 200,0][0,0 200,0][300,0 300,-4000]");
}

TEST_F(StationTest, FilesOfStations) {
    scratch.write("sao.cty", "Norman OK US KOUN 2 40.00 -98.00 360 72357\n"
                             "Far OK US KFAR 7 41.00 -98.00 360 72358\n");
    scratch.write("s.raw", "QRARAW\nSurface 2016Z 20 MAY 13\n!m\nid lat lon\n"
                           "temp:T:value:ul\nsky:S:cloud\n$\n"
                           "KOKC 40.0 -100.0 29 8\nKOUN - - 21 -\nKFAR - - 22 0\nKXXX - - 23 0\n"
                           "KICT 41.0 -100.0 - 0\n");
    const struct {
        const char *name, *param, *identifier, *picture;
    } cases[] = {
        {"s.raw", nullptr, nullptr, "29@-48,80 33|21@152,80 33O40o40o140"},
        {"s.raw:temp:text:lr", nullptr, nullptr, "29@-48,80 33|21@152,80 33"},
        {"s.raw:temp:sc=2", nullptr, nullptr, "29@-96,160 33|21@104,160 33"},
        {"s.raw:temp", "skip=2", nullptr, "21@152,80 33"},
        {"s.raw:temp", nullptr, "ST=OK", "29@-48,80 33|21@152,80 33|22@152,180 33"},
        {"s.raw:2:cc", nullptr, nullptr, "KOKC@0,0 23|KOUN@200,0 23|KICT@0,100 23"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        RES_reset();
        RES_set("file_path", scratch.dir.c_str());
        if (c.param)
            RES_set("plot_param", c.param);
        if (c.identifier)
            RES_set("identifier", c.identifier);
        drawn = Drawn{};
        EXPECT_EQ(PLOT_file(c.name, 0), 0);
        EXPECT_EQ(picture(), c.picture);
    }
    EXPECT_EQ(page_list(PLOT_format()->least, PLOT_format()->greatest), "M M");

    RES_set("identifier", "ST=OK");
    drawn = Drawn{};
    EXPECT_EQ(PLOT_file("s.raw:temp", 1), 0);
    EXPECT_EQ(picture(), "21@152,80 33|22@152,180 33");
    drawn = Drawn{};
    PLT_labels();
    EXPECT_EQ(drawn.words(), "Surface 2016Z 20 MAY 13-temp|2016Z 20 MAY 13");

    const std::string made = scratch.path("made");
    RES_set("file_path", nullptr);
    scratch.write("command.raw", "QRARAW\nt\nf\nKOKC 40 -100 1:symb:sf=|>" + made + "\n");
    EXPECT_EQ(PLOT_file(scratch.path("command.raw").c_str(), 0), 0);
    EXPECT_FALSE(std::filesystem::exists(made));
    RES_set("file_path", scratch.dir.c_str());

    MSG_set_levels("none");
    scratch.write("bad.raw", "no raw file\n");
    for (const char *name : {"none.raw", "bad.raw", "s.raw:5", ""})
        EXPECT_EQ(PLOT_file(name, 0), -1) << name;
}
