/* Writers of NIDS products, for the shipped samples and the inputs of tests.
 *
 * A product is put together from the inside: packets, blocks of them, the message, and around it
 * what a transmission adds.  All results are the bytes as they stand in a file.
 */
#pragma once

#include "tools/samples/bytes.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

using LevelRow = std::vector<uint8_t>; // a level to a bin or cell

/* A radial packet.  The levels are 0 to 15 or 0 to 255, as the packet wants. */
struct SampleRadials {
    int first_bin = 0;
    int scale = 1000; // of the range, thousandths
    int start = 0;    // azimuth of the first radial, tenths of a degree
    int delta = 10;   // width of each, tenths of a degree
    std::vector<LevelRow> radials;
};
std::string SMP_radials(const SampleRadials &data);         // 4-bit runs
std::string SMP_digital_radials(const SampleRadials &data); // a byte to a bin

/* A raster packet, by its code; levels 0 to 15. */
std::string SMP_raster(unsigned code, const std::vector<LevelRow> &rows);

/* A raster with one run to two bytes: runs up to 255, and levels whose high half counts hundreds.
 */
std::string SMP_packed_raster(const std::vector<LevelRow> &rows);

/* A digital precipitation array; levels 0 to 255. */
std::string SMP_precip_array(const std::vector<LevelRow> &rows);

struct SampleVector {
    int x1, y1, x2, y2;
};
std::string SMP_vectors(const std::vector<SampleVector> &vectors);
std::string SMP_valued_vectors(int value, const std::vector<SampleVector> &vectors);

struct SampleWind {
    int value, x, y, direction, speed;
};
std::string SMP_winds(const std::vector<SampleWind> &winds);

std::string SMP_text(unsigned code, int value, int i, int j, const std::string &text);

/* A packet of which a reader knows the length only. */
std::string SMP_opaque(unsigned code, const std::string &bytes);

/* Blocks, of layers and pages that are packets one after the other. */
std::string SMP_symbology(const std::vector<std::string> &layers);
std::string SMP_graphic(const std::vector<std::string> &pages);

/* One storm of the table in a graphic block. */
struct SampleStorm {
    std::string id;
    int azimuth, range; // degrees, nautical miles
    bool tvs, meso;
    int posh, poh;    // per cent
    double hail_size; // inches
    int vil, dbz;
    double height, top; // thousands of feet
    int direction, speed;
};
enum class StormTable { Words, Columns }; // the older form and the newer
std::vector<std::string> SMP_storm_pages(StormTable form, const std::vector<SampleStorm> &storms);

/* Message header and description, and the blocks behind them; an empty block is left out. */
struct SampleProduct {
    int code = 19;
    int source = 1;
    int latitude = 35333; // thousandths of a degree
    int longitude = -97278;
    int height = 1277; // feet
    int op_mode = 2;
    int date = 15846; // 1 January 1970 is 1
    int time = 72965; // seconds
    int elevation_number = 1;
    std::array<int, 11> p = {}; // p[1] to p[10]
    std::array<int, 16> levels = {};
    std::string symbology;
    std::string graphic;
};
std::string SMP_message(const SampleProduct &product);

/* The same with the blocks in one bzip2 stream behind the description. */
std::string SMP_bzip2_message(const SampleProduct &product);

/* Around a message.  name is the kind and the site, such as "N0RTLX". */
std::string SMP_short_lead(const std::string &name); // two lines
std::string SMP_long_lead(const std::string &name);  // four lines
std::string SMP_trailer();

/* A message behind a text header of its own, in zlib streams of so many bytes each. */
std::string SMP_zlib_frames(const std::string &name, const std::string &message,
                            size_t frame = 4000);
