/* Values at places: formats, what each type draws, and files of stations. */
#include "plot/station_plot.h"

#include "plot/number_format.h"
#include "plot/raw_file.h"
#include "plot/station_file.h"
#include "plot/symbol_file.h"
#include "shell/variables.h"
#include "tests/plot/page_fixture.h"

namespace {
constexpr float M = MISSING_F;
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

    static void begin() {
        PlotAttr attr;
        ATTR_parse("red", &attr);
        PLOT_clear_lines();
        PLOT_begin(1.0f, &attr);
        drawn = Drawn{};
    }

    /* What was drawn since begin, relative to the place: markers, texts with their alignment,
     * lines; circles as their radius, "O" when filled. */
    static std::string picture() {
        std::string all;
        for (const std::string &note : drawn.notes)
            all += note;
        for (DrawnText &text : drawn.texts)
            text.at = {text.at.x - kX, text.at.y - kY};
        all += drawn.words(kParts);
        for (DrawnLine line : drawn.lines) {
            for (Point &p : line.points)
                p = {p.x - kX, p.y - kY};
            const float r = hypotf(line.points[0].x, line.points[0].y);
            Drawn one;
            one.lines = {line};
            all += line.points.size() < 13
                       ? one.shapes(kParts)
                       : (line.filled ? "O" : "o") + std::to_string(std::lround(r * kParts));
        }
        drawn = Drawn{};
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
        const std::string all = picture();
        EXPECT_EQ(result, all.empty() ? -1 : 0);
        return all;
    }
};
} // namespace

TEST_F(StationTest, FormatsOfNumbers) {
    const auto number = [](const char *format, float value) {
        std::string text = "none";
        FMT_number_z(format, value, &text);
        return text;
    };
    EXPECT_EQ(number("%z.1f", 0.5f) + number("%z.1f", -0.5f) + number("%z.0f", 0.0f), ".5-.50");
    EXPECT_EQ(number("<%+05.1f>", 2.0f) + number("%d%%", 7.9f), "<+02.0>7%");
    EXPECT_EQ(number("%60.20f", -3e38f).size() + number("%d", 1e30f).size(), 61u + 10u);
    for (const char *format :
         {"%n", "%*f", "%f%f", "%s", "%ld", "%99999f", "%.99f", "mb", "%", "%z", "%2$f"})
        EXPECT_EQ(number(format, 1.0f), "none") << format;
}

