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
#include <map>
#include <string>
#include <vector>

/* A variable of the environment while this lives. */
struct Env {
    const char *name;
    Env(const char *variable, const char *value) : name(variable) { setenv(name, value, 1); }
    Env(const Env &) = delete;
    ~Env() { unsetenv(name); }
};

using Glyphs = std::map<int, std::vector<int>>; // pairs of a character, moves with 128 in x

/* A font file without names. */
inline std::string font_text(const Glyphs &glyphs) {
    std::string strokes = "255";
    std::vector<int> start(256, -1);
    int at = 1;
    for (const auto &[code, pairs] : glyphs) {
        start[size_t(code)] = at;
        for (int value : pairs)
            strokes += " " + std::to_string(value);
        strokes += " 255\n";
        at += int(pairs.size()) + 1;
    }
    std::string text = strokes + " 254\n";
    for (int offset : start)
        text += std::to_string(offset) + " ";
    return text;
}

/* "L" has one stroke of three points; "=" has two of two; both are 105 units high at most. */
inline const Glyphs kSmallFont = {
    {'L', {128, 140, 0, 35, 70, 35}},
    {'=', {128, 70, 50, 70, 128, 100, 50, 100}},
};

constexpr const char *kColors = "black 0 0 0\nwhite 1 1 1\nred 1 0 0\ngreen 0 1 0\nblue 0 0 1\n";

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
        scratch.write("modern.fnt", font_text(kSmallFont));
        scratch.write("qra.clr", kColors);
        MSG_set_levels("warn"); // no word of files that are made
    }
    ~KernelTest() override { fresh(); }

    static void fresh() {
        GPH_reset();
        COLOR_reset();
    }

    /* Opens a page on a.ps, with the words of the device text behind it. */
    void open_ps(const std::string &words = "") {
        RES_set("device", ("p," + scratch.path("a.ps") + "," + words).c_str());
        float margins[4] = {0.0f, 0.0f, 0.0f, 0.0f};
        GPH_open(0.0f, &ws, &device, margins);
    }

    /* Opens a lying letter page whose world is points, and forgets what it wrote so far. */
    void open_points(const std::string &words = "") {
        open_ps(words);
        const float page[4] = {0.0f, 755.0f, 0.0f, 575.0f};
        gset_window(2, page);
        gsel_norm_tran(2);
        gmessage(ws, "scene");
    }

    /* Closes the page and gives what it wrote behind open_points. */
    std::string scene() {
        GPH_end(ws);
        const std::string text = scratch.read("a.ps");
        const std::string mark = "%%Message: scene\n";
        const size_t begin = text.find(mark);
        const size_t end = text.rfind("%%End of plot\n");
        if (begin == std::string::npos || end == std::string::npos)
            return "no scene in: " + text;
        return text.substr(begin + mark.size(), end - begin - mark.size());
    }
};

/* What a call writes to standard error. */
template <class Call>
std::string errors_of(Call call) {
    testing::internal::CaptureStderr();
    call();
    return testing::internal::GetCapturedStderr();
}

/* What a call writes to standard output. */
template <class Call>
std::string output_of(Call call) {
    testing::internal::CaptureStdout();
    call();
    return testing::internal::GetCapturedStdout();
}
