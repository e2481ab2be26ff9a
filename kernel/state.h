/* State that the files of the kernel share, and the kernel's report.  Only for kernel/.
 *
 * What an opening restores stands in the attribute records; what survives it, beside them.
 */
#pragma once

struct LineState {
    int color = 1;
    int type = 1;
    float width = 1.0f;
};

struct MarkerState {
    int color = 1;
    int type = 1;
    float width = 1.0f;
    float size = 10.0f;
};

enum FillStyle { FILL_SOLID = 1, FILL_STIPPLED = 2 };

struct FillState {
    int style = FILL_SOLID;
    int index = 1; // pattern, 0 to 19
    int color = 1;
};

struct TextState {
    int color = 1;
    float width = 1.0f;
    float height = 0.01f; // world units
    float expansion = 1.0f;
    float space = 0.25f; // between characters, in hundreds of font units
    float fixed = 0.0f;  // pitch; 0 is proportional
    int align_h = 0;
    int align_v = 0;
    float up_x = 0.0f; // of length 1
    float up_y = 1.0f;
    int font = 1;
};

struct KernelState {
    bool ws_open = false;
    bool incomplete = false; // the last document could not be written in full
    int ws_type = 0;
    bool reports = false; // gerror speaks: from the first opening on

    int ws_width = 640; // drawing area, in device units
    int ws_height = 512;
    int full_width = 640; // the window around it
    int full_height = 512;
    int ws_x = 0; // the drawing area inside the device
    int ws_y = 0;
    int depth = 0; // bits of a pixel; 10 on file devices

    LineState line;
    MarkerState marker = {.size = 1.0f};
    FillState fill;
    TextState text;

    int line_factor = 1; // multiplies line widths on paper
    int fill_black = 0;
    int shadow = 0; // pixels
};

KernelState &gstate();

/* Back to the state of a fresh process. */
void gstate_reset();

/* Reports at MSG_WARN: the call's name, the text, and an empty line behind it, since the texts end
 * in a newline of their own.  Returns -1. */
int gerror(const char *name, const char *format, ...) __attribute__((format(printf, 2, 3)));
