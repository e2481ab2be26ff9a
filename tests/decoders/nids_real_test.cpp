/* Real products against facts about them.  They are no part of the project: the variable
 * RADAR_REAL_SAMPLES names a folder with nids/ and facts.json. */
#include "tests/decoders/nids_input.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <vector>

namespace {
using Json = nlohmann::json;

/* Cells of each value. */
using Histogram = std::map<double, double>;

void add(Histogram *histogram, double value, double cells) {
    if (cells > 0.0)
        (*histogram)[value] += cells;
}

void expect_same(const Histogram &found, const Histogram &expected) {
    ASSERT_EQ(found.size(), expected.size());
    auto other = expected.begin();
    for (const auto &[value, cells] : found) {
        EXPECT_NEAR(value, other->first, 1e-5 * std::fabs(value) + 1e-5);
        EXPECT_EQ(cells, other->second) << "of value " << value;
        ++other;
    }
}

/* What a level is to the program, worked out from the halfwords of the file anew. */
struct Scale {
    int code;
    std::vector<int> halves;

    int at(int i) const { return halves[size_t(i)]; }
    double sign(int i) const { return double(int16_t(at(i))); }

    double coded(int level) const {
        const int h = at(level);
        const double low = h & 0x8000 ? (h & 3 ? -90.0 : -100.0) : double(h & 0xff);
        const double size =
            low / (h & 0x2000 ? 20.0 : 1.0) / (h & 0x1000 ? 10.0 : 1.0) + (h & 0x0800 ? 0.01 : 0.0);
        return h & 0x0100 ? -size : size;
    }

    double half_float(int i) const {
        return std::ldexp(1.0 + (at(i) & 0x3ff) / 1024.0, (at(i) >> 10 & 31) - 16);
    }

    double digital(int level) const {
        if (level < 2)
            return MISSING;
        switch (code) {
        case 94:
            return sign(0) / 10.0 + level * sign(1) / 10.0;
        case 99:
            return 1.944 * (sign(0) / 10.0 + level * sign(1) / 10.0);
        case 134:
            return level < at(2) ? (level - half_float(1)) / half_float(0)
                                 : std::exp((level - half_float(4)) / half_float(3));
        case 138:
            return level / 100.0;
        case 165: // no scale is sent
            return level;
        case 186:
            return -32.0 + level / 2.0;
        default:
            ADD_FAILURE() << "no scale for code " << code;
            return 0.0;
        }
    }

    double value(const std::string &packet, int level) const {
        if (packet == "0x0010")
            return digital(level);
        if (packet == "0x0011")
            return level == 255 ? MISSING : -0.06 + level * 0.125;
        return coded(level);
    }
};

/* Runs of all radials or rows of the first packet. */
Histogram read_runs(FILE *file, const Json &packet) {
    Histogram histogram;
    std::vector<std::array<double, 2>> angles;
    std::map<std::string, int> widths; // rows or radials of each number of cells
    const bool radials = packet.contains("radials");
    int count = 0;
    float start = 0.0f, delta = 0.0f;
    while ((radials ? NIDS_next_radial(file, &start, &delta) : NIDS_next_row(file)) > 0) {
        double cells = 0.0;
        NidsRun run;
        while (NIDS_next_run(file, &run) > 0) {
            add(&histogram, double(run.value), double(run.count));
            cells += double(run.count);
        }
        widths[std::to_string(int(cells))]++;
        if (count++ < 3)
            angles.push_back(
                {std::round(double(start) * 10.0) / 10.0, std::round(double(delta) * 10.0) / 10.0});
    }
    EXPECT_EQ(count, packet[radials ? "radials" : "rows"].get<int>());
    EXPECT_EQ(Json(widths), packet[radials ? "gates_per_radial" : "cells_per_row"]);
    if (radials) {
        EXPECT_EQ(Json(angles), packet["first_3_radials_start_and_delta_degrees"]);
    }
    return histogram;
}

void compare_header(const Json &facts) {
    const NidsProduct &product = *NIDS_product();
    EXPECT_EQ(product.code, facts["product_code"].get<int>());
    EXPECT_EQ(product.source, facts["source_id"].get<int>());
    EXPECT_EQ(product.op_mode, facts["operational_mode"].get<int>());
    EXPECT_NEAR(product.domain.clat, product.code == 48 ? 0.0 : facts["latitude"].get<double>(),
                1e-4);
    EXPECT_NEAR(product.domain.clon, product.code == 48 ? 0.0 : facts["longitude"].get<double>(),
                1e-4);
    DateTime time = product.scan_time;
    char text[80];
    snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month, time.day,
             time.hour, time.minute, time.second);
    EXPECT_EQ(text, facts["volume_time"].get<std::string>());
}

/* Levels of their own; a scale shows in the values. */
void compare_levels(const Scale &scale) {
    const unsigned packet = NIDS_product()->packet;
    if (packet != NIDS_RADIAL && packet != NIDS_RASTER)
        return;
    for (int i = 0; i < NIDS_LEVELS; i++)
        EXPECT_NEAR(NIDS_product()->thresholds[i], scale.coded(i), 1e-4) << i;
}

