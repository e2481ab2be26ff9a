/* Writes the shipped samples of radar data: write_samples FOLDER */
#include "tools/samples/composite_samples.h"
#include "tools/samples/level2_volumes.h"
#include "tools/samples/nids_writer.h"
#include "tools/samples/rcm_samples.h"
#include "tools/samples/rrwds_writer.h"
#include "tools/samples/storm.h"
#include "tools/samples/summary_samples.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kBinKm = 1.0;
constexpr int kRadials = 360;

constexpr std::array<int, 16> kDbzLevels = {0x8002, 5,  10, 15, 20, 25, 30, 35,
                                            40,     45, 50, 55, 60, 65, 70, 75};
/* Knots; the flags are signs, and the last level is a second echo of an earlier pulse. */
constexpr std::array<int, 16> kKnots = {0, -64, -50, -36, -26, -20, -10, -1,
                                        0, 10,  20,  26,  36,  50,  64,  0};
constexpr int kFolded = 15;

int dbz_level(double dbz) { return std::clamp(int(std::floor(dbz / 5.0)), 0, 15); }

int dbz_byte(double dbz) {
    const int byte = int(std::lround((dbz + 32.0) * 2.0));
    return dbz < 0.0 ? 0 : std::clamp(byte, 2, 255);
}

int knots_level(double knots) {
    int level = 1;
    while (level < 14 && knots >= kKnots[size_t(level) + 1])
        level++;
    return level;
}

/* The level of each bin, at the middle of it. */
template <typename Level>
SampleRadials sweep(int bins, Level level) {
    SampleRadials data;
    data.start = 1350;
    for (int i = 0; i < kRadials; i++) {
        const double azimuth = (135.5 + i) * kPi / 180.0;
        LevelRow radial;
        for (int bin = 0; bin < bins; bin++) {
            const double r = (bin + 0.5) * kBinKm;
            radial.push_back(uint8_t(level(r * std::sin(azimuth), r * std::cos(azimuth))));
        }
        data.radials.push_back(radial);
    }
    return data;
}

/* The level of each cell of a square, row by row from the north. */
template <typename Level>
std::vector<LevelRow> square(int size, double cell, Level level) {
    std::vector<LevelRow> rows;
    for (int row = 0; row < size; row++) {
        LevelRow cells;
        for (int column = 0; column < size; column++) {
            const double x = (column - (size - 1) / 2.0) * cell;
            const double y = ((size - 1) / 2.0 - row) * cell;
            cells.push_back(uint8_t(level(x, y)));
        }
        rows.push_back(cells);
    }
    return rows;
}

SampleProduct reflectivity() {
    SampleProduct product;
    product.code = 19;
    product.p[3] = 5;
    product.p[4] = 66;
    product.levels = kDbzLevels;
    const SampleRadials data =
        sweep(230, [](double x, double y) { return dbz_level(STORM_dbz(x, y)); });
    product.symbology = SMP_symbology({SMP_radials(data)});
    return product;
}

SampleProduct digital_reflectivity() {
    SampleProduct product;
    product.code = 94;
    product.p[3] = 5;
    product.p[4] = 66;
    product.levels = {-320, 5, 254};
    const SampleRadials data =
        sweep(460, [](double x, double y) { return dbz_byte(STORM_dbz(x, y)); });
    product.symbology = SMP_symbology({SMP_digital_radials(data)});
    return product;
}

SampleProduct velocity() {
    SampleProduct product;
    product.code = 27;
    product.p[3] = 5;
    product.p[4] = -64;
    product.p[5] = 74;
    for (size_t i = 1; i < 15; i++)
        product.levels[i] = std::abs(kKnots[i]) | (kKnots[i] < 0 ? 0x100 : kKnots[i] ? 0x200 : 0);
    product.levels[0] = 0x8002;
    product.levels[15] = 0x8003;
    const SampleRadials data = sweep(230, [](double x, double y) {
        const double r = std::hypot(x, y);
        if (r > 175.0 && STORM_dbz(x * (r - 175.0) / r, y * (r - 175.0) / r) > 25.0)
            return kFolded;
        return STORM_dbz(x, y) < 3.0 ? 0 : knots_level(STORM_velocity(x, y));
    });
    product.symbology = SMP_symbology({SMP_radials(data)});
    return product;
}

const std::vector<SampleStorm> kStorms = {
    {"A0", 317, 24, true, true, 90, 100, 2.75, 71, 68, 21.4, 47.8, 229, 28},
    {"C3", 270, 46, false, true, 60, 90, 1.25, 52, 61, 18.2, 41.5, 251, 36},
    {"F1", 241, 50, false, false, 40, 70, 0.75, 44, 58, 15.9, 38.1, 254, 38},
    {"H2", 223, 67, false, false, 20, 50, 0.5, 35, 56, 14.4, 35.6, 256, 37},
    {"K5", 296, 56, false, false, 10, 40, 0.25, 28, 54, 13.1, 33.0, 250, 35},
    {"P7", 40, 59, false, false, 0, 0, 0.0, 8, 41, 9.6, 24.3, 235, 24},
};

SampleProduct composite() {
    SampleProduct product;
    product.code = 37;
    product.elevation_number = 0;
    product.p[3] = 195;
    product.p[4] = 68;
    product.levels = kDbzLevels;
    const std::vector<LevelRow> rows =
        square(464, 1.0, [](double x, double y) { return dbz_level(STORM_column_dbz(x, y)); });
    product.symbology = SMP_symbology({SMP_raster(0xBA07, rows)});
    product.graphic = SMP_graphic(SMP_storm_pages(StormTable::Columns, kStorms));
    return product;
}

