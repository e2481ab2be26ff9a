#include "kernel/device_meta.h"

#include "kernel/document.h"
#include "kernel/meta_binary.h"
#include "kernel/meta_words.h"
#include "kernel/number_writer.h"
#include "kernel/paper.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <algorithm>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {
constexpr int kPageWidth = 1000; // hundredths of an inch: a page of 10 by 8
constexpr int kPageHeight = 800;
constexpr double kUnitsPerGeometry = 100.0; // a geometry is in inches
constexpr const char *kTargetVariable = "qrameta_out";
constexpr int kPerLine = 4; // points
constexpr int kMostBinaryPoints = CGM_MOST / CGM_POINT_ROOM;
static_assert(DOC_ROOM >= 2 * NUMBER_ROOM + 8);

struct MetaState {
    bool binary = false;       // also over openings
    bool dash_written = false; // in the binary form
};
constinit MetaState state;
Document doc;
} // namespace

static bool is_text() { return doc.file && !state.binary; }

static const MetaWord *word_of(ObjCode code) {
    for (const MetaWord &row : kMetaWords)
        if (row.code == code)
            return &row;
    return nullptr;
}

int gmeta_printf(const char *format, ...) {
    if (!is_text())
        return 0;
    va_list args;
    va_start(args, format);
    char *at = gdoc_room(&doc);
    const int length = vsnprintf(at, DOC_ROOM, format, args);
    va_end(args);
    gdoc_took(&doc, at + std::clamp(length, 0, int(DOC_ROOM) - 1));
    return 0;
}

int gmeta_command(int number, int id, int length, int extra) {
    if (!doc.file || !state.binary)
        return -1;
    gdoc_took(&doc, gcgm_command(gdoc_room(&doc), {number, id}, length, extra));
    return 0;
}

static int put_command(CgmCommand command, int length, int extra) {
    return gmeta_command(command.number, command.id, length, extra);
}

/* A place on the page. */
static void put_device_point(Point at) {
    if (doc.file && state.binary)
        gdoc_took(&doc, gcgm_point(gdoc_room(&doc), at));
}

int gmeta_point(float x, float y) {
    put_device_point({gworld_to_pt_x(x), gworld_to_pt_y(y)});
    return 0;
}

FILE *gmeta_open(const char *target) {
    MSG_print(MSG_MESS, "Creating metafile: %s\n", target);
    state.dash_written = false;
    return gdoc_open_quietly(&doc, target) ? doc.file : nullptr;
}

static void put_binary_header() {
    const std::string_view bytes = gcgm_header();
    static_assert(DOC_ROOM >= 100);
    char *at = gdoc_room(&doc);
    gdoc_took(&doc, std::copy(bytes.begin(), bytes.end(), at));
}

int gmeta_header() {
    if (state.binary) {
        put_binary_header();
        return 0;
    }
    const time_t now = time(nullptr);
    gdoc_text(&doc, "QRAMETA\n#Title: QRA Graphics Display: ");
    gdoc_comment(&doc, gget_title());
    gdoc_text(&doc, "\n#Creator: QRA Metafile Processor-1.0\n");
    gmeta_printf("#CreationDate: %s", ctime(&now)); // brings its own newline
    return 0;
}

int gmeta_close() {
    if (!doc.file)
        return -1;
    if (!doc.append)
        put_command(CGM_END_PICTURE, 0, 0);
    gstate().incomplete = gdoc_close(&doc) == 0;
    if (gstate().incomplete)
        MSG_print(MSG_ERROR, "gmeta_close: Write error, document is incomplete: %s\n",
                  doc.name.c_str());
    else
        MSG_print(MSG_MESS, "Created metafile\n");
    return 0;
}

int gset_meta_binary(int flag) {
    state.binary = flag != 0;
    return 0;
}

int gget_meta_binary() { return state.binary; }

/* The words behind the first choose the form; the target is the whole text, these words and all. */
static std::string take_connection(const char *connection) {
    const StrList words(connection, ',');
    for (int i = 1; i < words.count; i++) {
        if (STR_casecmp(words[i], "cgm") == 0)
            state.binary = true;
        if (STR_casecmp(words[i], "qra") == 0)
            state.binary = false;
    }
    if (*connection)
        return connection;
    const char *value = getenv(kTargetVariable);
    return value && *value ? value : state.binary ? "qra.cgm" : "qra.meta";
}

static int meta_open(const char *connection) {
    KernelState &kern = gstate();
    const std::string target = take_connection(connection);
    kern.ws_width = kPageWidth;
    kern.ws_height = kPageHeight;
    kern.ws_x = 0;
    kern.ws_y = 0;
    kern.depth = 10;
    gpaper_geometry({}, kUnitsPerGeometry);
    if (!gmeta_open(target.c_str()))
        return gerror("gopen_ws", "unable to open metafile\n");
    return gmeta_header();
}

