#include "decoders/radar_marks.h"

#include "decoders/radar_spacing.h"
#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/gph.h"
#include "plot/map.h"
#include "plot/projection.h"

void RADAR_data_style(PlotAttr *attr) {
    ATTR_from_resource("color_data", gget_inverse() ? "black" : "white", attr);
}

void RADAR_draw_marks(const Domain &product, const RadarOptions &options) {
    Point radar = {MISSING_F, MISSING_F}; // a code without a formula stores nothing
    if (!PRJ_latlon_to_xy(product.clat, product.clon, &radar.x, &radar.y) || radar.x == MISSING_F)
        return;
    if (options.site)
        GPH_mark(radar.x, radar.y);
    if (options.ring[0] == 0.0f)
        return;
    for (const float ring : options.ring)
        if (ring != 0.0f)
            MAP_range_ring(radar.x, radar.y, ring * float(RADAR_KM_PER_MILE));
}

void RADAR_draw_plain_marks(const Domain &product, const RadarOptions &options) {
    PlotAttr attr;
    RADAR_data_style(&attr);
    GPH_set_line(&attr);
    GPH_set_marker(1.0f, &attr);
    gset_marker_type(2);
    RADAR_draw_marks(product, options);
}