/* A product of storms alone: the stronger half of the table in its older form, the rest in the
 * newer. */
SampleProduct storm_structure() {
    const std::vector<SampleStorm> first(kStorms.begin(), kStorms.begin() + 3);
    const std::vector<SampleStorm> rest(kStorms.begin() + 3, kStorms.end());
    std::vector<std::string> pages = SMP_storm_pages(StormTable::Words, first);
    for (const std::string &page : SMP_storm_pages(StormTable::Columns, rest))
        pages.push_back(page);
    std::string names; // at each storm, quarters of a kilometre from the radar
    for (const SampleStorm &storm : kStorms) {
        const double azimuth = storm.azimuth * kPi / 180.0, range = storm.range * 1.852 * 4.0;
        names += SMP_text(8, 0, int(range * std::sin(azimuth)), int(range * std::cos(azimuth)),
                          storm.id);
    }
    SampleProduct product;
    product.code = 62;
    product.elevation_number = 0;
    product.symbology = SMP_symbology({names});
    product.graphic = SMP_graphic(pages);
    return product;
}

/* The grid lies along the meridian of 105 degrees west, so it is turned against the compass. */
SampleProduct precip_array() {
    SampleProduct product;
    product.code = 81;
    product.elevation_number = 0;
    product.p[4] = 27;
    product.levels = {-60, 125, 256};
    const double turn = (105.0 - 97.278) * kPi / 180.0;
    const std::vector<LevelRow> rows = square(131, 4.03, [turn](double x, double y) {
        if (std::hypot(x, y) > 230.0)
            return 255;
        const double east = x * std::cos(turn) + y * std::sin(turn);
        const double north = y * std::cos(turn) - x * std::sin(turn);
        const double inches = STORM_rain(east, north);
        if (inches < 0.01)
            return 0;
        return std::clamp(int(std::lround((10.0 * std::log10(100.0 * inches) + 0.06) / 0.125)), 1,
                          254);
    });
    product.symbology = SMP_symbology({SMP_precip_array(rows)});
    return product;
}

/* The weather moves to the east, so minutes before it stood as a radar further east sees it. */
std::string scan_of_plains(int minute) {
    constexpr double kMotion = 0.01; // degrees a minute
    SampleScan scan;
    scan.minute = minute;
    SMP_fill_scan(35.3334, -97.2778 + kMotion * (15 - minute), &scan);
    return SMP_scan(scan);
}

/* From a hill, so the beam is tilted down. */
std::string scan_of_low() {
    SampleScan scan;
    scan.radar = "PDT";
    scan.range = 100;
    scan.elevation = -2;
    SMP_fill_scan(45.6906, -118.8529, &scan);
    return SMP_scan(scan);
}

struct SampleFile {
    const char *name;
    std::string (*make)();
};
const SampleFile kFiles[] = {
    {"n0r_tlx.nids", [] { return SMP_short_lead("N0RTLX") + SMP_message(reflectivity()); }},
    {"n0r_tlx_zlib.nids",
     [] {
         return SMP_long_lead("N0RTLX") + SMP_zlib_frames("N0RTLX", SMP_message(reflectivity())) +
                SMP_trailer();
     }},
    {"n0r_tlx_bare.nids", [] { return SMP_message(reflectivity()); }},
    {"n0q_tlx.nids", [] { return SMP_message(digital_reflectivity()); }},
    {"n0q_tlx_bzip2.nids",
     [] {
         return SMP_long_lead("N0QTLX") + SMP_bzip2_message(digital_reflectivity()) + SMP_trailer();
     }},
    {"n0v_tlx.nids", [] { return SMP_short_lead("N0VTLX") + SMP_message(velocity()); }},
    {"ncr_tlx.nids", [] { return SMP_short_lead("NCRTLX") + SMP_message(composite()); }},
    {"nss_tlx.nids", [] { return SMP_short_lead("NSSTLX") + SMP_message(storm_structure()); }},
    {"level2/KTLX/KTLX_20130520_2011", SMP_old_volume},
    {"level2/KTLX/KTLX_20130520_2016", SMP_new_volume},
    {"nowrad/1305202015.now", SMP_nowrad_degrees},
    {"nowrad/sector/1305202015.now", SMP_nowrad_sector},
    {"kavrad/1305202015.kav", SMP_kavrad_low},
    {"kavrad/high/1305202015.kav", SMP_kavrad_high},
    {"rrwds/TLX_1305202010.rrw", [] { return scan_of_plains(10); }},
    {"rrwds/TLX_1305202015.rrw", [] { return scan_of_plains(15); }},
    {"rrwds/PDT_1305202015.rrw", scan_of_low},
    {"mdr/13052020.rad", SMP_summary_bulletin},
    {"rcm/1305202000.rcm", SMP_rcm_file},
    {"rcm_cvt/13052020.rcm", SMP_summary_stations},
    {"native/13052020.rcm", SMP_summary_native},
    {"nc11/13052020.rad", SMP_summary_netcdf11},
    {"nc12/13052020.rad", SMP_summary_netcdf12},
    {"dpa_tlx.nids",
     [] { return SMP_long_lead("DPATLX") + SMP_message(precip_array()) + SMP_trailer(); }},
};

bool write_file(const std::filesystem::path &path, const std::string &bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    out.close();
    return bool(out);
}
} // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: write_samples FOLDER\n");
        return 2;
    }
    for (const SampleFile &file : kFiles) {
        const std::filesystem::path path = std::filesystem::path(argv[1]) / file.name;
        if (!write_file(path, file.make())) {
            fprintf(stderr, "write_samples: Unable to write file:%s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
