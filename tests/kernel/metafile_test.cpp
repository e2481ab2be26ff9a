/* Metafiles: what they hold, and that a replay draws what was drawn. */
#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/device_meta.h"
#include "kernel/meta_reader.h"
#include "kernel/primitives.h"
#include "kernel/redraw_play.h"
#include "kernel/state.h"
#include "tests/kernel/kernel_fixture.h"

#include <cstring>
#include <filesystem>
#include <vector>

namespace {
/* Every call that a metafile keeps.  Six decimals hold these numbers whole. */
void draw_scene() {
    const float window[4] = {-8.0f, 8.0f, -4.0f, 4.0f};
    const float view[4] = {0.125f, 0.875f, 0.0625f, 0.5625f};
    gset_window(2, window);
    gset_viewport(2, view);
    gsel_norm_tran(2);
    GPH_set_color(0.25f, 0.5f, 0.75f, 3);
    for (const int form : {1, 2, 3}) {
        const float x = float(form) / 2, up[] = {1.0f, x};
        const Point points[] = {{x, 0}, {1.5f, x}, {-1, -3.75f}, {3, 0}, {x, -0.015625f}};
        PlotAttr attr = {.width = x - 0.5f, .height = x, .expansion = x + 1};
        attr.style = (attr.color = attr.font = form) + 1;
        attr.fill = form % 2 * form;
        GPH_set_line(&attr);
        GPH_set_marker(2.5f, &attr);
        GPH_set_fill(&attr);
        GPH_set_text(0.25f, &attr);
        gset_char_space(x / 8);
        gset_char_fixed(x - 0.5f);
        gset_char_up(up);
        GPH_text_align(form, 6 - form);
        gpolyline(3 + form % 3, points);
        gpolymarker(3 + form % 3, points);
        gfill_area(3 + form % 3, points);
        GPH_textxy(-x, x, " L\n?  L ");
    }
    GPH_line(9, 9, 10, 10); // outside, so not kept
    gsel_norm_tran(1);
    GPH_line(0.0f, 0.5f, 1.0f, 0.25f);
}

/* The words of a file of the binary form; one that comes again and again stands once. */
std::string words_of(const std::string &bytes) {
    std::string text;
    for (size_t at = 0, run = 1; at + 1 < bytes.size(); at += 2 * run) {
        const std::string word = bytes.substr(at, 2);
        for (run = 1; bytes.compare(at + 2 * run, 2, word) == 0;)
            run++;
        char hex[40];
        snprintf(hex, sizeof hex, "%02x%02x ", uint8_t(word[0]), uint8_t(word[1]));
        text += run == 1 ? hex : std::to_string(run) + "*" + hex;
    }
    return text;
}

struct Metafile : KernelTest {
    std::string path(const char *name) const { return scratch.path(name); }
    std::string read(const char *name) const { return scratch.read(name); }

    /* What is drawn on a device, as the file that it leaves, but for the date. */
    std::string drawn(const std::string &device_text, const char *name, void (*draw)()) {
        fresh();
        open(device_text);
        draw();
        GPH_end(ws);
        std::string text = read(name);
        const size_t date = text.find("CreationDate: ");
        return date == text.npos ? text : text.erase(date, strlen("CreationDate: ") + 24);
    }

    /* A page of points, on which a file with these records is read: what that draws. */
    std::string replayed(const std::string &records) {
        scratch.write("in.meta", "any first line\n" + records);
        open_points();
        gread_metafile(path("in.meta").c_str());
        return scene();
    }
};
} // namespace

