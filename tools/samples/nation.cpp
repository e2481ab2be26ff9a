#include "tools/samples/nation.h"

#include "tools/samples/noise.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

struct Place {
    double lat, lon;
};
constexpr Place kLine[] = { // of the squall line, from its north end
    {44.2, -91.6}, {41.6, -93.4}, {39.0, -94.9}, {36.9, -96.0}, {35.0, -97.4}, {33.2, -99.5}};
constexpr Place kLow = {45.5, -119.0};

/* A plane around the middle of the country, good to a few per cent. */
struct Flat {
    double x, y; // kilometres
};
Flat flat(Place p) {
    constexpr double kDegree = 111.2;
    return {(p.lon + 97.0) * kDegree * std::cos(p.lat * M_PI / 180.0), (p.lat - 38.0) * kDegree};
}

/* Kilometres from the line, negative behind it, and the part of it that is passed there. */
struct Beside {
    double across, along;
};
Beside beside_line(Flat at) {
    constexpr int kParts = int(std::size(kLine)) - 1;
    Beside nearest = {1e9, 0.0};
    for (int i = 0; i < kParts; i++) {
        const Flat a = flat(kLine[i]), b = flat(kLine[i + 1]);
        const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
        const double t =
            std::clamp(((at.x - a.x) * dx + (at.y - a.y) * dy) / (length * length), 0.0, 1.0);
        const double distance = std::hypot(at.x - a.x - t * dx, at.y - a.y - t * dy);
        const double side = (at.x - a.x) * dy - (at.y - a.y) * dx;
        if (distance < std::fabs(nearest.across))
            nearest = {side > 0 ? -distance : distance, (i + t) / kParts};
    }
    return nearest;
}

double bell(double distance, double width) {
    return std::exp(-distance * distance / (2.0 * width * width));
}

double line_dbz(Flat at) {
    const Beside b = beside_line(at);
    const double side = -b.across; // the rain trails to the northwest
    const double front = 64.0 * bell(side, side > 0.0 ? 28.0 : 12.0);
    const double rain = side > 0.0 ? 34.0 * bell(side - 70.0, 55.0) : 0.0;
    return std::max(front - 10.0 * std::fabs(b.along - 0.6), rain);
}

double low_dbz(Flat at) {
    const Flat low = flat(kLow);
    const double r = std::hypot(at.x - low.x, at.y - low.y);
    return 33.0 * bell(r - 190.0, 80.0);
}

double showers_dbz(Place p, Flat at) {
    const double here = bell(p.lat - 31.5, 2.2) * bell(p.lon + 84.5, 3.4);
    return here * (20.0 + 55.0 * NOISE_at(at.x, at.y, 45.0, 77));
}

} // namespace

double NATION_dbz(double latitude, double longitude) {
    const Place place = {latitude, longitude};
    const Flat at = flat(place);
    const double base = std::max({line_dbz(at), low_dbz(at), showers_dbz(place, at)});
    if (base < 5.0)
        return -10.0;
    return std::min(70.0, base + 7.0 * NOISE_texture(at.x / 3.0, at.y / 3.0, 991));
}
