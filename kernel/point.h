/* Points and rectangles of the kernel.  Rectangles are four floats: xmin, xmax, ymin, ymax. */
#pragma once

struct Point {
    float x, y;
};
