/* Keywords of a metafile in its text form: what the writer puts down and the reader looks for. */
#pragma once

#include "kernel/object_code.h"

#include <cstddef>

/* Operands behind a keyword. */
enum class MetaForm {
    Int,
    Float,
    IntPair,   // "%d %d"
    FloatPair, // "%f,%f"
    Rect,      // number, xmin, ymin, xmax, ymax
    Color,     // workstation, index, red, green, blue
    Points,    // count, then "%f,%f " each, four to a line
    Text,      // "%f,%f", a blank, the text to the end of the line
};

enum class MetaReading {
    Play,
    Pass, // read and left out: the size of the page is the reading workstation's own
};

struct MetaWord {
    const char *word;
    ObjCode code;
    MetaForm form;
    MetaReading reading = MetaReading::Play;
};

/* The most frequent first.  "WS_VP", "ME" and "CLR_REG" are written but not read: these lines are
 * passed over, as are unknown ones. */
inline constexpr MetaWord kMetaWords[] = {
    {"FA", OBJ_FILL, MetaForm::Points},
    {"FA_CLR", OBJ_FILL_COLOR, MetaForm::Int},
    {"PL", OBJ_LINE, MetaForm::Points},
    {"PM", OBJ_MARKER, MetaForm::Points},
    {"TE", OBJ_TEXT, MetaForm::Text},
    {"PL_CLR", OBJ_LINE_COLOR, MetaForm::Int},
    {"PL_LW", OBJ_LINE_WIDTH, MetaForm::Float},
    {"PL_TYPE", OBJ_LINE_TYPE, MetaForm::Int},
    {"PM_CLR", OBJ_MARKER_COLOR, MetaForm::Int},
    {"PM_SIZE", OBJ_MARKER_SIZE, MetaForm::Float},
    {"PM_WDTH", OBJ_MARKER_WIDTH, MetaForm::Float},
    {"PM_TYPE", OBJ_MARKER_TYPE, MetaForm::Int},
    {"FA_INT", OBJ_FILL_STYLE, MetaForm::Int},
    {"FA_ST", OBJ_FILL_INDEX, MetaForm::Int},
    {"TE_CLR", OBJ_TEXT_COLOR, MetaForm::Int},
    {"TE_HGHT", OBJ_CHAR_HEIGHT, MetaForm::Float},
    {"TE_EXP", OBJ_CHAR_EXPANSION, MetaForm::Float},
    {"TE_WDTH", OBJ_TEXT_WIDTH, MetaForm::Float},
    {"TE_SPC", OBJ_CHAR_SPACE, MetaForm::Float},
    {"TE_CSPC", OBJ_CHAR_FIXED, MetaForm::Float},
    {"TE_UP", OBJ_CHAR_UP, MetaForm::FloatPair},
    {"TE_ALGN", OBJ_TEXT_ALIGN, MetaForm::IntPair},
    {"TE_FNT", OBJ_FONT, MetaForm::IntPair},
    {"TR", OBJ_SELECT, MetaForm::Int},
    {"VP", OBJ_VIEWPORT, MetaForm::Rect},
    {"WIN", OBJ_WINDOW, MetaForm::Rect},
    {"CLR", OBJ_COLOR, MetaForm::Color},
    {"WS_WIN", OBJ_WS_WINDOW, MetaForm::Rect, MetaReading::Pass},
};
