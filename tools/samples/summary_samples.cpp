#include "tools/samples/summary_samples.h"

#include "tools/samples/nation.h"
#include "tools/samples/summary_writer.h"

#include <algorithm>
#include <cmath>

namespace {

/* Polar stereographic, with the pole in the north and the meridian of 105 degrees west upright;
 * hundreds of kilometres. */
constexpr double kEarth = 63.7122, kMeridian = -105.0, kTrueLatitude = 60.0;
double radians(double degrees) { return degrees * M_PI / 180.0; }
double cone() { return kEarth * (1.0 + std::sin(radians(kTrueLatitude))); }

struct Spot {
    double x, y;
};
Spot spot_of(double latitude, double longitude) {
    const double r = cone() * std::tan(radians(90.0 - latitude) / 2.0);
    const double angle = radians(longitude - kMeridian);
    return {r * std::sin(angle), -r * std::cos(angle)};
}

double dbz_at(Spot s) {
    const double latitude = 90.0 - 2.0 * std::atan(std::hypot(s.x, s.y) / cone()) * 180.0 / M_PI;
    return NATION_dbz(latitude, kMeridian + std::atan2(s.x, -s.y) * 180.0 / M_PI);
}

char level_digit(double dbz) {
    constexpr double kLeast[] = {20.0, 30.0, 40.0, 45.0, 50.0, 55.0};
    char digit = '0';
    for (const double least : kLeast)
        digit += dbz >= least;
    return digit;
}

/* The strongest echo of a square around a place, out of so many points along each side. */
double strongest(Spot middle, double side, int points) {
    double dbz = -10.0;
    for (int i = 0; i < points; i++)
        for (int j = 0; j < points; j++)
            dbz = std::max(dbz, dbz_at({middle.x + ((i + 0.5) / points - 0.5) * side,
                                        middle.y + ((j + 0.5) / points - 0.5) * side}));
    return dbz;
}

struct Grid {
    int columns, rows;
    double spacing; // hundreds of kilometres
    int points;     // along the side of a cell
};

SampleCells cells(Spot centre, const Grid &grid) {
    SampleCells all;
    for (int row = 0; row < grid.rows; row++) {
        std::string line;
        for (int column = 0; column < grid.columns; column++) {
            const Spot middle = {centre.x + (column - (grid.columns - 1) / 2.0) * grid.spacing,
                                 centre.y + ((grid.rows - 1) / 2.0 - row) * grid.spacing};
            line += level_digit(strongest(middle, grid.spacing, grid.points));
        }
        all.push_back(line);
    }
    return all;
}

const std::vector<SampleMdrReport> kMdrReports = {
    {"ARX", "LINE", "TRW", 3, "NC", {410, 75, 20}, {{'L', 260, 25}, {'C', 240, 35}}},
    {"DMX", "LINE", "TRW", 4, "+", {480, 95, 35}, {{'L', 270, 30}, {'C', 240, 40}}},
    {"EAX", "LINE", "TRW", 5, "+", {520, 250, 45}, {{'L', 280, 30}, {'C', 250, 35}}},
    {"INX", "LINE", "TRW", 6, "NC", {550, 300, 20}, {{'L', 290, 25}, {'C', 250, 35}}},
    {"TLX", "LINE", "TRW", 5, "NEW", {510, 0, 0}, {{'L', 300, 25}, {'C', 240, 30}}},
    {"DYX", "AREA", "TRW", 3, "-", {430, 45, 60}, {{'A', 270, 20}, {'C', 230, 25}}},
    {"PDT", "AREA", "R", 1, "NC", {180, 30, 90}, {{'A', 220, 15}}},
    {"MSX", "AREA", "SW", 1, "-", {150, 270, 55}, {{'A', 230, 20}}},
    {"EOX", "CELL", "RW", 2, "NC", {310, 330, 50}, {{'C', 190, 10}}},
    {"VAX", "CELL", "TRW", 2, "+", {360, 280, 65}, {{'C', 200, 15}}},
    {"FTG", "NE", "", 0, "", {}, {}},
    {"PBZ", "NE", "", 0, "", {}, {}},
    {"MTX", "OM", "", 0, "", {}, {}},
    {"ABX", "NA", "", 0, "", {}, {}},
};

const std::vector<SampleRcmReport> kRcmReports = {
    {"ARX", 4, "PCPN", 410, {"", 43.9, -91.4}, {}, {}, {{{"B1", 43.9, -91.4}, 240, 35, 410, 0}}},
    {"DMX",
     15,
     "PCPN",
     480,
     {"", 41.7, -93.1},
     {},
     {{"1", 41.4, -93.5}},
     {{{"D2", 41.7, -93.1}, 240, 40, 480, 1}, {{"G7", 42.3, -92.7}, 240, 38, 390, 0}}},
    {"EAX",
     16,
     "PCPN",
     520,
     {"", 38.6, -95.2},
     {},
     {{"1", 38.6, -95.2}},
     {{{"A4", 38.6, -95.2}, 250, 35, 520, 2}, {{"C9", 39.6, -94.6}, 255, 33, 440, 1}}},
    {"INX",
     24,
     "PCPN",
     550,
     {"", 36.3, -96.0},
     {{"1", 36.2, -96.1}},
     {{"1", 36.2, -96.1}},
     {{{"A0", 36.3, -96.0}, 250, 35, 550, 2}, {{"E5", 37.2, -95.8}, 250, 34, 460, 1}}},
    {"TLX",
     57,
     "PCPN",
     510,
     {"", 35.4, -97.2},
     {{"1", 35.3, -97.5}},
     {{"1", 35.3, -97.5}},
     {{{"A0", 35.4, -97.2}, 240, 30, 510, 2}, {{"F1", 34.6, -97.9}, 240, 28, 400, 0}}},
    {"DYX", 17, "PCPN", 430, {"", 33.2, -98.6}, {}, {}, {{{"H3", 33.2, -98.6}, 230, 25, 430, 0}}},
    {"PDT", 46, "PCPN", 180, {"", 47.0, -117.9}, {}, {}, {}},
    {"EOX", 19, "PCPN", 310, {"", 32.2, -86.0}, {}, {}, {{{"K1", 32.2, -86.0}, 190, 10, 310, 0}}},
    {"VAX", 60, "PCPN", 360, {"", 31.1, -84.2}, {}, {}, {{{"J6", 31.1, -84.2}, 200, 15, 360, -1}}},
    {"FTG", 22, "CLAR NE", 0, {}, {}, {}, {}},
    {"PBZ", 45, "CLAR NE", 0, {}, {}, {}, {}},
    {"MTX", 36, "OM", 0, {}, {}, {}, {}},
    {"ABX", 2, "NA", 0, {}, {}, {}, {}},
};

SampleSummary mdr_summary() {
    SampleSummary summary;
    summary.cells = cells(spot_of(40.0274, -96.1069), {120, 90, 0.47596, 4});
    summary.mdr = kMdrReports;
    return summary;
}

SampleSummary rcm_summary() {
    SampleSummary summary;
    summary.cells = cells(spot_of(39.7112, -97.0945), {449, 353, 0.11899, 1});
    summary.rcm = kRcmReports;
    return summary;
}

} // namespace

std::string SMP_summary_bulletin() { return SMP_mdr_bulletin(mdr_summary()); }
std::string SMP_summary_stations() { return SMP_station_file(rcm_summary()); }
std::string SMP_summary_native() { return SMP_native_summary(rcm_summary()); }
std::string SMP_summary_netcdf11() { return SMP_netcdf(SMP_summary_layout11(mdr_summary())); }
std::string SMP_summary_netcdf12() { return SMP_netcdf(SMP_summary_layout12(mdr_summary())); }
