#include "kernel/plot_attr.h"

#include "kernel/color_table.h"
#include "kernel/fonts.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <cstdlib>
#include <cstring>

namespace {
struct NamedValue {
    const char *name;
    int value;
};
constexpr NamedValue kLineStyles[] = {
    {"sol", 1}, {"dsh", 2}, {"lsdsh", 3}, {"llsdsh", 4}, {"dot", 5},
};
constexpr NamedValue kFills[] = {
    {"sol", 0}, {"st", 1},   {"ost", 2}, {"rst", 3}, {"lst", 4}, {"vln", 5}, {"||", 5},
    {"dlr", 6}, {"\\\\", 6}, {"drl", 7}, {"//", 7},  {"hln", 8}, {"--", 8},  {"hat", 9},
    {"XX", 9},  {"clr", 10}, {"0%", 10}, {"1%", 11}, {"2%", 12}, {"3%", 13}, {"4%", 14},
    {"5%", 15}, {"6%", 16},  {"7%", 17}, {"8%", 18}, {"9%", 19},
};
/* A marker's text only has to begin with the name. */
constexpr NamedValue kMarkers[] = {
    {"pnt", 1},  {".", 1},      {"plus", 2}, {"+", 2},    {"star", 3}, {"*", 3},
    {"crcl", 4}, {"circle", 4}, {"o", 4},    {"x", 5},    {"sqr", 6},  {"square", 6},
    {"#", 6},    {"tri", 7},    {"^", 7},    {"itri", 9}, {"v", 9},    {"dot", 8},
};

template <size_t N>
int value_of(const NamedValue (&table)[N], const char *text) {
    for (const NamedValue &row : table)
        if (STR_casecmp(text, row.name) == 0)
            return row.value;
    return atoi(text);
}

float number_of(const char *text) { return strtof(text, nullptr); }

/* A field begins with a word, in any case, or with a letter, in this one.  value is the text
 * behind it. */
struct FieldRule {
    const char *prefix;
    bool any_case;
    void (*set)(const char *value, PlotAttr *attr);
};
constexpr FieldRule kFields[] = {
    {"co=", true, [](const char *v, PlotAttr *a) { a->color = COLOR_index(v); }},
    {"wi=", true, [](const char *v, PlotAttr *a) { a->width = number_of(v); }},
    {"st=", true, [](const char *v, PlotAttr *a) { a->style = value_of(kLineStyles, v); }},
    {"fo=", true, [](const char *v, PlotAttr *a) { a->font = gfont_id(v); }},
    {"fi=", true, [](const char *v, PlotAttr *a) { a->fill = ATTR_fill_index(v); }},
    {"fp=", true, [](const char *v, PlotAttr *a) { a->fill = ATTR_fill_index(v); }},
    {"sc=", true, [](const char *v, PlotAttr *a) { a->height = number_of(v); }},
    {"hi=", true, [](const char *v, PlotAttr *a) { a->height = number_of(v); }},
    {"te=", true, [](const char *v, PlotAttr *a) { a->expansion = number_of(v); }},
    {"w", false, [](const char *v, PlotAttr *a) { a->width = number_of(v); }},
    {"s", false, [](const char *v, PlotAttr *a) { a->style = atoi(v); }},
    {"t", false, [](const char *v, PlotAttr *a) { a->font = atoi(v); }},
    {"fM", false, [](const char *, PlotAttr *a) { a->fill = MISSING; }},
    {"f", false, [](const char *v, PlotAttr *a) { a->fill = atoi(v); }},
    {"h", false, [](const char *v, PlotAttr *a) { a->height = number_of(v); }},
    {"e", false, [](const char *v, PlotAttr *a) { a->expansion = number_of(v); }},
};

void parse_field(const char *field, PlotAttr *attr) {
    for (const FieldRule &rule : kFields) {
        const size_t length = strlen(rule.prefix);
        if (rule.any_case ? STR_ncasecmp(field, rule.prefix, length)
                          : strncmp(field, rule.prefix, length))
            continue;
        rule.set(field + length, attr);
        return;
    }
}
} // namespace

void ATTR_init(PlotAttr *attr) { *attr = PlotAttr{}; }

void ATTR_parse(const char *text, PlotAttr *attr) {
    const StrList fields(text, ':');
    int i = 0;
    if (*fields[0] && !strchr(fields[0], '=')) {
        attr->color = COLOR_index(fields[0]);
        i = 1;
    }
    for (; i < fields.count; i++)
        parse_field(fields[i], attr);
}

int ATTR_from_resource(const char *resource, const char *default_text, PlotAttr *attr) {
    ATTR_parse(default_text, attr);
    const char *text = RES_get(resource);
    ATTR_parse(text, attr);
    return text ? 1 : 0;
}

void ATTR_merge(PlotAttr *to, const PlotAttr *from) {
    for (int PlotAttr::*field :
         {&PlotAttr::color, &PlotAttr::style, &PlotAttr::fill, &PlotAttr::font})
        if (from->*field != MISSING)
            to->*field = from->*field;
    for (float PlotAttr::*field : {&PlotAttr::width, &PlotAttr::height, &PlotAttr::expansion})
        if (from->*field != MISSING_F)
            to->*field = from->*field;
}

void ATTR_print(const PlotAttr *attr) {
    MSG_print(MSG_PRINT, "Color: %d\n", attr->color);
    MSG_print(MSG_PRINT, "Style: %d\n", attr->style);
    MSG_print(MSG_PRINT, "Height: %5.2f\n", double(attr->height));
    MSG_print(MSG_PRINT, "Width: %5.2f\n", double(attr->width));
    MSG_print(MSG_PRINT, "Expansion: %5.2f\n", double(attr->expansion));
    MSG_print(MSG_PRINT, "Fill: %d\n", attr->fill);
    MSG_print(MSG_PRINT, "Font: %d\n", attr->font);
}

int ATTR_fill_index(const char *text) { return text ? value_of(kFills, text) : 0; }

int ATTR_marker_index(const char *text) {
    if (!text)
        return 0;
    for (const NamedValue &row : kMarkers)
        if (STR_ncasecmp(text, row.name, strlen(row.name)) == 0)
            return row.value;
    return atoi(text);
}
