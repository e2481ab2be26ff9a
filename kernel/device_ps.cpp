#include "kernel/device_ps.h"

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

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {
constexpr Paper kLetter = {11.0f, 8.5f}; // inches, lying
constexpr float kMargin = 0.5f;          // inches, both sides together
constexpr float kLeastScale = 0.0051f;   // a smaller one would be written as 0, and leave no page
constexpr double kPointsPerInch = 72.0;
constexpr double kPointsPerPixel = 0.72; // of a screen

constexpr const char *kTargetVariables[] = {"qraps_print", "PSPRINT"};
constexpr const char *kGeometryVariables[] = {"qraps_geometry", "PSGEOMETRY"};

/* What the page was last told.  Restored at each opening. */
struct PsPen {
    float gray = 0.0f; // -1 while a colour is set
    int index = -1;
    float width = 1.0f; // before line_scale
};

enum PsForm {
    PS_PAGE,
    PS_EPS,  // a page with the header of a picture
    PS_EPSF, // a picture that fills its box, for another document
};

struct PsState {
    int color = 0; // 1 colour, 0 grey
    PsForm form = PS_PAGE;
    bool portrait = false;
    float scale = 1.0f;
    float line_scale = 1.0f;
    Paper paper;
    PsPen pen;
    int dash = 1; // last line type written, also over openings
};
constinit PsState ps;
Document doc;

struct PsWord {
    const char *name;
    size_t match; // leading characters compared; 0 compares the whole word
    void (*act)(const char *value);
};
constexpr PsWord kWords[] = {
    {"port", 0, [](const char *) { ps.portrait = true; }},
    {"land", 0, [](const char *) { ps.portrait = false; }},
    {"eps", 0, [](const char *) { ps.form = PS_EPS; }},
    {"epsf", 0, [](const char *) { ps.form = PS_EPSF; }},
    {"noeps", 0, [](const char *) { ps.form = PS_PAGE; }},
    {"color", 0,
     [](const char *) {
         ps.color = 1;
         gset_inverse(1);
     }},
    {"gray", 0, [](const char *) { ps.color = 0; }},
    {"scale", 5,
     [](const char *value) {
         const float scale = strtof(value, nullptr);
         if (std::isfinite(scale) && std::fabs(scale) >= kLeastScale)
             ps.scale = scale;
     }},
    {"lwidth", 6, [](const char *value) { ps.line_scale = float(atoi(value)); }}, // whole numbers
};

/* Grey and width of the print pens 500 to 508: three greys, in each three widths. */
constexpr int kFirstPen = 500;
constexpr struct {
    float gray;
    const char *text;
} kPenGrays[] = {{0.0f, "0 setgray\n"}, {1.0f, "1 setgray\n"}, {0.7f, ".7 setgray\n"}};
constexpr int kPenWidths[] = {1, 2, 4};

constexpr const char *kDashes[] = {
    nullptr,
    "[] 0 setdash\n",
    "[6] 0 setdash\n",
    "[3 6] 0 setdash\n",
    "[6 6 3 6] 0 setdash\n",
    "[2] 0 setdash\n",
};

constexpr const char kDefinitions[] = "/inch {72 mul} def\n"
                                      "/dot {.33 mul} def\n"
                                      "/mv {moveto} def\n"
                                      "/ln {lineto} def\n"
                                      "/lw {setlinewidth} def\n"
                                      "/np {newpath} def\n"
                                      "/cp {closepath} def\n";
} // namespace

/* One coordinate pair and its operator. */
static void put_point(float x, float y, const char verb[5]) {
    static_assert(DOC_ROOM > 2 * NUMBER_ROOM + 5);
    char *at = gput_fixed2(gdoc_room(&doc), x);
    *at++ = ' ';
    at = gput_fixed2(at, y);
    memcpy(at, verb, 4);
    gdoc_took(&doc, at + 4);
}

static void gps_move(float x, float y) { put_point(x, y, " mv\n"); }
static void gps_line(float x, float y) { put_point(x, y, " ln\n"); }

