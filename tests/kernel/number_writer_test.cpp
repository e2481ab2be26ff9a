#include "kernel/number_writer.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {
std::string printed(const char *format, float value) {
    char text[64];
    const double wide = double(value);
    if (std::string(format) == "%3.2f")
        snprintf(text, sizeof text, "%3.2f", wide);
    else
        snprintf(text, sizeof text, "%3.3f", wide);
    return text;
}

std::string written(char *(*put)(char *, float), float value) {
    char text[NUMBER_ROOM];
    return std::string(text, put(text, value));
}

/* Counts the values that come out other than printf writes them; reports the first. */
struct Comparison {
    int wrong = 0;
    void check(float value) {
        compare(value, printed("%3.2f", value), written(gput_fixed2, value));
        compare(value, printed("%3.3f", value), written(gput_fixed3, value));
    }
    void compare(float value, const std::string &want, const std::string &got) {
        if (want != got && wrong++ == 0)
            ADD_FAILURE() << std::hexfloat << value << ": " << got << " for " << want;
    }
};
} // namespace

TEST(NumberWriter, HalvesAndEdgesAreRoundedAsPrintfDoes) {
    Comparison all;
    // Every multiple of a sixteenth: all the halves of both forms are among them.
    for (int i = -200000; i <= 200000; i++)
        all.check(float(i) / 16);
    for (int i = 0; i < 100000; i++) { // neighbours of x.xx5
        const float near = float(i) / 1000 + 0.0005f;
        for (float value : {near, std::nextafter(near, 0.0f), std::nextafter(near, 1e9f)})
            all.check(value);
    }
    const float edges[] = {0.0f,
                           -0.0f,
                           1e-45f,
                           -1e-45f,
                           0.004999f,
                           -0.001f,
                           99.995f,
                           9.999f,
                           99999.99f,
                           100000.0f,
                           -100000.0f,
                           3999999.8f,
                           4000000.,
                           8388608.f,
                           16777217.f,
                           4294967296.f,
                           1e30f,
                           std::numeric_limits<float>::max(),
                           std::numeric_limits<float>::lowest(),
                           INFINITY,
                           -INFINITY,
                           NAN};
    for (float value : edges)
        all.check(value);
    EXPECT_EQ(all.wrong, 0);
}

TEST(NumberWriter, AnyFloatComesOutAsPrintfWritesIt) {
    Comparison all;
    uint32_t bits = 12345;
    for (int i = 0; i < 400000; i++) {
        bits = bits * 1664525u + 1013904223u;
        all.check(std::bit_cast<float>(bits));                       // any exponent
        all.check(float(int32_t(bits)) / float(1u << (8 + i % 20))); // device coordinates
    }
    EXPECT_EQ(all.wrong, 0);
}
