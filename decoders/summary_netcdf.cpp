#include "decoders/summary_netcdf.h"

#include "decoders/netcdf_input.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace {
constexpr int kStationLayout = 11; // the layout with a dimension "station"
constexpr int kReportLayout = 12;
constexpr int kColumns = 120, kRows = 90;
constexpr int kMostReports = 10'000;
constexpr size_t kTextLength = 11; // characters of a report's texts
constexpr size_t kMostTimeText = 256;
constexpr size_t kTimeLength = 16; // characters of "mdr_time"
constexpr double kSeaMilesPerKm = 0.53996;
constexpr double kKnotsPerMs = 1.944;
constexpr double kFeetPerMetre = 3.2808;

struct SummaryFile {
    NetcdfInput in;
    int kind = 0;
    int report_dimension = -1;
    int reports = 0;
};
SummaryFile file;

using Values = NetcdfValues;

bool read_numbers(const char *name, int report, Values *v) {
    return NETCDF_read_numbers(file.in, name, file.report_dimension, report, v);
}

double number(const Values &v, int i) { return NETCDF_number(file.in, v, i); }

/* Without its fraction. */
int cut(double value) { return std::fabs(value) < 1e9 ? int(value) : MISSING; }

int whole(const Values &v, int i) { return cut(number(v, i)); }

/* A count of the file, held to what there is room for. */
int count_of(const Values &v, int i, int most) { return std::clamp(whole(v, i), 0, most); }

// ---- Time and grid ----

void read_datetime(RadarSummary *summary) {
    char line[kMostTimeText];
    if (!NETCDF_text_attribute(file.in, "datetime", line, sizeof line))
        return;
    STR_strip_eol(line);
    DT_parse(line, &summary->time);
    snprintf(summary->time_text, sizeof summary->time_text, "%.*s",
             int(sizeof summary->time_text - 1), line);
}

/* Year to minute in digits, with anything between them; or the time as bulletins write it. */
void read_mdr_time(RadarSummary *summary) {
    char line[kTimeLength + 1];
    if (!NETCDF_read_text(file.in, "mdr_time", -1, 0, kTimeLength, line, sizeof line))
        return;
    std::string digits = line;
    for (char &c : digits)
        if (!isdigit(static_cast<unsigned char>(c)))
            c = ' ';
    DT_clear(&summary->time);
    DT_parse_compact(digits.c_str(), &summary->time);
    if (summary->time.month < 1 || summary->time.month > 12)
        DT_parse(line, &summary->time);
    std::string label;
    DateTime date = summary->time;
    DT_format(&date, &label);
    snprintf(summary->time_text, sizeof summary->time_text, "%s", label.c_str());
}

/* Whether a variable lies over the cells, and which way round. */
enum class Order { None, ColumnFirst, RowFirst };

Order grid_order(const NetcdfShape &shape) {
    const int x = NETCDF_dimension(file.in, "mdr_x"), y = NETCDF_dimension(file.in, "mdr_y");
    if (shape.rank != 2 || x < 0 || y < 0)
        return Order::None;
    if (shape.dimensions[0] == x && shape.dimensions[1] == y)
        return Order::ColumnFirst;
    return shape.dimensions[0] == y && shape.dimensions[1] == x ? Order::RowFirst : Order::None;
}

/* Levels from too_high on, and those below 0, are stored as -1. */
void read_cells(const char *name, int too_high, RadarSummary *summary) {
    NetcdfShape shape;
    const Order order = NETCDF_find(file.in, name, &shape) ? grid_order(shape) : Order::None;
    if (order == Order::None)
        return;
    const bool by_column = order == Order::ColumnFirst;
    const int lines = int(std::min<long>(shape.length[0], by_column ? kColumns : kRows));
    const int cells = int(std::min<long>(shape.length[1], by_column ? kRows : kColumns));
    Values v;
    for (int line = 0; line < lines; line++) {
        if (!NETCDF_read_line(file.in, shape, line, cells, &v) || !NETCDF_is_number(v))
            return;
        for (int i = 0; i < cells; i++) {
            const int level = whole(v, i);
            int8_t *cell = by_column ? &summary->grid[line][i] : &summary->grid[i][line];
            *cell = int8_t(level < 0 || level >= too_high ? -1 : level);
        }
    }
}

// ---- Reports ----

struct TextField {
    const char *name;
    char *dest;
    size_t size;
};

void read_station_moves(int n, MdrReport *report) {
    Values kind, direction, speed;
    if (!NETCDF_read(file.in, "move_type", file.report_dimension, n, &kind) ||
        !NETCDF_is_text(kind) || !read_numbers("move_dir", n, &direction) ||
        !read_numbers("move_spd", n, &speed))
        return;
    for (int i = 0; i < std::min({MDR_MOVES, kind.count, direction.count, speed.count}); i++) {
        const char c = kind.bytes[i];
        report->moves[i] = {c == file.in.missing_c || !c ? ' ' : c, whole(direction, i),
                            whole(speed, i)};
    }
}