static void meta_reset() {
    gdoc_close(&doc);
    state = MetaState{};
}

/* Only the binary form holds clips: two corners of the page. */
static void meta_clip() {
    if (!state.binary)
        return;
    float edge[4];
    gclip_points(edge);
    put_command(CGM_CLIP, 2 * CGM_POINT_ROOM, 0);
    put_device_point({edge[0], edge[2]});
    put_device_point({edge[1], edge[3]});
}

static void meta_color(int index, float r, float g, float b) {
    gmeta_printf("CLR %d %d %f %f %f\n", 1, index, double(r), double(g), double(b));
}

static void meta_change(ObjCode what, double a, double b) {
    const MetaWord *row = word_of(what);
    if (!row)
        return;
    switch (row->form) {
    case MetaForm::Int:
        gmeta_printf("%s %d\n", row->word, int(a));
        break;
    case MetaForm::IntPair:
        gmeta_printf("%s %d %d\n", row->word, int(a), int(b));
        break;
    case MetaForm::Float:
        gmeta_printf("%s %f\n", row->word, a);
        break;
    case MetaForm::FloatPair:
        gmeta_printf("%s %f,%f\n", row->word, a, b);
        break;
    default:
        break;
    }
}

static void put_rect(const char *word, const float *rect) {
    gmeta_printf("%s %f %f %f %f\n", word, double(rect[0]), double(rect[2]), double(rect[1]),
                 double(rect[3]));
}

static void meta_transform(ObjCode what, int n, const float *rect) {
    char words[40];
    if (what == OBJ_CLEAR_REGION)
        return put_rect("CLR_REG", rect);
    const MetaWord *row = word_of(what);
    snprintf(words, sizeof words, "%s %d", row ? row->word : "WS_VP", n);
    if (what == OBJ_SELECT)
        gmeta_printf("%s\n", words);
    else
        put_rect(words, rect);
}

static void meta_message(const char *text) {
    if (!is_text())
        return;
    gdoc_text(&doc, "ME ");
    gdoc_comment(&doc, text);
    gdoc_text(&doc, "\n");
}

static char *put_pair(char *at, Point point) {
    at = gput_fixed6(at, point.x);
    *at++ = ',';
    at = gput_fixed6(at, point.y);
    *at++ = ' ';
    return at;
}

/* A list breaks its line behind every fourth point; for want of one it ends there. */
static void put_points(const char *word, int n, const Point *points, bool break_at_end) {
    if (!is_text())
        return;
    gmeta_printf("%s %d ", word, n);
    for (int i = 0; i < n; i++) {
        char *at = put_pair(gdoc_room(&doc), points[i]);
        if (i % kPerLine == kPerLine - 1 && (break_at_end || i < n - 1)) {
            memcpy(at, "\n   ", 4);
            at += 4;
        }
        gdoc_took(&doc, at);
    }
    if (!break_at_end || n % kPerLine != 0)
        gdoc_text(&doc, "\n");
}

/* A list that is too long for one command goes on, in the next, from its last point. */
static void put_binary_line(int n, const Point *points) {
    for (int at = 0; at < n - 1; at += kMostBinaryPoints - 1) {
        const int part = std::min(kMostBinaryPoints, n - at);
        put_command(CGM_POLYLINE, CGM_LONG, part * CGM_POINT_ROOM);
        for (int i = 0; i < part; i++)
            gmeta_point(points[at + i].x, points[at + i].y);
    }
}

static void meta_polyline(int n, const Point *points) {
    if (state.binary)
        put_binary_line(n, points);
    else
        put_points("PL", n, points, false);
}

static void meta_fill(int n, const Point *points) { put_points("FA", n, points, true); }

static void meta_markers(int n, const Point *points) { put_points("PM", n, points, true); }

/* Bytes but for line ends, in whose place stands another character that has no glyph. */
static void put_line_of(const char *text) {
    std::string line = text;
    std::replace(line.begin(), line.end(), '\n', '\r');
    gdoc_text(&doc, line.c_str());
    gdoc_text(&doc, "\n");
}

/* The binary form holds no text, only the dashes that the first one sets before its strokes. */
static void meta_text(Point at, const char *text) {
    if (state.binary) {
        if (!state.dash_written)
            gdoc_text(&doc, "[] 0 setdash\n");
        state.dash_written = true;
        return;
    }
    gmeta_printf("TE %f,%f ", double(at.x), double(at.y));
    put_line_of(text);
}

const Device kMetaDevice = {
    .name = "metafile",
    .records = true,
    .setup_stage = 4,
    .open = meta_open,
    .close = [] { gmeta_close(); },
    .reset = meta_reset,
    .clip = meta_clip,
    .color = meta_color,
    .change = meta_change,
    .transform = meta_transform,
    .message = meta_message,
    .polyline = meta_polyline,
    .fill = meta_fill,
    .markers = meta_markers,
    .text = meta_text,
};
