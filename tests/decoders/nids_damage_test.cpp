/* Products cut off, changed and made up: each is read to its end in bounded work. */
#include "tests/decoders/nids_input.h"
#include "tools/samples/nids_writer.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <vector>

namespace {

/* Every call takes a byte of the product, and zlib makes about 1030 of one at the most. */
constexpr long kMostCalls = 1100;

void read_to_the_end(std::string_view bytes) {
    NidsInput in(bytes);
    if (in.read_product() == 0)
        return;
    const NidsCount count = NIDS_count_product(in.file);
    EXPECT_LE(count.calls, kMostCalls * long(bytes.size()) + 10);
    EXPECT_LE(strnlen(NIDS_product()->info, sizeof NIDS_product()->info), 50u);
}

SampleRadials small_radials() {
    SampleRadials data;
    for (int i = 0; i < 40; i++) {
        LevelRow radial;
        for (int bin = 0; bin < 60; bin++)
            radial.push_back(uint8_t((bin / 5 + i) % 16));
        data.radials.push_back(radial);
    }
    return data;
}

/* One product of each kind, small. */
std::vector<std::string> samples() {
    const SampleRadials data = small_radials();
    SampleProduct radial, digital, raster, array, winds;
    radial.symbology = SMP_symbology({SMP_radials(data)});
    digital.code = 94;
    digital.symbology = SMP_symbology({SMP_digital_radials(data)});
    raster.code = 37;
    raster.symbology =
        SMP_symbology({SMP_raster(0xBA07, data.radials) + SMP_packed_raster(data.radials)});
    const SampleStorm storm = {"A0", 317, 24, true, false, 90,  100,
                               2.75, 71,  68, 21.4, 47.8,  229, 28};
    raster.graphic = SMP_storm_block(StormTable::Columns, {5, storm});
    array.code = 81;
    array.symbology = SMP_symbology({SMP_precip_array(data.radials), SMP_opaque(0x12, "rest")});
    winds.code = 48;
    winds.symbology =
        SMP_symbology({SMP_vectors({{1, 2, 3, 4}}) + SMP_winds({{2, 100, 200, 270, 35}}) +
                       SMP_text(8, 1, 2, 3, "TIME") + SMP_opaque(6, "abcdef")});
    return {
        SMP_short_lead("N0RTLX") + SMP_message(radial),
        SMP_message(digital),
        SMP_long_lead("N0QTLX") + SMP_bzip2_message(digital) + SMP_trailer(),
        SMP_long_lead("N0RTLX") + SMP_zlib_frames("N0RTLX", SMP_message(radial), 500) +
            SMP_trailer(),
        SMP_message(raster),
        SMP_message(array),
        SMP_message(winds),
    };
}

TEST(NidsDamage, WholeSamplesAreReadWhole) {
    const int packets[] = {1, 1, 1, 1, 2 + 4 + 7, 1, 4}; // of the first layer, and of the pages
    const std::vector<std::string> whole = samples();
    for (size_t i = 0; i < whole.size(); i++) {
        NidsInput in(whole[i]);
        ASSERT_EQ(in.read_product(), 1);
        const NidsCount count = NIDS_count_product(in.file);
        EXPECT_EQ(count.packets, packets[i]) << i;
    }
}

std::string shipped(const std::string &name) {
    std::ifstream in(RADAR_SOURCE_DIR "/data/samples/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

struct ShippedSample {
    const char *name;
    int code, radials, rows, pages;
    double cells;
};
constexpr ShippedSample kShipped[] = {
    {"n0r_tlx.nids", 19, 360, 0, 0, 360 * 230},
    {"n0r_tlx_bare.nids", 19, 360, 0, 0, 360 * 230},
    {"n0r_tlx_zlib.nids", 19, 360, 0, 0, 360 * 230},
    {"n0q_tlx.nids", 94, 360, 0, 0, 360 * 460},
    {"n0q_tlx_bzip2.nids", 94, 360, 0, 0, 360 * 460},
    {"n0v_tlx.nids", 27, 360, 0, 0, 360 * 230},
    {"ncr_tlx.nids", 37, 0, 464, 2, 464 * 464},
    {"dpa_tlx.nids", 81, 0, 131, 0, 131 * 131},
};

/* The same weather in different wrappings has the same runs. */
TEST(NidsSamples, ShippedOnesAreReadWhole) {
    std::map<int, std::pair<long, double>> runs; // of each code, and the sum of their values
    for (const ShippedSample &sample : kShipped) {
        SCOPED_TRACE(sample.name);
        NidsInput in(shipped(sample.name));
        ASSERT_EQ(in.read_product(), 1);
        EXPECT_EQ(NIDS_product()->code, sample.code);
        const NidsCount count = NIDS_count_product(in.file);
        EXPECT_EQ(count.radials, sample.radials);
        EXPECT_EQ(count.rows, sample.rows);
        EXPECT_EQ(count.pages, sample.pages);
        EXPECT_EQ(count.cells, sample.cells);
        const std::pair<long, double> found = {count.runs, count.values};
        EXPECT_EQ(runs.emplace(sample.code, found).first->second, found);
    }
}

TEST(NidsDamage, ShippedSamplesCutOff) {
    for (const ShippedSample &sample : kShipped) {
        const std::string whole = shipped(sample.name);
        for (size_t i = 1; i < 40; i++)
            read_to_the_end(std::string_view(whole).substr(0, whole.size() * i / 40));
    }
}

TEST(NidsDamage, EveryTruncation) {
    for (const std::string &whole : samples())
        for (size_t n = 0; n < whole.size(); n += n < 400 ? 1 : 23)
            read_to_the_end(std::string_view(whole).substr(0, n));
}

TEST(NidsDamage, ChangedBytes) {
    std::mt19937 random(1);
    for (const std::string &whole : samples())
        for (int i = 0; i < 600; i++) {
            std::string bytes = whole;
            // Heads stand in front: most changes go there.
            const size_t within = i % 3 ? std::min<size_t>(300, bytes.size()) : bytes.size();
            for (int n = 1 + int(random() % 4); n > 0; n--)
                bytes[random() % within] = char(random() % 4 ? random() : 0xFF);
            read_to_the_end(bytes);
        }
}

TEST(NidsDamage, MadeUpBytes) {
    std::mt19937 random(2);
    for (int i = 0; i < 600; i++) {
        // A true header, so that the packets are reached, or none.
        std::string bytes =
            i % 2 ? SMP_message(SampleProduct{}) + std::string("\xff\xff\0\1", 4) : std::string();
        for (size_t n = random() % 3000; n > 0; n--)
            bytes += char(random() % 3 ? random() : random() % 19);
        read_to_the_end(bytes);
    }
}

/* Little that inflates to much, and streams without a byte in them. */
TEST(NidsDamage, InflatedFarEnds) {
    const NidsInput in(SMP_zlib(std::string(20000000, '\0')));
    NIDS_stream_recheck();
    long total = 0;
    char bytes[99];
    while (NIDS_read(bytes, sizeof bytes, in.file) > 0)
        total += long(sizeof bytes);
    EXPECT_GT(total, 15000000);
    EXPECT_LT(total, 17000000);

    std::string hollow = SMP_short_lead("N0RTLX");
    for (int i = 0; i < 3000; i++)
        hollow += SMP_zlib("");
    read_to_the_end(hollow);
}

} // namespace
