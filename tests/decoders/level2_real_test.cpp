/* Real archives against facts about them.  They are no part of the project: the variable
 * RADAR_REAL_SAMPLES names a folder with level2/ and facts.json. */
#include "decoders/level2_reader.h"
#include "decoders/level2_stream.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>

namespace {
using Json = nlohmann::json;

double rounded(double value) { return std::nearbyint(value * 1e4) / 1e4; }

/* All gates of a moment in a sweep. */
struct Gates {
    double scale = 2.0, offset = 66.0;
    std::map<std::string, int> counts; // radials of so many gates
    std::map<double, int> values;      // gates of each
    std::vector<double> raw;
    int radials = 0;

    void take(int count) {
        counts[std::to_string(count)]++;
        for (int i = 0; i < count; i++) {
            const double value = double(LEV2_next_gate());
            values[value]++;
            if (radials == 0 && i < 60)
                raw.push_back(value > -90.0 ? value * scale + offset : (value + 100.0) / 10.0);
        }
        radials++;
    }

    Json facts() {
        Json out = {{"radials_with_moment", radials}, {"gates_per_radial", counts}};
        out["gates_below_threshold"] = values[-100.0];
        out["gates_range_folded"] = values[-90.0];
        values.erase(-100.0);
        values.erase(-90.0);
        int n = 0;
        double sum = 0.0;
        std::map<std::string, int> histogram;
        for (const auto &[value, gates] : values) {
            n += gates;
            sum += value * gates;
            histogram[std::to_string(5 * int(std::floor(value / 5.0)))] += gates;
        }
        out.update({{"gates_with_value", n}, {"mean", rounded(sum / n)}});
        out.update({{"minimum", values.begin()->first}, {"maximum", values.rbegin()->first}});
        out.update(
            {{"histogram_by_5_lower_edge", histogram}, {"scale", scale}, {"offset", offset}});
        out["first_60_raw_gates_of_first_radial"] = raw;
        return out;
    }
};

/* What of a sweep its first radial tells.  In message 1 the first Doppler gate is not compared,
 * which begins in front of the radar, nor the Nyquist velocity: both are read in their own way. */
Json sweep_facts(const Lev2Radial &radial) {
    const double elevation = rounded(double(radial.elevation));
    if (radial.message_type == 31)
        return {{"elevation_degrees", elevation},
                {"nyquist", rounded(double(radial.nyquist))},
                {"azimuth_spacing_code", radial.azimuth_resolution}};
    return {{"elevation_degrees", elevation},
            {"surveillance_first_gate_km", radial.ref_first},
            {"surveillance_gates", radial.ref_gates},
            {"doppler_gates", radial.vel_gates}};
}

/* Everything found is a fact; paths lead through both. */
void compare(const Json &found, const Json &facts) {
    const Json flat = found.flatten();
    for (const auto &[path, value] : flat.items())
        EXPECT_EQ(value, facts.value(Json::json_pointer(path), Json())) << path;
}

void compare_archive(const std::string &name, const Json &facts) {
    Lev2Volume volume;
    Lev2Radial radial;
    ASSERT_TRUE(LEV2_open_file(name.c_str()) && LEV2_read_volume(&volume));
    const DateTime &at = volume.start_time;
    char time[80];
    snprintf(time, sizeof time, "%04d-%02d-%02d %02d:%02d:%02d", at.year, at.month, at.day, at.hour,
             at.minute, at.second);
    EXPECT_EQ(facts["volume_time"].get<std::string>().substr(0, 19), time);
    Json found = {{"radar_letters", "K" + std::string(volume.radar)}};
    std::map<std::string, Gates> gates;
    for (; LEV2_read_header(&radial); LEV2_next_message()) {
        if (radial.message_type != 1 && radial.message_type != 31)
            continue;
        const size_t sweep = size_t(radial.elevation_number - 1);
        ASSERT_LT(sweep, facts["sweep_table"].size());
        found["volume_coverage_pattern"] = radial.vcp;
        found["message_type"] = radial.message_type;
        Json &row = found["sweep_table"][sweep];
        if (row.is_null()) {
            row = sweep_facts(radial);
            const std::string held = facts["sweep_table"][sweep]["moments_in_first_radial"].dump();
            EXPECT_EQ(radial.ref_ptr != 0, held.find("REF") != held.npos);
            EXPECT_EQ(radial.vel_ptr != 0, held.find("VEL") != held.npos);
            EXPECT_EQ(radial.spw_ptr != 0, held.find("SW") != held.npos);
        }
        const int number = row.value("radials", 0);
        row["radials"] = number + 1;
        if (number < 3)
            row["first_3_azimuths"].push_back(rounded(double(radial.azimuth)));
        for (int moment = 0; moment < 2 && sweep < 2; moment++) {
            const std::string key =
                "sweep_" + std::to_string(sweep + 1) + (moment ? "_VEL" : "_REF");
            ASSERT_EQ(LEV2_select_moment(moment), !facts[key].is_null());
            if (facts[key].is_null())
                continue;
            if (moment)
                gates[key].offset = 129.0;
            gates[key].take(moment ? radial.vel_gates : radial.ref_gates);
            found[key]["gate_size_km"] = moment ? radial.vel_gate : radial.ref_gate;
            if (radial.message_type == 31 || !moment)
                found[key]["first_gate_km"] = moment ? radial.vel_first : radial.ref_first;
        }
    }
    EXPECT_FALSE(LEV2_stream_failed());
    EXPECT_EQ(found["sweep_table"].size(), facts["sweep_table"].size());
    for (auto &[key, moment] : gates)
        found[key].update(moment.facts());
    compare(found, facts);
    LEV2_close_file();
}
} // namespace

TEST(RealArchives, AgreeWithTheFactsAboutThem) {
    const char *folder = getenv("RADAR_REAL_SAMPLES");
    if (!folder || !*folder)
        GTEST_SKIP() << "RADAR_REAL_SAMPLES names no folder of real archives";
    std::ifstream in(folder + std::string("/facts.json"));
    const Json all = Json::parse(in);
    int files = 0;
    for (const auto &[name, facts] : all.items()) {
        if (!facts.is_object() || facts.value("kind", "") != "level2")
            continue;
        SCOPED_TRACE(name);
        LEV2_reset();
        compare_archive(folder + ("/" + name), facts);
        files++;
    }
    printf("%d real archives were read\n", files);
    EXPECT_GT(files, 0);
}
