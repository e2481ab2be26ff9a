/* Writer of RRWDS scans, for the shipped samples and the inputs of tests. */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SampleScan {
    std::string radar = "TLX"; // three characters
    int range = 200;           // nautical miles, 100 or 200
    int elevation = 5;         // tenths of a degree
    int month = 5, day = 20, hour = 20, minute = 15;
    std::vector<std::vector<uint8_t>> radials; // gates of 0 to 7; up to 200, the rest is 0
};

/* The file: its header, and the radials that there are. */
std::string SMP_scan(const SampleScan &scan);

/* The national weather of NATION_dbz as the radar at a place sees it, in 360 radials. */
void SMP_fill_scan(double latitude, double longitude, SampleScan *scan);
