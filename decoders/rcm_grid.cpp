#include "decoders/rcm_grid.h"

#include "decoders/radar_colors.h"
#include "kernel/primitives.h"
#include "plot/projection.h"

#include <cmath>

namespace {

constexpr float kPole = 90.0f, kMeridian = -105.0f;
constexpr float kBox = 0.11899f; // hundreds of kilometres, true at 60 degrees north
constexpr float kBigBox = 4.0f * kBox;
constexpr float kAside = 12.0f; // big boxes from the radar to the corner
constexpr int8_t kMostLevel = 6;

Domain polar_domain(float latitude, float longitude, float box, int nx, int ny) {
    Domain domain;
    domain.proj = PROJ_POLAR;
    domain.plat = kPole;
    domain.plon = kMeridian;
    domain.clat = latitude;
    domain.clon = longitude;
    domain.dx = domain.dy = box;
    domain.nx = nx;
    domain.ny = ny;
    return domain;
}

/* The national grid of big boxes, to which the boxes of all radars are aligned.
 */
Domain national_domain() { return polar_domain(39.7642f, -97.1467f, kBigBox, 113, 89); }

bool has_image(const RcmGrid &grid) { return grid.origin.x != MISSING_F; }

void fill_box(const RcmGrid &grid, int col, int row) {
    const float x = float(col), y = float(row);
    const Point box[5] = {RCM_grid_at(grid, x, y), RCM_grid_at(grid, x + 1.0f, y),
                          RCM_grid_at(grid, x + 1.0f, y + 1.0f), RCM_grid_at(grid, x, y + 1.0f),
                          RCM_grid_at(grid, x, y)};
    for (const Point &corner : box)
        if (corner.x == MISSING_F)
            return;
    gfill_area(5, box);
}

} // namespace

Domain RCM_domain(float latitude, float longitude, int boxes) {
    return polar_domain(latitude, longitude, kBox, boxes, boxes);
}

void RCM_find_grid(const Domain &message, RcmGrid *grid) {
    RADAR_find_site(message, &grid->site);
    const Domain national = national_domain();
    float x = MISSING_F, y = MISSING_F, col, row;
    grid->origin = {MISSING_F, MISSING_F};
    PRJ_set_domain(&national);
    PRJ_latlon_to_xy(message.clat, message.clon, &x, &y);
    if (PRJ_xy_to_grid(x, y, &col, &row) == 0)
        PRJ_grid_to_xy(floorf(col - kAside), floorf(row - kAside), &grid->origin.x,
                       &grid->origin.y);
    PRJ_set_domain(&grid->site.plot);
}

Point RCM_grid_at(const RcmGrid &grid, float col, float row) {
    if (!has_image(grid))
        return {MISSING_F, MISSING_F};
    Point at = {grid.origin.x + col * kBox, grid.origin.y - row * kBox};
    if (!grid.site.same && !RADAR_convert(grid.site, &at))
        return {MISSING_F, MISSING_F};
    return at;
}

void RCM_fill_boxes(const RcmGrid &grid, RcmReport *report) {
    float colored = MISSING_F; // value whose fill is current, or that is not drawn
    bool visible = false;
    for (int row = 0; row < RCM_SIZE; row++)
        for (int col = 0; col < RCM_SIZE; col++) {
            uint8_t &box = report->grid[col][row];
            if (int8_t(box) > kMostLevel)
                box = 0;
            const float value = int8_t(box); // -1 where nothing was sent
            if (value != colored) {
                colored = value;
                visible = RADAR_set_color(value);
            }
            if (visible)
                fill_box(grid, col, row);
        }
}
