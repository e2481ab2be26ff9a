#include "kernel/device_hpgl.h"

#include "kernel/colors.h"
#include "kernel/document.h"
#include "kernel/number_writer.h"
#include "kernel/paper.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/truncate.h"
#include "kernel/workstation.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {
constexpr Paper kPaper = {10.5f, 8.0f};  // inches, lying
constexpr float kRollHeight = 23.5f;     // inches, of paper from a roll
constexpr float kMargin = 0.5f;          // inches, both sides together
constexpr float kMostPenWidth = 1000.0f; // millimetres
constexpr double kUnitsPerInch = 1015.0;
constexpr double kUnitsPerPixel = 10.15; // of a screen
constexpr int kOffset = 10;              // units, of the drawing on the paper

constexpr const char *kTargetVariables[] = {"qrahp_out"};
constexpr const char *kGeometryVariables[] = {"qrahp_geometry"};

/* How the plot is wrapped for a laser printer. */
enum Wrapper { WRAP_NONE, WRAP_PCL, WRAP_PCL_TURNED };

/* What the plotter was last told, and the wrapper.  Restored at each opening. */
struct HpPlot {
    int wrapper = WRAP_PCL;
    float velocity = 0.0f; // shade of the pen
    float width = 1.0f;    // before pen_width
    int type = 1;
};

struct HpglState {
    int rotation = 0;       // degrees
    float pen_width = 0.2f; // millimetres to a line width of 1
    float fill = 0.0f;      // last grey of an area, also over openings
    Paper paper;
    HpPlot plot;
};
constinit HpglState hp;
Document doc;

/* A word of the device text.  What is set up once for a printer counts in the environment alone. */
struct HpWord {
    const char *name;
    size_t match; // leading characters compared; 0 compares the whole word
    bool preset;  // in the environment alone
    void (*act)(const char *value);
};
constexpr HpWord kWords[] = {
    {"pcl", 0, false, [](const char *) { hp.plot.wrapper = WRAP_PCL; }},
    {"nopcl", 0, true, [](const char *) { hp.plot.wrapper = WRAP_NONE; }},
    {"lj", 0, true, [](const char *) { hp.plot.wrapper = WRAP_PCL_TURNED; }},
    {"port", 0, false, [](const char *) { hp.rotation = 90; }},
    {"land", 0, false, [](const char *) { hp.rotation = 0; }},
    {"lwidth", 6, false,
     [](const char *value) {
         const float width = strtof(value, nullptr);
         if (width >= 0.0f && width <= kMostPenWidth)
             hp.pen_width = width;
     }},
    {"rot", 3, false, [](const char *value) { hp.rotation = atoi(value); }},
    {"roll", 4, true,
     [](const char *value) { gpaper_size(strtof(value, nullptr), kRollHeight, &hp.paper); }},
};

/* Shade and width of the print pens 500 to 508: three shades, in each three widths. */
constexpr int kFirstPen = 500;
constexpr struct {
    float gray;
    const char *text;
} kPenShades[] = {{0.0f, "SV;\n"}, {1.0f, "SV1,0;\n"}, {0.7f, "SV1,30;\n"}};
constexpr int kPenWidths[] = {1, 2, 4};

constexpr const char *kLineTypes[] = {
    nullptr, "LT;\n", "LT2,5,1;\n", "LT5,8,1;\n", "LT6,10,1;\n", "LT2,1,1;\n",
};

constexpr int kPointsPerLine = 10; // of the file, in a long polyline
} // namespace

/* "%.0f", far faster.  Coordinates end far inside an int. */
static char *put_whole(char *at, float value) {
    if (std::signbit(value))
        *at++ = '-';
    return gput_int(at, int(std::lrint(std::fabs(value))));
}

static void put_point(const char verb[3], float x, float y) {
    static_assert(DOC_ROOM > 2 * NUMBER_ROOM + 4);
    char *at = gdoc_room(&doc);
    memcpy(at, verb, 2);
    at = put_whole(at + 2, x);
    *at++ = ',';
    at = put_whole(at, y);
    *at++ = ';';
    gdoc_took(&doc, at);
}

