/* Noise: a lattice of random values, smoothed between its points; -1 to 1. */
#pragma once

#include <cstdint>

/* size: distance of the lattice's points. */
double NOISE_at(double x, double y, double size, uint32_t seed);

/* Three sizes of it, 14, 5 and 2. */
double NOISE_texture(double x, double y, uint32_t seed);
