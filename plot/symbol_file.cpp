#include "plot/symbol_file.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "kernel/gph.h"
#include "kernel/primitives.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {
constexpr size_t kMostSymbols = 100;
constexpr size_t kNameLength = 14;
constexpr int kMostPoints = 20;        // of a run
constexpr size_t kMostBytes = 1 << 18; // of a file: ten times what that many symbols need
constexpr const char *kDefaultFile = "wx.smb";
constexpr const char *kWhite = " \t\r\n\v\f";

struct Run {
    size_t first; // of the points
    int count;
    bool fill;
};

struct Symbol {
    std::string name;
    size_t first_run, runs_end;
};

/* The current file, read whole: many symbols are drawn for each time that it is opened. */
struct SymbolState {
    std::string file; // its name, empty without one
    std::vector<Symbol> symbols;
    std::vector<Run> runs;
    std::vector<Point> points;
    std::string missed; // the file that could not be opened last, which is told once
};
SymbolState state;

// ---- Reading ----

std::string next_word(const char **at) {
    const char *word = *at + strspn(*at, kWhite);
    *at = word + strcspn(word, kWhite);
    return {word, *at};
}

bool take_coordinate(const char **at, float *value) {
    char *end;
    *value = strtof(*at, &end);
    if (end == *at || !std::isfinite(*value))
        return false;
    *at = end;
    return true;
}

/* A pair.  Without one the place stays. */
bool take_pair(const char **at, Point *point) {
    const char *here = *at;
    if (!take_coordinate(&here, &point->x) || *here++ != ',' || !take_coordinate(&here, &point->y))
        return false;
    *at = here;
    return true;
}

/* Reads a run with the word that closes it.  1; 0 when it has no pairs, -1 when too many. */
int read_run(const char **at) {
    Run run{state.points.size(), 0, false};
    for (Point point; take_pair(at, &point); run.count++) {
        if (run.count == kMostPoints)
            return -1;
        state.points.push_back(point);
    }
    if (run.count == 0)
        return 0;
    run.fill = next_word(at).starts_with('F');
    if (run.count > 1) // one point is no line
        state.runs.push_back(run);
    return 1;
}

/* Reads the symbols of a text.  False when it is damaged; what stands before that is kept. */
bool read_symbols(const std::string &text) {
    const char *at = text.c_str();
    for (std::string name; !(name = next_word(&at)).empty();) {
        if (state.symbols.size() == kMostSymbols)
            return false;
        Symbol symbol{name.substr(0, kNameLength), state.runs.size(), 0};
        const std::string body(at, strcspn(at, "$"));
        at += body.size();
        at += *at == '$';
        const char *run = body.c_str();
        int result;
        while ((result = read_run(&run)) > 0)
            continue;
        symbol.runs_end = state.runs.size();
        state.symbols.push_back(symbol);
        if (result < 0)
            return false;
    }
    return true;
}

// ---- Drawing ----

const Symbol *find_symbol(const char *name) {
    for (const Symbol &symbol : state.symbols)
        if (!STR_ncasecmp(symbol.name.c_str(), name, symbol.name.size()))
            return &symbol;
    return nullptr;
}

/* The lower left corner of a symbol that is aligned as text is. */
Point corner(float x, float y, float size) {
    int h, v;
    GPH_get_text_align(&h, &v);
    const float left = h == 3 ? size : h == 2 ? size / 2 : 0.0f;
    const float below = v == 1 || v == 2 ? size : v == 3 ? size / 2 : 0.0f;
    return {x - left, y - below};
}

void draw_run(const Run &run, Point origin, float size) {
    Point points[kMostPoints];
    for (int i = 0; i < run.count; i++) {
        const Point &p = state.points[run.first + size_t(i)];
        points[i] = {p.x * size + origin.x, p.y * size + origin.y};
    }
    if (run.fill)
        gfill_area(run.count, points);
    else
        gpolyline(run.count, points);
}
} // namespace

int WX_symb_file(const char *name) {
    const std::string wanted = name ? name : kDefaultFile;
    if (wanted.empty() || wanted == state.file)
        return -1;
    const std::string missed = state.missed;
    state = SymbolState{};
    state.missed = missed;
    FILE *file = FILE_open_data(wanted.c_str());
    if (!file) {
        if (wanted != state.missed)
            MSG_print(MSG_ERROR, "WX_symb_file: Unable to open file: %s\n", wanted.c_str());
        state.missed = wanted;
        return -1;
    }
    std::string text(kMostBytes + 1, '\0');
    text.resize(fread(text.data(), 1, text.size(), file));
    FILE_close(file);
    state.file = wanted;
    const bool cut = text.size() > kMostBytes;
    if (!read_symbols(text) || cut)
        MSG_print(MSG_ERROR, "WX_symb_file: Damaged symbol file: %s\n", wanted.c_str());
    return 0;
}

int WX_symbol(float x, float y, float size, const char *name) {
    if (!name || !*name || *name == ' ')
        return 0;
    if (state.file.empty())
        WX_symb_file(nullptr);
    const Symbol *symbol = find_symbol(name);
    if (!symbol)
        return 0;
    const Point origin = corner(x, y, size);
    for (size_t i = symbol->first_run; i < symbol->runs_end; i++)
        draw_run(state.runs[i], origin, size);
    return 1;
}

void WX_symbol_reset() { state = SymbolState{}; }