static void gps_move_world(float x, float y) { gps_move(gworld_to_pt_x(x), gworld_to_pt_y(y)); }
static void gps_line_world(float x, float y) { gps_line(gworld_to_pt_x(x), gworld_to_pt_y(y)); }

/* The comment in front of a primitive: "%%PL:" and the number of points. */
static void put_count(const char prefix[6], int count) {
    char *at = gdoc_room(&doc);
    memcpy(at, prefix, 5);
    at = gput_int(at + 5, count);
    *at++ = '\n';
    gdoc_took(&doc, at);
}

static void put_gray(float gray, const char *text) {
    if (ps.pen.gray != gray)
        gdoc_text(&doc, text);
    ps.pen.gray = gray;
}

static void put_color(int index) {
    if (index == ps.pen.index && ps.pen.gray < 0.0f)
        return;
    float r, g, b;
    gget_rgb(index, &r, &g, &b);
    char *at = gput_fixed2(gdoc_room(&doc), r);
    *at++ = ' ';
    at = gput_fixed2(at, g);
    *at++ = ' ';
    at = gput_fixed2(at, b);
    gdoc_took(&doc, at);
    gdoc_text(&doc, " setrgbcolor\n");
    ps.pen.gray = -1.0f;
    ps.pen.index = index;
}

/* Line, marker and text colour.  Without colour every stroke is black. */
static void gps_stroke_color(int index) {
    if (gis_pen(index)) {
        const auto &pen = kPenGrays[(index - kFirstPen) / 3];
        put_gray(pen.gray, pen.text);
    } else if (ps.color) {
        put_color(index);
    } else {
        put_gray(0.0f, "0 setgray\n");
    }
}

/* Area colour. */
static void gps_fill_color(int index) {
    if (ps.color) {
        put_color(index);
        return;
    }
    if (gstate().fill_black) {
        gdoc_text(&doc, "0 setgray\n");
        ps.pen.gray = 0.0f;
        return;
    }
    if (index == -1) {
        put_gray(1.0f, "1 setgray\n");
        return;
    }
    const float gray = gpaper_gray(index);
    if (gray == ps.pen.gray)
        return;
    gdoc_took(&doc, gput_fixed3(gdoc_room(&doc), gray));
    gdoc_text(&doc, " setgray\n");
    ps.pen.gray = gray;
}

static void gps_width(float width, int index) {
    const int pen = gis_pen(index) ? kPenWidths[(index - kFirstPen) % 3] : 1;
    const float factor = pen > 1 ? float(pen) : float(gstate().line_factor);
    if (factor * width == ps.pen.width)
        return;
    ps.pen.width = factor * width;
    const float drawn = factor * ps.line_scale * width;
    if (pen > 1)
        gdoc_printf(&doc, "%d dot lw\n", gtrunc(double(drawn)));
    else
        gdoc_printf(&doc, "%2.1f dot lw\n", double(drawn));
}

static void gps_dash(int type) {
    if (type == ps.dash)
        return;
    ps.dash = type;
    if (type >= 0 && type < int(std::size(kDashes)) && kDashes[type])
        gdoc_text(&doc, kDashes[type]);
}

/* The pen of a line, a marker or a text. */
static void set_pen(float width, int color, int type) {
    gps_width(width, color);
    gps_stroke_color(color);
    gps_dash(type);
}

static int gps_open(const char *target) {
    if (!gdoc_open(&doc, target))
        return 0;
    if (getenv("PSCOLOR")) {
        ps.color = 1;
        gset_inverse(1);
    }
    return 1;
}

static void gps_reset() { ps.pen = PsPen{}; }

/* One word of the device text.  The first row that fits acts; an unknown word is ignored, and so
 * is a value that is not there. */
static void gps_word(const char *word) {
    if (gpaper_word(word, &ps.paper))
        return;
    for (const PsWord &w : kWords) {
        if (w.match ? STR_ncasecmp(word, w.name, w.match) : STR_casecmp(word, w.name))
            continue;
        if (w.match == 0)
            w.act("");
        else if (strlen(word) > w.match + 1)
            w.act(word + w.match + 1); // behind any one separator
        return;
    }
}