void compare_picture(FILE *file, const Json &packet, const Scale &scale) {
    Histogram expected;
    for (const auto &[level, cells] : packet["level_histogram"].items())
        add(&expected, scale.value(packet["packet_code"], std::stoi(level)), cells.get<double>());
    expect_same(read_runs(file, packet), expected);
}

/* Vectors, winds and texts: the first ones by themselves, all of them by their number. */
void compare_items(FILE *file, const Json &facts) {
    std::map<std::string, int> packets;
    unsigned code = NIDS_product()->packet;
    size_t at = 0;
    do {
        char name[8];
        snprintf(name, sizeof name, "0x%04X", code);
        packets[name]++;
        NidsCount count;
        NIDS_count_packet(file, code, &count);
        const Json none, &fact = at < facts["packets"].size() ? facts["packets"][at] : none;
        if (fact.contains("vectors")) {
            EXPECT_EQ(count.vectors, fact["vectors"].get<int>());
        }
        if (fact.contains("text")) {
            // Text without a value is read as if it had one, which takes two characters.
            const std::string text = fact["text"];
            EXPECT_EQ(count.text, (code == NIDS_TEXT ? text.substr(2) : text) + "|");
        }
        at++;
    } while (NIDS_read_packet(file, &code) > 0);
    if (facts["symbology_layers"] == 1) {
        EXPECT_EQ(Json(packets), facts["symbology_packet_counts"]);
    }
}

void compare_graphic(FILE *file, const Json &facts) {
    unsigned code;
    EXPECT_EQ(NIDS_read_packet(file, &code), 0) << "the layer ends";
    NidsCount count;
    std::string first_page;
    ASSERT_EQ(NIDS_read_graphic(file), 1);
    for (; NIDS_read_page(file) > 0; count.pages++) {
        if (NIDS_read_packet(file, &code) > 0)
            NIDS_count_packets(file, code, &count);
        if (count.pages == 0)
            first_page = count.text;
    }
    std::string expected;
    for (const Json &line : facts["graphic_first_page_text"])
        expected += line.get<std::string>() + "|";
    EXPECT_EQ(first_page, expected);
    EXPECT_EQ(count.pages, facts["graphic_pages"].get<int>());
    EXPECT_EQ(count.texts, facts["graphic_packet_counts"]["0x0008"].get<int>());
    EXPECT_EQ(count.packets - count.texts, facts["graphic_packet_counts"]["0x000A"].get<int>());
}

/* The decoder makes one code of two. */
unsigned packet_code(const Json &facts) {
    const unsigned long code =
        std::stoul(facts["packets"][0]["packet_code"].get<std::string>(), nullptr, 16);
    return code == NIDS_RASTER7 ? unsigned(NIDS_RASTER) : unsigned(code);
}

void compare_product(const std::string &path, const Json &facts) {
    const NidsInput fresh("");
    ASSERT_EQ(NIDS_open_file(path.c_str()), 1);
    Scale scale{facts["product_code"], {}};
    for (const Json &half : facts["data_level_halfwords"])
        scale.halves.push_back(int(std::stoul(half.get<std::string>(), nullptr, 16)));
    compare_header(facts);
    compare_levels(scale);
    EXPECT_EQ(NIDS_product()->packet, packet_code(facts));
    const Json &first = facts["packets"][0];
    unsigned code;
    if (first.contains("level_histogram")) {
        compare_picture(NIDS_file(), first, scale);
        if (facts.contains("graphic_pages"))
            compare_graphic(NIDS_file(), facts);
    } else if (NIDS_product()->packet == 2) {
        EXPECT_EQ(NIDS_read_packet(NIDS_file(), &code), 0) << "nothing is made of it";
    } else {
        compare_items(NIDS_file(), facts);
    }
    NIDS_close_file();
}
} // namespace

TEST(RealSamples, AgreeWithTheFactsAboutThem) {
    const char *folder = getenv("RADAR_REAL_SAMPLES");
    if (!folder || !*folder)
        GTEST_SKIP() << "RADAR_REAL_SAMPLES names no folder of real products";
    const std::string base = std::string(folder) + "/";
    std::ifstream in(base + "facts.json");
    const Json all = Json::parse(in);
    int files = 0;
    for (const auto &[name, facts] : all.items()) {
        if (!facts.is_object() || facts.value("kind", "") != "level3" || !name.starts_with("nids/"))
            continue;
        SCOPED_TRACE(name);
        const auto failures = [] {
            return testing::UnitTest::GetInstance()
                ->current_test_info()
                ->result()
                ->total_part_count();
        };
        const int before = failures();
        compare_product(base + name, facts);
        printf("%-32s %s\n", name.c_str(), failures() == before ? "agrees" : "differs");
        files++;
    }
    printf("%d real products were read\n", files);
    EXPECT_GT(files, 0);
}
