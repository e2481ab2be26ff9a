#include "decoders/nids_pointer.h"

#include "plot/pointer.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <cmath>

namespace {

constexpr uint32_t kReadout = 8;                  // message level
constexpr double kMilesPerUnit = 100.0 * 0.53996; // nautical, of 100 km
constexpr double kFeetPerMile = 6076.22;

} // namespace

void NIDS_pointer(float x, float y, int, const char *name) {
    if (STR_casecmp(name, "v-Alt") == 0)
        NIDS_read_out(x, y, name, *NIDS_product());
    PLT_common_events(x, y, name);
}

void NIDS_read_out(float x, float y, const char *name, const NidsProduct &product) {
    float lat, lon, site_x, site_y;
    PRJ_xy_to_latlon(x, y, &lat, &lon);
    MSG_print(kReadout, "Str: %s Pos: %6.2f,%6.2f Lat: %6.2f Lon: %6.2f\n", name, double(x),
              double(y), double(lat), double(lon));
    if (!PRJ_latlon_to_xy(product.domain.clat, product.domain.clon, &site_x, &site_y))
        return;
    const float scale = PRJ_map_factor(product.domain.clat, product.domain.clon);
    const float d = std::hypot(x - site_x, y - site_y) / scale;
    MSG_print(kReadout, "Lat: %6.2f Lon: %6.2f Dist: %5.1fnm Alt: %5.0fft\n", double(lat),
              double(lon), double(d) * kMilesPerUnit,
              double(NIDS_beam_height(d, product.elevation)) * kMilesPerUnit * kFeetPerMile);
}

float NIDS_beam_height(float distance, float elevation) {
    constexpr double kEarth = 63.713; // radius
    const double d = double(distance);
    const double angle = (double(elevation) + 90.0) * PRJ_RADIANS; // at the radar, from the centre
    return float(sqrt(d * d + kEarth * kEarth - cos(angle) * 2.0 * d * kEarth) - kEarth);
}
