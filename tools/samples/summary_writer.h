/* Writes radar summaries in all their forms. */
#pragma once

#include "tools/samples/netcdf_writer.h"

#include <string>
#include <vector>

/* Rows from the north, a digit for each cell. */
using SampleCells = std::vector<std::string>;

struct SampleMove {
    char kind;     // "A", "L" or "C"
    int direction; // degrees, in tens
    int speed;     // knots
};

struct SampleTop {
    int height = 0; // hundreds of feet, 0 for none
    int direction = 0, range = 0;
};

/* What a station says in a summary of an MDR.  Empty texts and lists are left open. */
struct SampleMdrReport {
    std::string station;
    std::string status; // "NE", "NA", "OM", "AREA", "LINE" or "CELL"
    std::string precip; // of the letters T, Z, R, S, P, L and W
    int intensity = 0;  // 1 to 6, or 9 for unknown
    std::string trend;
    SampleTop top;
    std::vector<SampleMove> moves;
};

struct SamplePlace {
    std::string id;
    double latitude, longitude;
};

struct SampleRcmStorm {
    SamplePlace place;
    int direction, speed, top, hail;
};

struct SampleRcmReport {
    std::string station;
    int number = 0;
    std::string words; // mode and status
    int top = 0;       // hundreds of feet, 0 for none
    SamplePlace top_place = {};
    std::vector<SamplePlace> tvs, meso;
    std::vector<SampleRcmStorm> storms;
};

struct SampleSummary {
    std::string time_text = "2035Z 20 MAY 13";
    std::string digits = "2013 05 20 20 35"; // the same
    SampleCells cells;
    std::vector<SampleMdrReport> mdr;
    std::vector<SampleRcmReport> rcm;
};

/* A bulletin: reports and grid of an MDR. */
std::string SMP_mdr_bulletin(const SampleSummary &summary);

/* A station file: grid and reports of an RCM.  A native one has a line in front of that. */
std::string SMP_station_file(const SampleSummary &summary);
std::string SMP_native_summary(const SampleSummary &summary);

/* The netCDF layouts, which have reports of an MDR and a grid of 120 by 90. */
NetcdfFile SMP_summary_layout11(const SampleSummary &summary);
NetcdfFile SMP_summary_layout12(const SampleSummary &summary);