TEST_F(StationTest, TypesDrawTheirMarks) {
    scratch.write("wx.smb", "ra\n0,0\n1,1\nL\n$\n");
    const struct {
        int type;
        const char *text;
        float value, value2;
        const char *format, *picture;
    } cases[] = {
        {VAR_VALUE, "", 41.6f, M, "mn=42", "42@0,0 23"}, // limits are those of the layer
        {VAR_VALUE, "", 0.5f, M, "fm=%z.1f:ll:sc=2", ".5@-96,-160 33"},
        {VAR_VALUE, "", M, M, "", ""},
        {0, "", 3.0f, M, "fm=%n", "3@0,0 23"},
        {VAR_TEXT, "KTLX", 3.0f, M, "xy=-1 2:ta=rb", "KTLX@-48,160 35"},
        {VAR_TEXT, "a", M, M, "value:tx=fixed:xy=1,2:co=off", "fixed@0,0 23"},
        {VAR_MARK, "star", M, M, "", "m3"},
        {VAR_TEXT, "", 1.0f, M, "mk=1001", "o40"},
        {VAR_CLOUD, "8", M, M, "", "O40o40"},
        {VAR_WIND_BARB, "", 90.0f, 5.0f, "", "[0,0 200,0][176,0 188,-50]"},
        {VAR_CIRCLE_BARB, "", M, 0.0f, "", "o52"},
        {VAR_DOT_BARB, "", 90.0f, 2.0f, "", "O12o12[12,0 200,0]"},
        {VAR_DOT_BARB, "", M, 0.0f, "", "O12o12o24"},
        {VAR_ARROW, "", 270.0f, 54.0f, "", "[0,0 100,0][100,0 80,20][100,0 80,-20]"},
        {VAR_TRACK, "", 270.0f, 54.0f, "sc=.1",
         "[0,0 200,0][0,8 0,-8][50,8 50,-8][100,8 100,-8][150,8 150,-8][200,0 192,8]"
         "[200,0 192,-8]"},
        {VAR_SYMBOL, "rain", M, M, "", "[-60,-60 60,60]"},
        {VAR_LINE, "", 41.0f, -99.0f, "", "[0,0 100,100]"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(draw(c.type, c.text, c.value, c.value2, c.format), c.picture)
            << c.type << " " << c.text << " " << c.format;
}

TEST_F(StationTest, SettingsOfTheUser) {
    const auto with = [&](const char *resource, const char *value) {
        RES_reset();
        RES_set(resource, value);
        DRAW_parse(RES_get("draw"));
        return draw(0, "seven", 7.0f, M, "");
    };
    EXPECT_EQ(with("plot_param", "ur"), "7@-48,80 33") << "an old habit";
    EXPECT_EQ(with("plot_param", "skip=3,xy=2:-1,yba"), "7@96,-80 13");
    EXPECT_EQ(with("plot_format", "ur:fm=%.1f:ta=rb"), "7.0@48,80 15");
    EXPECT_EQ(with("plot_format", "mn=8") + with("plot_param", "mark=cld"), "o40");
    EXPECT_EQ(with("plot_param", "text=T"), "T@0,0 23");
    EXPECT_EQ(with("draw", "-data"), "");
}

TEST_F(StationTest, LevelsColourTheValues) {
    RES_set("color_fill", "0:green,10:blue,20:off");
    const auto color = [&](int type, float value, float value2, const char *format) {
        return draw(type, "t", value, value2, format).empty() ? -1 : gstate().text.color;
    };
    EXPECT_EQ(color(VAR_VALUE, 5.0f, M, ""), 3);
    EXPECT_EQ(color(VAR_VALUE, 25.0f, M, ""), -1);
    EXPECT_EQ(color(VAR_VALUE, 25.0f, M, "co=red"), 2);
    EXPECT_EQ(color(VAR_WIND_BARB, 5.0f, 15.0f, ""), 4);
    RES_set("con_base", ">2,<8");
    begin();
    EXPECT_EQ(page_list(CONT_get_base(), CONT_state()->con_min, CONT_state()->con_max), "2 2 8");
}

TEST_F(StationTest, PointsAreJoined) {
    const auto move = [&](float x, const char *text, float value = M) {
        point.x = kX + x;
        point.text = text;
        point.value = value;
        PLOT_point(&point);
    };
    RES_set("plot_param", "line");
    begin();
    for (const float x : {0.0f, 1.0f, 1.0f, 3.0f})
        move(x, "");
    EXPECT_EQ(picture(), "[0,0 100,0][100,0 300,0]");
    RES_reset();
    RES_set("plot_format", "mx=5");
    begin();
    point.type = VAR_LINE;
    move(0, "post");
    move(0, "post");
    move(2, "", 9.0f); // out of range, but where the line goes
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
    const auto plot = [&](const char *name, const char *resource, const char *value, int labels) {
        RES_reset();
        RES_set("file_path", scratch.dir.c_str());
        RES_set(resource, value);
        EXPECT_EQ(PLOT_file(name, labels), 0);
        return picture();
    };
    EXPECT_EQ(plot("s.raw", "", "", 0), "29@-48,80 33|21@152,80 33O40o40o140");
    EXPECT_EQ(plot("s.raw:temp:sc=2", "", "", 0), "29@-96,160 33|21@104,160 33");
    EXPECT_EQ(plot("s.raw:temp", "plot_param", "skip=2", 0), "21@152,80 33");
    EXPECT_EQ(plot("s.raw:2", "plot_format", "ta=lb", 0),
              "KOKC@0,0 15|KOUN@200,0 15|KICT@0,100 15");
    EXPECT_EQ(plot("s.raw:temp", "identifier", "ST=OK", 0),
              "29@-48,80 33|21@152,80 33|22@152,180 33");
    EXPECT_EQ(plot("s.raw:temp", "identifier", "ST=OK", 1), "21@152,80 33|22@152,180 33");
    PLT_labels();
    EXPECT_EQ(drawn.words(), "Surface 2016Z 20 MAY 13-temp|2016Z 20 MAY 13");

    drawn = Drawn{};
    scratch.write("dot.smb", "dot\n0,0\n1,1\nL\n$\n");
    scratch.write("path.raw", "QRARAW\nt\nf\nA 40 -100 dot:symb:sf=" + scratch.path("dot.smb"));
    MSG_set_levels("none");
    EXPECT_EQ(plot("path.raw", "", "", 0), "") << "a path out of a data file";
    scratch.write("bad.raw", "no raw file\n");
    for (const char *name : {"none.raw", "bad.raw", "s.raw:5", ""})
        EXPECT_EQ(PLOT_file(name, 0), -1) << name;
}

/* Thirty records by their number; every third is named. */
TEST_F(StationTest, RowsOfCategories) {
    Domain row = page_latlon(0.0f, 0.0f, 30.0f);
    row.proj = PROJ_CATEGORY;
    row.nx = row.ny = 30;
    row.dy = 30.0f;
    open(row);
    scratch.write("c.raw", "QRARAW\nt\nf\nA - - 1\nB 7 5 2\nC - - 4 3\nD - - -\n");
    EXPECT_EQ(PLOT_file("c.raw", 0), 0);
    EXPECT_EQ(drawn.words(1.0f), "1@1,1 23|2@2,5 23|C@0,0 22|4@3,4 23|3@3,3 23");
    EXPECT_EQ(drawn.texts[2].transform, 1);
}
