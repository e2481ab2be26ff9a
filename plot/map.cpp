/* The map list: layers, gates, conditions, kinds. */
#include "plot/map.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "kernel/gph.h"
#include "kernel/meta_reader.h"
#include "kernel/primitives.h"
#include "kernel/transform.h"
#include "kernel/x11_image.h"
#include "plot/domain.h"
#include "plot/map_grid.h"
#include "plot/page_state.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "plot/station_file.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace {
constexpr int kPage = 1, kData = 2; // transforms
constexpr int kListWord = 255;      // characters of a word in a list file
constexpr int kMostListWords = 10000;
constexpr const char *kGridStyle = "magenta:s4";
constexpr int kGridLine = 4; // line type

/* Of the chain of gates that runs through a list. */
enum Gate {
    GATE_DONE = -1, // an open branch has ended: the rest is skipped
    GATE_SHUT = 0,  // no branch has opened so far
    GATE_NONE = 1,
    GATE_OPEN = 2,
};

struct MapState {
    std::string list;
    std::string attr;
    int layers = 7; // mask
    Gate gate = GATE_NONE;
    bool cmap = false;
    bool fill = false; // once a map was filled, all are
};
MapState map;

// ---- Gates and conditions ----

bool is_between(float value, float a, float b) {
    return value >= std::min(a, b) && value <= std::max(a, b);
}

/* A gate of fewer than four numbers is open to all. */
bool fits_gate(const char *text) {
    float lat0, lat1, lon0, lon1, height = 1000.0f;
    if (sscanf(text, "%f,%f,%f,%f,%f", &lat0, &lat1, &lon0, &lon1, &height) < 4)
        return true;
    return is_between(PRJ_get_clat(), lat0, lat1) && is_between(PRJ_get_clon(), lon0, lon1) &&
           PLT_window_height() <= height;
}

void pass_gate(const char *text) {
    if (map.gate == GATE_OPEN)
        map.gate = GATE_DONE;
    if (map.gate == GATE_DONE)
        return;
    map.gate = fits_gate(text) ? GATE_OPEN : GATE_SHUT;
}

/* A condition on the height of the plot: a word, a number, and perhaps the other end behind a sign.
 */
struct Condition {
    const char *word;
    bool at_least; // else at most
    char other;    // sign of the other end; 0 for none
};
/* Read in this order, so that two ends may stand behind each other. */
constexpr Condition kConditions[] = {
    {"s+", true, 0},   {">", true, '<'}, {"s-", false, 0},
    {"<", false, '>'}, {"s+", true, 0},  {">", true, 0},
};

bool holds(bool at_least, float height, float limit) {
    return at_least ? height >= limit : height <= limit;
}

/* Passes over one condition, if it is there.  Returns false when it does not hold. */
bool take_condition(const Condition &condition, const char **spec) {
    const size_t length = strlen(condition.word);
    const char *text = *spec + length;
    float limit, other;
    int used = 0;
    if (STR_ncasecmp(*spec, condition.word, length) || sscanf(text, "%f%n", &limit, &used) != 1)
        return true;
    const char *colon = strchr(text, ':');
    if (!colon)
        return false;
    *spec = colon + 1;
    const float height = PLT_window_height();
    if (!holds(condition.at_least, height, limit))
        return false;
    text += used;
    if (!condition.other || *text != condition.other || sscanf(text + 1, "%f", &other) != 1)
        return true;
    return holds(!condition.at_least, height, other);
}

/* Passes over mark, gate and conditions.  Returns false when the entry is not for this
 * plot. */
bool is_wanted(const char **spec) {
    constexpr int kBelow = 1, kAbove = 2, kPlain = 4; // bits of the mask
    const int layer = **spec == '-' ? kBelow : **spec == '+' ? kAbove : kPlain;
    if (!(map.layers & layer))
        return false;
    if (layer != kPlain)
        ++*spec;
    if (**spec == '[') {
        pass_gate(*spec + 1);
        return false;
    }
    if (map.gate < GATE_NONE)
        return false;
    for (const Condition &condition : kConditions)
        if (!take_condition(condition, spec))
            return false;
    return **spec != '\0';
}

// ---- Kinds ----

bool has_map() { return DOM_is_earth(PRJ_get_code()); }

/* Sets styles and draws a grid; a colour that is off leaves it out. */
int draw_styled_grid(const PlotAttr &attr, float lat, float lon) {
    if (attr.color == -1 || !PLT_switch(DRAW_GRID))
        return -1;
    GPH_set_line(&attr);
    GPH_set_text(has_map() ? PLT_window_height() * 0.018f : 0.015f, &attr);
    return MAP_draw_grid(lat, lon);
}

