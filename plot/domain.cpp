#include "plot/domain.h"

#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {
struct DomainState {
    int priority = 3;          // of stations
    int location_priority = 4; // of named places
};
constinit DomainState dom;

struct Keyword {
    const char *word;
    size_t match; // leading characters compared
    int code;
};
/* The first row that fits decides, so the order counts: "polar" is always the map projection, and
 * "lambaz" is conformal. */
constexpr Keyword kKeywords[] = {
    {"ll", 2, PROJ_LATLON},   {"lat", 3, PROJ_LATLON},     {"polar", 5, PROJ_POLAR},
    {"ps", 2, PROJ_POLAR},    {"sat", 3, PROJ_SATELLITE},  {"lamb", 4, PROJ_LAMBERT},
    {"lc", 2, PROJ_LAMBERT},  {"la", 2, PROJ_LAMBERT_AZ},  {"gn", 2, PROJ_GNOMONIC},
    {"or", 2, PROJ_ORTHO},    {"mo", 2, PROJ_MOLLWEIDE},   {"me", 2, PROJ_MERCATOR},
    {"pix", 3, PROJ_PIXEL},   {"xy", 2, PROJ_XY},          {"xlogy", 5, PROJ_XLOGP},
    {"xlogp", 5, PROJ_XLOGP}, {"cat", 3, PROJ_CATEGORY},   {"skewt", 5, PROJ_SKEWT},
    {"ema", 3, PROJ_EMAGRAM}, {"teph", 4, PROJ_TEPHIGRAM}, {"rteph", 5, PROJ_TEPHIGRAM_R},
    {"therm", 5, PROJ_SKEWT}, {"stuve", 5, PROJ_STUVE},    {"hodo", 4, PROJ_ANGLE},
    {"vert", 4, PROJ_XLOGP},  {"xp", 2, PROJ_XP},          {"polar", 5, PROJ_ANGLE},
    {"zoom", 4, PROJ_ZOOM},   {"size", 4, PROJ_SIZE},
};

struct CodeName {
    int code;
    const char *name;
};
constexpr CodeName kNames[] = {
    {PROJ_POLAR, "pstereo"},
    {PROJ_LATLON, "latlon"},
    {PROJ_MERCATOR, "merc"},
    {PROJ_LAMBERT, "lamb"},
    {PROJ_LAMBERT_AZ, "lambaz"},
    {PROJ_ORTHO, "ortho"},
    {PROJ_MOLLWEIDE, "moll"},
    {PROJ_GNOMONIC, "gnom"},
    {PROJ_SATELLITE, "sat"},
    {PROJ_PIXEL, "pixel"},
    {PROJ_XY, "xy"},
    {PROJ_XZ, "xz"},
    {PROJ_XLOGP, "xlogp"},
    {PROJ_ANGLE, "polar"},
    {PROJ_CATEGORY, "cat"},
    {PROJ_SKEWT, "skewt"},
    {PROJ_EMAGRAM, "ema"},
    {PROJ_STUVE, "stuve"},
    {PROJ_ZOOM, "zoom"},
};

/* Heights above which the priority is 1, 2, and so on. */
constexpr float kHeights[] = {50.0f, 25.0f, 12.5f, 6.25f, 3.0f};

const char *name_of(int code) {
    for (const CodeName &row : kNames)
        if (row.code == code)
            return row.name;
    return "";
}

bool same_origin(float a, float a_centre, float b, float b_centre) {
    return a == b || (a == MISSING_F && b == a_centre) || (b == MISSING_F && a == b_centre);
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::string origin_field(float value) {
    if (value == MISSING_F)
        return ":";
    char text[64];
    snprintf(text, sizeof text, ":%3.3f", double(value));
    return text;
}
} // namespace

void DOM_init(Domain *domain) { *domain = Domain{}; }

int DOM_same_projection(const Domain *a, const Domain *b) {
    return a->proj == b->proj && a->ellipse == b->ellipse &&
           same_origin(a->plat, a->clat, b->plat, b->clat) &&
           same_origin(a->plon, a->clon, b->plon, b->clon) &&
           std::equal(a->parm, a->parm + 5, b->parm);
}

int DOM_equal(const Domain *a, const Domain *b) {
    return DOM_same_projection(a, b) && a->clat == b->clat && a->clon == b->clon &&
           a->dx == b->dx && a->dy == b->dy && a->nx == b->nx && a->ny == b->ny;
}

int DOM_projection_code(const char *text) {
    for (const Keyword &row : kKeywords)
        if (!STR_ncasecmp(text, row.word, row.match))
            return row.code;
    return STR_casecmp(text, "miss") ? -1 : MISSING;
}

void DOM_print(uint32_t level, const Domain *domain) {
    if (!MSG_enabled(level))
        return;
    std::string text = name_of(domain->proj);
    if (domain->ellipse)
        text += ":e";
    for (float value :
         {domain->plat, domain->plon, domain->parm[0], domain->parm[1], domain->parm[2]})
        text += origin_field(value);
    MSG_print(level, "%s,%3.3f,%3.3f,%d,%d,%4.4f,%4.4f\n", text.c_str(), double(domain->clat),
              double(domain->clon), domain->nx, domain->ny, double(domain->dx), double(domain->dy));
}

float DOM_aspect(const Domain *domain) {
    if (domain->nx < 2 || domain->ny < 2)
        return 1.0f;
    return float(domain->nx - 1) / float(domain->ny - 1);
}

float DOM_span(int n, float spacing) { return float(int64_t(n) - 1) * spacing; }

bool DOM_is_earth(int proj) { return proj >= PROJ_POLAR && proj <= PROJ_SATELLITE; }

void DOM_set_priority(float extent) {
    dom.priority = 1;
    for (float height : kHeights) {
        if (extent > height)
            break;
        dom.priority++;
    }
    const char *text = RES_get("stat_prior");
    if (!text)
        return;
    if (is_digit(text[0]))
        dom.priority = text[0] - '0';
    else if (text[0] == '+' && is_digit(text[1]))
        dom.priority += text[1] - '0';
    else if (text[0] == '-' && is_digit(text[1]))
        dom.priority -= text[1] - '0';
}

void DOM_put_priority(int value) { dom.priority = value; }

int DOM_get_priority() { return dom.priority; }

void DOM_put_location_priority(int value) { dom.location_priority = value; }

int DOM_get_location_priority() { return dom.location_priority; }

void DOM_reset() { dom = DomainState{}; }
