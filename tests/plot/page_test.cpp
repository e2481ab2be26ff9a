/* The page: opening and closing, the fitted viewport, picture names, a whole page as a document. */
#include "plot/color_bar.h"
#include "tests/plot/page_fixture.h"

#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
struct PlotPageTest : PageTest {};

size_t count_of(const std::string &text, const std::string &part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        n++;
    return n;
}

/* A page with labels in all slots, a bar, a grid in polar stereographic. */
void draw_scene() {
    RES_set("plot_param", "bar,lalo=5:10,over=0:2");
    RES_set("map_file", "+none");
    Domain domain;
    domain.proj = PROJ_POLAR;
    domain.plat = 90.0f;
    domain.plon = -97.0f;
    domain.clat = 39.0f;
    domain.clon = -97.0f;
    domain.nx = 25;
    domain.ny = 17;
    domain.dx = domain.dy = 2.3f;
    PLT_open(DOM_aspect(&domain));
    PLT_set_domain(&domain);
    MAP_draw(1);
    CONT_set_mode(PLOT_FILLED);
    CONT_set_fill_colors("-100:off,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:lgreen,35:brown,"
                         "40:yellow,45:red,50:lred,55:magenta,60:lmagenta,65:dgray,70:lgray,"
                         "75:white",
                         1);
    CONT_bar(1, nullptr);
    for (int line = 0; line < 2; line++) {
        PLT_set_label_line(line);
        PLT_label_ul("Base reflectivity");
        PLT_label_uc("(centre)");
        PLT_label_ur("1805Z 14 MAR 98");
        PLT_label_ll("lower left");
        PLT_label_lc("lower centre");
        PLT_label_lr("Elev: 0.5");
    }
    PLT_labels();
}
} // namespace

TEST_F(PlotPageTest, ViewportIsFittedInsideTheMargins) {
    struct FitCase {
        const char *why, *param;
        float aspect;
        float page[4];
    };
    const FitCase kCases[] = {
        {"square", "", 1.0f, {0.132f, 0.868f, 0.032f, 0.768f}},
        {"wide", "", 2.5f, {0.0f, 1.0f, 0.2f, 0.6f}},
        {"to the edges", "full", 1.25f, {0.0f, 1.0f, 0.0f, 0.8f}},
        {"a quarter of the page", "full,vp_size=2x2+1+0", 1.25f, {0.5f, 1.0f, 0.4f, 0.8f}},
    };
    for (const FitCase &c : kCases) {
        SCOPED_TRACE(c.why);
        PLT_page_reset();
        RES_set("plot_param", c.param);
        ASSERT_EQ(PLT_open(c.aspect), 0);
        float page[4];
        PLT_get_page(page);
        for (int i = 0; i < 4; i++)
            EXPECT_NEAR(page[i], c.page[i], 1e-5);
        ASSERT_EQ(PLT_reopen(c.aspect), 0);
        PLT_get_page(page);
        EXPECT_NEAR(page[2], c.page[2], 1e-5) << "margins are those of the start again";
        PLT_close();
    }
    PLT_set_full(0.1f);
    EXPECT_EQ(PLT_label_margin(), 0.1f);
}

TEST_F(PlotPageTest, NothingToDrawOpensNothing) {
    DRAW_parse("none");
    EXPECT_EQ(PLT_open(1.0f), -1);
    EXPECT_EQ(PLT_reopen(1.0f), -1);
    EXPECT_FALSE(gis_open());
    DRAW_reset();
    PAR_set(PAR_PLOT_TYPE, PLOT_NONE);
    EXPECT_EQ(PLT_open(1.0f), -1);
    EXPECT_FALSE(gis_open());
    EXPECT_EQ(PLT_close(), -1);
}