static void ghp_pen_up(float x, float y) { put_point("PU", x, y); }
static void ghp_pen_down(float x, float y) { put_point("PD", x, y); }

static void ghp_pen_up_world(Point p) { ghp_pen_up(gworld_to_pt_x(p.x), gworld_to_pt_y(p.y)); }
static void ghp_pen_down_world(Point p) { ghp_pen_down(gworld_to_pt_x(p.x), gworld_to_pt_y(p.y)); }

/* Shade of lines, markers and text: black, but for the white and the grey print pens. */
static void ghp_velocity(int index) {
    const auto &shade = kPenShades[gis_pen(index) ? (index - kFirstPen) / 3 : 0];
    if (hp.plot.velocity != shade.gray)
        gdoc_text(&doc, shade.text);
    hp.plot.velocity = shade.gray;
}

/* Shade of areas.  Black areas for a printer without shades say so each time. */
static void ghp_fill_type(int index) {
    if (gstate().fill_black) {
        gdoc_text(&doc, "FT1;\n");
        hp.fill = 0.0f;
        return;
    }
    const float gray = index == -1 ? 1.0f : gpaper_gray(index);
    if (gray == hp.fill)
        return;
    gdoc_printf(&doc, "FT10,%.0f;\n", double(100.0f - gray * 100.0f));
    hp.fill = gray;
}

static void ghp_width(float width, int index) {
    const int pen = gis_pen(index) ? kPenWidths[(index - kFirstPen) % 3] : 1;
    const float factor = float(pen > 1 ? pen : gstate().line_factor);
    const float wanted = factor * (width == 0.0f ? 1.0f : width);
    if (wanted == hp.plot.width)
        return;
    hp.plot.width = wanted;
    gdoc_printf(&doc, "PW%.1f;\n", double(wanted * hp.pen_width));
}

/* A type without a pattern leaves the line as it is. */
static void ghp_line_type(int type) {
    if (type == hp.plot.type)
        return;
    hp.plot.type = type;
    if (type >= 0 && type < int(std::size(kLineTypes)) && kLineTypes[type])
        gdoc_text(&doc, kLineTypes[type]);
}

/* The pen of a line, a marker or a text. */
static void set_pen(float width, int color, int type) {
    ghp_width(width, color);
    ghp_velocity(color);
    ghp_line_type(type);
}

/* One word of the device text.  The first row that fits acts; an unknown word is ignored, and so
 * is a value that is not there. */
static void ghp_word(const char *word, bool preset) {
    if (gpaper_word(word, &hp.paper))
        return;
    for (const HpWord &w : kWords) {
        if (w.match ? STR_ncasecmp(word, w.name, w.match) : STR_casecmp(word, w.name))
            continue;
        if (w.preset && !preset)
            return;
        if (w.match == 0)
            w.act("");
        else if (strlen(word) > w.match + 1)
            w.act(word + w.match + 1); // behind any one separator
        return;
    }
}

static void ghp_reset() { hp.plot = HpPlot{}; }

static void ghp_set_paper() {
    KernelState &kern = gstate();
    kern.ws_width = gtrunc((double(hp.paper.width) - kMargin) * kUnitsPerInch);
    kern.ws_height = gtrunc((double(hp.paper.height) - kMargin) * kUnitsPerInch);
    kern.ws_x = kOffset;
    kern.ws_y = kOffset;
}

static void ghp_prolog() {
    if (!doc.append) {
        if (hp.plot.wrapper != WRAP_NONE)
            gdoc_text(&doc, "\033E\033%1B\033&l1O\n"); // reset, plotter commands, lying
        gdoc_text(&doc, "IN;SP1;PA;\n");
        if (hp.plot.wrapper == WRAP_PCL_TURNED)
            gdoc_text(&doc, "RO90;\n");
        if (hp.rotation == 90 || hp.rotation == 180 || hp.rotation == 270)
            gdoc_printf(&doc, "RO%d;\n", hp.rotation);
    }
    gdoc_printf(&doc, "PW%.1f;SV;LT;\n", double(hp.pen_width));
}

