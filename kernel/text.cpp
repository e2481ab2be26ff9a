#include "kernel/text.h"

#include "kernel/device.h"
#include "kernel/fonts.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/truncate.h"

#include <cstring>
#include <iterator>

namespace {
constexpr double kUnitsPerHeight = 105.0; // font units of one character height
constexpr int kBlankUnits = 40;

/* Font units from the anchor to the bottom of the font, by vertical alignment: normal, top,
 * capital line, half, baseline, bottom. */
constexpr int kOffsetV[] = {-35, -160, -140, -85, -35, 0};

int code_of(char c) { return static_cast<unsigned char>(c); }

/* All lengths in font units; each sum is cut to a whole number. */
int text_length(const char *string) {
    const TextState &text = gstate().text;
    const bool proportional = !(text.fixed > 0.0f);
    int total = 0;
    for (; string[0] && string[1]; string++) {
        const float space = text.space * 100;
        const float sum = proportional
                              ? space + float(gglyph_width(code_of(*string))) + float(total)
                              : (space + 100) * text.fixed + float(total);
        total = gtrunc(double(sum));
    }
    if (proportional)
        total += gglyph_width(code_of(*string));
    else
        total = gtrunc(double(text.fixed * 100 + float(total)));
    return gtrunc(double(float(total) * text.expansion));
}

/* Where the next character stands, behind one of a width. */
int advance(int ox, int width) {
    const TextState &text = gstate().text;
    const float space = text.space * 100;
    const float step = text.fixed > 0.0f ? (space + 100) * text.fixed * text.expansion
                                         : (space + float(width)) * text.expansion;
    return gtrunc(double(step + float(ox)));
}

int start_x(const char *string) {
    const TextState &text = gstate().text;
    if (text.align_h == 2)
        return -text_length(string) / 2;
    return text.align_h == 3 ? -text_length(string) : 0;
}

int start_y() {
    const int v = gstate().text.align_v;
    return v >= 0 && v < int(std::size(kOffsetV)) ? kOffsetV[v] : kOffsetV[0];
}

/* A place of the font, turned to the up vector and put at the anchor. */
Point glyph_point(const Device &device, Point at, const GlyphStep &step, int ox, int oy) {
    const TextState &text = gstate().text;
    const double scale = double(text.height) / kUnitsPerHeight;
    const float u = float(scale * double(text.expansion * float(step.x) + float(ox)));
    const float v = float(scale * double(step.y + oy));
    const Point world = {text.up_x * v + text.up_y * u + at.x,
                         text.up_y * v + (at.y - text.up_x * u)};
    return gworld_to_device(device, world);
}

void draw_glyph(const Device &device, Point at, int start, int ox, int oy) {
    int count = 0; // points of the stroke so far
    Point last = {};
    device.glyph_begin();
    for (GlyphStep step; gglyph_step(&start, &step);) {
        if (step.move) {
            if (count >= 2)
                device.glyph_flush(GlyphFlush::Lift, last);
            count = 0;
        }
        last = glyph_point(device, at, step, ox, oy);
        count++;
        if (step.move)
            device.glyph_move(last);
        else
            device.glyph_draw(last);
        if (count == GLYPH_POINTS) {
            device.glyph_flush(GlyphFlush::Full, last);
            count = 1;
        }
    }
    if (count >= 2)
        device.glyph_flush(GlyphFlush::End, last);
}

/* Draws the strokes of a text. */
void gdraw_text(const Device &device, Point at, const char *string) {
    int ox = start_x(string);
    const int oy = start_y();
    device.text_begin(at, string);
    for (; *string; string++) {
        const int code = code_of(*string);
        const int start = gglyph_start(code);
        if (start >= 0) {
            draw_glyph(device, at, start, ox, oy);
            ox = advance(ox, gglyph_width(code));
        } else if (code == ' ') {
            ox = advance(ox, kBlankUnits);
        }
    }
}

/* In steps of one pixel. */
void draw_shadow(const Device &device, Point at, const char *string) {
    const float pixel_x = 1 / (gworld_to_px_x(at.x + 1) - gworld_to_px_x(at.x));
    const float pixel_y = 1 / (gworld_to_px_y(at.y + 1) - gworld_to_px_y(at.y));
    device.shade(OBJ_TEXT, true);
    for (int k = 0; k < gstate().shadow; k++)
        gdraw_text(device, {at.x + float(k) * pixel_x, at.y + float(k) * pixel_y}, string);
    device.shade(OBJ_TEXT, false);
}

void store_text(Point at, const char *string) {
    const size_t length = strlen(string) + 1;
    auto *bytes = static_cast<char *>(gobj_new(OBJ_TEXT, 0, sizeof at + length, nullptr));
    if (!bytes)
        return;
    memcpy(bytes, &at, sizeof at);
    memcpy(bytes + sizeof at, string, length);
}
} // namespace

int gtext(const Point *at, const char *text) {
    if (!gstate().ws_open)
        return gerror("gtext", "GKS not opened\n");
    if (!text || !*text)
        return 0;
    const Device &device = gdevice();
    if (device.records) {
        device.text(*at, text);
        return 0;
    }
    store_text(*at, text);
    if (gfont_kind() == FONT_DEVICE) {
        device.text(*at, text);
        return 0;
    }
    if (device.shadows && gstate().shadow > 0)
        draw_shadow(device, *at, text);
    gdraw_text(device, *at, text);
    return 0;
}
