/* Writes the table of options and of plot parameters, from the tables that the program itself
 * takes them from.  Ends with status 1 where a keyword has no word of explanation, or where an
 * explanation is left without its keyword.
 *
 *   write_tables >docs/options.md
 */
#include "decoders/level2_plot.h"
#include "decoders/nids_options.h"
#include "decoders/radar_options.h"
#include "plot/levels.h"
#include "plot/plot_param.h"
#include "plot/station_plot.h"
#include "shell/options.h"
#include "shell/param_words.h"
#include "shell/variables.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

namespace {

/* A keyword as a user writes it, behind its name, and what it does. */
struct Explanation {
    const char *name;
    const char *value;
    const char *effect;
};

constexpr const char *kFamily = "taken for other programs of the family, without effect here";

constexpr Explanation kPage[] = {
    {"full", "", "the plot fills the page"},
    {"fullab", "", "the same, with the labels inside it"},
    {"nopage", "", "messages run through"},
    {"page", "", "messages stop at each screen"},
    {"noredraw", "", "nothing is kept for a redraw"},
    {"id", "", "places are labelled by identifier"},
    {"wmo", "", "places are labelled by WMO number"},
    {"cod_wmo", "", "places are labelled by identifier and WMO number"},
    {"tz", "=ZONE", "time zone of the labels"},
    {"over", "=OFFSET:LINES", "labels stand so many lines lower, and take so many lines"},
    {"lalo", "=LAT:LON", "grid of latitudes and longitudes, degrees apart"},
    {"gridx", "=N", kFamily},
    {"plt_skip", "=X:Y", "values at each so many points of a grid"},
    {"plt_off", "", "values stand on the points of a grid"},
    {"plt_grid", "", kFamily},
    {"loc_pr", "=N", "lowest priority of the places by which a region is named"},
    {"vp_size", "=WxH+X+Y", "part of the page"},
    {"font", "=NAME", "font of all texts"},
    {"gif_inter", "", "GIF files in passes"},
    {"gif_norm", "", "GIF files from the top down"},
    {"gif_trans", "", "GIF files with a transparent background"},
    {"inv", "", "black on white"},
    {"lcmap", "", "a colour map of its own"},
    {"nolcmap", "", "the colour map of the display"},
    {"rwclr", "", "colours that can be changed later"},
    {"norwclr", "", "colours shared with other programs"},
    {"nolooptitle", "", "no frame number in the title"},
    {"pscolor", "", "colour in PostScript"},
    {"psrev", "", "PostScript in reversed greys"},
    {"clear", "", "an attached picture is cleared first"},
    {"new", "", "an attached window is asked for a new frame"},
    {"kill", "", "an attached window is told to end its wait"},
    {"bar", "=MIN:MAX", "colour bar"},
    {"nobar", "", "no colour bar"},
    {"nohdr", "", "native pictures without their header"},
    {"shadow", "=PIXELS", "texts and markers on a shadow"},
    {"max_bad", "=N", kFamily},
    {"min_size", "=BYTES", "smaller files do not count as current data"},
    {"grdfmt", "=FORMAT", kFamily},
    {"gif", "=NAME", "picture file: GIF"},
    {"png", "=NAME", "picture file: PNG"},
    {"img", "=NAME", "picture file: native"},
    {"xwd", "=NAME", "picture file: window dump"},
};

constexpr Explanation kContours[] = {
    {"fill", "=PATTERN", "fill pattern of the bands"},
    {"lab", "=STEP:MAJOR", "each so many levels have a label, and a major one"},
    {"rlab", "", "labels along their lines"},
    {"hlab", "", "labels lie level"},
    {"maxl", "=N", "cells with more levels are left out; 0 leaves none out"},
    {"conmin", "=VALUE", "lowest value that is drawn"},
    {"conmax", "=VALUE", "highest value that is drawn"},
    {"grid", "", "the grid of the data"},
    {"mapcon", "", "the map below the contours"},
    {"conmap", "", "the map over the contours"},
};

constexpr Explanation kStations[] = {
    {"skip", "=N", "each so many records of a file"},
    {"text", "=TEXT", "a text in place of the values"},
    {"mark", "=MARKER", "a marker at each point; `cld` a sky circle"},
    {"line", "", "points are joined"},
    {"yba", "=Y", "where bars begin"},
    {"xy=", "X:Y", "place beside the point, in steps"},
};

constexpr Explanation kRadars[] = {
    {"site", "", "a mark at the radar"},
    {"dist", "=R1:R2:R3:R4", "range rings, nautical miles; 100 without a number"},
    {"nodist", "", "no range rings"},
    {"graph", "", "the graphic block of the product"},
    {"nograph", "", "without it"},
    {"refresh", "", "a newer file is looked for every minute"},
    {"clutter", "=N", "so many bins around the radar stay blank; 25 without a number"},
    {"noclutter", "", "no bins stay blank"},
};

constexpr Explanation kNids[] = {
    {"strong", "", "storms with hail, rotation or a tornado alone"},
    {"numplt", "=N", "the first storms alone"},
};

constexpr Explanation kVariables[] = {
    {"labm", "in", "labels of variables: as short as can be"},
    {"labs", "imp", "simple"},
    {"labn", "orm", "as usual"},
    {"labc", "omp", "in full"},
};

constexpr Explanation kLevel2[] = {{"range", "=KM", "half the height of the plot"}};

/* What the keywords of one module are about. */
struct Chapter {
    const char *title;
    ParamNames names;
    std::map<std::string, Explanation> known;
};

template <size_t N>
Chapter chapter(const char *title, const ParamNames &names, const Explanation (&known)[N]) {
    Chapter c{title, names, {}};
    for (const Explanation &e : known)
        c.known[e.name] = e;
    return c;
}

int missing = 0;

void complain(const Chapter &c, const std::string &name, const char *what) {
    fprintf(stderr, "write_tables: %s: %s %s\n", c.title, name.c_str(), what);
    missing++;
}

void write_chapter(Chapter c) {
    printf("\n### %s\n\n| word | effect |\n|---|---|\n", c.title);
    for (const char *name : c.names) {
        const auto found = c.known.extract(name);
        if (found.empty())
            complain(c, name, "is not explained");
        else
            printf("| `%s%s` | %s |\n", name, found.mapped().value, found.mapped().effect);
    }
    for (const auto &[name, explanation] : c.known)
        complain(c, name, "is no keyword");
}

/* A bar would end the field. */
std::string field(const char *text) {
    std::string safe;
    for (const char *c = text; *c; c++)
        safe += *c == '|' ? "\\|" : std::string(1, *c);
    return safe;
}

void write_options(const int *ids) {
    for (; *ids; ids++) {
        OptionSpec row;
        OPT_describe(&row, *ids);
        const OptionHelp help = OPT_help(*ids);
        const std::string form = row.option
                                     ? "-" + std::string(row.option) +
                                           (strchr(help.form, ' ') ? strchr(help.form, ' ') : "")
                                     : help.form;
        printf("| `%s` | `%s` | `%s` | %s |\n", field(form.c_str()).c_str(), row.name, row.env_name,
               field(help.help).c_str());
    }
}

} // namespace

