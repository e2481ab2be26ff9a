#include "tools/samples/noise.h"

#include <cmath>

namespace {

double lattice(int i, int j, uint32_t seed) {
    uint32_t h = uint32_t(i) * 0x9E3779B1u ^ uint32_t(j) * 0x85EBCA77u ^ seed;
    h ^= h >> 15;
    h *= 0x2C1B3C6Du;
    h ^= h >> 12;
    h *= 0x297A2D39u;
    h ^= h >> 15;
    return double(h) / 2147483648.0 - 1.0;
}

double smooth(double t) { return t * t * (3.0 - 2.0 * t); }

} // namespace

double NOISE_at(double x, double y, double size, uint32_t seed) {
    // Turned, or the lattice shows along the axes.
    const double a = (0.81 * x + 0.59 * y) / size, b = (0.81 * y - 0.59 * x) / size;
    const double u = std::floor(a), v = std::floor(b);
    const double fx = smooth(a - u), fy = smooth(b - v);
    const int i = int(u), j = int(v);
    const double low = std::lerp(lattice(i, j, seed), lattice(i + 1, j, seed), fx);
    const double high = std::lerp(lattice(i, j + 1, seed), lattice(i + 1, j + 1, seed), fx);
    return std::lerp(low, high, fy);
}

double NOISE_texture(double x, double y, uint32_t seed) {
    return 0.55 * NOISE_at(x, y, 14.0, seed) + 0.3 * NOISE_at(x, y, 5.0, seed + 1) +
           0.15 * NOISE_at(x, y, 2.0, seed + 2);
}
