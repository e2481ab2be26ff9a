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
        const PlotAttr attr = {.color = form,
                               .width = x - 0.5f,
                               .height = x,
                               .expansion = x + 1,
                               .style = form + 1,
                               .fill = form % 2 * form,
                               .font = form};
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

std::string be(int value) { return {char(value >> 8), char(value)}; }

/* A file of the binary form as text: class and element of each command, its numbers in brackets,
 * or its length where it is long. */
std::string commands_of(const std::string &bytes) {
    std::string text;
    size_t at = 0;
    const auto word = [&] {
        at += 2;
        return int(int16_t(uint8_t(bytes.at(at - 2)) << 8 | uint8_t(bytes.at(at - 1))));
    };
    while (at < bytes.size()) {
        const int head = word();
        const int length = (head & 31) == 31 ? word() : head & 31;
        text += std::to_string(head >> 12 & 15) + "." + std::to_string(head >> 5 & 127) + "(";
        if (length > 40)
            text += std::to_string(length) + " ";
        for (const size_t end = at + size_t(length + 1) / 2 * 2; at < end;)
            if (const int number = word(); length <= 40)
                text += std::to_string(number) + " ";
        text.back() == '(' ? void(text.back() = ' ') : void(text.replace(text.size() - 1, 1, ") "));
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
        return date == text.npos ? text : text.erase(date, strlen("CreationDate: ") + 25);
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
    const std::string head = "QRAMETA\n#Title: QRA Graphics Display: a plot\n"
                             "#Creator: QRA Metafile Processor-1.0\n#"
                             "WS_WIN 1 0.000000 0.000000 1.000000 0.799800\n"
                             "VP 1 0.000000 0.000000 1.000000 0.799800\nWIN 1 0.000000 ";
    EXPECT_EQ(text.substr(0, head.size()), head);
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
    drawn("m," + path("a.meta"), "a.meta", draw_scene);
    static std::string file;
    file = path("a.meta");
    // Of the shape of the metafile's own page.
    for (const std::string words : {"", ",color", ",port,color", ",color,epsf"}) {
        const std::string ps = "p," + path("a.ps") + ",sz=14.39x11.62" + words;
        const std::string direct = drawn(ps, "a.ps", draw_scene);
        EXPECT_GT(direct.size(), 3800u);
        EXPECT_EQ(drawn(ps, "a.ps", [] { gread_metafile(file.c_str()); }), direct) << words;
    }
    const std::string plotter = "h," + path("a.hp") + ",sz=1.4853x1.2882";
    EXPECT_EQ(drawn(plotter, "a.hp", [] { gread_metafile(file.c_str()); }),
              drawn(plotter, "a.hp", draw_scene));
}

TEST_F(Metafile, RecordsAreReadOneByOne) {
    constexpr const char *kLine = "%%PL:2; 6.0 dot lw; np; 1.00 2.00 mv; 3.00 4.00 ln; stroke; ";
    const std::string line = "PL_LW 6\nPL 2 1,2 3,4 ";
    const std::string text(120, 'x'), font = std::to_string(1e30);
    const struct {
        const char *why;
        std::string records, want;
        int lost;
    } cases[] = {
        {"plain", line, kLine, 0},
        {"over lines, one behind another", "PL_LW\n6.0 PL\n+2\n1,2\n\n3e0,\n.4E+1\nTR 2\n", kLine,
         0},
        {"the page stays the reader's", "WS_WIN 1 0 0 9 9\nWS_VP 1 0 0 9 9\n" + line, kLine, 0},
        {"what is not known",
         "# PL 2 1,1 2,2\nME PL 2\nSEG_CR 1\nPL_LWX 1\nCLR_REG 1 2 3 4\n"
         "VERYLONGWORD PL 2 1,1 2,2\n\n" +
             line,
         kLine, 0},
        {"a count below its points", "PL 1 1,2 3,4\n" + line, kLine, 0},
        {"a count above its points", "FA 7 1,2 3,4\n" + line + "\n", kLine, 1},
        {"the most a count can claim", "PM 2147483647 1,2 3,4\n" + line, kLine, 1},
        {"counts that are none", "PL -5 1,2\nFA 9999999999 1,2\nPM x\nFA 2.5 1,2 3,4\n" + line,
         kLine, 4},
        {"numbers that are none",
         "PL 2 nan,1 2,2\nPL 2 1,inf 2,2\nPL_LW 1e40\nTR 1-\nPL 2 1;2\n"
         "TE_HGHT 1x\nCLR 1 2 0 0 -nan\n" +
             line,
         kLine, 6},
        {"a number without an end", "PL 2 " + std::string(100000, '1') + "\n" + line, kLine, 1},
        {"bytes of nothing", std::string("P\0 1\nPL_LW \0\0\nPL\0 2\n", 20) + line, kLine, 1},
        {"an end in a list", line + "PL 3 1,2 3,4", kLine, 1},
        {"an end in a number", line + "PL 2 1,2 3,4", kLine, 1},
        {"an end in a text", line + "TE 1,2 half", kLine, 1},
        {"texts without a character", line + "TE 1,2\nTE 1,2 \n", kLine, 0},
        {"a long text", line + "TE 1,2  y" + text + "\n",
         kLine + std::string("%%TE:1.000000 2.000000  y") + text.substr(0, 98) + "; 1.0 dot lw; ",
         0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        fresh();
        std::string got;
        const std::string said = said_by([&] { got = replayed(c.records); });
        EXPECT_EQ(got, c.want);
        const std::string lost = std::to_string(c.lost) + " records are lost: ";
        EXPECT_EQ(said.find(lost) != said.npos, c.lost > 0) << said;
    }
    EXPECT_EQ(said_by([] { EXPECT_EQ(gread_metafile("/none/a.meta"), 0); }),
              "gread_metafile: Unable to open image file: /none/a.meta\n");
}

TEST_F(Metafile, AFileThatGrowsWhileItIsReadEnds) {
    static std::string file;
    file = path("a.meta");
    drawn("m,+" + file, "a.meta", [] {
        for (int i = 0; i < 9000; i++)
            gmessage(1, "some bytes");
    });
    const size_t size = read("a.meta").size();
    said_by([&] { drawn("m,+" + file, "a.meta", [] { gread_metafile(file.c_str()); }); });
    EXPECT_LT(read("a.meta").size(), 3 * size) << "its own end is not followed";
}

TEST_F(Metafile, TheBinaryFormIsClipsAndLines) {
    static const std::string kHead = "0.1 1.1(1) 1.2(2641 21057 17223 19757 12590 12288) "
                                     "1.11(1 -1 1) 1.9(-256) 2.6(0 0 10000 8000) 0.3 0.4 ";
    const std::string bytes = [&] {
        drawn("m," + path("a") + ",CGM", "a,CGM", [] {
            const float view[4] = {0.0f, 0.5f, 0.25f, 0.5f}, window[4] = {0, 100, 0, 100};
            const std::vector<Point> many(20000, Point{50, 50}), wild = {{1e9f, 0}, {-1e9f, 1}};
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
        return read("a,CGM");
    }();
    EXPECT_EQ(gget_meta_binary(), 1);
    EXPECT_EQ(commands_of(bytes), kHead + "3.5(0 0 799 799) 3.5(0 0 999 999) 3.5(0 249 499 499) "
                                          "4.1(0 249 499 499) 4.1(32767 249 -32768 252) "
                                          "4.1(32764) 4.1(32764) 4.1(14480) 0.5 ");
    open("m," + path("b") + ",cgm");
    GPH_textxy(1, 2, "one");
    GPH_textxy(1, 2, "two");
    EXPECT_EQ(gmeta_command(4, 1, 31, 0) + gmeta_command(4, 1, 0, 258), 0);
    GPH_end(ws);
    EXPECT_TRUE(read("b,cgm").ends_with("[] 0 setdash\n\x40\x3f" + std::string(2, '\0') +
                                        "\x40\x20\x01\x02" + be(0xa0)));
    EXPECT_EQ(gmeta_command(4, 1, 0, 0) + gmeta_close(), -2) << "nothing is open";
}

TEST_F(Metafile, TargetsAndGeometry) {
    std::filesystem::current_path(scratch.dir);
    const auto made = [&](const char *target, const char *geometry) {
        MSG_reset();
        RES_set("geometry", geometry);
        int w, h, x, y;
        std::string said = said_by([&] {
            open(target);
            gget_ws_dims(&w, &h);
            gget_ws_offset(&x, &y);
            EXPECT_EQ(gdepth(), 10);
            GPH_end(ws);
        });
        EXPECT_TRUE(said.ends_with("\nCreated metafile\n")) << said;
        char place[80];
        snprintf(place, sizeof place, " %dx%d+%d+%d", w, h, x, y);
        return said.substr(0, said.find('\n')) + place;
    };
    EXPECT_EQ(made("m", ""), "Creating metafile: qra.meta 1000x800+0+0");
    EXPECT_EQ(made("m,x,cgm", "5x4+1+2"), "Creating metafile: x,cgm 500x400+100+200");
    EXPECT_EQ(made("m", "5x4"), "Creating metafile: qra.cgm 500x400+0+0") << "binary from now on";
    Env out("qrameta_out", "out.meta");
    EXPECT_EQ(made("m", "+1-2"), "Creating metafile: out.meta 1000x800+100+-200");
    EXPECT_EQ(made("m,+x,qra", "P0.5x0.25+0.5+0.5"), "Creating metafile: +x,qra 500x200+500+400");
    EXPECT_EQ(made("m,+x,cgm", ""), "Creating metafile: +x,cgm 1000x800+0+0");
    const std::string both = read("x,cgm");
    EXPECT_EQ(both.find(be(0xa0)), both.rfind(be(0xa0))) << "no end behind what was appended";
    EXPECT_NE(both.find("QRACGM-1.0"), both.rfind("QRACGM-1.0"));
    std::filesystem::current_path("/");
    gstate().reports = true;
    EXPECT_EQ(said_by([] { EXPECT_EQ(gopen_ws(1, "/proc/none/x", WS_META), -1); }),
              "Creating metafile: /proc/none/x\ngopen_ws: unable to open metafile\n\n");
    MSG_set_levels("warn");
    gopen_ws(1, "/dev/full", WS_META);
    EXPECT_TRUE(said_by([] { gclose_ws(1); }).starts_with("gmeta_close: Write error, document is"));
}

TEST_F(Metafile, RecordedCallsArePrinted) {
    const Env target("METAOUT", path("printed.meta").c_str());
    const std::string page = "p," + path("a.ps") + ",sz=14.39x11.62";
    open(page);
    EXPECT_EQ(said_by([] { EXPECT_EQ(gprint_meta(), 0); }),
              "gobj_print_meta: No redraw data to make metafile from\n");
    EXPECT_EQ(read("printed.meta"), "");
    gobj_set_saving(1);
    draw_scene();
    const float rect[4] = {0.0f, 0.5f, 0.25f, 0.5f};
    gclear_region(rect);
    gobj_set_poll([] { gmessage(1, "polled"); });
    gsel_norm_tran(0);
    EXPECT_EQ(gprint_meta() + gobj_saving(), 1);
    EXPECT_EQ(gget_ws_type(), WS_PS);
    GPH_end(ws);
    const std::string direct = read("a.ps");
    EXPECT_NE(direct.find("%%CLR\nnp\n0.00 249.75 mv\n499.50 249.75 ln\n499.50 499.50 ln\n"
                          "0.00 499.50 ln\ncp\n1 setgray\nfill\n"),
              direct.npos);
    EXPECT_NE(direct.find("%%Message: polled\n%%End"), direct.npos);
    const std::string printed = read("printed.meta");
    EXPECT_TRUE(printed.ends_with("CLR_REG 0.000000 0.250000 0.500000 0.500000\nTR 0\n"));
    setenv("METAOUT", "/proc/none/x", 1);
    EXPECT_EQ(said_by([] { EXPECT_EQ(gprint_meta(), -1); }),
              "gprint_meta: unable to open metafile\n\n");
    EXPECT_EQ(gget_ws_type(), WS_META);
}