TEST_F(Metafile, HoldsTheCallsAsTheyCame) {
    RES_set("title", "a\nplot");
    const std::string text = drawn("m," + path("a.meta"), "a.meta", [] {
        const Point points[] = {{1, 2}, {-0.5f, 0.25f}, {0, 0}, {1, 1}, {1e7f, 1}};
        const float up[] = {0, 2}, rect[] = {1, 2, 3, 4};
        gmessage(1, "a\nnote");
        gsel_norm_tran(2);
        gset_ws_viewport(1, rect);
        gpolymarker(1, points);
        for (const int n : {4, 5}) {
            gpolymarker(n, points);
            gfill_area(n, points);
            gpolyline(n, points);
        }
        for (int twice = 0; twice < 2; twice++) { // neither is kept
            gset_fill_style_ind(5);
            gset_char_up(up);
        }
        gset_linewidth(0.1f);
        gset_line_factor(3);
        gclear_region(rect);
        GPH_textxy(1, 2, "  two\nlines ");
    });
    const std::string four = "1.000000,2.000000 -0.500000,0.250000 0.000000,0.000000 "
                             "1.000000,1.000000 \n";
    const std::string five = four + "   10000000.000000,1.000000 \n";
    EXPECT_TRUE(text.starts_with("QRAMETA\n#Title: QRA Graphics Display: a plot\n"
                                 "#Creator: QRA Metafile Processor-1.0\n#\n"
                                 "WS_WIN 1 0.000000 0.000000 1.000000 0.799800\n"
                                 "VP 1 0.000000 0.000000 1.000000 0.799800\nWIN 1 0.000000 "));
    EXPECT_NE(text.find("TE_WDTH 0.000000\nCLR 1 0 0.000000 0.000000 0.000000\n"), text.npos);
    EXPECT_EQ(text.substr(text.find("ME ")),
              "ME a note\nTR 2\nWS_VP 1 1.000000 3.000000 2.000000 4.000000\n"
              "PM 1 1.000000,2.000000 \nPM 4 " +
                  four + "   FA 4 " + four + "   PL 4 " + four + "PM 5 " + five + "FA 5 " + five +
                  "PL 5 " + five +
                  "FA_ST 5\nTE_UP 0.000000,2.000000\nFA_ST 5\nTE_UP 0.000000,2.000000\n"
                  "PL_LW 0.100000\nCLR_REG 1.000000 3.000000 2.000000 4.000000\n"
                  "TE 1.000000,2.000000   two\rlines \n");
}

TEST_F(Metafile, AReplayIsTheDirectPlot) {
    scratch.write("qra.fnl", "a modern.fnt\nb modern.fnt\nc modern.fnt\n");
    static const std::string file = path("a.meta");
    const auto replay = [] { gread_metafile(file.c_str()); };
    const std::string text = drawn("m," + file, "a.meta", draw_scene);
    for (const std::string word :
         {"CLR",     "FA",      "FA_CLR", "FA_INT",  "FA_ST",   "PL",      "PL_CLR", "PL_LW",
          "PL_TYPE", "PM",      "PM_CLR", "PM_SIZE", "PM_TYPE", "PM_WDTH", "TE",     "TE_ALGN",
          "TE_CLR",  "TE_CSPC", "TE_EXP", "TE_FNT",  "TE_HGHT", "TE_SPC",  "TE_UP",  "TE_WDTH"})
        EXPECT_NE(text.find("\n" + word + " "), text.npos) << word;
    // Of the shape of the metafile's own page.
    const std::string paper = path("a.ps") + ",sz=14.39x11.62";
    for (const std::string form : {"", ",color", ",port,color", ",color,epsf"}) {
        const std::string direct = drawn("p," + paper + form, "a.ps", draw_scene);
        EXPECT_GT(direct.size(), 3800u);
        EXPECT_EQ(drawn("p," + paper + form, "a.ps", replay), direct) << form;
    }
    const std::string plotter = "h," + path("a.hp") + ",sz=1.4853x1.2882";
    EXPECT_EQ(drawn(plotter, "a.hp", replay), drawn(plotter, "a.hp", draw_scene));
}