void read_station_report(int n, MdrReport *report) {
    const TextField texts[] = {
        {"region", report->region, sizeof report->region},
        {"config", report->status, sizeof report->status},
        {"prec", report->precip, sizeof report->precip},
        {"trend", report->trend, sizeof report->trend},
    };
    for (const TextField &t : texts)
        NETCDF_read_text(file.in, t.name, file.report_dimension, n, kTextLength, t.dest, t.size);
    Values v;
    if (read_numbers("mdr_x", n, &v))
        report->mdr_x = float(number(v, 0));
    if (read_numbers("mdr_y", n, &v))
        report->mdr_y = float(number(v, 0));
    constexpr struct {
        const char *name;
        int32_t MdrReport::*field;
    } kIntegers[] = {
        {"type", &MdrReport::type},
        {"summary", &MdrReport::summary_time}, // by station; elsewhere the name is that of the grid
        {"max_tops", &MdrReport::top},
        {"max_tops_dir", &MdrReport::top_dir},
        {"max_tops_rad", &MdrReport::top_range},
    };
    for (const auto &row : kIntegers)
        if (read_numbers(row.name, n, &v))
            report->*row.field = whole(v, 0);
    report->intensity = 0;
    read_station_moves(n, report);
}

/* Text of a code in a table of "code, text"; "" for others. */
struct CodeText {
    int code;
    const char *text;
};
template <size_t N>
const char *code_text(const CodeText (&table)[N], int code) {
    for (const CodeText &row : table)
        if (row.code == code)
            return row.text;
    return "";
}

void read_status(int n, MdrReport *report) {
    constexpr CodeText kStatus[] = {{1, "NE"}, {2, "OM"}, {3, "NA"}};
    constexpr CodeText kObjects[] = {{1, "AREA"}, {2, "LINE"}, {3, "CELL"}};
    Values v;
    if (read_numbers("opstat", n, &v))
        snprintf(report->status, sizeof report->status, "%s", code_text(kStatus, whole(v, 0)));
    if (read_numbers("object", n, &v) && *code_text(kObjects, whole(v, 0)))
        snprintf(report->status, sizeof report->status, "%s", code_text(kObjects, whole(v, 0)));
}

/* The low four bits are a code, the others flags. */
std::string precip_letters(int type) {
    constexpr CodeText kCodes[] = {{0x01, "R"}, {0x03, "S"}, {0x04, "P"}, {0x05, "L"}};
    std::string letters;
    letters += type & 0x40 ? "T" : "";
    letters += type & 0x80 ? "Z" : "";
    letters += code_text(kCodes, type & 0x0f);
    letters += type & 0x20 ? "W" : "";
    return letters;
}

/* The covers of a report; the first is what it shows. */
void read_covers(int n, MdrReport *report) {
    Values covers, types, type, intensity;
    if (!read_numbers("ncover", n, &covers) || !read_numbers("nprecip", n, &types) ||
        !read_numbers("precip_type", n, &type) || !read_numbers("intensity", n, &intensity))
        return;
    report->cover_count = count_of(covers, 0, std::min(MDR_COVERS, types.count));
    const int room = type.count / types.count; // types of one cover
    const int step = std::max(1, intensity.count / types.count);
    for (int i = 0; i < MDR_COVERS; i++) {
        MdrCover &cover = report->cover[i];
        cover = MdrCover{};
        if (i >= report->cover_count)
            continue;
        std::string letters;
        for (int k = 0; k < count_of(types, i, room); k++)
            letters += precip_letters(whole(type, i * room + k));
        snprintf(cover.precip, sizeof cover.precip, "%s", letters.c_str());
        cover.intensity = whole(intensity, i * step);
    }
    memcpy(report->precip, report->cover[0].precip, sizeof report->precip);
    report->intensity = report->cover[0].intensity;
}

void read_trend(int n, MdrReport *report) {
    constexpr CodeText kTrends[] = {{1, "+"}, {2, "-"}, {3, "NC"}, {4, "NEW"}};
    Values v;
    if (read_numbers("trend", n, &v))
        snprintf(report->trend, sizeof report->trend, "%s", code_text(kTrends, whole(v, 0)));
}

int sea_miles(double km) { return km == MISSING ? MISSING : cut(km * kSeaMilesPerKm); }

int azimuth_of(double degrees) { return degrees == MISSING ? MISSING : cut(degrees + 0.01); }

int knots(double ms) { return ms == MISSING ? MISSING : cut((ms + 0.1) * kKnotsPerMs); }

