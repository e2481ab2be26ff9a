#include "plot/domain_text.h"

#include "files/file_name.h"
#include "plot/city.h"
#include "plot/region.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/strings.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {
struct DomainTextState {
    int depth = 0; // decodes under way, one inside the other
};
constinit DomainTextState domain_text;

/* A region may name a region.  Those of a file can name each other in a circle. */
constexpr int kDeepest = 8;

constexpr int kGridColumns = 25;
constexpr int kGridRows = 17;
constexpr float kSpacing = 1.2f;
constexpr const char *kCityFile = "sao.cty";
constexpr const char *kRegionFile = "qra.reg";

enum class Slot : uint8_t { End, Proj, Plon, Clat, Clon, Nx, Ny, Dx, Dy, Id, Region };

/* What a form leaves to be filled in. */
enum Fill : unsigned {
    FILL_PROJ = 1,     // polar stereographic
    FILL_GRID = 2,     // grid size
    FILL_SPACING = 4,  // dx and dy
    FILL_DY = 8,       // dy from dx
    FILL_BY_PROJ = 16, // what two numbers behind a projection mean
    IS_REGION = 32,    // the result is 2
};

constexpr int kMostSlots = 9; // with the End
struct Form {
    const char *name;
    Slot slots[kMostSlots];
    unsigned fill;
};
using enum Slot;
/* In the order of trial.  Six plain numbers behind a projection are always the form with a plon. */
constexpr Form kForms[] = {
    {"proj,nx,ny", {Proj, Nx, Ny}, 0},
    {"proj,plon,clat,clon,nx,ny,dx,dy", {Proj, Plon, Clat, Clon, Nx, Ny, Dx, Dy}, 0},
    {"proj,clat,clon,nx,ny,dx,dy", {Proj, Clat, Clon, Nx, Ny, Dx, Dy}, 0},
    {"proj,plon,clat,clon,dx,dy", {Proj, Plon, Clat, Clon, Dx, Dy}, FILL_GRID},
    {"proj,clat,clon,nx,ny,dx", {Proj, Clat, Clon, Nx, Ny, Dx}, FILL_DY},
    {"clat,clon,nx,ny,dx,dy", {Clat, Clon, Nx, Ny, Dx, Dy}, FILL_PROJ},
    {"proj,clat,clon,dx,dy", {Proj, Clat, Clon, Dx, Dy}, FILL_GRID},
    {"clat,clon,nx,ny,dx", {Clat, Clon, Nx, Ny, Dx}, FILL_PROJ | FILL_DY},
    {"proj,clat,clon,dx", {Proj, Clat, Clon, Dx}, FILL_GRID | FILL_DY},
    {"clat,clon,nx,ny", {Clat, Clon, Nx, Ny}, FILL_PROJ | FILL_SPACING},
    {"clat,clon,dx", {Clat, Clon, Dx}, FILL_PROJ | FILL_GRID | FILL_DY},
    {"proj,clat,clon", {Proj, Clat, Clon}, FILL_BY_PROJ},
    {"clat,clon", {Clat, Clon}, FILL_PROJ | FILL_GRID | FILL_SPACING},
    {"id:###", {Id}, FILL_PROJ | FILL_GRID | FILL_SPACING},
    {"reg:REG", {Region}, IS_REGION},
};
constexpr const Form &kSizeForm = kForms[0]; // tried behind the word "size" alone

bool scan_float(const char *text, float *value) { return sscanf(text, "%f", value) == 1; }

/* A number too large for an integer is the nearest one. */
bool scan_int(const char *text, int32_t *value) {
    char *end = nullptr;
    const long number = strtol(text, &end, 10);
    if (end == text)
        return false;
    *value = int32_t(std::clamp<long>(number, INT_MIN, INT_MAX));
    return true;
}

bool is_id(const char *field) { return !STR_ncasecmp(field, "id:", 3); }

bool is_ellipse_mark(const char *field) { return !STR_casecmp(field, "e"); }

/* Keyword, optional "e", origin, parameters.  What is empty or no number stays missing. */
bool read_projection(const char *field, Domain *domain) {
    const StrList parts(field, ':');
    domain->proj = DOM_projection_code(parts[0]);
    if (domain->proj == -1) {
        domain->proj = PROJ_POLAR;
        return false;
    }
    domain->ellipse = is_ellipse_mark(parts[1]) ? 1 : 0;
    if (parts.count == 2) {
        scan_float(parts[1], &domain->plon);
        return true;
    }
    int next = domain->ellipse ? 2 : 1;
    scan_float(parts[next++], &domain->plat);
    scan_float(parts[next++], &domain->plon);
    for (int i = 0; i < 4; i++)
        scan_float(parts[next++], &domain->parm[i]);
    return true;
}

/* "id:STATION", "id:FILE:STATION". */
bool read_id(const char *field, Domain *domain) {
    if (!is_id(field))
        return false;
    const char *key = field + 3;
    std::string file = kCityFile;
    if (const char *colon = strrchr(key, ':')) {
        file.assign(key, colon);
        key = colon + 1;
    }
    return CTY_find_latlon(file.c_str(), key, &domain->clat, &domain->clon) == 1;
}

void read_plain_region(const char *name, Domain *domain) {
    std::string text;
    if (REG_lookup(kRegionFile, name, &text) == 1)
        DOM_decode(text.c_str(), domain);
    else if (DOM_region_builtin(name, domain) != 1)
        domain->proj = -1;
}