/* Paper lies on its long side; a standing page turns it, unless its size was given as it is. */
static void gps_set_paper() {
    if (ps.portrait && ps.form == PS_PAGE && !ps.paper.given)
        ps.paper = {ps.paper.height, ps.paper.width};
    KernelState &kern = gstate();
    kern.ws_width = gtrunc((double(ps.paper.width) - kMargin) * kPointsPerInch);
    kern.ws_height = gtrunc((double(ps.paper.height) - kMargin) * kPointsPerInch);
    kern.ws_x = 0;
    kern.ws_y = 0;
}

/* The drawing area in points of the document, with room for the strokes on its edge. */
struct PsBox {
    int x0, x1, y0, y1;
};

static PsBox drawing_box() {
    const KernelState &kern = gstate();
    const auto low = [](double a, double b) { return gtrunc(std::floor(std::min(a, b))); };
    const auto high = [](double a, double b) { return gtrunc(std::ceil(std::max(a, b))); };
    // As it is written, to two decimals; what goes behind another document has none.
    const double scale = doc.append ? 1.0 : std::round(double(ps.scale) * 100.0) / 100.0;
    const double x0 = (kern.ws_x - 1) * scale, x1 = (double(kern.ws_x) + kern.ws_width) * scale;
    const double y0 = (kern.ws_y - 1) * scale, y1 = (double(kern.ws_y) + kern.ws_height) * scale;
    return {low(x0, x1), high(x0, x1), low(y0, y1), high(y0, y1)};
}

static void put_bounding_box() {
    if (ps.form == PS_EPS)
        gdoc_text(&doc,
                  ps.portrait ? "%%BoundingBox: 0 0 756 576\n" : "%%BoundingBox: 0 0 576 756\n");
    if (ps.form != PS_EPSF)
        return;
    const PsBox box = drawing_box();
    const int width = box.x1 - box.x0, height = box.y1 - box.y0;
    gdoc_printf(&doc, "%%%%BoundingBox: 0 0 %d %d\n", ps.portrait ? width : height,
                ps.portrait ? height : width);
}

static void put_header() {
    const time_t now = time(nullptr);
    gdoc_text(&doc, ps.form == PS_PAGE ? "%!PS-Adobe-1.0\n" : "%!PS-Adobe-3.0 EPSF-3.0\n");
    put_bounding_box();
    gdoc_text(&doc, "%%Title: QRA Graphics Display: ");
    gdoc_comment(&doc, gget_title());
    gdoc_text(&doc, "\n%%Creator: QRA Postscript Processor-2.0\n");
    gdoc_printf(&doc, "%%%%CreationDate: %s", ctime(&now)); // brings its own newline
    gdoc_text(&doc, "%%EndComments\n%%Postscript initialization\n");
    if (ps.form == PS_PAGE)
        gdoc_text(&doc, "30 dict begin\n/saveobj save def\n");
}

/* Puts the corner of the box at the origin, and keeps the drawing inside. */
static void put_box_placing() {
    const PsBox box = drawing_box();
    if (ps.portrait)
        gdoc_printf(&doc, "%d %d translate\n", -box.x0, -box.y0);
    else
        gdoc_printf(&doc, "90 rotate\n%d %d translate\n", -box.x0, -box.y1);
    gdoc_printf(&doc, "np\n%d %d mv\n%d %d ln\n%d %d ln\n%d %d ln\ncp\nclip\n", box.x0, box.y0,
                box.x0, box.y1, box.x1, box.y1, box.x1, box.y0);
}

/* Puts the origin into the corner of the drawing area. */
static void put_placing() {
    if (ps.form == PS_EPSF)
        return put_box_placing();
    if (ps.portrait) {
        if (ps.form == PS_PAGE)
            gdoc_text(&doc, ".25 inch .25 inch translate\n");
        return;
    }
    gdoc_text(&doc, "90 rotate\n");
    const double height = double(ps.paper.height);
    if (ps.form == PS_EPS)
        gdoc_printf(&doc, "0. inch -%.2f inch translate\n", height);
    else
        gdoc_printf(&doc, ".25 inch -%.2f inch translate\n", height - 0.25);
}

