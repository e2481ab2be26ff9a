/* One row for each workstation type: what the device does in its own way, and its numbers.
 *
 * The kernel checks, clips, keeps the attributes and feeds the redraw store; a device writes its
 * own output.  A slot left out does nothing, so the kernel never asks which device is there.
 * The row is looked up at every call: printing to a metafile swaps the type in mid-run.
 */
#pragma once

#include "kernel/object_code.h"
#include "kernel/point.h"

/* Why a glyph's stroke is drawn now. */
enum class GlyphFlush {
    Lift, // the pen goes elsewhere
    Full, // it has GLYPH_POINTS points and goes on from the last of them
    End,  // the glyph ends
};
constexpr int GLYPH_POINTS = 30; // room of one stroke

struct Device {
    const char *name = "";

    // Kind of output
    bool records = false; // takes calls in world coordinates; nothing is stored or drawn
    bool redraws = false; // a window: events come in while it draws
    bool pixels = false;  // colours are pixels of a display; print pens are drawn in colour 1
    bool shadows = false; // draws text and markers on a shadow

    // Coordinates
    float limit = 100000.0f; // largest device coordinate
    bool y_down = false;
    int setup_stage = 0;       // of ginit_ws at the opening; the clip is told at this stage
    float zero_width = 0.0f;   // width that stands for a width of 0
    double marker_scale = 1.0; // device units of a tenth of the marker size
    float marker_shift = 0.0f; // added to a marker's place, before it is cut to whole pixels

    // Life.  open takes the whole connection text and returns 0, or -1 after a report; a row
    // without it names a device that cannot be opened.
    int (*open)(const char *connection) = nullptr;
    void (*init)(int stage) = [](int) {}; // attributes and transforms have just been reset
    void (*ready)() = [] {};              // the workstation is open, fonts and all
    void (*background)() = [] {};         // finds the colour of the paper
    void (*clear)() = [] {};              // a new page
    void (*show)() = [] {};               // shows the picture; a window waits for the user
    void (*close)() = [] {};
    void (*reset)() = [] {}; // back to the state of a fresh process

    // A setting that the display holds for its user, by name; or null.
    const char *(*preset)(const char *name) = [](const char *) -> const char * { return nullptr; };

    // Changes.  clip and color bring the device up to date; change and transform tell it what was
    // set, with one or two values or a rectangle.
    void (*clip)() = [] {};
    void (*color)(int index, float r, float g, float b) = [](int, float, float, float) {};
    void (*change)(ObjCode what, double a, double b) = [](ObjCode, double, double) {};
    void (*transform)(ObjCode what, int n, const float *rect) = [](ObjCode, int, const float *) {};
    void (*message)(const char *text) = [](const char *) {};

    // Lines and areas, in world coordinates
    void (*polyline)(int n, const Point *points) = [](int, const Point *) {};
    void (*fill)(int n, const Point *points) = [](int, const Point *) {};

    // Markers: a whole list in world coordinates where the device records; else marker_begin once
    // for a list and one stroke call for each stroke of each marker, in device units.
    void (*markers)(int n, const Point *points) = [](int, const Point *) {};
    void (*marker_begin)(int n) = [](int) {};
    void (*stroke)(int n, const Point *points) = [](int, const Point *) {};

    // Text: a whole string in world coordinates where the device records or has the font itself;
    // else its strokes, in device units.
    void (*text)(Point at, const char *text) = [](Point, const char *) {};
    int (*load_font)(const char *name) = [](const char *) { return -1; }; // 0 when it has the font
    void (*text_begin)(Point at, const char *text) = [](Point, const char *) {};
    void (*glyph_begin)() = [] {};
    void (*glyph_move)(Point to) = [](Point) {};
    void (*glyph_draw)(Point to) = [](Point) {};
    void (*glyph_flush)(GlyphFlush why, Point last) = [](GlyphFlush, Point) {};

    // Turns to the colour of shadows, and back: OBJ_MARKER or OBJ_TEXT.
    void (*shade)(ObjCode what, bool on) = [](ObjCode, bool) {};
};

/* The row of the current type; one that does nothing where there is none. */
const Device &gdevice();

/* Puts a row into the table; null takes it out.  Rows live as long as the process. */
void gset_device(int type, const Device *device);

/* Calls reset of every row. */
void greset_devices();
