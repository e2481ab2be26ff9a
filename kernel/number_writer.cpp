#include "kernel/number_writer.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {
/* Below this, value times 1000 fits 32 bits, and the whole part times 1000000 the 52 of scaled. */
constexpr float kSureLimit = 4000000.0f;

/* "00" to "99". */
struct DigitPairs {
    char text[200];
    constexpr DigitPairs() : text() {
        for (int i = 0; i < 100; i++) {
            text[2 * i] = char('0' + i / 10);
            text[2 * i + 1] = char('0' + i % 10);
        }
    }
};
constexpr DigitPairs kPairs;

char *put_pair(char *out, uint32_t pair) {
    memcpy(out, kPairs.text + 2 * pair, 2);
    return out + 2;
}

char *put_whole(char *out, uint32_t value) {
    if (value < 10) {
        *out = char('0' + value);
        return out + 1;
    }
    if (value < 100)
        return put_pair(out, value);
    return put_pair(put_whole(out, value / 100), value % 100);
}

/* The value times scale, rounded to the nearest whole number, halves to the even one.
 *
 * This is what printf rounds to, without a doubt about halves: the 24 bits of a float times at
 * most 1000000 fit the 53 of a double, so the product is exact, and the one rounding is that of
 * adding 2 to the 52nd, where doubles are whole numbers. */
uint64_t scaled(float magnitude, double scale) {
    constexpr double kWhole = 0x1p52;
    constexpr uint64_t kMantissa = (uint64_t(1) << 52) - 1;
    return std::bit_cast<uint64_t>(double(magnitude) * scale + kWhole) & kMantissa;
}
} // namespace

char *gput_fixed2(char *out, float value) {
    const float magnitude = std::fabs(value);
    if (!(magnitude < kSureLimit)) // also for what is not a number
        return out + snprintf(out, NUMBER_ROOM, "%3.2f", double(value));
    if (std::signbit(value))
        *out++ = '-';
    const uint32_t hundredths = uint32_t(scaled(magnitude, 100.0));
    out = put_whole(out, hundredths / 100);
    *out++ = '.';
    return put_pair(out, hundredths % 100);
}

char *gput_fixed3(char *out, float value) {
    const float magnitude = std::fabs(value);
    if (!(magnitude < kSureLimit))
        return out + snprintf(out, NUMBER_ROOM, "%3.3f", double(value));
    if (std::signbit(value))
        *out++ = '-';
    const uint32_t thousandths = uint32_t(scaled(magnitude, 1000.0));
    out = put_whole(out, thousandths / 1000);
    *out++ = '.';
    *out++ = char('0' + thousandths / 100 % 10);
    return put_pair(out, thousandths % 100);
}

char *gput_fixed6(char *out, float value) {
    const float magnitude = std::fabs(value);
    if (!(magnitude < kSureLimit))
        return out + snprintf(out, NUMBER_ROOM, "%f", double(value));
    if (std::signbit(value))
        *out++ = '-';
    const uint64_t millionths = scaled(magnitude, 1e6);
    const uint32_t part = uint32_t(millionths % 1000000);
    out = put_whole(out, uint32_t(millionths / 1000000));
    *out++ = '.';
    out = put_pair(out, part / 10000);
    out = put_pair(out, part / 100 % 100);
    return put_pair(out, part % 100);
}

char *gput_int(char *out, int value) { return std::to_chars(out, out + NUMBER_ROOM, value).ptr; }