/* What goes behind another document has no header.  It repeats the definitions, which ended with
 * the first page, and turns a page of its own, which the next part finds as it was. */
static void gps_prolog() {
    if (doc.append)
        gdoc_text(&doc, "gsave\n");
    else
        put_header();
    gdoc_text(&doc, kDefinitions);
    put_placing();
    gdoc_text(&doc, ps.color ? "0 0 0 setrgbcolor\n" : "0 setgray\n");
    if (!doc.append)
        gdoc_text(&doc, "2 setlinejoin\n");
    gdoc_text(&doc, "1 dot lw\n[] 0 setdash\n");
    if (!doc.append && ps.scale != 1.0f)
        gdoc_printf(&doc, "%.2f %.2f scale\n", double(ps.scale), double(ps.scale));
    if (ps.form == PS_EPSF)
        gdoc_text(&doc, "gsave\n"); // ps_clip comes back to here
    if (!doc.append)
        gdoc_text(&doc, "%%Begin plot\n");
    gdoc_text(&doc, "%%QRA Plot: ");
    gdoc_comment(&doc, gget_title());
    gdoc_text(&doc, "\n");
}

static void put_trailer() {
    if (ps.form == PS_EPSF)
        gdoc_text(&doc, "grestore\n");
    gdoc_text(&doc, "%%End of plot\n");
    if (doc.append)
        gdoc_text(&doc, "grestore\n");
    else if (ps.form == PS_EPSF)
        gdoc_text(&doc, "showpage\n%%EOF\n");
    else
        gdoc_text(&doc, "saveobj restore\nshowpage\nend\n%%EOF\n");
}

static int gps_trailer() {
    if (!doc.file)
        return -1;
    put_trailer();
    gstate().incomplete = gdoc_close(&doc) == 0;
    if (gstate().incomplete)
        MSG_print(MSG_ERROR, "gps_trailer: Write error, document is incomplete: %s\n",
                  doc.name.c_str());
    else
        MSG_print(MSG_MESS, "Created Postscript file\n");
    return 0;
}

static int ps_open(const char *connection) {
    gstate().depth = 10;
    const std::string target = gpaper_target(connection, kTargetVariables, "qra.ps");
    if (!gps_open(target.c_str()))
        return gerror("gopen_ws", "unable to open postscript file\n");
    ps.paper = kLetter;
    gps_reset();
    gpaper_words(connection, "qraps_param", gps_word);
    gps_set_paper();
    gpaper_geometry(kGeometryVariables, kPointsPerPixel); // the box of a picture follows it
    gps_prolog();
    return 0;
}

static void ps_reset() {
    gdoc_close(&doc);
    ps = PsState{};
    gpaper_reset();
}

static void ps_background() { gset_background(1.0f, 1.0f, 1.0f); }

/* A colour that was never defined has the pixel -1; any other says that it is. */
static void gps_set_gray(int index, float r, float g, float b) {
    gpaper_set_gray(index, r, g, b);
    if (gget_pixel(index) == -1)
        gset_pixel(index, -2);
}

/* The end of a clip.  A picture must leave that of the document around it alone, and comes back to
 * the state behind the prolog. */
static void put_unclip() {
    if (ps.form != PS_EPSF) {
        gdoc_text(&doc, "initclip\n");
        return;
    }
    gdoc_text(&doc, "grestore\ngsave\n");
    gps_reset();
    ps.dash = 1;
}

/* A tenth of a point around the viewport, so that lines on its edge show in full. */
static void ps_clip() {
    put_unclip();
    float edge[4];
    gclip_points(edge);
    const double x0 = double(edge[0]) - 0.1, x1 = double(edge[1]) + 0.1;
    const double y0 = double(edge[2]) - 0.1, y1 = double(edge[3]) + 0.1;
    gdoc_text(&doc, "np\n");
    gdoc_printf(&doc, "%3.2f %3.2f mv\n", x0, y0);
    gdoc_printf(&doc, "%3.2f %3.2f ln\n", x0, y1);
    gdoc_printf(&doc, "%3.2f %3.2f ln\n", x1, y1);
    gdoc_printf(&doc, "%3.2f %3.2f ln\n", x1, y0);
    gdoc_text(&doc, "cp\nclip\n");
}

