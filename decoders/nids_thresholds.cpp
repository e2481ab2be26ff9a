#include "decoders/nids_thresholds.h"

#include "decoders/nids_tables.h"
#include "shell/message.h"

#include <bit>
#include <cmath>

namespace {
constexpr uint32_t kTrace = MSG_DEBUG_C;
constexpr double kKnots = 1.944; // of a metre a second

/* Flags of a level halfword; the value is its low byte. */
enum LevelFlag : unsigned {
    LEVEL_KNOWN = 0x0003, // with LEVEL_TEXT: a level with a name, such as "no data"
    LEVEL_MINUS = 0x0100,
    LEVEL_BELOW = 0x0400,
    LEVEL_ABOVE = 0x0800,
    LEVEL_TENTHS = 0x1000,
    LEVEL_TWENTIETHS = 0x2000,
    LEVEL_TEXT = 0x8000, // no number
};
constexpr float kNoLevel = -100.0f;
constexpr float kNamedLevel = -90.0f;

struct Reader {
    const int16_t *h; // halfwords
    float *t;         // thresholds

    unsigned bits(int i) const { return uint16_t(h[i]); }
};

/* Flags act one after the other, on a named level too: a scaled one is scaled. */
float coded_level(int i, unsigned v) {
    const int sent = int(v & 0xff);
    float value = float(sent);
    if (v & LEVEL_TEXT) {
        MSG_print(kTrace, "THRES: %d MISS-%2X\n", i, v & 0xff);
        value = v & LEVEL_KNOWN ? kNamedLevel : kNoLevel;
        if (value == kNoLevel)
            return value;
    }
    if (v & LEVEL_TWENTIETHS) {
        MSG_print(kTrace, "THRES: %d - %d/20\n", i, sent);
        value /= 20.0f;
    }
    if (v & LEVEL_TENTHS) {
        MSG_print(kTrace, "THRES: %d - %d/10\n", i, sent);
        value /= 10.0f;
    }
    if (v & LEVEL_ABOVE) {
        MSG_print(kTrace, "THRES: %d - >%d\n", i, sent);
        value += 0.01f;
    }
    if (v & LEVEL_BELOW) {
        MSG_print(kTrace, "THRES: %d - <%d\n", i, sent);
        value -= 0.01f;
    }
    return v & LEVEL_MINUS ? -value : value;
}

void coded(const Reader &r) {
    for (int i = 0; i < NIDS_LEVELS; i++)
        r.t[i] = coded_level(i, r.bits(i));
}

/* Half-decibel steps from -32 on, whatever the halfwords say. */
void airport(const Reader &r) {
    coded(r);
    r.t[0] = -32.0f;
    r.t[1] = 0.5f;
    r.t[2] = 256.0f;
}

/* Offset, step and number of levels. */
void scaled(const Reader &r, float offset, float step, float levels) {
    r.t[0] = offset;
    r.t[1] = step;
    r.t[2] = levels;
    MSG_print(kTrace, "THRES: %.1f %.1f %.0f\n", double(r.t[0]), double(r.t[1]), double(r.t[2]));
}

void tenths(const Reader &r) {
    scaled(r, float(r.h[0]) / 10.0f, float(r.bits(1)) / 10.0f, float(r.bits(2)));
}

void speeds(const Reader &r) {
    const float offset = float(r.h[0]) / 10.0f;
    const float step = float(r.bits(1)) / 10.0f;
    scaled(r, float(offset * kKnots), float(step * kKnots), float(r.bits(2)));
}

void hundredths(const Reader &r) {
    scaled(r, float(r.h[0]) / 100.0f, float(r.h[1]) / 100.0f, float(r.h[2]));
}

void thousandths(const Reader &r) {
    scaled(r, float(r.h[0]) / 1000.0f, float(r.h[1]) / 1000.0f, float(r.h[2]));
}

/* Sign, 5 bits of exponent, 10 of fraction; the exponent is biased by 16. */
float half_float(unsigned v) {
    const int exponent = int(v >> 10 & 0x1f);
    const float fraction = float(v & 0x3ff) / 1024.0f;
    const float size = exponent == 0 ? 2.0f * fraction : std::ldexp(1.0f + fraction, exponent - 16);
    return v & 0x8000 ? -size : size;
}

void liquid(const Reader &r) {
    r.t[0] = half_float(r.bits(0));
    r.t[1] = half_float(r.bits(1));
    r.t[2] = float(r.bits(2));
    r.t[3] = half_float(r.bits(3));
    r.t[4] = half_float(r.bits(4));
    MSG_print(kTrace, "THRES: %.1f %.1f - %.0f - %.1f %.1f \n", double(r.t[0]), double(r.t[1]),
              double(r.t[2]), double(r.t[3]), double(r.t[4]));
}

void masked(const Reader &r) {
    for (int i = 0; i < 4; i++)
        r.t[i] = float(r.bits(i));
    MSG_print(kTrace, "THRES: Mask: %X - %.0f %.0f - %X\n", r.bits(0), double(r.t[1]),
              double(r.t[2]), r.bits(3));
}

/* A float out of two halfwords, or other where they make none. */
float sent_float(const Reader &r, int i, float other) {
    const float value = std::bit_cast<float>(r.bits(i) << 16 | r.bits(i + 1));
    return std::isfinite(value) ? value : other;
}

void floats(const Reader &r) {
    const float divisor = sent_float(r, 0, 1.0f);
    r.t[0] = divisor == 0.0f ? 1.0f : divisor;
    r.t[2] = sent_float(r, 2, 0.0f);
    MSG_print(kTrace, "THRES: %f %f\n", double(r.t[0]), double(r.t[2]));
}

float linear_value(const NidsHeader &, const float *t, int b) { return float(b) * t[1] + t[0]; }

float liquid_value(const NidsHeader &, const float *t, int b) {
    const float v = float(b);
    return v >= t[2] ? std::exp((v - t[4]) / t[3]) : (v - t[1]) / t[0];
}

float masked_value(const NidsHeader &header, const float *t, int b) {
    return float(header.levels_raw[0] & b) / t[1] - t[2];
}

float float_value(const NidsHeader &, const float *t, int b) { return (float(b) - t[2]) / t[0]; }

struct LevelsRow {
    NidsLevels levels;
    void (*decode)(const Reader &r);
    float (*value)(const NidsHeader &header, const float *thresholds, int byte);
};
/* In the order of the forms, which is the index. */
constexpr LevelsRow kLevels[] = {
    {NidsLevels::Coded, coded, linear_value},
    {NidsLevels::Airport, airport, linear_value},
    {NidsLevels::Tenths, tenths, linear_value},
    {NidsLevels::Speeds, speeds, linear_value},
    {NidsLevels::Hundredths, hundredths, linear_value},
    {NidsLevels::Thousandths, thousandths, linear_value},
    {NidsLevels::Liquid, liquid, liquid_value},
    {NidsLevels::Masked, masked, masked_value},
    {NidsLevels::Float, floats, float_value},
};
constexpr bool rows_in_order() {
    int i = 0;
    for (const LevelsRow &row : kLevels)
        if (int(row.levels) != i++)
            return false;
    return i == int(NidsLevels::Float) + 1;
}
static_assert(rows_in_order(), "a form has no row of its own");

const LevelsRow &levels_row(const NidsProductRow &product) {
    return kLevels[size_t(product.levels)];
}
} // namespace

void NIDS_decode_thresholds(const NidsHeader &header, float thresholds[NIDS_LEVELS]) {
    levels_row(NIDS_product_row(header.code)).decode(Reader{header.levels_raw, thresholds});
}

void NIDS_digital_values(const NidsHeader &header, const float thresholds[NIDS_LEVELS],
                         float values[256]) {
    const NidsProductRow &product = NIDS_product_row(header.code);
    const LevelsRow &row = levels_row(product);
    values[0] = values[1] = MISSING_F; // below the threshold, and ambiguous
    for (int byte = 2; byte < 256; byte++) {
        float value = row.value(header, thresholds, byte);
        if (product.flags & NIDS_PER_CENT)
            value /= 100.0f;
        values[byte] = std::isfinite(value) ? value : MISSING_F;
    }
}
