/* Products cut off, changed and made up: each is read to its end in bounded work. */
#include "tests/decoders/nids_input.h"
#include "tools/samples/nids_writer.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

namespace {

/* Every item takes a byte of the product, and zlib makes about 1030 of one at the most. */
constexpr long kMostItems = 1100;

void read_to_the_end(std::string_view bytes) {
    NidsInput in(bytes);
    if (in.read_product() == 0)
        return;
    EXPECT_LE(NIDS_count_product(in.file).items(), kMostItems * long(bytes.size()) + 10);
}

/* One product of each kind, small; and the number of its packets. */
std::vector<std::pair<std::string, int>> samples() {
    SampleRadials data;
    for (int i = 0; i < 2400; i++) {
        if (i % 60 == 0)
            data.radials.push_back({});
        data.radials.back().push_back(uint8_t((i % 60 / 5 + i / 60) % 16));
    }
    SampleProduct radial, digital, raster, array, winds;
    radial.symbology = SMP_symbology({SMP_radials(data)});
    digital.code = 94;
    digital.symbology = SMP_symbology({SMP_digital_radials(data)});
    raster.code = 37;
    raster.symbology =
        SMP_symbology({SMP_raster(0xBA07, data.radials) + SMP_packed_raster(data.radials)});
    const std::string page = SMP_text(8, 0, 0, 1, "row") + SMP_valued_vectors(4, {{0, 0, 511, 0}});
    raster.graphic = SMP_graphic({page, page + page});
    array.code = 81;
    array.symbology = SMP_symbology({SMP_precip_array(data.radials), SMP_opaque(0x12, "rest")});
    winds.code = 48;
    winds.symbology =
        SMP_symbology({SMP_vectors({{1, 2, 3, 4}}) + SMP_winds({{2, 100, 200, 270, 35}}) +
                       SMP_text(8, 1, 2, 3, "TIME") + SMP_opaque(6, "abcdef")});
    return {
        {SMP_short_lead("N0RTLX") + SMP_message(radial), 1},
        {SMP_message(digital), 1},
        {SMP_long_lead("N0QTLX") + SMP_bzip2_message(digital) + SMP_trailer(), 1},
        {SMP_long_lead("N0RTLX") + SMP_zlib_frames("N0RTLX", SMP_message(radial), 500), 1},
        {SMP_message(raster), 2 + 2 + 4},
        {SMP_message(array), 1},
        {SMP_message(winds), 4},
    };
}

/* The same weather in different wrappings has the same runs. */
TEST(NidsSamples, ShippedOnesAreReadWhole) {
    const struct {
        const char *name, *want; // code, radials, rows, pages and cells
    } cases[] = {
        {"n0r_tlx.nids", "19 360 0 0 82800"},        {"n0r_tlx_bare.nids", "19 360 0 0 82800"},
        {"n0r_tlx_zlib.nids", "19 360 0 0 82800"},   {"n0q_tlx.nids", "94 360 0 0 165600"},
        {"n0q_tlx_bzip2.nids", "94 360 0 0 165600"}, {"n0v_tlx.nids", "27 360 0 0 82800"},
        {"ncr_tlx.nids", "37 0 464 2 215296"},       {"dpa_tlx.nids", "81 0 131 0 17161"}};
    std::map<std::string, std::pair<long, double>> runs; // and the sum of their values
    for (const auto &c : cases) {
        std::ifstream file(RADAR_SOURCE_DIR "/data/samples/" + std::string(c.name),
                           std::ios::binary);
        NidsInput in(std::string(std::istreambuf_iterator<char>(file), {}));
        ASSERT_EQ(in.read_product(), 1) << c.name;
        const NidsCount n = NIDS_count_product(in.file);
        std::ostringstream text;
        text << NIDS_product()->code << " " << n.radials << " " << n.rows << " " << n.pages << " "
             << long(n.cells);
        EXPECT_EQ(text.str(), c.want) << c.name;
        const auto found = std::pair(n.runs, n.values);
        EXPECT_EQ(runs.emplace(c.want, found).first->second, found) << c.name;
    }
}

TEST(NidsDamage, CutOffAnywhere) {
    for (const auto &[whole, packets] : samples()) {
        NidsInput in(whole);
        ASSERT_EQ(in.read_product(), 1);
        EXPECT_EQ(NIDS_count_product(in.file).packets, packets);
        for (size_t n = 0; n < whole.size(); n += n < 400 ? 1 : 23)
            read_to_the_end(std::string_view(whole).substr(0, n));
    }
}

TEST(NidsDamage, ChangedAndMadeUpBytes) {
    std::mt19937 random(1);
    for (const auto &[whole, packets] : samples())
        for (int i = 0; i < 600; i++) {
            std::string bytes = whole;
            // Heads stand in front: most changes go there.
            const size_t within = i % 3 ? std::min<size_t>(300, bytes.size()) : bytes.size();
            for (int n = 1 + int(random() % 4); n > 0; n--)
                bytes[random() % within] = char(random() % 4 ? random() : 0xFF);
            read_to_the_end(bytes);
        }
    for (int i = 0; i < 600; i++) {
        // A true header, so that the packets are reached, or none.
        std::string bytes = i % 2 ? SMP_message({}) + std::string("\xff\xff\0\1", 4) : "";
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
    EXPECT_NEAR(total, 16000000, 1000000);
    std::string hollow = SMP_short_lead("N0RTLX");
    for (int i = 0; i < 3000; i++)
        hollow += SMP_zlib("");
    read_to_the_end(hollow);
}

} // namespace
