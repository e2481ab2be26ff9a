/* Writers of national mosaics, for the shipped samples and the inputs of tests. */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/* Levels of a grid's cells, row by row from the north. */
using MosaicRows = std::vector<std::vector<uint8_t>>;

/* Header of a NOWRad mosaic: the texts as they are sent, angles in radians. */
struct SampleNowrad {
    int rows = 0, columns = 0;
    std::string product = "NOWrad Master       20:15 20-May-2013"; // up to 80 bytes
    char kind = 'C';
    std::string grid; // of the projection
};
std::string SMP_nowrad_header(const SampleNowrad &header); // without the tag of the first line

/* A line of whole runs, behind its tag; levels 0 to 15. */
std::string SMP_nowrad_line(int number, const std::vector<uint8_t> &levels);

/* A tag that no line follows. */
std::string SMP_nowrad_end();

struct SampleKavrad {
    char mode = ' ';                   // 'C' for the coarser scale
    std::string time = "201500200513"; // hour to second, day, month, year
    bool low = true;                   // resolution
    int16_t word1 = 0, word2 = 0;
};
std::string SMP_kavrad_header(const SampleKavrad &header); // 2048 bytes

/* Runs of a row; levels 0 to 63.  The last cell goes without saying: a row of the grid ends with
 * the last but one. */
std::string SMP_kavrad_row(const std::vector<uint8_t> &levels);

std::string SMP_kavrad_end();
