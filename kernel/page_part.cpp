#include "kernel/page_part.h"

#include <algorithm>
#include <cstdio>

static constexpr float kMostTiles = 8.0f; // of a page, in one direction

int gpage_part(const char *text, PagePart *part) {
    const int n = std::max(0, sscanf(text, "%fx%f+%f+%f", &part->w, &part->h, &part->x, &part->y));
    if (!(part->w > 1.0f))
        return n;
    part->w = std::clamp(part->w, 1.0f, kMostTiles);
    part->h = std::clamp(part->h, 1.0f, kMostTiles);
    part->x = part->x / part->w;
    part->y = 1 - (part->y + 1) / part->h;
    part->w = 1 / part->w;
    part->h = 1 / part->h;
    return n;
}
