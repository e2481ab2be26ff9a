#include "tools/samples/rcm_samples.h"

#include "tools/samples/nation.h"
#include "tools/samples/rcm_writer.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

/* Polar stereographic with the meridian of 105 degrees west upright; hundreds of kilometres. */
constexpr double kEarth = 63.7122, kMeridian = -105.0, kScale = 1.8660254; // 1 + sin 60
constexpr double kBigBox = 0.47596, kBox = kBigBox / 4.0;
constexpr double kMostRange = 4.6; // that a radar sees
constexpr double kDegree = M_PI / 180.0;

struct Spot {
    double x, y;
};

Spot spot_of(double latitude, double longitude) {
    const double r = kEarth * kScale * std::tan((90.0 - latitude) / 2.0 * kDegree);
    const double angle = (longitude - kMeridian) * kDegree;
    return {r * std::sin(angle), -r * std::cos(angle)};
}

double dbz_at(Spot s) {
    const double r = std::hypot(s.x, s.y);
    return NATION_dbz(90.0 - 2.0 / kDegree * std::atan(r / (kEarth * kScale)),
                      kMeridian + std::atan2(s.x, -s.y) / kDegree);
}

struct Station {
    const char *id;
    double latitude, longitude, height;
    int status;
};
constexpr Station kPlain = {"TLX", 35.3334, -97.2778, 390, RCM_NORMAL};
constexpr Station kFramed = {"INX", 36.1751, -95.5642, 228, RCM_NORMAL};
constexpr Station kNorth = {"ICT", 37.6544, -97.4431, 427, RCM_NORMAL};
constexpr Station kQuiet = {"ABX", 35.1497, -106.8239, 1814, RCM_NO_ECHOES};
constexpr Station kMended = {"FDR", 34.3622, -98.9767, 401, RCM_MAINTENANCE};

/* Upper left corner of a radar's boxes, on the big ones of the country. */
Spot corner_of(Spot radar) {
    const Spot middle = spot_of(39.7642, -97.1467);
    const double left = middle.x - 56.0 * kBigBox, top = middle.y + 44.0 * kBigBox;
    return {left + std::trunc((radar.x - left) / kBigBox - 12.0) * kBigBox,
            top - std::trunc((top - radar.y) / kBigBox - 12.0) * kBigBox};
}

Spot box_middle(Spot corner, int col, int row) {
    return {corner.x + (col + 0.5) * kBox, corner.y - (row + 0.5) * kBox};
}

uint8_t level_of(double dbz) {
    constexpr double kLeast[] = {20.0, 30.0, 40.0, 45.0, 50.0, 55.0};
    return uint8_t(std::upper_bound(std::begin(kLeast), std::end(kLeast), dbz) - kLeast);
}

void fill_boxes(const Station &station, RcmReport *report) {
    const Spot radar = spot_of(station.latitude, station.longitude), corner = corner_of(radar);
    const double map_scale = kScale / (1.0 + std::sin(station.latitude * kDegree));
    for (int col = 0; col < RCM_SIZE; col++)
        for (int row = 0; row < RCM_SIZE; row++) {
            const Spot at = box_middle(corner, col, row);
            if (std::hypot(at.x - radar.x, at.y - radar.y) < kMostRange * map_scale)
                report->grid[col][row] = level_of(dbz_at(at));
        }
}

struct Peak {
    double dbz;
    int col, row;
};

/* The strongest boxes, each some way from those before it. */
int find_peaks(const Station &station, Peak *peaks, int most) {
    constexpr int kApart = 9;
    const Spot corner = corner_of(spot_of(station.latitude, station.longitude));
    int count = 0;
    for (; count < most; count++) {
        Peak best = {45.0, -1, -1};
        for (int col = 20; col < RCM_SIZE - 20; col++)
            for (int row = 20; row < RCM_SIZE - 20; row++) {
                const double dbz = dbz_at(box_middle(corner, col, row));
                const bool taken = std::any_of(peaks, peaks + count, [&](const Peak &p) {
                    return std::hypot(p.col - col, p.row - row) < kApart;
                });
                if (dbz > best.dbz && !taken)
                    best = {dbz, col, row};
            }
        if (best.col < 0)
            break;
        peaks[count] = best;
    }
    return count;
}

RcmMark mark_at(const char *id, const Peak &peak) {
    RcmMark mark;
    snprintf(mark.id, sizeof mark.id, "%s", id);
    mark.col = float(peak.col);
    mark.row = float(peak.row);
    return mark;
}

/* Storms at the peaks; the first turns, and has hail and a tornado's signature. */
void add_storms(const Station &station, RcmReport *report) {
    constexpr const char *kNames[] = {"A0", "C3", "F1", "H2", "K5", "P7"};
    constexpr int kHail[] = {2, 2, 1, 1, 0, -1};
    Peak peaks[std::size(kNames)];
    const int count = find_peaks(station, peaks, int(std::size(kNames)));
    for (int i = 0; i < count; i++) {
        RcmStorm &storm = report->storms[report->storm_count++];
        snprintf(storm.id, sizeof storm.id, "%s", kNames[i]);
        storm.col = float(peaks[i].col);
        storm.row = float(peaks[i].row);
        storm.top = int(peaks[i].dbz * 8.0);
        storm.direction = 230 + 7 * i;
        storm.speed = 35 - 3 * i;
        storm.hail = kHail[i];
    }
    if (count < 2)
        return;
    report->max_top = 560;
    report->max_col = report->storms[0].col;
    report->max_row = report->storms[0].row;
    report->tvs[report->tvs_count++] = mark_at("01", peaks[0]);
    for (int i = 0; i < 2; i++)
        report->meso[report->meso_count++] = mark_at(i ? "02" : "01", peaks[i]);
}

void add_profile(RcmReport *report) {
    constexpr int kLevels[] = {2, 2, 4, 4, 6, 8};
    for (int i = 0; i < int(std::size(kLevels)); i++)
        report->echoes[report->echo_count++] = {20 + 30 * i, 170 + 12 * i, 15 + 7 * i, kLevels[i]};
}

RcmReport report_of(const Station &station, bool storms) {
    RcmReport report{};
    memset(report.grid, 0xff, sizeof report.grid);
    snprintf(report.id, sizeof report.id, "%s", station.id);
    report.number = 1;
    report.latitude = float(station.latitude);
    report.longitude = float(station.longitude);
    report.height = float(station.height);
    report.time = {2013, 5, 20, MISSING, MISSING, 20, 15, 0};
    report.mode = station.status == RCM_NORMAL ? RCM_PRECIPITATION : RCM_CLEAR_AIR;
    report.status = station.status;
    if (station.status != RCM_NORMAL)
        return report;
    fill_boxes(station, &report);
    add_profile(&report);
    if (storms)
        add_storms(station, &report);
    return report;
}

std::string plain(const Station &station, bool edited, bool storms) {
    const RcmReport report = report_of(station, storms);
    return SMP_rcm_plain(report, SMP_rcm_text(report, edited));
}

std::string framed(const Station &station) {
    const RcmReport report = report_of(station, true);
    return SMP_rcm_framed(report, SMP_rcm_text(report, false));
}

} // namespace

std::string SMP_rcm_file() {
    return plain(kQuiet, false, false) + framed(kFramed) + plain(kMended, false, false) +
           plain(kPlain, true, true) + plain(kNorth, false, false);
}