static int ghp_trailer() {
    if (!doc.file)
        return -1;
    if (!doc.append) {
        gdoc_text(&doc, "SP;PG;\n");
        if (hp.plot.wrapper != WRAP_NONE)
            gdoc_text(&doc, "\033%0A\033E"); // the printer's own commands again, and reset
    }
    gstate().incomplete = gdoc_close(&doc) == 0;
    if (gstate().incomplete)
        MSG_print(MSG_ERROR, "ghp_trailer: Write error, document is incomplete: %s\n",
                  doc.name.c_str());
    else
        MSG_print(MSG_MESS, "Created HPGL file\n");
    return 0;
}

static int hp_open(const char *connection) {
    gstate().depth = 10;
    const std::string target = gpaper_target(connection, kTargetVariables, "qra.hpgl");
    if (!gdoc_open(&doc, target.c_str()))
        return gerror("gopen_ws", "unable to open HPGL file\n");
    hp.paper = kPaper;
    ghp_reset();
    gpaper_words(
        connection, "qrahp_param", [](const char *word) { ghp_word(word, true); },
        [](const char *word) { ghp_word(word, false); });
    ghp_set_paper();
    gpaper_geometry(kGeometryVariables, kUnitsPerPixel, kOffset, OffsetForm::Plus);
    ghp_prolog();
    return 0;
}

/* A tenth of a unit around the viewport, so that lines on its edge show in full. */
static void hp_clip() {
    float edge[4];
    gclip_points(edge);
    gdoc_printf(&doc, "IW %.0f,%.0f,%.0f,%.0f;\n", double(edge[0]) - 0.1, double(edge[2]) - 0.1,
                double(edge[1]) + 0.1, double(edge[3]) + 0.1);
}

static void hp_polyline(int n, const Point *points) {
    const LineState &line = gstate().line;
    set_pen(line.width, line.color, line.type);
    ghp_pen_up_world(points[0]);
    for (int i = 1; i < n; i++) {
        ghp_pen_down_world(points[i]);
        if (i % kPointsPerLine == kPointsPerLine - 1)
            gdoc_text(&doc, "\n");
    }
    gdoc_text(&doc, "\n");
}

/* Areas with a pattern come out in their shade. */
static void hp_fill(int n, const Point *points) {
    ghp_fill_type(gstate().fill.color);
    ghp_pen_up_world(points[0]);
    gdoc_text(&doc, "PM0;");
    for (int i = 1; i < n; i++)
        ghp_pen_down_world(points[i]);
    gdoc_text(&doc, "PM1;PM2;FP;\n");
}

static void hp_stroke(int n, const Point *points) {
    ghp_pen_up(points[0].x, points[0].y);
    for (int i = 1; i < n; i++)
        ghp_pen_down(points[i].x, points[i].y);
    gdoc_text(&doc, "\n");
}

static void hp_marker_begin(int) {
    const MarkerState &marker = gstate().marker;
    set_pen(marker.width, marker.color, 1);
}

static void hp_text_begin(Point, const char *) {
    const TextState &text = gstate().text;
    set_pen(text.width, text.color, 1);
}

static void hp_glyph_flush(GlyphFlush why, Point) {
    if (why != GlyphFlush::Lift)
        gdoc_text(&doc, "\n");
}

static void hp_reset() {
    gdoc_close(&doc);
    hp = HpglState{};
}

const Device kHpglDevice = {
    .name = "HPGL",
    .setup_stage = 3,
    .marker_scale = 10.15,
    .open = hp_open,
    .close = [] { ghp_trailer(); },
    .reset = hp_reset,
    .clip = hp_clip,
    .color = gpaper_set_gray,
    .polyline = hp_polyline, // brings width, shade and line type up to date first
    .fill = hp_fill,
    .marker_begin = hp_marker_begin,
    .stroke = hp_stroke,
    .text_begin = hp_text_begin,
    .glyph_move = [](Point to) { ghp_pen_up(to.x, to.y); },
    .glyph_draw = [](Point to) { ghp_pen_down(to.x, to.y); },
    .glyph_flush = hp_glyph_flush,
};