int draw_lalo(const char *spec) {
    constexpr size_t kWord = 4;
    const char *text = spec + kWord + (spec[kWord] != '\0');
    float lat = 5.0f, lon = 5.0f;
    int used = 0, used_both = 0;
    const int n = sscanf(text, "%f%n:%f%n", &lat, &used, &lon, &used_both);
    if (n == 1)
        lon = lat;
    text += n >= 2 ? used_both : used;
    PLT_message("Map-lalo: %.1f,%.1f", double(lat), double(lon));
    PlotAttr attr;
    attr.style = kGridLine;
    if (*text == ':')
        ATTR_parse(text + 1, &attr);
    else
        ATTR_from_resource("color_line", kGridStyle, &attr);
    return draw_styled_grid(attr, lat, lon);
}

/* style is the text behind the name; null when there is none. */
PlotAttr map_style(const char *style) {
    PlotAttr attr;
    if (style)
        ATTR_parse(style, &attr);
    else if (!map.attr.empty())
        ATTR_parse(map.attr.c_str(), &attr);
    else if (map.cmap)
        ATTR_from_resource("color_cmap", "black", &attr);
    else
        ATTR_from_resource("color_map", "red", &attr);
    return attr;
}

int draw_file(const char *spec) {
    GPH_set_line(nullptr);
    GPH_set_fill(nullptr);
    PLT_message("Map: %s", spec);
    const char *colon = strchr(spec, ':');
    const PlotAttr attr = map_style(colon ? colon + 1 : nullptr);
    GPH_set_line(&attr);
    if (attr.fill != MISSING) {
        GPH_set_fill(&attr);
        map.fill = true;
    }
    const std::string name = colon ? std::string(spec, colon) : spec;
    FILE *file = FILE_open_data(name.c_str());
    if (!file) {
        MSG_print(MSG_ERROR, "MAP_process: Map file not found: %s\n", name.c_str());
        return -1;
    }
    if (attr.color != -1)
        MAP_read_file(file, map.fill, name.c_str());
    FILE_close(file);
    return attr.color != -1 ? 0 : -1;
}

int draw_stations(const char *spec) {
    constexpr size_t kPrefix = 3;
    PLT_message("Map-rawfile: %s", spec + kPrefix);
    return PLOT_file(spec + kPrefix, 0);
}

/* "name[:transparent colour][:x:y]", drawn in the clip of the current transform. */
int draw_image(const char *spec) {
    const char *text = spec + strlen("im:");
    const size_t length = strcspn(text, ":");
    char color[64] = "";
    int x = 0, y = 0;
    if (sscanf(text + length, ":%63[^:]:%d:%d", color, &x, &y) < 1)
        sscanf(text + length, "::%d:%d", &x, &y);
    std::string path;
    FILE_join_path(RES_get("image_path"), std::string(text, length).c_str(), &path);
    PLT_message("Map-image: %s", path.c_str());
    return goverlay_image_file(path.c_str(), color, x, y);
}

int draw_page_image(const char *spec) {
    GPH_sel_tran(kPage);
    const int result = draw_image(spec);
    GPH_sel_tran(kData);
    return result;
}

/* The transforms as they stand, to be put back. */
struct KeptTransforms {
    static constexpr int kCount = 6; // that can be set
    float rects[kCount][8];          // window, then viewport
    int current;

    KeptTransforms() {
        int error;
        for (int n = 0; n < kCount; n++)
            gget_norm_tran(n, &error, rects[n]);
        gget_cur_tran(&error, &current);
    }

    /* What is as it was is not set again: a document would tell of it. */
    void put_back() const {
        for (int n = 0; n < kCount; n++) {
            int error;
            float now[8];
            gget_norm_tran(n, &error, now);
            if (!std::equal(now, now + 4, rects[n]))
                gset_window(n, rects[n]);
            if (!std::equal(now + 4, now + 8, rects[n] + 4))
                gset_viewport(n, rects[n] + 4);
        }
        GPH_sel_tran(current);
    }
};

/* A metafile names transforms of its own. */
int draw_metafile(const char *spec) {
    const char *name = spec + strlen("mf:");
    const KeptTransforms kept;
    PLT_message("Map-metafile: %s", name);
    const int result = gread_metafile(name);
    kept.put_back();
    return result;
}

struct MapKind {
    const char *prefix;
    int (*draw)(const char *spec); // the whole of it
};
/* What is none of these is a map file. */
constexpr MapKind kKinds[] = {
    {"im:", draw_image},    {"if:", draw_page_image}, {"mf:", draw_metafile},
    {"rf:", draw_stations}, {"lalo", draw_lalo},
};

// ---- The list ----

