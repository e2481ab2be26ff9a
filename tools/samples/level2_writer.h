/* Writers of Level II archives, for the shipped samples and the inputs of tests. */
#pragma once

#include "tools/samples/bytes.h"

#include <string>
#include <vector>

/* Gates of one moment: a byte each, 0 below threshold, 1 folded. */
struct SampleMoment {
    std::string name; // "REF", "VEL", "SW ", "ZDR"
    int first = 0;    // metres to the first gate
    int spacing = 1000;
    float scale = 2.0f, offset = 66.0f; // value is (byte - offset) / scale
    std::string gates;
};

struct SampleRay {
    std::string radar = "KTLX";
    int date = 15846;    // 1 January 1970 is 1
    int time = 72965000; // milliseconds since midnight
    int number = 1;      // of the azimuth
    int status = 1;      // 0 begins a sweep, 2 ends it, 3 begins the volume, 4 ends it
    double azimuth = 0.0, elevation = 0.5; // degrees
    int elevation_number = 1;
    int vcp = 12;
    std::vector<SampleMoment> moments; // message 1 has the first of "REF" and "VEL" alone
};

/* The 24 bytes in front of a volume. */
std::string SMP_volume_header(const std::string &radar, int date, int time);

/* Messages with their prefix.  SMP_message31 points to the blocks in the order of the moments. */
std::string SMP_message1(const SampleRay &ray);
std::string SMP_message31(const SampleRay &ray);
std::string SMP_other_message(int type); // of 2432 bytes, that a plot has no use for

/* A bzip2 block behind its length, which may be negative. */
std::string SMP_level2_block(const std::string &messages, bool negative = false);