TEST_F(PlotPageTest, PictureNamesFollowTheirConvention) {
    struct NameCase {
        int format;
        const char *name, *message;
    };
    const NameCase kCases[] = {
        {DUMP_GIF, nullptr, "GIF files is not there yet: pics/qra.gif"},
        {DUMP_PNG, "", "PNG files is not there yet: pics/qra.png"},
        {DUMP_IMG, nullptr, "IMG files is not there yet: pics/qra.xwd"},
        {DUMP_XWD, "%p-%i.xwd", "xdump files is not there yet: pics/A_map-win.xwd"},
        {DUMP_GIF, "/tmp/%i.gif", "GIF files is not there yet: /tmp/win.gif"},
    };
    RES_set("title", "A map");
    RES_set("image_path", "pics");
    scratch.write("name_conv", "# none\n");
    open_page();
    EXPECT_EQ(PLT_dump(0), -1);
    FILE_set_name("@/data/%Y.nid");
    FILE_set_current("kept");
    for (const NameCase &c : kCases) {
        PLT_set_dump(c.format, c.name);
        int result = 0;
        const std::string errors = page_errors_of([&] { result = PLT_dump(0); });
        EXPECT_EQ(result, 0);
        EXPECT_EQ(errors, std::string("PLT_dump: Writing of ") + c.message + "\n");
        EXPECT_EQ(FILE_state().conv_input, "/data/%Y.nid");
        EXPECT_STREQ(FILE_get_current(), "kept");
    }
    PLT_set_dump(99, "x");
    EXPECT_EQ(PLT_dump_format(), DUMP_NONE);
    PLT_set_dump(-1, nullptr);
    EXPECT_EQ(PLT_dump(-4), -1);
}

/* The run ends for the shell that started it when the document is whole, and each part of it is
 * written once. */
TEST_F(PlotPageTest, BatchRunLeavesAWholeDocument) {
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        RES_set("file_path", RADAR_SOURCE_DIR "/data");
        RES_set("device", ("p," + scratch.path("a.ps")).c_str());
        PAR_set(PAR_BATCH, 1);
        draw_scene();
        const int result = PLT_close(); // the detached process comes back
        usleep(100000);
        scratch.write("end", std::to_string(result) + (gis_open() ? " open" : " closed"));
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(scratch.read("end"), "0 closed");
    const std::string document = scratch.read("a.ps");
    EXPECT_EQ(count_of(document, "%!PS"), 1u);
    EXPECT_EQ(count_of(document, "%%EOF"), 1u);
    EXPECT_EQ(count_of(document, "Elev: 0.5"), 2u) << "two lines";
    EXPECT_EQ(count_of(document, "lower centre"), 0u) << "the bar stands there";
    EXPECT_EQ(count_of(document, "%%FA:"), 15u) << "boxes of the bar";
    EXPECT_EQ(count_of(document, "%%Message: Map-lalo: 5.0,10.0"), 1u);
}

TEST_F(PlotPageTest, BatchRunThatCannotDetachSaysSo) {
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        RES_set("device", ("p," + scratch.path("a.ps")).c_str());
        PAR_set(PAR_BATCH, 1);
        PLT_open(1.0f);
        if (!freopen(scratch.path("err").c_str(), "w", stderr))
            _exit(78);
        rlimit none = {0, 0};
        setrlimit(RLIMIT_NPROC, &none);
        setuid(65534); // a superuser has no limit
        // A leak checker would start a thread at the end, which the limit forbids too.
        on_exit(
            [](int code, void *) {
                fflush(stderr);
                _exit(code);
            },
            nullptr);
        PLT_close();
        _exit(77);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
    EXPECT_EQ(scratch.read("err"), "PLT_close: Unable to go to the background\n");
    EXPECT_EQ(count_of(scratch.read("a.ps"), "%%EOF"), 1u) << "what there was is closed";
}

TEST_F(PlotPageTest, ExitClosesTheDocument) {
    EXPECT_EXIT(
        {
            RES_set("device", ("p," + scratch.path("a.ps")).c_str());
            PLT_open(1.0f);
            PLT_exit(10);
        },
        testing::ExitedWithCode(10), "");
    EXPECT_EQ(count_of(scratch.read("a.ps"), "%%EOF"), 1u);
}