TEST_F(Metafile, RecordsAreReadOneByOne) {
    const std::string drawing = "%%PL:2; 6.0 dot lw; np; 1.00 2.00 mv; 3.00 4.00 ln; stroke; ";
    const std::string line = "PL_LW 6\nPL 2 1,2 3,4 ";
    const struct {
        const char *why;
        std::string records;
        int lost = 0;
    } cases[] = {
        {"over lines, one behind another", "PL_LW\n6.0 PL\n+2\n1,2\n\n3e0,\n.4E+1\nTR 2\n"},
        {"the page stays the reader's", "WS_WIN 1 0 0 9 9\nWS_VP 1 0 0 9 9\n" + line},
        {"what is not known", "# PL 2 1,1 2,2\nME PL 2\nSEG_CR 1\nPL_LWX 1\nCLR_REG 1 2 3 4\n"
                              "VERYLONGWORD PL 2 1,1 2,2\n\n" +
                                  line},
        {"a count below its points", "PL 1 1,2 3,4\n" + line},
        {"a count above its points", "FA 7 1,2 3,4\n" + line + "\n", 1},
        {"the most a count can claim", "PM 2147483647 1,2 3,4\n" + line, 1},
        {"counts that are none", "PL -5 1,2\nFA 9999999999 1,2\nPM x\nFA 2.5 1,2\n" + line, 4},
        {"numbers that are none",
         "PL 2 nan,1 2,2\nPL 2 1,inf 2,2\nPL_LW 1e40\nTR 1-\nPL 2 1;2\nCLR 1 2 0 0 -nan\n" + line,
         6},
        {"a number without an end", "PL 2 " + std::string(100000, '1') + "\n" + line, 1},
        {"bytes of nothing", std::string("P\0 1\nPL_LW \0\0\nPL\0 2\n", 20) + line, 1},
        {"an end in a list", line + "PL 3 1,2 3,4", 1},
        {"an end in a number", line + "PL 2 1,2 3,4", 1},
        {"an end in a text", line + "TE 1,2 half", 1},
        {"texts without a character", line + "TE 1,2\nTE 1,2 \n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        fresh();
        std::string got;
        const std::string said = said_by([&] { got = replayed(c.records); });
        EXPECT_EQ(got, drawing);
        const std::string lost = std::to_string(c.lost) + " records are lost: ";
        EXPECT_EQ(said.find(lost) != said.npos, c.lost > 0) << said;
    }
    EXPECT_EQ(replayed("TE 1,2  y" + std::string(120, 'x') + "\n"),
              "%%TE:1.000000 2.000000  y" + std::string(98, 'x') + "; ");
    static const std::string growing = path("in.meta");
    gobj_set_poll([] { std::ofstream(growing, std::ios::app) << "PL 2 1,2 3,4 \n"; });
    std::string marks;
    for (int i = 0; i < 600; i++)
        marks += "PM 1 1,2 \n";
    EXPECT_EQ(replayed(marks).find("%%PL"), marks.npos) << "what is written meanwhile";
    EXPECT_TRUE(read("in.meta").ends_with("PL 2 1,2 3,4 \n"));
    EXPECT_EQ(said_by([] { EXPECT_EQ(gread_metafile("/none/a.meta"), 0); }),
              "gread_metafile: Unable to open image file: /none/a.meta\n");
}

TEST_F(Metafile, TheBinaryFormIsClipsAndLines) {
    drawn("m," + path("a") + ",CGM", "a,CGM", [] {
        const float view[4] = {0.0f, 0.5f, 0.25f, 0.5f}, window[4] = {0, 100, 0, 100};
        const std::vector<Point> many(20000, Point{100, 100}), wild = {{1e9f, 0}, {-1e9f, 1}};
        gset_window(2, window);
        gset_viewport(2, view);
        gsel_norm_tran(2);
        GPH_line(0, 0, 100, 100);
        gpolyline(2, wild.data());
        gpolyline(int(many.size()), many.data());
        GPH_mark(1, 1);
        GPH_fill_box(1, 1, 2, 2);
        gmessage(1, "note");
    });
    EXPECT_EQ(words_of(read("a,CGM")),
              "0020 1022 0001 104b 0a51 5241 4347 4d2d 312e 3000 1166 0001 ffff 0001 1121 ff00 "
              "20c8 2*0000 2710 1f40 0060 0080 30a8 2*0000 2*031f 30a8 2*0000 2*03e7 "
              "30a8 0000 00f9 2*01f3 403f 0008 0000 00f9 2*01f3 403f 0008 7fff 00f9 8000 00fc "
              "403f 7ffc 16382*01f3 403f 7ffc 16382*01f3 403f 3890 7240*01f3 00a0 ");
    EXPECT_EQ(gget_meta_binary(), 1);
    open("m," + path("b") + ",cgm");
    GPH_textxy(1, 2, "one");
    GPH_textxy(1, 2, "two");
    EXPECT_EQ(gmeta_command(4, 1, 31, 0) + gmeta_command(4, 1, 0, 258), 0);
    GPH_end(ws);
    const std::string end("\x40\x3f\0\0\x40\x20\x01\x02\0\xa0", 10), bytes = read("b,cgm");
    EXPECT_TRUE(bytes.ends_with("[] 0 setdash\n" + end));
    EXPECT_EQ(bytes.find("[]"), bytes.rfind("[]"));
    EXPECT_EQ(gmeta_command(4, 1, 0, 0) + gmeta_close(), -2) << "nothing is open";
}

TEST_F(Metafile, TargetsAndGeometry) {
    std::filesystem::current_path(scratch.dir);
    const auto made = [&](const char *target, const char *geometry) {
        MSG_reset();
        RES_set("geometry", geometry);
        int size[2], at[2];
        const std::string said = said_by([&] {
            open(target);
            gget_ws_dims(&size[0], &size[1]);
            gget_ws_offset(&at[0], &at[1]);
            EXPECT_EQ(gdepth(), 10);
            GPH_end(ws);
        });
        char text[80], name[20] = "";
        sscanf(said.c_str(), "Creating metafile: %19s", name);
        snprintf(text, sizeof text, "%s %dx%d+%d+%d", name, size[0], size[1], at[0], at[1]);
        return said.ends_with("\nCreated metafile\n") ? std::string(text) : said;
    };
    EXPECT_EQ(made("m", ""), "qra.meta 1000x800+0+0");
    EXPECT_EQ(made("m,x,cgm", "5x4+1+2"), "x,cgm 500x400+100+200");
    EXPECT_EQ(made("m", "5x4"), "qra.cgm 500x400+0+0") << "binary from now on";
    const Env out("qrameta_out", "out.meta");
    EXPECT_EQ(made("m", "+1-2"), "out.meta 1000x800+100+-200");
    EXPECT_EQ(made("m,+x,qra", "P0.5x0.25+0.5+0.5"), "+x,qra 500x200+500+400");
    EXPECT_EQ(made("m,+x,cgm", ""), "+x,cgm 1000x800+0+0");
    const std::string both = read("x,cgm"), end("\0\xa0", 2);
    EXPECT_EQ(both.find(end), both.rfind(end)) << "no end behind what was appended";
    EXPECT_NE(both.find("QRACGM-1.0"), both.rfind("QRACGM-1.0"));
    std::filesystem::current_path("/");
    MSG_set_levels("warn");
    gstate().reports = true;
    EXPECT_EQ(said_by([] { EXPECT_EQ(gopen_ws(1, "/proc/none/x", WS_META), -1); }),
              "gopen_ws: unable to open metafile\n\n");
    gopen_ws(1, "/dev/full", WS_META);
    EXPECT_TRUE(said_by([] { gclose_ws(1); }).starts_with("gmeta_close: Write error, document is"));
    EXPECT_EQ(gis_incomplete(), 1);
}

TEST_F(Metafile, RecordedCallsArePrinted) {
    const Env target("METAOUT", path("printed.meta").c_str());
    open("p," + path("a.ps") + ",sz=14.39x11.62");
    EXPECT_EQ(said_by([] { EXPECT_EQ(gprint_meta(), 0); }),
              "gobj_print_meta: No redraw data to make metafile from\n");
    EXPECT_EQ(read("printed.meta"), "");
    gobj_set_saving(1);
    draw_scene();
    const float rect[4] = {0.0f, 0.5f, 0.25f, 0.5f};
    gclear_region(rect);
    const auto say = [](void *text) { gmessage(1, static_cast<char *>(text)); };
    const ObjectCall call = {say, strdup("called")};
    gobj_new(OBJ_CALL, 0, sizeof call, &call);
    gobj_set_poll([] { gmessage(1, "polled"); });
    gsel_norm_tran(0);
    EXPECT_EQ(gprint_meta() + gobj_saving(), 1);
    EXPECT_TRUE(read("printed.meta")
                    .ends_with("CLR_REG 0.000000 0.250000 0.500000 0.500000\nME called\nTR 0\n"));
    setenv("METAOUT", "/dev/full", 1);
    said_by(gprint_meta);
    EXPECT_EQ(gis_incomplete(), 0) << "that is told of the page alone";
    const std::string direct = document();
    EXPECT_NE(direct.find("%%CLR\nnp\n0.00 249.75 mv\n499.50 249.75 ln\n499.50 499.50 ln\n"
                          "0.00 499.50 ln\ncp\n1 setgray\nfill\n"),
              direct.npos);
    EXPECT_NE(direct.find("%%Message: polled\n%%End"), direct.npos);
    setenv("METAOUT", "/proc/none/x", 1);
    EXPECT_EQ(said_by([] { EXPECT_EQ(gprint_meta(), -1); }),
              "gprint_meta: unable to open metafile\n\n");
    EXPECT_EQ(gget_ws_type(), WS_META);
}
