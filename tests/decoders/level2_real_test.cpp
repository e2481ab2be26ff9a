/* Real archives against facts about them.  They are no part of the project: the variable
 * RADAR_REAL_SAMPLES names a folder with level2/ and facts.json. */
#include "decoders/level2_reader.h"
#include "decoders/level2_stream.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {
using Json = nlohmann::json;

double rounded(double value) { return std::nearbyint(value * 1e4) / 1e4; }

void add(Json *counts, const std::string &key) { (*counts)[key] = counts->value(key, 0) + 1; }

/* All gates of a moment in a sweep. */
struct Gates {
    int radials = 0, below = 0, folded = 0;
    Json counts = Json::object(), histogram = Json::object(), raw = Json::array();
    std::vector<double> values;

    void take(int count, double scale, double offset) {
        add(&counts, std::to_string(count));
        for (int i = 0; i < count; i++) {
            const double value = double(LEV2_next_gate());
            if (radials == 0 && i < 60)
                raw.push_back(value == -100.0  ? 0.0
                              : value == -90.0 ? 1.0
                                               : value * scale + offset);
            below += value == -100.0;
            folded += value == -90.0;
            if (value <= -90.0)
                continue;
            values.push_back(value);
            add(&histogram, std::to_string(5 * int(std::floor(value / 5.0))));
        }
        radials++;
    }

    Json facts() const {
        double sum = 0.0;
        for (const double value : values)
            sum += value;
        const auto [least, most] = std::minmax_element(values.begin(), values.end());
        return {{"radials_with_moment", radials},
                {"gates_per_radial", counts},
                {"gates_below_threshold", below},
                {"gates_range_folded", folded},
                {"gates_with_value", values.size()},
                {"minimum", *least},
                {"maximum", *most},
                {"mean", rounded(sum / double(values.size()))},
                {"histogram_by_5_lower_edge", histogram},
                {"first_60_raw_gates_of_first_radial", raw}};
    }
};

/* What of a sweep its first radial tells. */
Json sweep_facts(const Lev2Radial &radial) {
    if (radial.message_type == 31)
        return {{"elevation_degrees", rounded(double(radial.elevation))},
                {"nyquist", rounded(double(radial.nyquist))},
                {"azimuth_spacing_code", radial.azimuth_resolution}};
    // Not the first Doppler gate, which begins in front of the radar: ranges are read as counts.
    // Nor the Nyquist velocity, which is taken from a place of its own.
    return {{"elevation_degrees", rounded(double(radial.elevation))},
            {"surveillance_first_gate_km", radial.ref_first},
            {"surveillance_gates", radial.ref_gates},
            {"doppler_gates", radial.vel_gates}};
}

void compare(const Json &found, const Json &facts) {
    for (const auto &[key, value] : found.items())
        EXPECT_EQ(value, facts[key]) << key;
}

void take_moments(const Lev2Radial &radial, const Json &facts, Gates gates[2]) {
    for (int moment = 0; moment < 2; moment++) {
        const Json &fact = facts[moment];
        ASSERT_EQ(LEV2_select_moment(moment), !fact.is_null());
        if (fact.is_null())
            continue;
        EXPECT_EQ(moment ? radial.vel_gate : radial.ref_gate, fact["gate_size_km"].get<float>());
        if (radial.message_type == 31 || moment == 0) {
            EXPECT_EQ(moment ? radial.vel_first : radial.ref_first, fact["first_gate_km"]);
        }
        gates[moment].take(moment ? radial.vel_gates : radial.ref_gates, fact["scale"],
                           fact["offset"]);
    }
}

void compare_volume(const Lev2Volume &volume, const Json &facts) {
    const DateTime &time = volume.start_time;
    char text[80];
    snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month, time.day,
             time.hour, time.minute, time.second);
    EXPECT_EQ(text, facts["volume_time"].get<std::string>().substr(0, 19));
    EXPECT_EQ("K" + std::string(volume.radar), facts["radar_letters"].get<std::string>());
}

void compare_archive(const std::string &path, const Json &facts) {
    Lev2Volume volume;
    ASSERT_TRUE(LEV2_open_file(path.c_str()) && LEV2_read_volume(&volume));
    compare_volume(volume, facts);
    const Json &table = facts["sweep_table"];
    const Json moments[] = {{facts["sweep_1_REF"], facts["sweep_1_VEL"]},
                            {facts["sweep_2_REF"], facts["sweep_2_VEL"]}};
    Gates gates[2][2];
    std::vector<int> radials(table.size());
    Lev2Radial radial;
    for (; LEV2_read_header(&radial); LEV2_next_message()) {
        if (radial.message_type != 1 && radial.message_type != 31)
            continue;
        const size_t sweep = size_t(radial.elevation_number - 1);
        ASSERT_LT(sweep, table.size());
        const int number = radials[sweep]++;
        if (number < 3) {
            EXPECT_EQ(rounded(double(radial.azimuth)), table[sweep]["first_3_azimuths"][number]);
        }
        if (number == 0) {
            EXPECT_EQ(radial.vcp, facts["volume_coverage_pattern"]);
            EXPECT_EQ(radial.message_type, facts["message_type"]);
            compare(sweep_facts(radial), table[sweep]);
            const Json &held = table[sweep]["moments_in_first_radial"];
            EXPECT_EQ(radial.ref_ptr != 0, held.dump().find("REF") != std::string::npos);
            EXPECT_EQ(radial.vel_ptr != 0, held.dump().find("VEL") != std::string::npos);
            EXPECT_EQ(radial.spw_ptr != 0, held.dump().find("SW") != std::string::npos);
        }
        if (sweep < 2)
            take_moments(radial, moments[sweep], gates[sweep]);
    }
    EXPECT_FALSE(LEV2_stream_failed());
    for (size_t sweep = 0; sweep < table.size(); sweep++)
        EXPECT_EQ(radials[sweep], table[sweep]["radials"]) << "sweep " << sweep + 1;
    for (int i = 0; i < 4; i++)
        if (const Json &fact = moments[i / 2][size_t(i % 2)]; !fact.is_null())
            compare(gates[i / 2][i % 2].facts(), fact);
    LEV2_close_file();
}
} // namespace

TEST(RealArchives, AgreeWithTheFactsAboutThem) {
    const char *folder = getenv("RADAR_REAL_SAMPLES");
    if (!folder || !*folder)
        GTEST_SKIP() << "RADAR_REAL_SAMPLES names no folder of real archives";
    const std::string base = std::string(folder) + "/";
    std::ifstream in(base + "facts.json");
    const Json all = Json::parse(in);
    int files = 0;
    for (const auto &[name, facts] : all.items()) {
        if (!facts.is_object() || facts.value("kind", "") != "level2")
            continue;
        SCOPED_TRACE(name);
        LEV2_reset();
        compare_archive(base + name, facts);
        files++;
    }
    printf("%d real archives were read\n", files);
    EXPECT_GT(files, 0);
}
