#include "decoders/composite_plot.h"

#include "decoders/frame_driver.h"
#include "decoders/kavrad_reader.h"
#include "decoders/nowrad_reader.h"
#include "decoders/radar_colors.h"
#include "decoders/radar_options.h"
#include "decoders/watches.h"
#include "files/file_name.h"
#include "files/stream.h"
#include "kernel/gph.h"
#include "kernel/primitives.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/pointer.h"
#include "plot/projection.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

constexpr uint32_t kInfo = MSG_OUT1;
constexpr int kSameStep = 10; // cells filled at once where they stay rectangles
constexpr int kFarStep = 1;   // where they are converted between projections
constexpr const char *kColors =
    "-100:off,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:lgreen,35:brown,40:yellow,45:red,"
    "50:lred,55:magenta,60:lmagenta,65:dgray,70:lgray,75:white";

// ---- Cells ----

/* Where two pieces of a row meet, on the plot. */
struct Edge {
    float x = MISSING_F; // on the grid
    Point top, bottom;   // MISSING_F without an image
};

/* A draw, on its way along the rows of its grid.  x and y in units of the grid: degrees, or those
 * of its own projection. */
struct Walk {
    Domain grid, plot;
    int step;                  // cells filled at once
    float left, top;           // corner of the grid
    float x, upper, lower;     // of the row, x where its next run begins
    int column = 0;            // of the next run, at most that behind the last
    float colored = MISSING_F; // value whose fill is current, or that is not drawn
    bool visible = false;
    Edge edge; // where the last piece ended
};

void begin_row(Walk *walk, float upper) {
    walk->x = walk->left;
    walk->upper = upper;
    walk->lower = upper - walk->grid.dy;
    walk->column = 0;
    walk->edge.x = MISSING_F;
}

Point on_plot(const Walk &walk, float x, float y) {
    Point p = {MISSING_F, MISSING_F};
    if (walk.grid.proj == PROJ_LATLON)
        PRJ_latlon_to_xy(y, x, &p.x, &p.y);
    else
        PRJ_reproject(x, y, &walk.grid, &walk.plot, &p.x, &p.y);
    return p;
}

Edge edge_at(const Walk &walk, float x) {
    return {x, on_plot(walk, x, walk.upper), on_plot(walk, x, walk.lower)};
}

bool has_image(const Edge &edge) { return edge.top.x != MISSING_F && edge.bottom.x != MISSING_F; }

/* Fills from where the walk stands to x.  The edge of a piece is that of the next. */
void fill_to(Walk *walk, float x) {
    const Edge from = walk->edge.x == walk->x ? walk->edge : edge_at(*walk, walk->x);
    const Edge to = edge_at(*walk, x);
    walk->edge = to;
    walk->x = x;
    if (!has_image(from) || !has_image(to))
        return;
    const Point piece[5] = {from.bottom, to.bottom, to.top, from.top, from.bottom};
    gfill_area(5, piece);
}

bool is_visible(Walk *walk, float value) {
    if (value != walk->colored) {
        walk->colored = value;
        walk->visible = RADAR_set_color(value);
    }
    return walk->visible;
}

/* The cells of a run.  Those behind the last column are no more of the grid. */
void draw_cells(Walk *walk, int count, float value) {
    const float dx = walk->grid.dx;
    const int inside = std::clamp(count, 0, walk->grid.nx - walk->column);
    walk->column += inside;
    if (!is_visible(walk, value)) {
        walk->x += float(inside) * dx;
        return;
    }
    for (int done = 0; done < inside; done += walk->step)
        fill_to(walk, walk->x + float(std::min(walk->step, inside - done)) * dx);
}

/* Lines of the file are rows of the grid. */
void draw_nowrad(FILE *file, const CompositeHeader &, Walk *walk) {
    CompositeRun run;
    float upper = walk->top;
    for (int row = 0; row < walk->grid.ny && NOWRAD_next_line(file); row++) {
        begin_row(walk, upper);
        while (NOWRAD_next_run(file, &run))
            draw_cells(walk, run.count, run.value);
        upper = walk->lower;
    }
}

/* Runs go on over the rows; one ends with its last column but one.  The first row lies one cell
 * below the corner. */
void draw_kavrad(FILE *file, const CompositeHeader &header, Walk *walk) {
    const Domain &grid = walk->grid;
    CompositeRun run;
    int row = 0;
    begin_row(walk, walk->top - grid.dy);
    while (row < grid.ny && KAVRAD_next_run(file, header, &run)) {
        if (run.count == -1 && walk->column == 0)
            continue;
        draw_cells(walk, run.count == -1 ? grid.nx - walk->column : run.count, run.value);
        if (walk->column < grid.nx - 1)
            continue;
        row++;
        begin_row(walk, walk->top - float(row + 1) * grid.dy);
    }
}

// ---- Formats ----

/* What differs between the two. */
struct Format {
    const char *opener; // begins its message
    bool opens_without_header;
    int (*read_header)(FILE *file, CompositeHeader *header);
    void (*draw)(FILE *file, const CompositeHeader &header, Walk *walk);
};

struct Composite {
    Format format;
    CompositeHeader header{};
    DateTime plot_time{};
    FILE *file = nullptr; // owned
    int step = 0;         // cells filled at once, 0 by the projections
};
Composite nowrad = {{"NOWRad_open_file", true, NOWRAD_read_header, draw_nowrad}};
Composite kavrad = {{"KAVRAD_open_file", false, KAVRAD_read_header, draw_kavrad}};

void set_time(Composite *c, const DateTime *date) {
    if (date)
        c->plot_time = *date;
    else
        FILE_get_date(&c->plot_time);
}

