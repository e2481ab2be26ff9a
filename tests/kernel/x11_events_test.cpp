/* Frames, events and zoom of a window, on displays without a screen. */
#include "tests/support/xserver.h" // before the macros of Xlib hide names of the tests

#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/events.h"
#include "kernel/frame_table.h"
#include "kernel/frames.h"
#include "kernel/x11_state.h"
#include "kernel/zoom.h"
#include "tests/kernel/kernel_fixture.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>

constexpr int kWidth = 64, kHeight = 48, kCount = kWidth * kHeight;
// A server has one pointer: the tests of other processes wait.
static const int turn = open(RADAR_SOURCE_DIR "/tools/with_xservers", O_RDONLY | O_CLOEXEC);
static std::string heard; // "v-Alt@20,30 ", in pixels of the picture

struct X11Test : KernelTest {
    /* A window away from those of other tests, with the pointer on its pixel 20,30. */
    void open_x(const std::string &display) {
        fresh();
        heard = "";
        RES_set("geometry", "64x48+1000+800");
        open("x," + display);
        gsel_norm_tran(1);
        gset_event_call([](float x, float y, int, const char *name) {
            plot_on(); // a plot inside another would be heard before it
            const int px = int(gworld_to_px_x(x) + 0.5f), py = int(gworld_to_px_y(y) + 0.5f);
            heard += name + ("@" + std::to_string(px)) + "," + std::to_string(py) + " ";
            if (std::string(name) == "B1-P-Shft")
                gset_rubber(2);
        });
        setenv("DISPLAY", display.c_str(), 1); // of xdotool; the border is 5 wide
        ASSERT_EQ(system("xdotool mousemove 1 1 mousemove 1025 835"), 0);
    }
    void SetUp() override {
        NEED_X_SERVER("RADAR_X24");
        ASSERT_EQ(flock(turn, LOCK_EX), 0);
        open_x(getenv("RADAR_X24"));
    }
    /* Waits while another process sends what the words of xdotool say, and then Return. */
    static void wait_with(const std::string &words) {
        FILE *sender = popen(("xdotool " + words + " key Return").c_str(), "w");
        gwait_user(1);
        EXPECT_EQ(pclose(sender), 0);
    }
    static void add_frames(unsigned long n) { // of the pixels 1, 2 and so on
        for (unsigned long i = 1; i <= n; i++) {
            gselect_frame(gnew_frame(-1));
            gx11_paint(gx11().draw_pixmap, i, kWidth, kHeight);
        }
    }
    static std::vector<unsigned long> pixels(Drawable from) {
        XImage *image = XGetImage(gx11().display, from, 0, 0, kWidth, kHeight, AllPlanes, ZPixmap);
        std::vector<unsigned long> all;
        for (int i = 0; i < kCount; i++)
            all.push_back(XGetPixel(image, i % kWidth, i / kWidth));
        XDestroyImage(image);
        return all;
    }
    static unsigned long shown() { return pixels(gx11().window)[0]; }
    static void plot_on() { // for so long that it looks for events
        XSync(gx11().display, False);
        for (int i = 0; i < 500; i++)
            gset_linetype(2 - i % 2);
    }
    static void send(int format, long first) { // as another client would
        XEvent event{.xclient = {ClientMessage, 0, 0, nullptr, gx11().window, 62, format, {}}};
        event.xclient.data.l[0] = first;
        XSendEvent(gx11().display, gx11().window, True, 0, &event);
    }
};

TEST_F(X11Test, KeysAndButtonsAreReportedAndABoxFollowsThePointer) {
    gset_line_colr_ind(2);
    wait_with("keydown shift mousedown 1 mousemove 1055 845 sleep 0.2 mousemove 1045 840 sleep 0.2 "
              "mouseup 1 keyup shift mousemove 1025 835");
    const auto box = pixels(gx11().window);
    EXPECT_EQ(std::count(box.begin(), box.end(), gget_pixel(2)), 2 * (20 + 5));
    heard = "";
    wait_with("key a key alt+v key alt+shift+v keydown alt click 3 keyup alt keydown shift "
              "keydown ctrl click 2 keyup shift keyup ctrl key alt+z key b key alt+u");
    EXPECT_EQ(heard, "a@20,30 v-Alt@20,30 V-Alt-Shft@20,30 B3-P-Alt@20,30 B3-R-Alt@20,30 "
                     "B2-P-Shft-Cntrl@20,30 B2-R-Shft-Cntrl@20,30 z-Alt@14,33 b@14,33 Ret@20,30 ");
}

