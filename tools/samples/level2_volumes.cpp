#include "tools/samples/level2_volumes.h"

#include "tools/samples/level2_writer.h"
#include "tools/samples/storm.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr int kRays = 360;
constexpr int kRaysPerBlock = 120;
constexpr double kKnots = 1.943844; // in one m/s
constexpr float kWindOffset = 129.0f;

struct Tilt {
    int number; // from 1
    double elevation;
    bool reflectivity, velocity;
};
constexpr Tilt kTilts[] = {{1, 0.5, true, false}, {2, 0.5, false, true}, {3, 1.5, true, true}};

int dbz_gate(double dbz) {
    return dbz < 2.0 ? 0 : std::clamp(int(std::lround(dbz * 2.0 + 66.0)), 2, 255);
}

int wind_gate(double speed) {
    return std::clamp(int(std::lround(speed * 2.0 + double(kWindOffset))), 2, 255);
}

/* Gates of a moment along a ray; gate is called with x and y in kilometres. */
template <typename Gate>
SampleMoment moment(const char *name, int gates, int spacing, double azimuth, Gate gate) {
    SampleMoment m;
    m.name = name;
    m.first = spacing / 2;
    m.spacing = spacing;
    const double a = azimuth * kPi / 180.0;
    for (int i = 0; i < gates; i++) {
        const double r = (i + 0.5) * spacing / 1000.0;
        m.gates += char(gate(r * std::sin(a), r * std::cos(a)));
    }
    return m;
}

SampleMoment reflectivity(double azimuth) {
    return moment("REF", 460, 1000, azimuth,
                  [](double x, double y) { return dbz_gate(STORM_dbz(x, y)); });
}

/* The wind is known where something reflects. */
SampleMoment velocity(double azimuth) {
    SampleMoment m = moment("VEL", 600, 250, azimuth, [](double x, double y) {
        return STORM_dbz(x, y) < 3.0 ? 0 : wind_gate(STORM_velocity(x, y) / kKnots);
    });
    m.offset = kWindOffset;
    return m;
}

/* A moment that no picture shows, where a wind could be looked for. */
SampleMoment differential() {
    SampleMoment m;
    m.name = "ZDR";
    m.scale = 16.0f;
    m.offset = 128.0f;
    m.gates = std::string(20, char(130));
    return m;
}

SampleRay ray_of(const Tilt &tilt, int i, int minute) {
    SampleRay ray;
    ray.time = (20 * 60 + minute) * 60000 + (tilt.number - 1) * 18000 + i * 50;
    ray.number = i + 1;
    ray.status = i == 0 ? (tilt.number == 1 ? 3 : 0) : i == kRays - 1 ? 2 : 1;
    ray.azimuth = std::fmod(i + 135.5, 360.0);
    ray.elevation = tilt.elevation;
    ray.elevation_number = tilt.number;
    if (tilt.reflectivity)
        ray.moments.push_back(reflectivity(ray.azimuth));
    if (tilt.velocity)
        ray.moments.push_back(velocity(ray.azimuth));
    return ray;
}
} // namespace

std::string SMP_old_volume() {
    std::string out = SMP_volume_header("KTLX", 15846, (20 * 60 + 11) * 60000);
    out += SMP_other_message(2);
    for (const Tilt &tilt : kTilts)
        for (int i = 0; i < kRays; i++)
            out += SMP_message1(ray_of(tilt, i, 11));
    return SMP_gzip(out);
}

std::string SMP_new_volume() {
    std::string out = SMP_volume_header("KTLX", 15846, (20 * 60 + 16) * 60000);
    out += SMP_level2_block(SMP_other_message(15) + SMP_other_message(5) + SMP_other_message(2));
    for (const Tilt &tilt : kTilts) {
        std::string messages;
        for (int i = 0; i < kRays; i++) {
            SampleRay ray = ray_of(tilt, i, 16);
            if (!tilt.velocity)
                ray.moments.push_back(differential());
            messages += SMP_message31(ray);
            if ((i + 1) % kRaysPerBlock)
                continue;
            out += SMP_level2_block(messages, tilt.number == 3 && i + 1 == kRays);
            messages.clear();
        }
    }
    return out;
}
