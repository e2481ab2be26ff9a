#include "decoders/summary_reports.h"

#include "decoders/radar_marks.h"
#include "decoders/summary_options.h"
#include "decoders/summary_reader.h"
#include "decoders/summary_values.h"
#include "kernel/gph.h"
#include "plot/city_cache.h"
#include "plot/map.h"
#include "shell/message.h"
#include "shell/strings.h"
#include "shell/variables.h"

namespace {

constexpr float kKmPerMile = 1.852f; // nautical
constexpr float kLeastRing = 10.0f;  // nautical miles
constexpr int kWhole = 0;            // mode of the reader: all of a report

struct ReportState {
    int handle = -1;
    int next = 0; // number of the report to read
};
constinit ReportState reports;

/* Puts a fresh point at a station.  1, or 0 for one that is not on the plot. */
int place_at(const char *id, PlotPoint *point) {
    PLOT_clear_point(point);
    const auto *station = static_cast<const StationEntry *>(CTY_find(id));
    if (!station) {
        MSG_print(MSG_OUT3, "Not in database: %s\n", id);
        return 0;
    }
    point->x = station->x;
    point->y = station->y;
    return 1;
}

void draw_ring(const PlotPoint &at, const PlotAttr &style) {
    if (!(SUM_options()->ring >= kLeastRing))
        return;
    GPH_set_line(nullptr); // the values left theirs
    GPH_set_line(&style);
    MAP_range_ring(at.x, at.y, SUM_options()->ring * kKmPerMile);
}

void draw_site(PlotPoint point) {
    if (!SUM_options()->site)
        return;
    point.type = VAR_MARK;
    point.text = "plus";
    PLOT_point(&point);
}

bool is_hidden(const VarEntry &entry) {
    return !SUM_options()->show_status && STR_casecmp(entry.name.c_str(), "stat") == 0;
}

/* Draws what a variable put into a point, in the style of that variable. */
void draw_value(PlotPoint *point, const VarEntry &entry) {
    if (entry.plot_kind != MISSING)
        point->type = entry.plot_kind;
    point->format = entry.attr;
    PLOT_point(point);
}

void draw_mdr(const MdrReport &report, const PlotPoint &at) {
    for (int i = 0; i < VAR_count(); i++) {
        const VarEntry &entry = *VAR_entry(i);
        if (is_hidden(entry))
            continue;
        PlotPoint point = at;
        if (!SUM_mdr_value(report, entry.name.c_str(), &point))
            return;
        draw_value(&point, entry);
    }
}

void draw_rcm(const RcmReport &report, const PlotPoint &at) {
    for (int i = 0; i < VAR_count(); i++) {
        const VarEntry &entry = *VAR_entry(i);
        if (is_hidden(entry))
            continue;
        for (int index = 0; index < SUM_options()->report_limit; index++) {
            PlotPoint point = at;
            if (!SUM_rcm_value(report, index, entry.name.c_str(), SUM_options()->no_clear, &point))
                break;
            draw_value(&point, entry);
        }
    }
}

} // namespace

void SUM_start_reports(int handle) {
    reports.handle = handle;
    reports.next = 0;
    RAD_start_reports(handle);
}

int SUM_read_mdr(MdrReport *report, PlotPoint *point) {
    if (RAD_read_mdr(reports.handle, report, kWhole, &reports.next) < 0)
        return -1;
    return place_at(report->station, point);
}

int SUM_read_rcm(RcmReport *report, PlotPoint *point) {
    if (RAD_read_rcm(reports.handle, report, kWhole, &reports.next) < 0)
        return -1;
    return place_at(report->id, point);
}

void SUM_draw_mdr_reports() {
    PlotAttr style;
    RADAR_data_style(&style);
    MdrReport report;
    PlotPoint at;
    for (int found; (found = SUM_read_mdr(&report, &at)) >= 0;) {
        if (!found)
            continue;
        draw_ring(at, style);
        draw_site(at);
        draw_mdr(report, at);
    }
}

void SUM_draw_rcm_reports() {
    RcmReport report;
    PlotPoint at;
    for (int found; (found = SUM_read_rcm(&report, &at)) >= 0;) {
        if (!found)
            continue;
        draw_site(at);
        draw_rcm(report, at);
    }
}

void SUM_reports_reset() { reports = ReportState{}; }
