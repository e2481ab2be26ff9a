#include "tools/samples/rrwds_writer.h"

#include "tools/samples/nation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int kGates = 200;
constexpr int kRadial = 80;                            // bytes
constexpr double kLevels[] = {20, 30, 40, 45, 50, 55}; // dBZ from which a level counts
constexpr double kMile = 1.852, kEarth = 6371.2;       // kilometres
constexpr double kDegree = M_PI / 180.0;

char digits(int number) { return char(number / 10 % 10 << 4 | number % 10); }

std::string header(const SampleScan &scan) {
    const int tenths = std::abs(scan.elevation);
    std::string out = scan.radar;
    out += scan.range == 100 ? '\x80' : '\0';
    out += '\0';
    out += char(scan.hour / 10 << 6 | scan.hour % 10 << 2);
    out += char((scan.elevation < 0 ? 0x80 : 0) | digits(scan.minute));
    out += '\0';
    out += char(tenths / 100);
    out += digits(tenths % 100);
    out += digits(scan.day);
    out += digits(scan.month);
    return out;
}

/* Three bits a gate, from the low one up, in front of them four bytes. */
std::string radial(const std::vector<uint8_t> &gates) {
    std::string out(kRadial, '\0');
    for (size_t gate = 0; gate < std::min<size_t>(gates.size(), kGates); gate++)
        for (size_t bit = 0; bit < 3; bit++)
            if (gates[gate] >> bit & 1) {
                const size_t at = 3 * gate + bit;
                out[4 + at / 8] = char(out[4 + at / 8] | 1 << at % 8);
            }
    return out;
}

int level_of(double dbz) {
    return int(std::upper_bound(std::begin(kLevels), std::end(kLevels), dbz) - kLevels);
}

/* Along the great circle: kilometres in a direction from north, in radians. */
double seen_dbz(double latitude, double longitude, double direction, double distance) {
    const double lat = latitude * kDegree, arc = distance / kEarth;
    const double to = std::asin(std::sin(lat) * std::cos(arc) +
                                std::cos(lat) * std::sin(arc) * std::cos(direction));
    const double east = std::atan2(std::sin(direction) * std::sin(arc) * std::cos(lat),
                                   std::cos(arc) - std::sin(lat) * std::sin(to));
    return NATION_dbz(to / kDegree, longitude + east / kDegree);
}

} // namespace

std::string SMP_scan(const SampleScan &scan) {
    std::string out = header(scan);
    for (const std::vector<uint8_t> &gates : scan.radials)
        out += radial(gates);
    return out;
}

void SMP_fill_scan(double latitude, double longitude, SampleScan *scan) {
    const double gate = kMile * scan->range / kGates;
    for (int degree = 0; degree < 360; degree++) {
        std::vector<uint8_t> gates;
        for (int i = 0; i < kGates; i++)
            gates.push_back(uint8_t(level_of(
                seen_dbz(latitude, longitude, (degree + 0.5) * kDegree, (i + 0.5) * gate))));
        scan->radials.push_back(gates);
    }
}