/* Maps of a country in the middle latitudes, or of the world. */
const char *default_list() {
    const float lat = PRJ_get_clat(), lon = PRJ_get_clon();
    const bool outside = lat <= 25.0f || lat >= 80.0f || lon <= -160.0f || lon >= -65.0f;
    return outside || PLT_window_height() >= 75.0f ? "cont.map,country.map" : "qra.map";
}

std::string map_list() {
    const char *resource = RES_get("map_file");
    if (resource && *resource)
        return resource;
    if (map.list.empty())
        map.list = default_list();
    return map.list;
}

/* Reads a word of a list file.  A longer one is passed over. */
bool next_word(FILE *file, const char *list, char word[kListWord + 1]) {
    static_assert(kListWord == 255);
    while (fscanf(file, "%255s", word) == 1) {
        int c = getc(file);
        if (strlen(word) < kListWord || c == EOF || isspace(c))
            return true;
        while (c != EOF && !isspace(c))
            c = getc(file);
        MSG_print(MSG_WARN, "MAP_draw: Word too long in map list file: %s\n", list);
    }
    return false;
}

/* Its words are entries only: a list that names itself is not followed. */
void draw_list_file(const char *name) {
    FILE *file = FILE_open_data(name);
    if (!file) {
        MSG_print(MSG_ERROR, "MAP_draw: Unable to open map list file: %s\n", name);
        return;
    }
    char word[kListWord + 1];
    int n = 0;
    for (; n < kMostListWords && next_word(file, name, word); n++)
        MAP_process(word);
    if (n == kMostListWords)
        MSG_print(MSG_WARN, "MAP_draw: Map list file is too long: %s\n", name);
    FILE_close(file);
}

void draw_entry(const char *entry) {
    constexpr size_t kPrefix = 3;
    if (STR_ncasecmp(entry, "fi:", kPrefix) == 0)
        draw_list_file(entry + kPrefix);
    else
        MAP_process(entry);
}

/* A bracket that is closed before another one opens. */
bool opens_gate(const std::string &list, size_t at) {
    const size_t next = list.find_first_of("[]", at + 1);
    return list[at] == '[' && next != std::string::npos && list[next] == ']';
}

/* End of the entry that begins at a place: a comma, but not one inside the brackets of a gate. */
size_t entry_end(const std::string &list, size_t from) {
    size_t at = from;
    while (at < list.size() && list[at] != ',')
        at = opens_gate(list, at) ? list.find(']', at) : at + 1;
    return at;
}

void draw_list(const std::string &list) {
    map.gate = GATE_NONE;
    for (size_t from = 0; from < list.size();) {
        const size_t end = entry_end(list, from);
        draw_entry(list.substr(from, end - from).c_str());
        from = end + 1;
    }
}

void draw_automatic_grid() {
    float lat, lon;
    MAP_get_grid(&lat, &lon);
    if (!(lat > 0.0f))
        return;
    PlotAttr attr;
    if (has_map())
        attr.style = kGridLine;
    ATTR_from_resource("color_line", has_map() ? kGridStyle : "red", &attr);
    draw_styled_grid(attr, lat, lon);
}
} // namespace

int MAP_draw(int layer) {
    if (!PLT_switch(DRAW_MAP))
        return 0;
    map.layers = layer;
    GPH_sel_tran(kData);
    GPH_set_line(nullptr);
    GPH_set_font(nullptr);
    draw_list(map_list());
    draw_automatic_grid();
    return 0;
}

int MAP_process(const char *spec) {
    if (!is_wanted(&spec))
        return -1;
    for (const MapKind &kind : kKinds)
        if (STR_ncasecmp(spec, kind.prefix, strlen(kind.prefix)) == 0)
            return kind.draw(spec);
    return draw_file(spec);
}

void MAP_set_list(const char *text) { map.list = text ? text : ""; }

void MAP_set_attr(const char *text) { map.attr = text ? text : ""; }

void MAP_set_color_flag(int flag) { map.cmap = flag != 0; }

void MAP_range_ring(float x, float y, float range) {
    constexpr int kPoints = 49;
    constexpr float kStep = 7.5f; // degrees
    Point ring[kPoints];
    int n = 0;
    for (int i = 0; i < kPoints; i++) {
        Point at = {MISSING_F, MISSING_F};
        PRJ_offset_xy(x, y, float(i) * kStep, range, &at.x, &at.y);
        if (at.x != MISSING_F && std::isfinite(at.x) && std::isfinite(at.y)) {
            ring[n++] = at;
            continue;
        }
        if (n >= 2)
            gpolyline(n, ring);
        n = 0;
    }
    if (n >= 2)
        gpolyline(n, ring);
}

void MAP_reset() {
    map = MapState{};
    MAP_grid_reset();
}