constexpr size_t kRun = 3; // characters

void take_run(const char *word, Composite *c) {
    const long cells = strtol(RADAR_word_value(word, kRun), nullptr, 10);
    c->step = int(std::clamp(cells, 1L, long(INT_MAX)));
}

constexpr ParamWord<Composite *> kWords[] = {{"run", kRun, take_run}};

void parse_params(Composite *c) {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        PARAM_take(kWords, words[i], c);
}

// ---- File ----

void close_file(Composite *c) {
    FILE_close(c->file);
    c->file = nullptr;
}

/* A header of which a part is missing tells nothing. */
int reread(Composite *c) {
    if (!c->file)
        return 0;
    rewind(c->file);
    const int read = c->format.read_header(c->file, &c->header);
    if (!read)
        c->header = CompositeHeader{};
    return read;
}

/* What a file that is open now says of itself. */
void show_header(Composite *c) {
    DateTime shown = c->header.time; // formatting may change it
    std::string time;
    DT_format(&shown, &time);
    if (c->header.time.year != MISSING)
        c->plot_time = c->header.time;
    DOM_print(kInfo, &c->header.domain);
    MSG_print(kInfo, "Product type: %s\n", c->header.title.c_str());
    MSG_print(kInfo, "Product date: %s\n", time.c_str());
    PLT_label_ur(time.c_str());
    PLT_set_label_time(&c->plot_time);
    if (CONT_get_bar() != -2)
        CONT_set_bar(1);
}

int open_file(Composite *c, const char *name) {
    close_file(c);
    c->file = FILE_open(name, "r");
    if (!reread(c) && !c->format.opens_without_header)
        close_file(c);
    if (!c->file) {
        MSG_print(MSG_ERROR, "%s: Unable to open file: %s\n", c->format.opener, name);
        return 0;
    }
    show_header(c);
    return 1;
}

// ---- Picture ----

bool wants_watches() { return STR_casecmp(RES_get("variable"), "watch") == 0; }

void choose_colors() {
    CONT_set_interval(5.0f);
    CONT_set_base(0.0f);
    CONT_set_range(76.0f, 0.0f);
    RADAR_use_colors(kColors);
}

/* The upper left corner of the grid; the current projection is kept. */
void find_corner(Walk *walk) {
    const Domain &grid = walk->grid;
    if (grid.proj == PROJ_LATLON) {
        walk->left = grid.clon - DOM_span(grid.nx, grid.dx) / 2.0f;
        walk->top = grid.clat + DOM_span(grid.ny, grid.dy) / 2.0f;
        return;
    }
    PRJ_set_domain(&grid);
    PRJ_get_corner(&walk->left, &walk->top);
    PRJ_set_domain(&walk->plot);
}

void draw_grid(Composite *c) {
    Walk walk;
    walk.grid = c->header.domain;
    PRJ_get_domain(&walk.plot);
    find_corner(&walk);
    walk.step = c->step;
    if (walk.step == 0)
        walk.step = DOM_same_projection(&walk.grid, &walk.plot) ? kSameStep : kFarStep;
    c->format.draw(c->file, c->header, &walk);
}

void draw_data(Composite *c) {
    if (!DRAW_get(DRAW_SUM))
        return;
    GPH_sel_tran(2);
    PLT_label_ul(c->header.title.c_str());
    PLT_label_lr("");
    CONT_param();
    choose_colors();
    if (c->header.domain.proj != MISSING)
        draw_grid(c);
    if (wants_watches())
        WATCH_draw();
}

void draw(Composite *c) {
    if (wants_watches())
        WATCH_decode(&c->plot_time);
    MAP_draw(1);
    draw_data(c);
    RADAR_draw_bar();
    MAP_draw(6);
    PLT_labels();
}

// ---- Steps of the frame driver ----

void handle_event(float x, float y, int, const char *name) {
    PLT_readout(x, y, name);
    PLT_common_events(x, y, name);
}

template <Composite &c>
constexpr PlotSteps kSteps = {
    .prepare = [] { parse_params(&c); },
    .open = [](const char *name) { return open_file(&c, name); },
    .draw = [] { draw(&c); },
    .close = [] { close_file(&c); },
    .time = [] { return &c.plot_time; },
    .data_domain = []() -> const Domain * { return &c.header.domain; },
    .plot = [](Domain *domain) { return FRAME_plot(kSteps<c>, domain); },
    .pointer = handle_event,
    .looks_first = false,
};

} // namespace

int NOWRAD_plot(Domain *domain) { return FRAME_plot(kSteps<nowrad>, domain); }
int KAVRAD_plot(Domain *domain) { return FRAME_plot(kSteps<kavrad>, domain); }

void NOWRAD_set_time(const DateTime *date) { set_time(&nowrad, date); }
void KAVRAD_set_time(const DateTime *date) { set_time(&kavrad, date); }

int NOWRad_open_file(const char *name) { return open_file(&nowrad, name); }
int KAVRAD_open_file(const char *name) { return open_file(&kavrad, name); }

int NOWRAD_reread() { return reread(&nowrad); }
int KAVRAD_reread() { return reread(&kavrad); }

ParamNames COMPOSITE_param_names() { return PARAM_names(kWords); }

void NOWRAD_parse_params() { parse_params(&nowrad); }
void KAVRAD_parse_params() { parse_params(&kavrad); }

void COMPOSITE_reset() {
    for (Composite *c : {&nowrad, &kavrad}) {
        close_file(c);
        *c = Composite{c->format};
    }
    NOWRAD_reader_reset();
    KAVRAD_reader_reset();
}
