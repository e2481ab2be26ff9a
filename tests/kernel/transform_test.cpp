#include "kernel/transform.h"

#include "kernel/primitives.h"
#include "tests/kernel/kernel_fixture.h"

#include <cmath>

namespace {
struct Transforms : KernelTest {
    /* A square world on a device of 101 by 201 units. */
    Transforms() {
        open_ps();
        gset_ws_size(101, 201);
        const float square[4] = {0.0f, 1.0f, 0.0f, 1.0f};
        gset_ws_window(1, square);
        gsel_norm_tran(0);
    }
};
} // namespace

TEST_F(Transforms, TheWorldFitsTheNarrowSideOfTheDevice) {
    EXPECT_FLOAT_EQ(gworld_to_pt_x(0.5f), 50.0f);
    EXPECT_FLOAT_EQ(gworld_to_pt_y(0.25f), 25.0f) << "points go up";
    EXPECT_FLOAT_EQ(gworld_to_px_y(0.25f), 75.0f) << "pixels go down, from the top";
    EXPECT_FLOAT_EQ(gpx_to_world_x(gworld_to_px_x(0.3f)), 0.3f);
    EXPECT_FLOAT_EQ(gpx_to_world_y(gworld_to_px_y(0.3f)), 0.3f);
    for (float wild : {1e9f, INFINITY, NAN}) {
        EXPECT_EQ(gworld_to_px_x(wild), 30000.0f);
        EXPECT_EQ(gworld_to_pt_y(wild), 100000.0f);
    }
    EXPECT_EQ(gworld_to_pt_x(-1e9f), -100000.0f);
    gset_ws_size(401, 201);
    EXPECT_FLOAT_EQ(gworld_to_pt_x(1.0f), 200.0f) << "the low side binds";
    EXPECT_FLOAT_EQ(gndc_to_px_y(0.0f), 200.0f);
}

TEST_F(Transforms, WindowAndViewportScaleTheWorld) {
    const float window[4] = {-10.0f, 10.0f, 100.0f, 200.0f}, other[4] = {0.0f, 2.0f, 0.0f, 4.0f};
    const float viewport[4] = {0.5f, 1.0f, 0.0f, 0.5f};
    gset_window(3, window);
    gset_viewport(3, viewport);
    gset_window(4, other);
    EXPECT_FLOAT_EQ(gworld_to_pt_x(0.0f), 0.0f) << "another transform is current";
    gsel_norm_tran(3);
    EXPECT_FLOAT_EQ(gworld_to_pt_x(0.0f), 75.0f);
    EXPECT_FLOAT_EQ(gworld_to_pt_y(150.0f), 25.0f);
    EXPECT_FLOAT_EQ(gtran_x(0.0f, 3, 4), 1.5f);
    EXPECT_FLOAT_EQ(gtran_y(150.0f, 3, 4), 1.0f);
    int error;
    float both[8];
    gget_norm_tran(3, &error, both);
    EXPECT_EQ(rect_text(both) + " " + rect_text(both + 4),
              rect_text(window) + " " + rect_text(viewport));
    ClipRect clip;
    gclip_rect(&clip);
    EXPECT_EQ(clip.x * 1000 + clip.y, 50050);
    EXPECT_EQ(clip.width * 1000 + clip.height, 51051);
}

TEST_F(Transforms, OnlyNumbersOfTheTableAreTaken) {
    const float rect[4] = {0.0f, 1.0f, 0.0f, 1.0f};
    float both[8];
    int error;
    for (int n : {-1, 7}) {
        const std::string text = "invalid transformation number: " + std::to_string(n) + "\n\n";
        EXPECT_EQ(said_by([&] { gsel_norm_tran(n); }), "gsel_norm_tran: " + text);
        EXPECT_EQ(said_by([&] { gset_window(n, rect); }), "gset_window: " + text);
        EXPECT_EQ(said_by([&] { gset_viewport(n, rect); }), "gset_viewport: " + text);
        EXPECT_EQ(gget_norm_tran(n, &error, both), -1);
        EXPECT_EQ(gtran_x(5.0f, n, 0) + gtran_y(5.0f, 0, n), 10.0f);
    }
    EXPECT_EQ(gset_window(6, rect), -1);
    EXPECT_EQ(gsel_norm_tran(6), 0) << "can be selected, and has no size";
}

TEST_F(Transforms, TheClipTestLooksAtTheBoxAndTheWindow) {
    const struct {
        const char *why;
        std::vector<Point> points;
        int meets, meets_inverted; // a window with its sides exchanged
    } cases[] = {
        {"inside", {{0.4f, 0.5f}, {0.6f, 0.5f}}, 1, 0},
        {"around", {{-5, -5}, {5, 5}}, 1, 1},
        {"the box meets the window, the line does not", {{-0.5f, 0.9f}, {0.5f, 1.9f}}, 1, 0},
        {"on a lower corner", {{0, 0}, {-1, -1}}, 1, 0},
        {"on an upper corner", {{1, 1}, {2, 2}}, 1, 0},
        {"to the right", {{1.001f, 0.0f}, {3.0f, 1.0f}}, 0, 0},
        {"above", {{0.5f, 1.5f}, {0.6f, 2.0f}}, 0, 0},
        {"no points", {}, 0, 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(gclip_test(int(c.points.size()), c.points.data()), c.meets) << c.why;
    const float inverted[4] = {1.0f, 0.0f, 0.0f, 1.0f};
    gset_window(0, inverted);
    for (const auto &c : cases)
        EXPECT_EQ(gclip_test(int(c.points.size()), c.points.data()), c.meets_inverted) << c.why;
}
