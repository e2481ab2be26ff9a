#include "kernel/number_writer.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

namespace {
/* Counts the values that come out other than printf writes them; reports the first. */
struct Comparison {
    int wrong = 0;
    void check(float value) {
        char want[200], got[3 * NUMBER_ROOM + 3];
        const double wide = double(value);
        snprintf(want, sizeof want, "%3.2f %3.3f %f", wide, wide, wide);
        char *at = gput_fixed2(got, value);
        *at++ = ' ';
        at = gput_fixed3(at, value);
        *at++ = ' ';
        *gput_fixed6(at, value) = '\0';
        if (strcmp(want, got) != 0 && wrong++ == 0)
            ADD_FAILURE() << got << " for " << want;
    }
};
} // namespace

TEST(NumberWriter, ComesOutAsPrintfWritesIt) {
    Comparison all;
    // Multiples of a sixteenth, and odd ones of a 128th: all the halves are among them.
    for (int i = -200000; i <= 200000; i++)
        all.check(float(i) / 16);
    for (int i = -100001; i <= 100001; i += 2)
        all.check(float(i) / 128);
    for (int i = 0; i < 100000; i++) { // neighbours of x.xx5
        const float near = float(i) / 1000 + 0.0005f;
        for (float value : {near, std::nextafter(near, 0.0f), std::nextafter(near, 1e9f)})
            all.check(value);
    }
    for (float value : {0.0f, -0.0f, -1e-45f, -0.001f, 99.995f, 99999.99f, 3999999.8f, 4e6f,
                        16777217.f, 4294967296.f, FLT_MAX, -FLT_MAX, INFINITY, -INFINITY, NAN})
        all.check(value);
    uint32_t bits = 12345;
    for (int i = 0; i < 400000; i++) {
        bits = bits * 1664525u + 1013904223u;
        all.check(std::bit_cast<float>(bits));                       // any exponent
        all.check(float(int32_t(bits)) / float(1u << (8 + i % 20))); // device coordinates
    }
    EXPECT_EQ(all.wrong, 0);
}
