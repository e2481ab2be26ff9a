#include "decoders/radar_spacing.h"

#include "plot/projection.h"

#include <cmath>

namespace {

float site_scale(float latitude, float longitude) {
    const int saved = PRJ_get_code();
    PRJ_set_code(PROJ_POLAR);
    const float factor = PRJ_map_factor(latitude, longitude);
    PRJ_set_code(saved);
    return std::isfinite(factor) ? factor : 1.0f; // the other pole has none
}

} // namespace

float RADAR_spacing(float latitude, float longitude, float miles) {
    const float scale = site_scale(latitude, longitude);
    return float(double(scale * miles) * RADAR_KM_PER_MILE / 100.0);
}
