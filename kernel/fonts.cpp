#include "kernel/fonts.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "kernel/device.h"
#include "kernel/state.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {
constexpr int kStrokeValues = 15008;
constexpr int kCodes = 256;
constexpr int kListMax = 40;
constexpr int kShortListMax = 10; // of a list file that was named
constexpr int kBlank = 32;        // its code
constexpr int kBlankWidth = 40;   // font units

// Values of the stroke table.  What is stored ends with a glyph's end.
constexpr int kPenUp = 128; // added to x
constexpr int kTableEnd = 254;
constexpr int kGlyphEnd = 255;

constexpr const char *kDefaultFont = "modern.fnt";
constexpr const char *kDefaultList = "qra.fnl";

struct FontEntry {
    char name[10];
    char file[106];
};

struct LoadedFont {
    int kind = FONT_STROKE;
    int used = 0; // stroke values
    unsigned char strokes[kStrokeValues] = {};
    unsigned char width[kCodes] = {};
    std::array<int, kCodes> start = [] {
        std::array<int, kCodes> none{};
        none.fill(-1);
        return none;
    }();
};

struct FontState {
    FontEntry list[kListMax] = {};
    int count = 0;
    std::string override_list;
    LoadedFont font;
};
FontState fonts;

/* An empty name would be standard input. */
FILE *open_file(const char *name) { return *name ? FILE_open_data(name) : nullptr; }

void skip_word(FILE *file) { (void)!fscanf(file, "%*s"); }

/* Reads the rest of a word that was longer than its place. */
void skip_word_rest(FILE *file) { (void)!fscanf(file, "%*[^ \t\r\n\v\f]"); }

void read_list_words(FILE *file) {
    while (fonts.count < kShortListMax) {
        FontEntry &entry = fonts.list[fonts.count];
        if (fscanf(file, "%9s", entry.name) != 1)
            return;
        skip_word_rest(file);
        if (fscanf(file, "%105s", entry.file) != 1)
            return;
        skip_word_rest(file);
        fonts.count++;
    }
}

void read_list_lines(FILE *file) {
    while (fonts.count < kListMax) {
        FontEntry &entry = fonts.list[fonts.count];
        if (fscanf(file, "%9s", entry.name) != 1)
            return;
        skip_word_rest(file);
        if (fscanf(file, " %105[^\n]", entry.file) != 1)
            return;
        STR_skip_line(file);
        STR_strip_eol(entry.file);
        fonts.count++;
    }
}

void list_files(const char *text) {
    const StrList files(text, ',');
    for (int i = 0; i < files.count && fonts.count < kListMax; i++) {
        FontEntry &entry = fonts.list[fonts.count++];
        entry.name[0] = '\0';
        snprintf(entry.file, sizeof entry.file, "%s", files[i]);
    }
}

void read_list(const char *text) {
    if (!text) {
        if (FILE *file = FILE_open_data(kDefaultList)) {
            read_list_lines(file);
            FILE_close(file);
        }
        return;
    }
    if (STR_ncasecmp(text, "fi:", 3) != 0) {
        list_files(text);
        return;
    }
    FILE *file = open_file(text + 3);
    if (!file) {
        MSG_print(MSG_WARN, "gsetup_fonts: unable to load font list file: %s\n", text + 3);
        return;
    }
    read_list_words(file);
    FILE_close(file);
}

/* Reads the strokes up to the end mark.  A table that begins with the end of a glyph is bare; in
 * any other a name stands in front of each glyph.  False when it is damaged or too long. */
bool read_strokes(FILE *file) {
    LoadedFont &font = fonts.font;
    int value;
    if (fscanf(file, "%d", &value) != 1)
        return false;
    const bool named = value != kGlyphEnd;
    if (named)
        skip_word(file);
    else
        font.strokes[font.used++] = kGlyphEnd;
    while (font.used < kStrokeValues) {
        if (fscanf(file, "%d", &value) != 1 || value < 0 || value > kGlyphEnd)
            return false;
        const int stored = value == kTableEnd ? kGlyphEnd : value;
        font.strokes[font.used++] = static_cast<unsigned char>(stored);
        if (value == kTableEnd)
            return true;
        if (value == kGlyphEnd && named)
            skip_word(file);
    }
    return false;
}

