#include "tools/samples/composite_samples.h"

#include "tools/samples/composite_writer.h"
#include "tools/samples/nation.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr double kRadian = 57.29578;                                          // degrees
constexpr double kNorth = 51.0, kSouth = 23.0, kEast = -65.0, kWest = -127.0; // that is looked at

double dbz_at(double lat, double lon) {
    if (lat > kNorth || lat < kSouth || lon > kEast || lon < kWest)
        return -10.0;
    return NATION_dbz(lat, lon);
}

uint8_t nowrad_level(double dbz) { return uint8_t(std::clamp(int(dbz / 5.0), 0, 15)); }

/* Steps of 5 dBZ from 5 to 75; less is told as nothing. */
uint8_t fine_level(double dbz) {
    return dbz < 5.0 ? 16 : uint8_t(std::clamp(int(dbz / 5.0), 1, 15));
}

/* 20, 30 and 40 dBZ, then steps of 5 to 55. */
uint8_t rough_level(double dbz) {
    if (dbz < 20.0)
        return 0;
    return uint8_t(std::clamp(dbz < 40.0 ? int(dbz / 10.0) - 1 : int(dbz / 5.0) - 5, 1, 6));
}

struct Place {
    double lat, lon;
};

/* A line of a grid: the level of each column, at a place of its own. */
template <typename Locate, typename Level>
std::vector<uint8_t> line(int columns, int block, Locate place, Level level) {
    std::vector<uint8_t> levels;
    while (int(levels.size()) < columns) {
        const Place p = place(int(levels.size()));
        const size_t count = size_t(std::min(block, columns - int(levels.size())));
        levels.insert(levels.end(), count, uint8_t(level(dbz_at(p.lat, p.lon))));
    }
    return levels;
}

/* Two angles as they are sent, in radians. */
std::string radians(double a, double b) {
    char text[80];
    snprintf(text, sizeof text, "%.9f %.9f", a / kRadian, b / kRadian);
    return text;
}

/* Inverse of a conformal cone with two true latitudes, on a ball of 63.712 hundred kilometres. */
class Cone {
  public:
    Cone(double lat1, double lat2, double lon) : lon0(lon) {
        n = std::log(std::cos(lat1 / kRadian) / std::cos(lat2 / kRadian)) /
            std::log(half(lat1) / half(lat2));
        f = 63.712 * std::cos(lat1 / kRadian) / (n * std::pow(half(lat1), n));
    }
    double y_of(double lat) const { return -f * std::pow(half(lat), n); } // on the middle meridian
    Place at(double x, double y) const {
        const double r = std::hypot(x, y);
        return {90.0 - 2.0 * kRadian * std::atan(std::pow(r / f, 1.0 / n)),
                lon0 + kRadian * std::atan2(x, -y) / n};
    }

  private:
    double lon0, n, f;
    static double half(double lat) { return std::tan((90.0 - lat) / 2.0 / kRadian); }
};

/* Blocks of so many cells a side have one level. */
template <typename Level>
std::string kavrad_rows(int columns, int rows, double dx, double dy, int block, Level level) {
    std::string out;
    for (int row = 0; row < rows; row += block) {
        const double lat = 39.0 + dy * ((rows - 1) / 2.0 - row - 2.0);
        const auto place = [&](int column) {
            return Place{lat, -96.0 + dx * (column + 0.5 - (columns - 1) / 2.0)};
        };
        const std::string coded = SMP_kavrad_row(line(columns, block, place, level));
        for (int i = 0; i < std::min(block, rows - row); i++)
            out += coded;
    }
    return out + SMP_kavrad_end();
}

} // namespace

std::string SMP_nowrad_degrees() {
    constexpr double kDx = 0.025, kDy = 0.02, kTop = 50.0, kLon = -96.0;
    SampleNowrad header;
    header.rows = 1290;
    header.columns = 2400;
    header.grid = radians(kLon, kTop) + " 0.0 " + radians(kDy, kDx);
    std::string out = SMP_nowrad_header(header);
    for (int row = 0; row < header.rows; row++) {
        const auto place = [&](int column) {
            return Place{kTop - kDy * (row + 0.5),
                         kLon + kDx * (column + 0.5 - (header.columns - 1) / 2.0)};
        };
        out += SMP_nowrad_line(row + 1, line(header.columns, 1, place, nowrad_level));
    }
    return out + SMP_nowrad_end();
}

std::string SMP_nowrad_sector() {
    constexpr double kDx = 0.0722, kDy = 0.0859, kLat = 38.69, kLon = -96.03; // what readers take
    SampleNowrad header;
    header.rows = 350;
    header.columns = 660;
    header.kind = 'L';
    header.product = "USRAD High             20:15 20-May-2013";
    header.grid = radians(45.0, 33.0) + " " + radians(kLat, kLon) + " " + radians(kLon, kLat) +
                  " 0.0859 0.0722";
    const Cone cone(33.0, 45.0, kLon);
    const double middle = cone.y_of(kLat);
    std::string out = SMP_nowrad_header(header);
    for (int row = 0; row < header.rows; row++) {
        const auto place = [&](int column) {
            return cone.at(kDx * (column + 0.5 - (header.columns - 1) / 2.0),
                           middle + kDy * ((header.rows - 1) / 2.0 - row - 0.5));
        };
        out += SMP_nowrad_line(row + 1, line(header.columns, 1, place, nowrad_level));
    }
    return out + SMP_nowrad_end();
}

std::string SMP_kavrad_low() {
    return SMP_kavrad_header({}) + kavrad_rows(2560, 2880, 0.0257812, 0.0171874, 3, fine_level);
}

std::string SMP_kavrad_high() {
    SampleKavrad header;
    header.mode = 'C';
    header.low = false;
    return SMP_kavrad_header(header) +
           kavrad_rows(5120, 5760, 0.0128906, 0.0085937, 6, rough_level);
}
