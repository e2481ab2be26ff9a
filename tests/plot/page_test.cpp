/* The page: opening and closing, the fitted viewport, picture names. */
#include "tests/plot/page_fixture.h"

#include <sys/resource.h>
#include <unistd.h>

using PlotPageTest = PageTest;

TEST_F(PlotPageTest, ViewportIsFittedInsideTheMargins) {
    const auto fitted = [](const char *words, float aspect) {
        PLT_page_reset();
        RES_set("plot_param", words);
        float page[4];
        EXPECT_EQ(PLT_open(aspect) + PLT_reopen(aspect), 0); // with the margins of the start
        PLT_get_page(page);
        PLT_close();
        return page_list(page[0], page[1], page[2], page[3]);
    };
    EXPECT_EQ(fitted("", 1.0f), "0.132 0.868 0.032 0.768");
    EXPECT_EQ(fitted("", 2.5f), "0 1 0.2 0.6");
    EXPECT_EQ(fitted("full", 1.25f), "0 1 0 0.8");
    EXPECT_EQ(fitted("full,vp_size=2x2+1+0", 1.25f), "0.5 1 0.4 0.8");
}

TEST_F(PlotPageTest, NothingToDrawOpensNothing) {
    DRAW_parse("none");
    EXPECT_EQ(PLT_open(1.0f) + PLT_reopen(1.0f), -2);
    DRAW_reset();
    PAR_set(PAR_PLOT_TYPE, PLOT_NONE);
    EXPECT_EQ(PLT_open(1.0f) + PLT_close(), -2);
    EXPECT_FALSE(gis_open());
}

TEST_F(PlotPageTest, PictureNamesFollowTheirConvention) {
    const auto picture = [](int format, const char *name) {
        PLT_set_dump(format, name);
        return page_errors_of([] { PLT_dump(0); });
    };
    RES_set("title", "A map");
    RES_set("image_path", "pics");
    scratch.write("name_conv", "# none\n");
    open_page();
    FILE_set_name("@/data/%Y.nid");
    FILE_set_current("kept");
    EXPECT_EQ(picture(DUMP_GIF, ""), "PLT_dump: Unable to write GIF file: pics/qra.gif\n");
    EXPECT_EQ(picture(DUMP_XWD, "/a/%p-%i.xwd"),
              "PLT_dump: Unable to write xdump file: /a/A_map-win.xwd\n");
    EXPECT_EQ(picture(99, "x") + picture(-1, "x"), "");
    EXPECT_EQ(FILE_state().conv_input, "/data/%Y.nid");
    EXPECT_STREQ(FILE_get_current(), "kept");
}

TEST_F(PlotPageTest, BatchRunThatCannotDetachSaysSo) {
    const auto run = [&] {
        RES_set("device", ("p," + scratch.path("a.ps")).c_str());
        PAR_set(PAR_BATCH, 1);
        PLT_open(1.0f);
        const rlimit none = {0, 0};
        setrlimit(RLIMIT_NPROC, &none);
        if (setuid(65534) < 0) // a superuser has no limit
            _exit(77);
        // A leak checker would start a thread at the end, which the limit forbids too.
        on_exit([](int code, void *) { _exit(code); }, nullptr);
        PLT_close();
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(1), "^PLT_close: Unable to go to the background\n$");
    EXPECT_TRUE(scratch.read("a.ps").ends_with("%%EOF\n")) << "what there was is closed";
}