bool read_starts(FILE *file) {
    LoadedFont &font = fonts.font;
    for (int &start : font.start) {
        if (fscanf(file, "%d", &start) != 1 || start >= font.used)
            return false;
        start = std::max(start, -1);
    }
    return true;
}

void measure_glyphs() {
    LoadedFont &font = fonts.font;
    for (int code = 0; code < kCodes; code++) {
        int at = font.start[code];
        int widest = 0;
        for (GlyphStep step; gglyph_step(&at, &step);)
            widest = std::max(widest, step.x);
        font.width[code] = static_cast<unsigned char>(widest);
    }
    font.width[kBlank] = kBlankWidth;
}

int load_device_font(const char *name) {
    if (gdevice().load_font(name) < 0) {
        MSG_print(MSG_WARN, "read_font: unable to load font: %s\n", name);
        return -1;
    }
    fonts.font.kind = FONT_DEVICE;
    return 0;
}
} // namespace

int gsetup_fonts() {
    fonts.count = 0;
    const char *text =
        fonts.override_list.empty() ? RES_get("font_list") : fonts.override_list.c_str();
    read_list(text ? text : gdevice().preset("font_list"));
    if (fonts.count == 0)
        return read_font(kDefaultFont);
    const int number = gstate().text.font;
    return read_font(fonts.list[std::clamp(number, 1, fonts.count) - 1].file);
}

void gset_font_list(const char *list) { fonts.override_list = list ? list : ""; }

int read_font(const char *name) {
    if (!gstate().ws_open)
        return -1;
    const int kind = fonts.font.kind;
    fonts.font = LoadedFont{};
    fonts.font.kind = kind;
    if (*name == '#')
        return load_device_font(name + 1);
    FILE *file = open_file(name);
    if (!file) {
        MSG_print(MSG_WARN, "read_font: unable to load font file: %s\n", name);
        return -1;
    }
    const bool whole = read_strokes(file) && read_starts(file);
    FILE_close(file);
    if (!whole) {
        MSG_print(MSG_WARN, "read_font: unable to load font file: %s\n", name);
        fonts.font = LoadedFont{};
        return -1;
    }
    fonts.font.kind = FONT_STROKE;
    measure_glyphs();
    return 0;
}

int gload_font(int number) {
    if (fonts.count == 0)
        return 0;
    if (number < 1 || number > fonts.count) {
        MSG_print(MSG_WARN, "gset_fontprec: invalid font id: %d\n", number);
        return -1;
    }
    return read_font(fonts.list[number - 1].file);
}

int gfont_id(const char *name) {
    if (!name)
        return 1;
    if (isdigit(static_cast<unsigned char>(*name)))
        return atoi(name);
    for (int i = 0; i < fonts.count; i++)
        if (STR_casecmp(fonts.list[i].name, name) == 0)
            return i + 1;
    return 1;
}

int gfont_kind() { return fonts.font.kind; }

int gglyph_width(int code) { return fonts.font.width[code]; }

int gglyph_start(int code) { return fonts.font.start[code]; }

bool gglyph_step(int *at, GlyphStep *step) {
    const LoadedFont &font = fonts.font;
    if (*at < 0 || *at + 1 >= font.used || font.strokes[*at] == kGlyphEnd)
        return false;
    const int x = font.strokes[*at];
    step->move = x >= kPenUp;
    step->x = step->move ? x - kPenUp : x;
    step->y = font.strokes[*at + 1];
    *at += 2;
    return true;
}

void gfonts_reset() { fonts = FontState{}; }
