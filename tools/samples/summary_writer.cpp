#include "tools/samples/summary_writer.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <netcdf.h>

using std::string;
using std::vector;

namespace {

constexpr size_t kBulletinColumns = 60; // cells of a line
constexpr size_t kLine = 80;
constexpr double kMissing = -9999.0;

__attribute__((format(printf, 1, 2))) string print(const char *format, ...) {
    char text[200];
    va_list values;
    va_start(values, format);
    vsnprintf(text, sizeof text, format, values);
    va_end(values);
    return text;
}

string or_star(const string &text) { return text.empty() ? "*" : text; }

// ---- Text ----

const char *intensity_sign(int intensity) {
    constexpr const char *kSigns[] = {"", "-", "", "+", "++", "X", "XX", "", "", "U"};
    return kSigns[intensity];
}

string mdr_line(const SampleMdrReport &r) {
    string line = r.station + " " + r.status + " " + or_star(r.precip) +
                  intensity_sign(r.intensity) + " " + or_star(r.trend) + " ";
    line += r.top.height ? print("%d,%3.3d%3.3d", r.top.height, r.top.direction, r.top.range) : "*";
    for (size_t i = 0; i < 3; i++)
        line += i < r.moves.size() ? print(" %c%2.2d%2.2d", r.moves[i].kind,
                                           r.moves[i].direction / 10, r.moves[i].speed)
                                   : " *";
    return line + "\n";
}

/* A part of the grid; its first row comes below the row of its head. */
string mdr_part(const SampleCells &cells, size_t first) {
    string part = print("SDUS20 KWBC 202035\n+-1 %zu\n", first);
    for (const string &row : cells)
        part += row.substr(first, kBulletinColumns) + "\n";
    return part + "+\n";
}

/* A row up to its last echo, in lines; nothing for an empty one. */
string rcm_row(const string &row, size_t number) {
    const size_t end = row.find_last_not_of('0') + 1;
    string lines = end ? print("+%zu\n", number) : "";
    for (size_t at = 0; at < end; at += kLine)
        lines += row.substr(at, std::min(kLine, end - at)) + "\n";
    return lines;
}

string mark_lines(char letter, const vector<SamplePlace> &marks) {
    string lines;
    for (const SamplePlace &m : marks)
        lines += print("%c %s %8.3f %8.3f\n", letter, m.id.c_str(), m.latitude, m.longitude);
    return lines;
}

string rcm_report(const SampleRcmReport &r) {
    string lines = print("** %s %3.3d %s\n", r.station.c_str(), r.number, r.words.c_str());
    if (r.top)
        lines += print("Z %d %8.3f %8.3f\n", r.top, r.top_place.latitude, r.top_place.longitude);
    lines += mark_lines('T', r.tvs) + mark_lines('M', r.meso);
    for (const SampleRcmStorm &s : r.storms)
        lines += print("S %3s %8.3f %8.3f %3.3d %3.3d %3d %d\n", s.place.id.c_str(),
                       s.place.latitude, s.place.longitude, s.direction, s.speed, s.top, s.hail);
    return lines;
}

// ---- netCDF ----

/* Fixed in width, with blanks behind. */
string field(string text, size_t width) {
    text.resize(width, ' ');
    return text;
}

using Report = const SampleMdrReport &;

template <typename Text>
NetcdfVariable texts(const char *name, const char *length, size_t width,
                     const vector<SampleMdrReport> &reports, const char *dimension, Text text) {
    NetcdfVariable v{name, NC_CHAR, {dimension, length}};
    for (Report r : reports)
        v.text += field(text(r), width);
    return v;
}

/* So many numbers of each report, the rest of the room missing. */
template <typename Numbers>
NetcdfVariable numbers(const char *name, int type, vector<string> dimensions, size_t width,
                       const vector<SampleMdrReport> &reports, Numbers of_report) {
    NetcdfVariable v{name, type, std::move(dimensions)};
    for (Report r : reports) {
        vector<double> values = of_report(r);
        values.resize(width, kMissing);
        v.numbers.insert(v.numbers.end(), values.begin(), values.end());
    }
    return v;
}

template <typename Number>
NetcdfVariable integers(const char *name, const vector<SampleMdrReport> &reports,
                        const char *dimension, Number number) {
    return numbers(name, NC_INT, {dimension}, 1, reports,
                   [&](Report r) { return vector<double>{double(number(r))}; });
}

template <typename Number>
vector<double> of_moves(Report r, Number number) {
    vector<double> values;
    for (const SampleMove &m : r.moves)
        values.push_back(number(m));
    return values;
}

/* Column by column. */
vector<double> by_column(const SampleCells &cells) {
    vector<double> levels;
    for (size_t column = 0; column < cells[0].size(); column++)
        for (const string &row : cells)
            levels.push_back(row[column] - '0');
    return levels;
}

vector<double> by_row(const SampleCells &cells) {
    vector<double> levels;
    for (const string &row : cells)
        for (const char c : row)
            levels.push_back(c - '0');
    return levels;
}

int code_of(const char *const *texts, int count, const string &text) {
    for (int i = 0; i < count; i++)
        if (text == texts[i])
            return i + 1;
    return 0;
}

/* Flags of thunder, freezing and showers, and a code of what falls. */
int precip_flags(const string &letters) {
    constexpr struct {
        char letter;
        int bits;
    } kBits[] = {{'T', 0x40}, {'Z', 0x80}, {'R', 0x01}, {'S', 0x03},
                 {'P', 0x04}, {'L', 0x05}, {'W', 0x20}};
    int flags = 0;
    for (const auto &row : kBits)
        if (letters.find(row.letter) != string::npos)
            flags |= row.bits;
    return flags;
}

/* The middle of what readers cut to the same number. */
double metres(int hundreds_of_feet) { return (hundreds_of_feet * 100 + 50) / 3.2808 - 1.0; }
double kilometres(int sea_miles) { return (sea_miles + 0.5) / 0.53996; }
double metres_per_second(int knots) { return (knots + 0.5) / 1.944 - 0.1; }

} // namespace

