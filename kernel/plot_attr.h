/* Drawing style: one record, written by users as "red:w2:s2" or "co=red:wi=2". */
#pragma once

#include "shell/missing.h"

/* A style laid over the current state of the kernel: a missing field leaves it as it is, and so
 * does a negative colour. */
struct PlotAttr {
    int color = MISSING;         // index; -1 none, -2 end of a list
    float width = MISSING_F;     // line or stroke width
    float height = MISSING_F;    // factor on a base size
    float expansion = MISSING_F; // of text
    int style = MISSING;         // line style
    int fill = MISSING;          // 0 solid, else a hatch index
    int font = MISSING;
};

void ATTR_init(PlotAttr *attr);

/* Lays a text over the record.  What it does not know, it ignores. */
void ATTR_parse(const char *text, PlotAttr *attr);

/* default_text, then the resource's value over it.  Returns 1 when the resource was set, else 0.
 * This is how every style is read. */
int ATTR_from_resource(const char *resource, const char *default_text, PlotAttr *attr);

/* Copies the fields of from that are not missing. */
void ATTR_merge(PlotAttr *to, const PlotAttr *from);

void ATTR_print(const PlotAttr *attr);

/* Fill pattern and marker type of a name or a number. */
int ATTR_fill_index(const char *text);
int ATTR_marker_index(const char *text);
