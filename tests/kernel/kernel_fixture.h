/* What the tests of the kernel share: fresh state, a folder with a font and a colour table, and
 * the PostScript text of a scene. */
#pragma once

#include "kernel/color_table.h"
#include "kernel/devices.h"
#include "kernel/gph.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "shell/message.h"
#include "shell/missing.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "tests/support/scratch.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

/* A variable of the environment while this lives. */
struct Env {
    const char *name;
    Env(const char *variable, const char *value) : name(variable) { setenv(name, value, 1); }
    Env(const Env &) = delete;
    ~Env() { unsetenv(name); }
};

/* The end of a font file in which one character has a glyph, at a place of the strokes. */
inline std::string font_offsets(char code, int place) {
    std::string text;
    for (int i = 0; i < 256; i++)
        text += i == code ? " " + std::to_string(place) : " -1";
    return text;
}

/* A font file of one glyph: the text of its pairs, 128 added to x for a pen that is up. */
inline std::string font_text(char code, const std::string &pairs) {
    return "255 " + pairs + " 255 254" + font_offsets(code, 1);
}

struct KernelTest : testing::Test {
    Scratch scratch;
    int ws = 0;
    int device = 0;

    KernelTest() {
        fresh();
        MSG_reset();
        RES_reset();
        PAR_fill(MISSING);
        RES_set_converter(OPT_DEVICE, gdevice_convert);
        gregister_devices();
        RES_set("file_path", scratch.dir.c_str());
        // One stroke of three points and one of two.
        scratch.write("modern.fnt", font_text('L', "128 140 0 35 70 35 128 100 50 100"));
        scratch.write("qra.clr", "black 0 0 0\nwhite 1 1 1\nred 1 0 0\ngreen 0 1 0\nblue 0 0 1\n");
        MSG_set_levels("warn"); // no word of files that are made
    }
    ~KernelTest() override { fresh(); }

    static void fresh() {
        GPH_reset();
        COLOR_reset();
    }

    /* Opens a page with the text of the device resource. */
    void open(const std::string &text) {
        RES_set("device", text.c_str());
        float margins[4] = {};
        GPH_open(0.0f, &ws, &device, margins);
    }

    /* Opens a page on a.ps, with the words of the device text behind it. */
    void open_ps(const std::string &words = "") { open("p," + scratch.path("a.ps") + "," + words); }

    /* Opens a lying letter page whose world is points, and forgets what it wrote so far. */
    void open_points(const std::string &words = "") {
        open_ps(words);
        const float page[4] = {0.0f, 755.0f, 0.0f, 575.0f};
        gset_window(2, page);
        gsel_norm_tran(2);
        gmessage(ws, "scene");
    }

    /* Closes the page and gives what it wrote. */
    std::string document() {
        GPH_end(ws);
        return scratch.read("a.ps");
    }

    /* The same behind open_points, with "; " for each line end. */
    std::string scene() {
        const std::string text = document(), mark = "%%Message: scene\n";
        const size_t begin = text.find(mark) + mark.size(), end = text.rfind("%%End of plot\n");
        std::string lines;
        for (size_t i = begin; i < end; i++)
            lines += text[i] == '\n' ? "; " : text.substr(i, 1);
        return lines;
    }

    static PlotAttr style(const char *text) {
        PlotAttr attr;
        ATTR_parse(text, &attr);
        return attr;
    }
};

/* What a call writes to standard output, and then what to standard error. */
template <class Call>
std::string said_by(Call call) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    call();
    const std::string output = testing::internal::GetCapturedStdout();
    return output + testing::internal::GetCapturedStderr();
}

inline std::string rect_text(const float rect[4]) {
    char text[100];
    snprintf(text, sizeof text, "%.3f %.3f %.3f %.3f", double(rect[0]), double(rect[1]),
             double(rect[2]), double(rect[3]));
    return text;
}
