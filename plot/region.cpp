#include "plot/region.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/prompt.h"
#include "shell/strings.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace {
constexpr int kRows = 20;           // of the menu, with row 0
constexpr size_t kDescription = 20; // characters
constexpr size_t kAbbreviation = 5; // characters
constexpr int kLine = 500;          // characters of a line; a word is no longer
constexpr int kMostLines = 100000;  // of a region file
constexpr int kGridColumns = 25;
constexpr int kGridRows = 17;

struct BuiltinRegion {
    const char *description;
    const char *abbr;
    float clat, clon; // missing: asked for
    float spacing;
};
constexpr BuiltinRegion kBuiltin[] = {
    {"Contiguous US", "us", 39.0f, -97.0f, 2.3f},
    {"New England", "ne", 42.0f, -76.0f, 0.9f},
    {"Atlantic", "at", 37.0f, -82.0f, 0.9f},
    {"Southeastern", "se", 31.0f, -88.0f, 1.1f},
    {"Midwestern", "mw", 43.0f, -93.0f, 1.1f},
    {"Southern Plains", "sp", 32.5f, -100.0f, 1.2f},
    {"Northwestern", "nw", 44.0f, -112.0f, 1.0f},
    {"Southwestern", "sw", 37.0f, -112.0f, 1.0f},
    {"Variable", "var", MISSING_F, MISSING_F, 1.2f},
};

using MenuTable = std::array<MenuItem, kRows + 1>; // one row more, which ends it

constexpr MenuItem menu_row(const char *label, const char *abbr, int value) {
    return {label, abbr, value, {1, 1, 1, 1}};
}

constexpr MenuTable builtin_menu() {
    MenuTable items{};
    items[0] = menu_row("Return to previous menu", "back", 0);
    int n = 1;
    for (const BuiltinRegion &row : kBuiltin) {
        items[size_t(n)] = menu_row(row.description, row.abbr, n);
        n++;
    }
    return items;
}

struct RegionState {
    bool read = false;
    MenuTable items = builtin_menu();
    char descriptions[kRows][kDescription + 1] = {}; // what the rows of a file point to
    char abbrs[kRows][kAbbreviation + 1] = {};
};
constinit RegionState region;

/* A region file, line by line. */
struct RegionFile {
    FILE *file;
    int lines = 0;
    char line[kLine + 1] = "";

    bool next() { return lines++ < kMostLines && STR_read_line(file, line, kLine) >= 0; }
};

/* A name of no length would open standard input. */
FILE *open_file(const char *name) {
    FILE *file = *name ? FILE_open_data(name) : nullptr;
    if (!file)
        MSG_print(MSG_WARN, "Unable to open region file: %s\n", name);
    return file;
}

void set_row(int n, const char *abbr, const char *description) {
    if (strlen(abbr) > kAbbreviation)
        MSG_print(MSG_WARN, "REG_read_table: Abbreviation cut to %d characters: %s\n",
                  int(kAbbreviation), abbr);
    snprintf(region.abbrs[n], sizeof region.abbrs[n], "%.*s", int(kAbbreviation), abbr);
    snprintf(region.descriptions[n], sizeof region.descriptions[n], "%.*s", int(kDescription),
             description);
    STR_replace_char(region.descriptions[n], '_', ' ');
    region.items[size_t(n)] = menu_row(region.descriptions[n], region.abbrs[n], n);
}
} // namespace

void REG_read_table(const char *name) {
    if (!region.read)
        for (int n = 1; n < kRows; n++)
            region.items[size_t(n)] = MenuItem{};
    region.read = true;
    FILE *file = open_file(name);
    if (!file)
        return;
    RegionFile in{file};
    int n = 1;
    char abbr[kLine + 1], description[kLine + 1];
    while (n < kRows && in.next()) {
        int shown = 0;
        if (sscanf(in.line, "%500s %500s %d", abbr, description, &shown) == 3 && shown != 0)
            set_row(n++, abbr, description);
    }
    FILE_close(file);
    region.items[size_t(n)] = MenuItem{};
}

bool REG_table_read() { return region.read; }

/* Looks a line up.  Returns 1 with the answer, 0 where the search ends without, -1 to go on. */
static int match_line(const char *line, const char *wanted, std::string *out) {
    if (line[0] == '#')
        return -1;
    char abbr[kLine + 1], text[kLine + 1];
    const int words = sscanf(line, "%500s %*s %*d %500s", abbr, text);
    if (words < 1)
        return 0;
    if (words > 1 && wanted && STR_casecmp(abbr, wanted))
        return -1;
    *out = words > 1 ? text : abbr;
    return 1;
}

int REG_lookup(const char *name, const char *wanted, std::string *out) {
    FILE *file = open_file(name);
    if (!file)
        return 0;
    RegionFile in{file};
    int found = -1;
    while (found < 0 && in.next())
        found = match_line(in.line, wanted, out);
    FILE_close(file);
    return found == 1 ? 1 : 0;
}

void REG_list(const char *name) {
    FILE *file = open_file(name);
    if (!file)
        return;
    MSG_print(MSG_PRINT, " Abbr    Description\n");
    RegionFile in{file};
    char abbr[kLine + 1], description[kLine + 1];
    while (in.next())
        if (sscanf(in.line, "%500s %500s", abbr, description) == 2)
            MSG_print(MSG_PRINT, "%-8s %-50s\n", abbr, description);
    FILE_close(file);
}

const MenuItem *REG_menu() { return region.items.data(); }

const char *REG_first_abbr() { return region.items[1].abbr ? region.items[1].abbr : ""; }

static const BuiltinRegion *find_builtin(const char *abbr) {
    for (const BuiltinRegion &row : kBuiltin)
        if (!STR_casecmp(row.abbr, abbr))
            return &row;
    return nullptr;
}

int DOM_region_builtin(const char *abbr, Domain *domain) {
    const BuiltinRegion *row = find_builtin(abbr);
    if (!row)
        return 0;
    *domain = Domain{};
    domain->proj = PROJ_POLAR;
    domain->clat = row->clat;
    domain->clon = row->clon;
    if (row->clat == MISSING_F) {
        domain->clat = MSG_prompt_float("Enter the central latitude: ");
        domain->clon = MSG_prompt_float("Enter the central longitude: ");
    }
    domain->plon = domain->clon;
    domain->nx = kGridColumns;
    domain->ny = kGridRows;
    domain->dx = domain->dy = row->spacing;
    DOM_set_priority(DOM_span(domain->ny, domain->dy));
    PAR_set(PAR_DOMAIN, 1);
    return 1;
}

void REG_reset() { region = RegionState{}; }