/* Fails only for a station: an unknown region is left for the plot to meet. */
bool read_region(const char *field, Domain *domain) {
    if (is_id(field))
        return false;
    const char *colon = strrchr(field, ':');
    if (!colon) {
        read_plain_region(field, domain);
        return true;
    }
    std::string file(field, colon);
    const char *name = colon + 1;
    if (!*name) {
        REG_read_table(file.c_str());
        return true;
    }
    if (!STR_ncasecmp(field, "fi:", 3)) {
        file = field + 3;
        name = nullptr;
    }
    std::string text;
    // A region that leads nowhere is none of an unset domain, which would take the data's own.
    if (REG_lookup(file.c_str(), name, &text) != 1 || DOM_decode(text.c_str(), domain) == -1)
        domain->proj = -1;
    return true;
}

bool read_slot(Slot slot, const char *field, Domain *domain) {
    switch (slot) {
    case Proj:
        return read_projection(field, domain);
    case Plon:
        return scan_float(field, &domain->plon);
    case Clat:
        return scan_float(field, &domain->clat);
    case Clon:
        return scan_float(field, &domain->clon);
    case Dx:
        return scan_float(field, &domain->dx);
    case Dy:
        return scan_float(field, &domain->dy);
    case Nx:
        return scan_int(field, &domain->nx);
    case Ny:
        return scan_int(field, &domain->ny);
    case Id:
        return read_id(field, domain);
    case Region:
        return read_region(field, domain);
    case End:
        break;
    }
    return false;
}

/* The slots of a form for these fields: a station takes the place of a latitude and a longitude.
 * Returns their number. */
int arrange_slots(const Form &form, const StrList &fields, Slot slots[kMostSlots]) {
    int n = 0;
    for (int i = 0; form.slots[i] != End; i++) {
        slots[n] = form.slots[i];
        if (slots[n] == Clat && is_id(fields[n])) {
            slots[n] = Id;
            if (form.slots[i + 1] == Clon)
                i++;
        }
        n++;
    }
    return n;
}

bool is_nothing(const char *field) {
    return !STR_casecmp(field, "miss") || !STR_casecmp(field, "none");
}

bool match_form(const Form &form, const StrList &fields, Domain *domain) {
    *domain = Domain{};
    Slot slots[kMostSlots];
    if (arrange_slots(form, fields, slots) != fields.count)
        return false;
    if (is_nothing(fields[0]))
        return true;
    for (int i = 0; i < fields.count; i++)
        if (!read_slot(slots[i], fields[i], domain))
            return false;
    return true;
}

int whole_number(float value) { return std::abs(value) < 1e9f ? int(value) : MISSING; }

/* Two numbers behind a projection: a size, or a centre with the default grid. */
void fill_by_projection(Domain *domain) {
    if (domain->proj == PROJ_SIZE) {
        domain->nx = whole_number(domain->clat);
        domain->ny = whole_number(domain->clon);
        domain->clat = domain->clon = MISSING_F;
        return;
    }
    domain->dx = domain->dy = domain->proj == PROJ_ZOOM ? 1.0f : kSpacing;
    domain->nx = kGridColumns;
    domain->ny = kGridRows;
}

void fill_in(unsigned fill, Domain *domain) {
    if (fill & FILL_PROJ)
        domain->proj = PROJ_POLAR;
    if (fill & FILL_GRID) {
        domain->nx = kGridColumns;
        domain->ny = kGridRows;
    }
    if (fill & FILL_SPACING)
        domain->dx = domain->dy = kSpacing;
    if (fill & FILL_DY)
        domain->dy = domain->dx;
    if (fill & FILL_BY_PROJ)
        fill_by_projection(domain);
}

/* 1 or 2 by the first form that fits, else -1 with an empty record. */
int decode_fields(const char *text, Domain *domain) {
    const StrList fields(text, ',');
    MSG_print(MSG_DEBUG_C, "******** PARSING DOMAIN: %d %s\n", fields.count, text);
    for (const Form &form : kForms) {
        if (&form == &kSizeForm && STR_casecmp(fields[0], "size"))
            continue;
        const bool match = match_form(form, fields, domain);
        MSG_print(MSG_DEBUG_C, "%2d %s\n", match ? 1 : 0, form.name);
        if (!match)
            continue;
        fill_in(form.fill, domain);
        return form.fill & IS_REGION ? 2 : 1;
    }
    *domain = Domain{};
    return -1;
}

int decode_bounded(const char *text, Domain *domain) {
    int result = -1;
    if (domain_text.depth < kDeepest) {
        domain_text.depth++;
        result = decode_fields(text, domain);
        domain_text.depth--;
    }
    if (result == -1)
        MSG_print(MSG_ERROR, "DOM_decode: Invalid plot domain\n");
    return result;
}
} // namespace

int DOM_decode(const char *text, Domain *domain) {
    *domain = Domain{};
    int result = MISSING;
    if (text && *text && STR_casecmp(text, "miss"))
        result = decode_bounded(text, domain);
    PAR_set(PAR_DOMAIN, result);
    FILE_set_key('r', text ? text : "");
    DOM_set_priority(DOM_span(domain->ny, domain->dy));
    return result;
}

int DOM_convert(const char *text, void *dest) {
    if (!dest)
        return 0;
    DOM_decode(text, static_cast<Domain *>(dest));
    return 1;
}
