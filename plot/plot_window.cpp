#include "plot/plot_window.h"

#include "kernel/transform.h"
#include "plot/projection.h"

static constexpr int kData = 2; // transform

int PLT_set_domain(const Domain *domain) {
    if (PRJ_set_domain(domain) != 0)
        return -1;
    float bounds[4];
    PRJ_get_bounds(bounds);
    gset_window(kData, bounds);
    gsel_norm_tran(kData);
    return 0;
}

/* Length of an axis: 0 for x, 2 for y. */
static float window_length(int axis) {
    int error = 0;
    float rects[8] = {};
    gget_norm_tran(kData, &error, rects);
    return rects[axis + 1] - rects[axis];
}

float PLT_window_height() { return window_length(2); }

float PLT_window_width() { return window_length(0); }