int main() {
    printf(
        "# Options and plot parameters\n\n"
        "Written by `write_tables` from the program's own tables.\n\n"
        "## Options\n\n"
        "A resource can stand in a defaults file under its name, in the environment under the\n"
        "name here or `qra` with the name of the resource behind it, and on the command line;\n"
        "the last of these wins.  `-df FILES` names the defaults files, `-na NAME` the name that\n"
        "the program goes by in them.\n\n"
        "| option | resource | environment | |\n|---|---|---|---|\n");
    write_options(OPT_keyed_ids);
    write_options(OPT_positional_ids);
    printf("\n## Plot parameters\n\nThe words of `-pp`, separated by commas.\n");
    write_chapter(chapter("Page, labels, devices and files", PLT_param_names(), kPage));
    write_chapter(chapter("Contours and levels", CONT_param_names(), kContours));
    write_chapter(chapter("Values at places", PLOT_param_names(), kStations));
    write_chapter(chapter("Labels of variables", VAR_param_names(), kVariables));
    write_chapter(chapter("Every radar", RADAR_param_names(), kRadars));
    write_chapter(chapter("NIDS products", NIDS_param_names(), kNids));
    write_chapter(chapter("Level II archives", LEV2_param_names(), kLevel2));
    return missing > 0;
}
