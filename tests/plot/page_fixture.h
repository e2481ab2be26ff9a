/* What the tests of this folder share: fresh state, and a device that keeps what is drawn on it, in
 * the coordinates of the transform it was drawn in. */
#pragma once

#include "files/file_name.h"
#include "kernel/color_table.h"
#include "kernel/device.h"
#include "kernel/devices.h"
#include "kernel/gph.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "plot/city_cache.h"
#include "plot/domain_input.h"
#include "plot/dump.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/page.h"
#include "plot/page_state.h"
#include "plot/plot_param.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "plot/region.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "tests/support/scratch.h"

#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

struct DrawnText {
    Point at;
    std::string text;
    int transform, align_h, align_v;
    float height;
};

struct DrawnLine {
    std::vector<Point> points;
    int transform, color, type;
    bool filled;
};

/* What the device was given since the last page_fresh. */
struct Drawn {
    std::vector<DrawnText> texts;
    std::vector<DrawnLine> lines; // areas too
    std::vector<std::string> notes;

    std::vector<DrawnLine> areas() const {
        std::vector<DrawnLine> found = lines;
        std::erase_if(found, [](const DrawnLine &line) { return !line.filled; });
        return found;
    }

    /* All texts in their order; with parts also their anchors, in such parts of a unit, and their
     * alignments: "EQ@-93,0 13|20N@-93,20 13". */
    std::string words(float parts = 0.0f) const {
        std::string all;
        for (const DrawnText &text : texts) {
            all += (all.empty() ? "" : "|") + text.text;
            if (parts > 0.0f)
                all += "@" + point(text.at, parts) + " " +
                       std::to_string(text.align_h * 10 + text.align_v);
        }
        return all;
    }

    /* Lines and areas by their points: "[10,0 12,1]", an area in braces. */
    std::string shapes(float parts) const {
        std::string all;
        for (const DrawnLine &line : lines) {
            std::string points;
            for (const Point &p : line.points)
                points += (points.empty() ? "" : " ") + point(p, parts);
            all += line.filled ? "{" + points + "}" : "[" + points + "]";
        }
        return all;
    }

    static std::string point(Point p, float parts) {
        return std::to_string(std::lround(p.x * parts)) + "," +
               std::to_string(std::lround(p.y * parts));
    }
};
inline Drawn drawn;

inline int page_transform() {
    int error, n;
    gget_cur_tran(&error, &n);
    return n;
}

template <bool kFilled>
void page_keep_line(int n, const Point *points) {
    const int color = kFilled ? gstate().fill.color : gstate().line.color;
    const int type = kFilled ? gstate().fill.style : gstate().line.type;
    drawn.lines.push_back({{points, points + n}, page_transform(), color, type, kFilled});
}

inline const Device kKeepingDevice = {
    .name = "keeping",
    .open =
        [](const char *) { // a page of 1 by 0.8
            gstate().ws_width = 1001;
            gstate().ws_height = 801;
            return 0;
        },
    .message = [](const char *text) { drawn.notes.push_back(text); },
    .polyline = page_keep_line<false>,
    .fill = page_keep_line<true>,
    .text_begin =
        [](Point at, const char *text) {
            const TextState &t = gstate().text;
            drawn.texts.push_back({at, text, page_transform(), t.align_h, t.align_v, t.height});
        },
};

inline void page_fresh() {
    for (void (*reset)() :
         {GPH_reset, COLOR_reset, CONT_reset, CTY_reset, DRAW_reset, FILE_name_reset, DT_zone_reset,
          MAP_reset, PLT_dump_reset, PLT_labels_reset, PLT_page_reset, PLT_param_reset, PLT_reset,
          PRJ_reset, REG_reset, DOM_reset, RES_reset, MSG_reset})
        reset();
    CONT_set_bar(0);
    DOM_set_ask(1);
    PAR_fill(MISSING);
    RES_set_converter(OPT_DEVICE, gdevice_convert);
    drawn = Drawn{};
}

/* A plate of the whole earth, in degrees, or a part of it. */
inline Domain page_latlon(float lat, float lon, float height) {
    Domain d;
    d.proj = PROJ_LATLON;
    d.plat = d.plon = 0.0f;
    d.clat = lat;
    d.clon = lon;
    d.nx = d.ny = 3;
    d.dx = height;
    d.dy = height / 2;
    return d;
}

/* Fresh state, and a folder that is searched for data. */
struct PlotTest : testing::Test {
    Scratch scratch;

    PlotTest() {
        page_fresh();
        RES_set("file_path", scratch.dir.c_str());
    }
    ~PlotTest() override { page_fresh(); }
};

/* And the keeping device. */
struct PageTest : PlotTest {
    PageTest() {
        gregister_devices();
        gset_device(WS_META, &kKeepingDevice);
        RES_set("device", "m");
        std::string font = "255 254"; // no glyph at all
        for (int code = 0; code < 256; code++)
            font += " -1";
        scratch.write("modern.fnt", font);
        scratch.write("qra.clr", "black 0 0 0\nwhite 1 1 1\nred 1 0 0\ngreen 0 1 0\nblue 0 0 1\n"
                                 "magenta 1 0 1\n");
        COLOR_read_table(nullptr);
        MSG_set_levels("warn");
    }
    ~PageTest() override { gset_device(WS_META, nullptr); }

    /* Opens the page and forgets what that drew. */
    void open(const Domain &domain) {
        ASSERT_EQ(PLT_open(DOM_aspect(&domain)), 0);
        PLT_set_domain(&domain);
        drawn = Drawn{};
    }

    void open_page() { open(page_latlon(40.0f, -100.0f, 40.0f)); }
};

/* What a call writes to standard error and to standard output. */
template <class Call>
std::string page_errors_of(Call call) {
    testing::internal::CaptureStderr();
    call();
    return testing::internal::GetCapturedStderr();
}

template <class Call>
std::string page_output_of(Call call) {
    testing::internal::CaptureStdout();
    call();
    return testing::internal::GetCapturedStdout();
}

/* Values with blanks between them, "M" for a missing one. */
template <class... Values>
std::string page_list(const Values &...values) {
    std::ostringstream out;
    ((out << " " << values), ...);
    std::string text = out.str().substr(1);
    for (size_t at; (at = text.find("-9999")) != text.npos;)
        text.replace(at, 5, "M");
    return text;
}
