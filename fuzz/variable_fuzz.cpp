/* Variables and values at places: a variable file with an expression, conditions, formats,
 * stations. The first byte of an input chooses; the first line is an expression, all behind it a
 * file. */
#include "fuzz/file_of.h"
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "plot/number_format.h"
#include "plot/plot_window.h"
#include "plot/station_file.h"
#include "plot/station_plot.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"
#include "shell/variables.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static void check(bool holds) {
    if (!holds)
        abort();
}

/* An expression may name a file of its own, and a name may be a command: not here. */
static void parse(const std::string &line, const char *file) {
    if (STR_ncasecmp(line.c_str(), "fi:", 3) == 0)
        return;
    VAR_open_file(file);
    VAR_load_menu();
    VAR_list();
    const int found = VAR_parse(VAR_file(), line.c_str());
    check(found == (VAR_count() > 0) && VAR_count() <= VAR_MAX);
    std::string label;
    for (int i = 0; i < VAR_count(); i++) {
        VAR_label(i, &label);
        check(*VAR_name(i) != '\0');
    }
}

static void match(const std::string &line, const char *) {
    const size_t blank = std::min(line.find(' '), line.size());
    VAR_match_pattern(line.substr(0, blank).c_str(), line.c_str() + blank);
}

/* A format is laid on, and its number format written. */
static void format(const std::string &line, const char *) {
    PlotFormat format;
    PLOT_parse_format(&format, line.c_str());
    std::string text;
    if (FMT_number_z(format.format.c_str(), -1.5f, &text))
        check(text.size() < 250);
    if (FMT_number(line.c_str(), 3e38f, &text))
        check(text.size() < 250);
    RES_set("plot_param", line.c_str());
    PLOT_param();
    RES_set("plot_param", "");
}

/* A raw file of stations is drawn on paper.  A command in the format would be the user's own. */
static void stations(const std::string &line, const char *file) {
    if (!gis_open()) {
        gregister_devices();
        gopen_ws(1, "/dev/null", WS_PS);
    }
    if (line.find('|') != line.npos)
        return;
    Domain domain;
    DOM_init(&domain);
    domain.proj = PROJ_POLAR;
    domain.clat = 35.0f;
    domain.clon = -97.0f;
    domain.nx = domain.ny = 11;
    domain.dx = domain.dy = 0.5f;
    PLT_set_domain(&domain);
    PLOT_file((std::string(file) + ":" + line).c_str(), 1);
}

using Target = void (*)(const std::string &line, const char *file);
static constexpr Target kTargets[] = {parse, stations, match, format};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 2)
        return 0;
    static const bool quiet = (MSG_set_levels("none"), true);
    const std::string text(reinterpret_cast<const char *>(data) + 1, size - 1);
    const size_t end = std::min(text.find('\n'), text.size());
    const MemoryFile variables(std::string_view(text).substr(end));
    if (quiet && variables.whole)
        kTargets[data[0] % std::size(kTargets)](text.substr(0, end), variables.name().c_str());
    VAR_reset();
    return 0;
}
