#include "decoders/summary_legend.h"

#include "kernel/colors.h"
#include "kernel/gph.h"
#include "plot/levels.h"
#include "plot/page_state.h"
#include "shell/draw_list.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int kPage = 1, kData = 2;                    // transforms
constexpr int kLeft = 1, kHalf = 3;                    // alignments
constexpr float kHighest = 0.02f, kLeastStrip = 0.01f; // page units
constexpr float kStrip = 0.04f;                        // of a page with the usual margins
constexpr const char *kTitle = "Intensities (Dbz):";
constexpr const char *kLabels[] = {"20", "30", "40", "45", "50", "55"}; // of the values from 1 on
constexpr int kBoxes = int(std::size(kLabels));

/* In heights of the text. */
constexpr float kBox = 0.75f;
constexpr float kStep = 4.0f * kBox;
constexpr float kTitleWidth = 11.5f;
constexpr float kWidth = kTitleWidth + float(kBoxes) * kStep;
constexpr float kShare = 0.65f; // of the viewport's width; the rest is for the label in the corner

struct Legend {
    float x, middle; // left end, and the line that all is centred on
    float height;    // of texts and boxes
};

/* False without room below the viewport. */
bool place(Legend *legend) {
    float area[4], page[4];
    GPH_get_area(area);
    PLT_get_page(page);
    const float strip = page[2] - area[2], width = page[1] - page[0];
    legend->x = page[0] + width * 0.01f;
    legend->middle = page[2] - std::min(strip, kStrip) / 2;
    legend->height = std::min({strip * 0.75f, kHighest, width * kShare / kWidth});
    return strip >= kLeastStrip;
}

void draw_box(const Legend &legend, int box) {
    const float left = legend.x + legend.height * (kTitleWidth + kStep * float(box));
    const float right = left + legend.height * kBox;
    const float bottom = legend.middle - legend.height / 2, top = bottom + legend.height;
    PlotAttr fill;
    CONT_color_for_value(float(box + 1), &fill);
    if (fill.color >= 0) {
        if (CONT_get_fill() != MISSING)
            fill.fill = CONT_get_fill();
        GPH_set_fill(&fill);
        GPH_fill_box(left, bottom, right, top);
    }
    GPH_box(left, bottom, right, top);
    const Point at = {right + legend.height * kBox / 2, legend.middle};
    GPH_text(&at, kLabels[box]);
}

} // namespace

int SUM_draw_legend() {
    Legend legend;
    if ((!DRAW_get(DRAW_TEXT) && CONT_get_bar() <= 0) || !place(&legend))
        return -1;
    PlotAttr text;
    ATTR_from_resource("color_text", gget_inverse() ? "black" : "white", &text);
    GPH_sel_tran(kPage);
    GPH_set_line(nullptr);
    GPH_set_line(&text);
    GPH_set_text(0.0f, nullptr);
    GPH_set_text(legend.height, &text);
    GPH_text_align(kLeft, kHalf);
    const Point title = {legend.x, legend.middle};
    GPH_text(&title, kTitle);
    for (int box = 0; box < kBoxes; box++)
        draw_box(legend, box);
    GPH_set_line(nullptr);
    GPH_sel_tran(kData);
    return 0;
}