int hundreds_of_feet(double metres) {
    if (metres == MISSING)
        return MISSING;
    const double above = metres + 1.0;
    return (above == MISSING ? MISSING : cut(above * kFeetPerMetre)) / 100;
}

/* "azimuth" holds pairs of azimuth and range; widths follow them without an azimuth. */
void read_azran(int n, MdrReport *report) {
    Values pairs, widths, count;
    if (!read_numbers("azimuth", n, &pairs) || !read_numbers("nazran", n, &count))
        return;
    const int points = count_of(count, 0, std::min(MDR_PAIRS, pairs.count / 2));
    const bool has_widths = read_numbers("width", n, &widths) && read_numbers("nwidth", n, &count);
    const int all = points + (has_widths ? count_of(count, 0, widths.count) : 0);
    for (int i = 0; i < MDR_PAIRS; i++) {
        if (i < points)
            report->azran[i] = {azimuth_of(number(pairs, 2 * i)),
                                sea_miles(number(pairs, 2 * i + 1))};
        else
            report->azran[i] = {MISSING, i < all ? sea_miles(number(widths, i - points)) : MISSING};
    }
}

void read_report_moves(int n, MdrReport *report) {
    Values count, direction, speed;
    if (!read_numbers("nmove", n, &count) || !read_numbers("move_dir", n, &direction) ||
        !read_numbers("move_speed", n, &speed))
        return;
    const int moves = count_of(count, 0, std::min({MDR_MOVES, direction.count, speed.count}));
    for (int i = 0; i < MDR_MOVES; i++) {
        report->moves[i] = MdrMove{};
        if (i < moves)
            report->moves[i] = {report->status[0] ? report->status[0] : ' ', whole(direction, i),
                                knots(number(speed, i))};
    }
}

/* "height" holds the height of a top, its azimuth and its range. */
void read_top(int n, MdrReport *report) {
    Values count, height;
    if (!read_numbers("nheight", n, &count) || !read_numbers("height", n, &height))
        return;
    report->top = report->top_dir = report->top_range = MISSING;
    if (whole(count, 0) <= 0)
        return;
    report->top = hundreds_of_feet(number(height, 0));
    report->top_dir = whole(height, 1);
    report->top_range = sea_miles(number(height, 2));
}

void read_report(int n, MdrReport *report) {
    read_status(n, report);
    read_covers(n, report);
    read_trend(n, report);
    read_azran(n, report);
    read_report_moves(n, report);
    read_top(n, report);
}

// ---- File ----

/* How many reports there are, and which dimension counts them. */
void find_reports(const char *name) {
    const NetcdfInput &in = file.in;
    file.report_dimension =
        file.kind == kStationLayout ? in.record_dimension : NETCDF_dimension(in, "report");
    const long told = NETCDF_length(in, file.report_dimension);
    const bool records = file.report_dimension == in.record_dimension;
    const long held = records ? long(std::min<int64_t>(in.records, told)) : told;
    file.reports = int(std::min<long>(held, kMostReports));
    if (file.reports < told)
        MSG_print(MSG_WARN, "RAD_open: %d of %ld reports are read: %s\n", file.reports, told, name);
}

void trace_version() {
    Values v;
    const bool told = NETCDF_attribute(file.in, "version", &v) && NETCDF_is_number(v);
    MSG_print(MSG_DEBUG, "RAD_open: netCDF version %g\n", told ? number(v, 0) : 1.0);
}

} // namespace

int RAD_netcdf_kind(const char *name) {
    NetcdfInput in;
    if (!NETCDF_open(name, &in))
        return -1;
    const int kind = NETCDF_dimension(in, "station") >= 0 ? kStationLayout : kReportLayout;
    NETCDF_close(&in);
    return kind;
}

int RAD_netcdf_open(const char *name, int write, int kind) {
    RAD_netcdf_close();
    if (write || !NETCDF_open(name, &file.in))
        return 0;
    file.kind = kind;
    trace_version();
    find_reports(name);
    return 1;
}

void RAD_netcdf_close() {
    NETCDF_close(&file.in);
    file = SummaryFile{};
}

int RAD_netcdf_read_grid(RadarSummary *summary) {
    summary->kind = SUMMARY_MDR;
    if (file.kind == kStationLayout) {
        read_datetime(summary);
        read_cells("summary", INT8_MAX + 1, summary);
    } else {
        read_mdr_time(summary);
        read_cells("mdr", 11, summary);
    }
    return 0;
}

int RAD_netcdf_read_mdr(MdrReport *report, int mode, int *index) {
    const int n = *index;
    if (n < 0 || n >= file.reports)
        return -1;
    NETCDF_read_text(file.in, "id", file.report_dimension, n, kTextLength, report->station,
                     sizeof report->station);
    if (mode != 1)
        (file.kind == kStationLayout ? read_station_report : read_report)(n, report);
    ++*index;
    return 0;
}