string SMP_mdr_bulletin(const SampleSummary &summary) {
    string bytes = "*\n";
    for (Report r : summary.mdr)
        bytes += mdr_line(r);
    for (size_t first = 0; first < summary.cells[0].size(); first += kBulletinColumns)
        bytes += mdr_part(summary.cells, first);
    return bytes;
}

string SMP_station_file(const SampleSummary &summary) {
    string bytes = summary.time_text + "\nRCM\n";
    for (size_t row = 0; row < summary.cells.size(); row++)
        bytes += rcm_row(summary.cells[row], row);
    bytes += "*\nSDXX STATION\n";
    for (const SampleRcmReport &r : summary.rcm)
        bytes += rcm_report(r);
    return bytes + "*\n";
}

string SMP_native_summary(const SampleSummary &summary) {
    return "QRARAD\n" + SMP_station_file(summary);
}

NetcdfFile SMP_summary_layout11(const SampleSummary &summary) {
    const vector<SampleMdrReport> &all = summary.mdr;
    constexpr const char *kOf = "station", *kText = "string_len";
    const auto text = [&](const char *name, auto of) {
        return texts(name, kText, 12, all, kOf, of);
    };
    const auto integer = [&](const char *name, auto of) { return integers(name, all, kOf, of); };
    const auto move = [&](const char *name, auto of) {
        return numbers(name, NC_INT, {kOf, "reports"}, 3, all,
                       [&](Report r) { return of_moves(r, of); });
    };
    NetcdfFile file;
    file.dimensions = {{kOf, int(all.size()), true},
                       {"mdr_x", int(summary.cells[0].size())},
                       {"mdr_y", int(summary.cells.size())},
                       {kText, 12},
                       {"reports", 3}};
    file.attributes = {{"datetime", NC_CHAR, 0.0, summary.time_text},
                       {"version", NC_INT, 1.0},
                       {"missing_val_f", NC_FLOAT, kMissing},
                       {"missing_val_i", NC_INT, kMissing},
                       {"missing_val_c", NC_CHAR, 0.0, " "}};
    const auto top = [](int SampleTop::*part) {
        return [part](Report r) { return r.top.height ? r.top.*part : int(kMissing); };
    };
    const auto none = [](Report) { return vector<double>{}; };
    file.variables = {
        {"summary", NC_BYTE, {"mdr_x", "mdr_y"}, by_column(summary.cells)},
        text("id", [](Report r) { return r.station; }),
        text("region", [](Report) { return "US"; }),
        numbers("mdr_x", NC_FLOAT, {kOf}, 1, all, none),
        numbers("mdr_y", NC_FLOAT, {kOf}, 1, all, none),
        integer("type", [](Report) { return 1; }),
        text("config", [](Report r) { return r.status; }),
        text("prec", [](Report r) { return r.precip; }),
        text("trend", [](Report r) { return r.trend; }),
        texts("move_type", "reports", 3, all, kOf,
              [](Report r) {
                  string kinds;
                  for (const SampleMove &m : r.moves)
                      kinds += m.kind;
                  return kinds;
              }),
        move("move_dir", [](const SampleMove &m) { return m.direction; }),
        move("move_spd", [](const SampleMove &m) { return m.speed; }),
        integer("max_tops", top(&SampleTop::height)),
        integer("max_tops_dir", top(&SampleTop::direction)),
        integer("max_tops_rad", top(&SampleTop::range)),
    };
    return file;
}

