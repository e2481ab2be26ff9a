/* Texts that users write: domains, styles, levels, labels, time expressions, file name templates.
 */
#include "files/file_current.h"
#include "files/file_input.h"
#include "files/file_name.h"
#include "files/file_template.h"
#include "kernel/plot_attr.h"
#include "plot/domain_text.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/projection.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static void try_names(const std::string &text) {
    const size_t half = text.size() / 2;
    FILE_state().conv_input = "@" + text.substr(0, half);
    std::string out;
    const DateTime date = *DT_make(2013, 5, 20, 20, 16);
    FILE_date_name(&date, &out);
    const std::string typed = text.substr(half);
    if (STR_ncasecmp(typed.c_str(), "exit", 4)) // which ends the process
        FILE_make_name(typed.c_str(), &out);
    FILE_parse_hour(text.c_str(), nullptr);
    DateTime parsed;
    DT_parse(text.c_str(), &parsed);
}

static void try_domain(const std::string &text) {
    Domain domain;
    if (DOM_decode(text.c_str(), &domain) < 1)
        return;
    PRJ_set_domain(&domain);
    float x, y, lat, lon;
    PRJ_latlon_to_xy(35.0f, -97.0f, &x, &y);
    PRJ_xy_to_latlon(x, y, &lat, &lon);
    PRJ_offset_xy(x, y, 45.0f, 100.0f, &x, &y);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    MSG_set_levels("none");
    const std::string text(reinterpret_cast<const char *>(data), size);
    try_domain(text);
    try_names(text);
    PlotAttr attr;
    ATTR_parse(text.c_str(), &attr);
    CONT_clear_fill_colors();
    // A single word without a dash names a file, and "|" a command.
    if (text.find('-') != std::string::npos && text.find('|') == std::string::npos)
        CONT_set_fill_colors(text.c_str(), 1);
    std::string label;
    PLT_expand_label(text.c_str(), &label);
    DRAW_parse(text.c_str());
    return 0;
}
