#include "tools/samples/storm.h"

#include "tools/samples/noise.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {
constexpr double kPi = 3.14159265358979323846;

struct Place {
    double x, y;
};
constexpr Place kCore = {-30.0, 34.0};   // of the supercell
constexpr Place kVortex = {-41.0, 21.0}; // at the tip of its hook
constexpr double kVortexRadius = 2.5;    // km, of the fastest wind
constexpr double kVortexSpeed = 68.0;    // knots
constexpr Place kWind = {24.0, 22.0};    // knots, of the air that carries all this
constexpr double kKmPerMile = 1.852;

double bell(double distance, double width) {
    return std::exp(-distance * distance / (2.0 * width * width));
}

/* An egg with its blunt end to the southwest, drawn out along the wind. */
double core_dbz(double x, double y) {
    const double along = ((x - kCore.x) + (y - kCore.y)) * M_SQRT1_2;
    const double across = ((y - kCore.y) - (x - kCore.x)) * M_SQRT1_2;
    const double length = along > 0.0 ? 22.0 : 8.0;
    return 70.0 * std::exp(-0.5 * (along * along / (length * length) + across * across / 90.0));
}

/* A band that leaves the core at its south side and curls around the vortex, thinning on its way.
 */
double hook_dbz(double x, double y) {
    const double dx = x - kVortex.x, dy = y - kVortex.y;
    const double r = std::hypot(dx, dy);
    double turn = std::atan2(dy, dx) - 0.6; // anticlockwise, from where it leaves the core
    if (turn < 0.0)
        turn += 2.0 * kPi;
    if (turn > 4.9)
        return 0.0;
    const double arm = 13.0 - 2.0 * turn;
    const double width = 3.0 - 0.4 * turn;
    return (59.0 - 2.0 * turn) * bell(r - arm, width);
}

/* A bow, sharp in front, with its rain trailing behind. */
double line_dbz(double x, double y) {
    const double along = y + 45.0;
    if (std::fabs(along) > 150.0)
        return 0.0;
    const double front = -112.0 + 30.0 * std::cos(along * kPi / 300.0) +
                         9.0 * NOISE_at(0.0, y, 26.0, 71) + 3.5 * NOISE_at(0.0, y, 7.0, 73);
    const double ahead = x - front;
    const double fade = std::min(1.0, (150.0 - std::fabs(along)) / 45.0);
    const double peak = 50.0 + 8.0 * NOISE_at(x, y, 9.0, 72);
    const double crest = ahead > 0.0 ? bell(ahead, 2.6) : bell(ahead, 8.0);
    const double trail =
        ahead < 0.0 ? (30.0 + 8.0 * NOISE_at(x, y, 16.0, 74)) * bell(ahead + 32.0, 24.0) : 0.0;
    return fade * std::max(peak * crest, trail);
}

/* Young showers in the warm air to the southeast. */
double shower_dbz(double x, double y) {
    const double warm = std::clamp((x - y + 40.0) / 80.0, 0.0, 1.0);
    const double lift = NOISE_at(x, y, 19.0, 61) + 0.3 * NOISE_at(x, y, 6.0, 62);
    return warm * std::clamp((lift - 0.68) * 105.0, 0.0, 52.0);
}

/* Broad rain to the north and east. */
double shield_dbz(double x, double y) {
    const double dx = x - 70.0, dy = y - 85.0;
    const double tilted = 0.8 * dx + 0.6 * dy, other = 0.8 * dy - 0.6 * dx;
    return 33.0 * std::exp(-0.5 * (tilted * tilted / 6000.0 + other * other / 1700.0));
}

/* Echoes of the ground next to the radar. */
double ground_dbz(double x, double y) {
    const double r = std::hypot(x, y);
    return r < 14.0 ? (30.0 - 2.0 * r) * (0.6 + 0.6 * NOISE_at(x, y, 1.2, 90)) : 0.0;
}
} // namespace

double STORM_dbz(double x, double y) {
    const double storm =
        std::max({core_dbz(x, y), hook_dbz(x, y), line_dbz(x, y), shower_dbz(x, y),
                  shield_dbz(x, y) + 10.0 * NOISE_texture(x, y, 11), ground_dbz(x, y)});
    return storm + 7.0 * NOISE_texture(x, y, 23) - 6.0;
}

/* The anvil reaches farther than the rain below it. */
double STORM_column_dbz(double x, double y) {
    const double anvil = 36.0 * bell(std::hypot(x - kCore.x - 24.0, y - kCore.y - 18.0), 22.0);
    return std::max(STORM_dbz(x, y) + 2.0, anvil + 5.0 * NOISE_texture(x, y, 41));
}

double STORM_velocity(double x, double y) {
    const double r = std::max(0.1, std::hypot(x, y));
    const double dx = x - kVortex.x, dy = y - kVortex.y;
    const double d = std::max(0.01, std::hypot(dx, dy));
    const double spin = kVortexSpeed * (d < kVortexRadius ? d / kVortexRadius : kVortexRadius / d);
    // The beam rises with range, into a wind that turns from south to west and freshens.
    const double rise = std::min(1.0, r / 200.0);
    const double from = (170.0 + 75.0 * rise) * kPi / 180.0;
    const double speed = 18.0 + 26.0 * rise + 10.0 * NOISE_texture(x, y, 57);
    // Behind the front of the line the air rushes out to the east.
    const double gust = 45.0 * std::min(1.0, line_dbz(x, y) / 45.0);
    const double u = -speed * std::sin(from) + gust - spin * dy / d;
    const double v = -speed * std::cos(from) + spin * dx / d;
    return (u * x + v * y) / r;
}

double STORM_rain(double x, double y) {
    constexpr int kSteps = 24;
    double sum = 0.0;
    for (int i = 0; i < kSteps; i++) {
        const double hours = double(i) / kSteps;
        const double dbz = std::min(
            53.0, STORM_dbz(x + kWind.x * kKmPerMile * hours, y + kWind.y * kKmPerMile * hours));
        if (dbz > 10.0)
            sum += std::pow(std::pow(10.0, dbz / 10.0) / 300.0, 1.0 / 1.4) / 25.4;
    }
    return sum / kSteps;
}