NetcdfFile SMP_summary_layout12(const SampleSummary &summary) {
    const vector<SampleMdrReport> &all = summary.mdr;
    constexpr const char *kOf = "report";
    constexpr const char *kStatus[] = {"NE", "OM", "NA"}, *kObjects[] = {"AREA", "LINE", "CELL"},
                         *kTrends[] = {"+", "-", "NC", "NEW"};
    const auto integer = [&](const char *name, auto of) { return integers(name, all, kOf, of); };
    const auto floats = [&](const char *name, vector<string> dimensions, size_t width, auto of) {
        dimensions.insert(dimensions.begin(), kOf);
        return numbers(name, NC_FLOAT, std::move(dimensions), width, all, of);
    };
    const auto bytes = [&](const char *name, vector<string> dimensions, size_t width, auto of) {
        dimensions.insert(dimensions.begin(), kOf);
        return numbers(name, NC_SHORT, std::move(dimensions), width, all, of);
    };
    const auto top_pair = [](Report r) {
        return r.top.height ? vector<double>{double(r.top.direction), kilometres(r.top.range)}
                            : vector<double>{};
    };
    NetcdfFile file;
    file.dimensions = {{"mdr_x", int(summary.cells[0].size())},
                       {"mdr_y", int(summary.cells.size())},
                       {"id_len", 3},
                       {"time_len", 16},
                       {"maxprecip", 1},
                       {"maxcover", 1},
                       {"maxazran", 1},
                       {"maxwidth", 1},
                       {"maxmove", 3},
                       {"maxheight", 1},
                       {"pair", 2},
                       {"triple", 3},
                       {kOf, int(all.size())}};
    file.variables = {
        {"mdr_time", NC_CHAR, {"time_len"}, {}, summary.digits},
        {"mdr", NC_BYTE, {"mdr_y", "mdr_x"}, by_row(summary.cells)},
        texts("id", "id_len", 3, all, kOf, [](Report r) { return r.station; }),
        integer("opstat", [&](Report r) { return code_of(kStatus, 3, r.status); }),
        integer("object", [&](Report r) { return code_of(kObjects, 3, r.status); }),
        integer("ncover", [](Report r) { return r.precip.empty() ? 0 : 1; }),
        bytes("nprecip", {"maxcover"}, 1, [](Report) { return vector<double>{1}; }),
        bytes("precip_type", {"maxcover", "maxprecip"}, 1,
              [](Report r) { return vector<double>{double(precip_flags(r.precip))}; }),
        bytes("intensity", {"maxcover"}, 1,
              [](Report r) { return vector<double>{double(r.intensity)}; }),
        integer("trend", [&](Report r) { return code_of(kTrends, 4, r.trend); }),
        integer("nazran", [](Report r) { return r.top.height ? 1 : 0; }),
        floats("azimuth", {"maxazran", "pair"}, 2, top_pair),
        integer("nwidth", [](Report r) { return r.top.height ? 1 : 0; }),
        floats("width", {"maxwidth"}, 1, [](Report) { return vector<double>{kilometres(40)}; }),
        integer("nmove", [](Report r) { return r.moves.size(); }),
        floats(
            "move_dir", {"maxmove"}, 3,
            [](Report r) { return of_moves(r, [](const SampleMove &m) { return m.direction; }); }),
        floats("move_speed", {"maxmove"}, 3,
               [](Report r) {
                   return of_moves(r,
                                   [](const SampleMove &m) { return metres_per_second(m.speed); });
               }),
        integer("nheight", [](Report r) { return r.top.height ? 1 : 0; }),
        floats("height", {"maxheight", "triple"}, 3,
               [&](Report r) {
                   vector<double> values = top_pair(r);
                   values.insert(values.begin(), metres(r.top.height));
                   return values;
               }),
    };
    return file;
}
