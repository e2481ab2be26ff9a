#include "kernel/color_table.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
constexpr int kLineWidth = 100;  // characters of a colour file's line
constexpr int kMaxLines = 10000; // of a colour file
constexpr int kKeptNames = 16;   // entries whose names a new table does not clear
constexpr const char *kDefaultFile = "qra.clr";

struct ColorEntry {
    char name[20] = "";
    float r = 0.0f, g = 0.0f, b = 0.0f;
};

struct ColorState {
    ColorEntry entries[COLOR_MAX];
    int count = 0;
    int last_standard = 0;
    ColorListener listener = nullptr;
};
constinit ColorState colors;

constexpr ColorEntry kNoColor;

struct SpecialColor {
    const char *name;
    int index;
};
constexpr SpecialColor kSpecial[] = {
    {"end", COLOR_END}, {"none", COLOR_OFF}, {"off", COLOR_OFF}, {"back", COLOR_OFF},
    {"pblk", 500},      {"pbblk", 501},      {"ptblk", 502},     {"pwht", 503},
    {"pbwht", 504},     {"ptwht", 505},      {"pgry", 506},      {"pbgry", 507},
    {"ptgry", 508},
};

float level(double value) { return value > 0.0 ? float(std::min(value, 1.0)) : 0.0f; }
float level(unsigned byte) { return level(byte / 255.0); }

/* "name r g b" or "name #RRGGBB". */
bool scan_entry(const char *text, ColorEntry *entry) {
    float r, g, b;
    if (sscanf(text, "%19s %f %f %f", entry->name, &r, &g, &b) == 4) {
        entry->r = level(double(r));
        entry->g = level(double(g));
        entry->b = level(double(b));
        return true;
    }
    unsigned red, green, blue;
    if (sscanf(text, "%19s #%2X%2X%2X", entry->name, &red, &green, &blue) != 4)
        return false;
    entry->r = level(red);
    entry->g = level(green);
    entry->b = level(blue);
    return true;
}

struct ColorFile {
    int base;         // index of the file's own 0
    int running = 0;  // of the next line without a number
    int highest = -1; // seen so far
    int end = -1;     // highest at "END"; -1 without one
};

/* An index that goes beyond the table is left out, and so is a line that cannot be read. */
void take_line(const char *text, ColorFile *file) {
    int number, behind;
    if (sscanf(text, "%d%n", &number, &behind) == 1) {
        file->running = number;
        text += behind;
    }
    if (file->running < 0 || file->running >= COLOR_MAX - file->base)
        return;
    ColorEntry entry;
    if (!scan_entry(text, &entry))
        return;
    colors.entries[file->base + file->running] = entry;
    file->highest = std::max(file->highest, file->running);
    file->running++;
}

/* The line without blanks at its ends. */
char *strip(char *line) {
    STR_strip_eol(line);
    while (isspace(static_cast<unsigned char>(*line)))
        line++;
    char *end = line + strlen(line);
    while (end > line && isspace(static_cast<unsigned char>(end[-1])))
        *--end = '\0';
    return line;
}

ColorFile read_file(FILE *in, bool first) {
    ColorFile file{.base = colors.count};
    char line[kLineWidth + 1];
    for (int i = 0; i < kMaxLines && STR_read_line(in, line, kLineWidth) >= 0; i++) {
        const char *text = strip(line);
        if (*text == '#')
            continue;
        if (first && STR_casecmp(text, "END") == 0)
            file.end = file.highest;
        else
            take_line(text, &file);
    }
    if (file.highest >= 0)
        colors.count = file.base + file.highest + 1;
    return file;
}

/* "#rrggbb", or "#rrrgggbbb" in decimal. */
bool scan_literal(const char *text, float rgb[3]) {
    unsigned red, green, blue;
    const size_t length = strlen(text);
    if (*text != '#')
        return false;
    const bool hex = length == 7 && sscanf(text + 1, "%2x%2x%2x", &red, &green, &blue) == 3;
    if (!hex && !(length == 10 && sscanf(text + 1, "%3u%3u%3u", &red, &green, &blue) == 3))
        return false;
    rgb[0] = level(red);
    rgb[1] = level(green);
    rgb[2] = level(blue);
    return true;
}
} // namespace

void COLOR_read_table(const char *files) {
    const char *resource = RES_get("color_table");
    const bool from_resource = (!files || !*files) && resource && *resource;
    if (!files || !*files)
        files = from_resource ? resource : kDefaultFile;
    colors.count = 0;
    for (int i = kKeptNames; i < COLOR_MAX; i++)
        colors.entries[i].name[0] = '\0';
    const StrList names(files, ',');
    for (int i = 0; i < names.count; i++) {
        FILE *in = *names[i] ? FILE_open_data(names[i]) : nullptr;
        if (!in)
            continue;
        const ColorFile file = read_file(in, i == 0);
        FILE_close(in);
        if (i == 0 && from_resource)
            colors.last_standard = file.end >= 0 ? file.end : file.highest;
    }
}

int COLOR_index(const char *name) {
    if (!name || !*name)
        return COLOR_OFF;
    for (const SpecialColor &special : kSpecial)
        if (STR_casecmp(name, special.name) == 0)
            return special.index;
    for (int i = 0; i < colors.count; i++)
        if (STR_casecmp(name, colors.entries[i].name) == 0)
            return i;
    float rgb[3];
    if (scan_literal(name, rgb))
        return COLOR_add(rgb[0], rgb[1], rgb[2], name);
    return isdigit(static_cast<unsigned char>(*name)) ? atoi(name) : COLOR_OFF;
}

static const ColorEntry &entry_at(int index) {
    if (index < 0 || colors.count == 0)
        return kNoColor;
    return colors.entries[std::min(index, colors.count - 1)];
}

const char *COLOR_name(int index) { return entry_at(index).name; }

void COLOR_get_rgb(int index, float *r, float *g, float *b) {
    const ColorEntry &entry = entry_at(index);
    *r = entry.r;
    *g = entry.g;
    *b = entry.b;
}

int COLOR_count() { return colors.count; }

int COLOR_last_standard() { return colors.last_standard; }

int COLOR_add(float r, float g, float b, const char *name) {
    if (colors.count >= COLOR_MAX)
        return -1;
    const int index = colors.count++;
    ColorEntry &entry = colors.entries[index];
    snprintf(entry.name, sizeof entry.name, "%s", name);
    entry.r = r;
    entry.g = g;
    entry.b = b;
    if (colors.listener)
        colors.listener(r, g, b, index);
    return index;
}

void COLOR_set_listener(ColorListener listener) { colors.listener = listener; }

void COLOR_reset() { colors = ColorState{}; }
