#include "kernel/transform.h"

#include "kernel/primitives.h"
#include "tests/kernel/kernel_fixture.h"

#include <cmath>

namespace {
struct Transforms : KernelTest {
    /* A square world on a device of 101 by 201 units. */
    void open_square() {
        open_ps();
        gset_ws_size(101, 201);
        const float square[4] = {0.0f, 1.0f, 0.0f, 1.0f};
        gset_ws_window(1, square);
        gsel_norm_tran(0);
    }
};
} // namespace

TEST_F(Transforms, TheWorldFitsTheNarrowSideOfTheDevice) {
    open_square();
    EXPECT_FLOAT_EQ(gworld_to_pt_x(0.5f), 50.0f);
    EXPECT_FLOAT_EQ(gworld_to_pt_y(0.25f), 25.0f) << "points go up";
    EXPECT_FLOAT_EQ(gworld_to_px_y(0.25f), 75.0f) << "pixels go down, from the top";
    EXPECT_FLOAT_EQ(gpx_to_world_x(gworld_to_px_x(0.3f)), 0.3f);
    EXPECT_FLOAT_EQ(gpx_to_world_y(gworld_to_px_y(0.3f)), 0.3f);
    gset_ws_size(401, 201);
    EXPECT_FLOAT_EQ(gworld_to_pt_x(1.0f), 200.0f) << "the low side binds";
    EXPECT_FLOAT_EQ(gndc_to_px_y(0.0f), 200.0f);
}

TEST_F(Transforms, WindowAndViewportScaleTheWorld) {
    open_square();
    const float window[4] = {-10.0f, 10.0f, 100.0f, 200.0f};
    const float viewport[4] = {0.5f, 1.0f, 0.0f, 0.5f};
    const float other[4] = {0.0f, 2.0f, 0.0f, 4.0f};
    gset_window(3, window);
    gset_viewport(3, viewport);
    gset_window(4, other);
    EXPECT_FLOAT_EQ(gworld_to_pt_x(0.0f), 0.0f) << "another transform is current";
    gsel_norm_tran(3);
    EXPECT_FLOAT_EQ(gworld_to_pt_x(0.0f), 75.0f);
    EXPECT_FLOAT_EQ(gworld_to_pt_y(150.0f), 25.0f);
    EXPECT_FLOAT_EQ(gtran_x(0.0f, 3, 4), 1.5f);
    EXPECT_FLOAT_EQ(gtran_y(150.0f, 3, 4), 1.0f);
    EXPECT_FLOAT_EQ(gtran_x(gtran_x(7.0f, 3, 4), 4, 3), 7.0f);

    int error = 1, n;
    float both[8];
    EXPECT_EQ(gget_norm_tran(3, &error, both), 0);
    const float want[8] = {-10.0f, 10.0f, 100.0f, 200.0f, 0.5f, 1.0f, 0.0f, 0.5f};
    EXPECT_TRUE(std::equal(both, both + 8, want));
    EXPECT_EQ(gget_cur_tran(&error, &n), 0);
    EXPECT_EQ(n, 3);
    EXPECT_EQ(error, 0);

    ClipRect clip;
    gclip_rect(&clip);
    EXPECT_EQ(clip.x, 50);
    EXPECT_EQ(clip.y, 50);
    EXPECT_EQ(clip.width, 51);
    EXPECT_EQ(clip.height, 51);
}

TEST_F(Transforms, WildPointsAreLimited) {
    open_square();
    EXPECT_EQ(gworld_to_px_x(1e9f), 30000.0f);
    EXPECT_EQ(gworld_to_px_y(1e9f), -30000.0f);
    EXPECT_EQ(gworld_to_pt_x(-1e9f), -100000.0f);
    EXPECT_EQ(gworld_to_pt_y(1e9f), 100000.0f);
}

TEST_F(Transforms, OnlyNumbersOfTheTableAreTaken) {
    open_square();
    const float rect[4] = {0.0f, 1.0f, 0.0f, 1.0f};
    float both[8];
    int error;
    for (int n : {-1, 7}) {
        const std::string text = "invalid transformation number: " + std::to_string(n) + "\n\n";
        EXPECT_EQ(errors_of([&] { EXPECT_EQ(gsel_norm_tran(n), -1); }), "gsel_norm_tran: " + text);
        EXPECT_EQ(errors_of([&] { EXPECT_EQ(gset_window(n, rect), -1); }), "gset_window: " + text);
        EXPECT_EQ(gget_norm_tran(n, &error, both), -1);
        EXPECT_EQ(gtran_x(5.0f, n, 0), 5.0f);
    }
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(gset_viewport(6, rect), -1); }),
              "gset_viewport: invalid transformation number: 6\n\n");
    EXPECT_EQ(gsel_norm_tran(6), 0) << "can be selected, and has no size";
    EXPECT_EQ(gsel_norm_tran(0), 0);
    EXPECT_FLOAT_EQ(gworld_to_pt_x(0.5f), 50.0f);
}

TEST_F(Transforms, TheClipTestLooksAtTheBoxAndTheWindow) {
    open_square();
    const struct {
        const char *why;
        std::vector<Point> points;
        int meets;
    } cases[] = {
        {"inside", {{0.2f, 0.2f}, {0.3f, 0.3f}}, 1},
        {"around", {{-5, -5}, {5, 5}}, 1},
        {"the box meets the window, the line does not", {{-0.5f, 0.9f}, {0.5f, 1.9f}}, 1},
        {"on the right edge", {{1.0f, 0.0f}, {3.0f, 1.0f}}, 1},
        {"on the lower edge", {{0.5f, 0.0f}, {0.5f, -1.0f}}, 1},
        {"to the right", {{1.001f, 0.0f}, {3.0f, 1.0f}}, 0},
        {"above", {{0.5f, 1.5f}, {0.6f, 2.0f}}, 0},
        {"to the left", {{-0.5f, 0.5f}, {-0.1f, 0.5f}}, 0},
        {"no points", {}, 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(gclip_test(int(c.points.size()), c.points.data()), c.meets) << c.why;
    const float inverted[4] = {1.0f, 0.0f, 0.0f, 1.0f};
    gset_window(0, inverted);
    const Point inside[] = {{0.4f, 0.5f}, {0.6f, 0.5f}}, across[] = {{-1, 0.5f}, {2, 0.5f}};
    EXPECT_EQ(gclip_test(2, inside), 0);
    EXPECT_EQ(gclip_test(2, across), 1);
}
