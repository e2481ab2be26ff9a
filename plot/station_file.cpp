#include "plot/station_file.h"

#include "kernel/attributes.h"
#include "kernel/gph.h"
#include "kernel/transform.h"
#include "plot/city_cache.h"
#include "plot/labels.h"
#include "plot/map_grid.h"
#include "plot/page_state.h"
#include "plot/projection.h"
#include "plot/raw_file.h"
#include "plot/station_plot.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <algorithm>
#include <string>

namespace {
constexpr const char *kStations = "sao.cty";
constexpr int kCompact = 3;       // form of the station list
constexpr int kSparePriority = 5; // of stations that only records without a position need

/* A file that is plotted. */
struct StationPlot {
    int handle;
    int column = RAW_ALL;
    bool is_chosen = false; // only records that the station list has
    bool stations_read = false;
    int labelled = 0; // the category that was named last
};

void read_stations(StationPlot &plot, int priority) {
    if (plot.stations_read)
        return;
    plot.stations_read = true;
    const Domain domain = *PRJ_get_domain(nullptr);
    CTY_load(kStations, kCompact, &domain, priority);
}

const StationEntry *find_station(const RawRecord &record) {
    return static_cast<const StationEntry *>(CTY_find(record.id));
}

// ---- A row of categories, one a record ----

/* Records from one name under the plot to the next: the interval of the grid, or a tenth of the
 * row. */
int category_step() {
    float interval, across;
    MAP_get_grid(&interval, &across);
    if (!(interval > 0.0f))
        interval = PRJ_get_domain(nullptr)->dx / 10.0f;
    return interval >= 1.0f ? int(std::min(interval, 1e6f)) : 1;
}

void draw_category(const char *name, float x) {
    constexpr float kHeight = 0.015f, kDrop = 0.01f; // in page units
    constexpr int kPage = 1, kData = 2;              // transforms
    constexpr int kCentre = 2, kCapital = 2;         // alignments
    PlotAttr attr;
    ATTR_from_resource("color_line", "magenta", &attr);
    float page[4];
    PLT_get_page(page);
    const Point at = {gtran_x(x, kData, kPage), page[2] - kDrop};
    GPH_sel_tran(kPage);
    GPH_set_text(kHeight, &attr);
    GPH_text_align(kCentre, kCapital);
    GPH_text(&at, name);
    GPH_sel_tran(kData);
}

/* A record stands at its number; the second number of its place is how high, else its value. */
bool find_category(StationPlot &plot, const RawRecord &record, int count, PlotPoint *point) {
    const float height = record.lon != MISSING_F ? record.lon : record.value;
    if (height == MISSING_F || !PRJ_latlon_to_xy(float(count), height, &point->x, &point->y))
        return false;
    float bounds[4];
    PRJ_get_bounds(bounds);
    const bool inside = point->x >= bounds[0] && point->x <= bounds[1];
    if (inside && plot.labelled != count && count % category_step() == 0) {
        plot.labelled = count;
        draw_category(record.id, point->x);
    }
    return true;
}

// ---- Records ----

/* Plot position of a record, by its own place or by that of its station. */
bool find_place(StationPlot &plot, const RawRecord &record, int count, PlotPoint *point) {
    if (PRJ_get_code() == PROJ_CATEGORY)
        return find_category(plot, record, count, point);
    if (record.lat != MISSING_F && record.lon != MISSING_F) {
        PRJ_latlon_to_xy(record.lat, record.lon, &point->x, &point->y);
        return point->x != MISSING_F && point->y != MISSING_F;
    }
    read_stations(plot, kSparePriority);
    const StationEntry *station = find_station(record);
    if (!station)
        return false;
    point->x = station->x;
    point->y = station->y;
    return true;
}

void note_range(float value) {
    PlotFormat &format = *PLOT_format();
    if (value == MISSING_F)
        return;
    const bool first = format.least == MISSING_F;
    format.least = first ? value : std::min(format.least, value);
    format.greatest = first ? value : std::max(format.greatest, value);
}

void plot_record(StationPlot &plot, const RawRecord &record, int count) {
    PlotPoint point;
    if ((plot.is_chosen && !find_station(record)) || !find_place(plot, record, count, &point))
        return;
    point.text = record.text;
    point.format = record.format;
    point.value = record.value;
    point.value2 = record.value2;
    note_range(point.value);
    PLOT_point(&point);
}

/* Values of a record that is left out are read too. */
void plot_records(StationPlot &plot) {
    RawRecord record;
    int count = 0, result;
    while ((result = RAW_read_record(plot.handle, &record, plot.column, &count)) >= 0) {
        const int skip = PLOT_format()->skip;
        if (result > 0 && (skip < 2 || count % skip == 0))
            plot_record(plot, record, count);
    }
    MSG_print(MSG_DEBUG, "PLOT_file: %d records, %g to %g\n", count, double(PLOT_format()->least),
              double(PLOT_format()->greatest));
}

void set_labels(const RawHeader &header, const std::string &variable) {
    std::string title = header.title;
    title += (title.empty() || variable.empty() ? "" : "-") + variable;
    PLT_label_ul(title.c_str());
    PLT_label_ur(header.date_text.c_str());
}

int begin_layer() {
    PLOT_clear_lines();
    PlotAttr attr;
    ATTR_from_resource("color_data", "green", &attr);
    gset_fill_black(1);
    float scale = 1.0f;
    RES_get_value("plot_scale", &scale, OPT_FLOAT);
    return PLOT_begin(scale, &attr);
}

/* The user's format once more, since the layer begins with the alignment of the offset alone, and
 * the format of the file over it. */
void take_formats(const std::string &format) {
    for (const char *text : {RES_get("plot_format"), format.c_str()})
        if (const int type = PLOT_parse_format(PLOT_format(), text); type > 0)
            PLOT_format()->type = type;
}

int plot_file(int handle, const std::string &column, const std::string &format, int labels) {
    RawHeader header;
    if (begin_layer() < 0 || RAW_read_header(handle, &header) < 0)
        return -1;
    StationPlot plot{handle};
    plot.column = RAW_find_column(handle, column.c_str());
    if (plot.column < 0) {
        MSG_print(MSG_ERROR, "PLOT_file: No such column: %s\n", column.c_str());
        return -1;
    }
    const ResList identifiers("identifier");
    if (identifiers.count > 0 || RES_get("city_file"))
        read_stations(plot, CTY_default_priority());
    plot.is_chosen = labels && CTY_is_query(identifiers.count, identifiers.list);
    take_formats(format);
    if (labels)
        set_labels(header, column);
    plot_records(plot);
    return 0;
}
} // namespace

int PLOT_file(const char *name, int labels) {
    std::string column, format;
    const int handle = RAW_file_open(name, &column, &format, "r");
    if (handle < 0)
        return -1;
    const int result = plot_file(handle, column, format, labels);
    RAW_close(handle);
    return result;
}
