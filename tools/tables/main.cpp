/* Writes the table of options and of plot parameters, from the tables that the program itself
 * takes them from.  Ends with status 1 where a keyword has no word of explanation, or where an
 * explanation is left without its keyword.
 *
 *   write_tables >docs/options.md
 */
#include "decoders/composite_plot.h"
#include "decoders/level2_plot.h"
#include "decoders/nids_options.h"
#include "decoders/radar_options.h"
#include "decoders/summary_options.h"
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
    {"nopage", "", "messages run through, from the first page on"},
    {"page", "", "messages stop at each screen"},
    {"noredraw", "", "nothing is kept for a redraw"},
    {"id", "", "the pointer names places by identifier"},
    {"wmo", "", "the pointer names places by WMO number"},
    {"cod_wmo", "", "the pointer names places by identifier, or a code of the WMO number"},
    {"tz", "=ZONE", "time zone of the labels"},
    {"over", "=OFFSET:LINES", "labels stand so many lines higher, and take so many lines"},
    {"lalo", "=LAT:LON:CROSS:LABEL",
     "grid of latitudes and longitudes, degrees apart, small crosses and repeated labels"},
    {"gridx", "=N", kFamily},
    {"plt_skip", "=X:Y", "`-pl value` writes each so many points of a grid"},
    {"plt_off", "", kFamily},
    {"plt_grid", "", kFamily},
    {"loc_pr", "=N", kFamily},
    {"vp_size", "=WxH+X+Y",
     "part of the page: a tile, as `2x2+0+1` for the lower left quarter, or fractions up to 1"},
    {"font", "=NAME", "font of all texts, of those in the font list"},
    {"gif_inter", "", "GIF files in passes"},
    {"gif_norm", "", "GIF files from the top down"},
    {"gif_trans", "", "GIF files with a transparent background"},
    {"inv", "", "black on white, in a window"},
    {"lcmap", "", "a window with a colour map of its own"},
    {"nolcmap", "", "the colour map of the display"},
    {"rwclr", "", "colours that can be changed later"},
    {"norwclr", "", "colours shared with other programs"},
    {"nolooptitle", "", "no frame number in the title"},
    {"pscolor", "", "colour in PostScript, and black for white texts"},
    {"psrev", "", "PostScript in reversed greys"},
    {"clear", "", "an attached picture is cleared first"},
    {"new", "", "an attached window is asked for a new frame"},
    {"kill", "", "an attached window is told to end its wait"},
    {"bar", "=MIN:MAX", "colour bar; its range, where the colours have no values of their own"},
    {"nobar", "", "no colour bar; the legend of intensities stays"},
    {"nohdr", "", "native pictures without their header"},
    {"shadow", "=PIXELS", "texts and markers on a shadow, in a window; 4 without a number"},
    {"max_bad", "=N", kFamily},
    {"min_size", "=BYTES", "a refresh takes no file up to this size; `-cu` has chosen before"},
    {"grdfmt", "=FORMAT", kFamily},
    {"gif", "=NAME", "picture file of a window: GIF; without a name `qra.gif`"},
    {"png", "=NAME", "picture file of a window: PNG; without a name `qra.png`"},
    {"img", "=NAME", "picture file of a window: native; without a name `qra.xwd`"},
    {"xwd", "=NAME", "picture file of a window: window dump; without a name `qra.xwd`"},
};

constexpr Explanation kContours[] = {
    {"fill", "=PATTERN",
     "fill pattern of the colours in a window, as `hat`, `//` or `5%`; PostScript leaves such "
     "areas out"},
    {"lab", "=STEP:MAJOR", kFamily},
    {"rlab", "", kFamily},
    {"hlab", "", kFamily},
    {"maxl", "=N", "cells of a contoured grid with more levels are left out; 0 leaves none out"},
    {"conmin", "=VALUE", "lowest value that is drawn"},
    {"conmax", "=VALUE", "highest value that is drawn"},
    {"grid", "", kFamily},
    {"mapcon", "", kFamily},
    {"conmap", "", kFamily},
};

constexpr Explanation kStations[] = {
    {"skip", "=N", "each so many records of a station file"},
    {"text", "=TEXT", "a text in place of the values"},
    {"mark", "=MARKER", "a marker at each point; `cld` a sky circle"},
    {"line", "", "points are joined"},
    {"yba", "=Y", "level on which lines to a missing value end"},
    {"xy=", "X:Y", "place beside the point, in steps, of values that bring no place of their own"},
};