static void ps_clear_region(const float *rect) {
    gdoc_text(&doc, "%%CLR\nnp\n");
    gps_move_world(rect[0], rect[2]);
    gps_line_world(rect[1], rect[2]);
    gps_line_world(rect[1], rect[3]);
    gps_line_world(rect[0], rect[3]);
    gdoc_text(&doc, "cp\n");
    gps_fill_color(-1);
    gdoc_text(&doc, "fill\n");
}

static void ps_transform(ObjCode what, int, const float *rect) {
    if (what == OBJ_CLEAR_REGION)
        ps_clear_region(rect);
}

static void ps_message(const char *text) {
    gdoc_text(&doc, "%%Message: ");
    gdoc_comment(&doc, text);
    gdoc_text(&doc, "\n");
}

static void ps_polyline(int n, const Point *points) {
    const LineState &line = gstate().line;
    put_count("%%PL:", n);
    set_pen(line.width, line.color, line.type);
    gdoc_text(&doc, "np\n");
    gps_move_world(points[0].x, points[0].y);
    for (int i = 1; i < n; i++)
        gps_line_world(points[i].x, points[i].y);
    gdoc_text(&doc, "stroke\n");
}

/* Areas with a pattern are not drawn on paper. */
static void ps_fill(int n, const Point *points) {
    if (gstate().fill.style != FILL_SOLID)
        return;
    put_count("%%FA:", n);
    gdoc_text(&doc, "np\n");
    gps_move_world(points[0].x, points[0].y);
    for (int i = 1; i < n; i++)
        gps_line_world(points[i].x, points[i].y);
    gdoc_text(&doc, "cp\n");
    gps_fill_color(gstate().fill.color);
    gdoc_text(&doc, "fill\n");
}

static void ps_marker_begin(int n) {
    const MarkerState &marker = gstate().marker;
    put_count("%%PM:", n);
    set_pen(marker.width, marker.color, 1);
}

static void ps_stroke(int n, const Point *points) {
    gdoc_text(&doc, "np\n");
    gps_move(points[0].x, points[0].y);
    for (int i = 1; i < n; i++)
        gps_line(points[i].x, points[i].y);
    gdoc_text(&doc, "stroke\n");
}

static void ps_text_begin(Point at, const char *string) {
    const TextState &text = gstate().text;
    gdoc_printf(&doc, "%%%%TE:%f %f ", double(at.x), double(at.y));
    gdoc_comment(&doc, string);
    gdoc_text(&doc, "\n");
    set_pen(text.width, text.color, 1);
}

static void ps_glyph_flush(GlyphFlush why, Point last) {
    gdoc_text(&doc, "stroke\n");
    if (why == GlyphFlush::End)
        return;
    gdoc_text(&doc, "np\n");
    if (why == GlyphFlush::Full)
        gps_line(last.x, last.y);
}

int gps_set_color_mode(int flag) {
    ps.color = flag;
    return 1;
}

int gps_set_reverse(int flag) {
    gpaper_set_reverse(flag);
    return 1;
}

const Device kPsDevice = {
    .name = "PostScript",
    .setup_stage = 2,
    .zero_width = 1.0f,
    .marker_scale = 0.72,
    .open = ps_open,
    .background = ps_background,
    .close = [] { gps_trailer(); },
    .reset = ps_reset,
    .clip = ps_clip,
    .color = gps_set_gray,
    .transform = ps_transform,
    .message = ps_message,
    .polyline = ps_polyline, // brings width, colour and dash up to date first
    .fill = ps_fill,
    .marker_begin = ps_marker_begin,
    .stroke = ps_stroke,
    .text_begin = ps_text_begin,
    .glyph_begin = [] { gdoc_text(&doc, "np\n"); },
    .glyph_move = [](Point to) { gps_move(to.x, to.y); },
    .glyph_draw = [](Point to) { gps_line(to.x, to.y); },
    .glyph_flush = ps_glyph_flush,
};