TEST_F(X11Test, KeysAndModesStepThroughTheFramesUntilNoneIsLeft) {
    add_frames(3);
    for (int mode_from_step_next : {1200, 2, 3201, 2001, 3011, 1290, 1011}) {
        gset_loop_mode(mode_from_step_next / 1000);
        gdisplay_frame(mode_from_step_next / 100 % 10);
        EXPECT_EQ(gnext_frame(mode_from_step_next / 10 % 10), mode_from_step_next % 10);
    }
    gdisplay_frame(2);
    for (int i = 0, pixel_of_count[] = {13, 33, 22, 11, 0}; i < 5; i++) {
        const char *keys[] = {"bracketright", "bracketleft click 3 click 1", "d", "d",
                              "d click 1 click 2 click 3 key alt+d"};
        wait_with(std::string("key alt+") + keys[i]);
        EXPECT_EQ(int(shown()) * 10 + gget_frame_count(), pixel_of_count[i]) << keys[i];
    }
    EXPECT_EQ(gis_looping() + gx11().errors, 0);
}

TEST_F(X11Test, ALoopKeepsToItsDelaysAndAFullTableToTheNewest) {
    add_frames(3);
    gset_looping(1); // 0.5 to 0.1 and then 0.05; the last frame stays for 1
    const std::string faster = "key alt+bracketright ";
    wait_with(faster + faster + faster + faster + faster + "sleep 0.8");
    EXPECT_NEAR(double(gget_loop_delay()), 0.05, 1e-5);
    EXPECT_EQ(gframe_table().frames[0].delay, gget_loop_delay());
    EXPECT_EQ(gframe_table().frames[2].delay, 1.0f);
    EXPECT_EQ(said_by([] { add_frames(127); }),
              "gnew_frame: More than 128 frames, the oldest are dropped\n");
    EXPECT_EQ(gget_dropped_frames(), 2) << "the numbers of the others go on from there";
    gdisplay_frame(0);
    EXPECT_EQ(shown(), 3u);
}

TEST_F(X11Test, APlotAnswersExposureAndLeavesTheRestToTheWait) {
    add_frames(2);
    gdisplay_frame(1);
    for (int i = 0; i < 2; i++) {
        XClearArea(gx11().display, gx11().window, 0, 0, 0, 0, True);
        plot_on();
        EXPECT_EQ(shown(), 2u) << "uncovered " << i + 1;
    }
    EXPECT_EQ(system("xdotool key alt+d click 1"), 0);
    XResizeWindow(gx11().display, gx11().window, 80, 60);
    plot_on();
    EXPECT_EQ(heard + std::to_string(gget_frame_count()), "2");
    wait_with(""); // the size first
    EXPECT_NE(heard.find(" d-Alt@20,30 B1-P@20,30 B1-R@20,30 Ret@20,30 "), heard.npos);
}

TEST_F(X11Test, WhatWasNotedForAClosedWindowIsDropped) {
    EXPECT_EQ(system("xdotool key a click 1 key Return"), 0);
    plot_on();
    GPH_end(ws);
    open(std::string("x,") + getenv("RADAR_X24"));
    gsel_norm_tran(1);
    wait_with("key b");
    EXPECT_EQ(heard, "b@20,30 Ret@20,30 ");
}

TEST_F(X11Test, AClientAsksForFramesAndEndsTheWait) {
    const Pixmap client = gx11().base_pixmap;
    for (unsigned long pixel : {5, 6, 7}) { // what the client draws
        gx11_paint(client, pixel, kWidth, kHeight);
        send(8, 2), send(8, 9);
        gwait_user(1);
    }
    gdisplay_frame(1);
    EXPECT_EQ(shown(), 7u);
    send(32, long(gx11().delete_window)); // as a window manager does
    gwait_user(1);
}

TEST_F(X11Test, AZoomRepeatsPixelsAndIsTakenBack) {
    // A place of the window, the factor, the corner of what is shown
    constexpr int kSteps[][5] = {
        {40, 30, -2, 24, 18}, {63, 47, 3, 42, 32}, {0, 0, 1, 0, 0}, {-1, -1, 1024, 32, 24}};
    for (const char *variable : {"RADAR_X24", "RADAR_X16", "RADAR_X8"}) {
        open_x(getenv(variable));
        for (int i = 0; i < kCount; i++)
            gx11_paint(gx11().base_pixmap, (i * 7919ul) & ((1ul << gdepth()) - 1),
                       kWidth - i % kWidth, kHeight - i / kWidth);
        const auto plain = pixels(gx11().base_pixmap);
        for (const auto &[x, y, factor, x0, y0] : kSteps) {
            gzoom(FRAME_CURRENT, x, y, factor, 0);
            auto wanted = plain;
            for (int i = 0, z = gzoom_factor(); i < kCount; i++)
                wanted[i] = plain[(y0 + i / kWidth / z) * kWidth + x0 + i % kWidth / z];
            EXPECT_TRUE(pixels(gx11().window) == wanted) << variable << ": " << gzoom_factor();
        }
        EXPECT_EQ(said_by([] { gzoom(-2, 0, 0, -2, 0); }), "gzoom: Cannot zoom past 1024x\n");
        gunzoom();
        EXPECT_TRUE(pixels(gx11().window) == plain) << variable;
    }
}