constexpr Explanation kRadars[] = {
    {"site", "", "a mark at the radar"},
    {"dist", "=R1:R2:R3:R4", "up to four range rings, nautical miles; 100 without a number"},
    {"nodist", "", "no range rings"},
    {"graph", "", "the graphic block of a NIDS product"},
    {"nograph", "", "without it"},
    {"refresh", "", "a window looks for a newer file every minute"},
    {"clutter", "=N",
     "blank around the radar: bins of a NIDS radial, nautical miles of an RRWDS scan, hundreds of "
     "kilometres of a Level II sweep; 25 without a number"},
    {"noclutter", "", "nothing stays blank"},
};

constexpr Explanation kNids[] = {
    {"strong", "", "of the storms those with severe hail, rotation or a tornado"},
    {"numplt", "=N", "of the storms the first so many, and the strong ones with `strong`"},
};

constexpr Explanation kVariables[] = {
    {"labm", "in", "labels of variables: their abbreviations"},
    {"labs", "imp", "their descriptions"},
    {"labn", "orm", "their descriptions"},
    {"labc", "omp", "their descriptions"},
};

constexpr Explanation kLevel2[] = {
    {"range", "=KM", "half the height of the plot; 460 when nothing is said"}};

constexpr Explanation kSummary[] = {
    {"site", "", "a plus at each station"},
    {"dist", "=R", "a range ring around each station of a bulletin, 10 nautical miles or more"},
    {"nodist", "", "no range rings"},
    {"nostatus", "", "no status of the stations"},
    {"numplt", "=N", "so many storms of a station; 1 when nothing is said"},
    {"noclar", "", "of a radar in clear air its station, status and mode alone"},
    {"refresh", "", "a window looks for a newer file every minute"},
    {"nobar", "", "no legend of intensities, where the texts are off too"},
    {"slabel", "", "watch boxes are labelled in words and local time"},
};

constexpr Explanation kComposites[] = {
    {"run", "=N",
     "so many cells are filled at once; 10 on the composite's own projection, else 1, when nothing "
     "is said"},
};

/* What the tables do not tell. */
constexpr const char *kOptionNotes =
    "\nA value that begins with a minus and a letter stands behind an equals sign, `-dr=-text`: "
    "behind a\nblank it is an option of its own.\n\n"
    "A file named without `/`, `./` or `~` in front is a name of the convention of its input: "
    "`13052020`\nstands for a file of `-dp`, and `summaries/13052020.rad` is opened as it is, but "
    "tells no date.\n`./summaries/13052020.rad` does, as series and watches need it.\n\n"
    "`-fm` takes words of a station format, as `fm=%.1f`, `co=red` or `ul`.  `-in` and `-cb` serve "
    "radar\nsummaries, and NIDS products and Level II sweeps with colours that have no values, as "
    "`-cof blue,red`:\nthese are drawn with an interval alone.  `-rp`, `-gp`, `-tp`, `-mp` and "
    "`-sp` count where the template of\na naming convention names them.\n\n"
    "`-ou`, `-pf`, `-gd`, `-cowd`, `-cocm` and `-cocl` are taken for other programs of the family, "
    "without effect\nhere.\n";

constexpr const char *kWordNotes =
    "\nThe places `ul`, `uc`, `ur`, `tl`, `tc`, `tr`, `cl`, `cc`, `cr`, `bl`, `bc`, `br`, `ll`, "
    "`lc` and `lr` are\nwords too: upper, top, centre, bottom or lower, and left, centre or "
    "right of the point.  As a word `ur`\nputs values to the left; as part of a format to the "
    "right.  A place that a variable or a column brings\nwins.\n";

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
    fputs(kOptionNotes, stdout);
    printf("\n## Plot parameters\n\nThe words of `-pp`, separated by commas.\n");
    write_chapter(chapter("Page, labels, devices and files", PLT_param_names(), kPage));
    write_chapter(chapter("Contours and levels", CONT_param_names(), kContours));
    write_chapter(chapter("Values at places", PLOT_param_names(), kStations));
    fputs(kWordNotes, stdout);
    write_chapter(chapter("Labels of variables", VAR_param_names(), kVariables));
    write_chapter(
        chapter("Radars: NIDS, Level II, messages and RRWDS", RADAR_param_names(), kRadars));
    write_chapter(chapter("NIDS products", NIDS_param_names(), kNids));
    write_chapter(chapter("Level II archives", LEV2_param_names(), kLevel2));
    write_chapter(chapter("Radar summaries", SUM_param_names(), kSummary));
    write_chapter(chapter("National composites", COMPOSITE_param_names(), kComposites));
    return missing > 0;
}
