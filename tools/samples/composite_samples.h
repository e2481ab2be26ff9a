/* The evening over the United States as national mosaics. */
#pragma once

#include <string>

std::string SMP_nowrad_degrees(); // rows of latitude, kind "C"
std::string SMP_nowrad_sector();  // a conic grid, kind "L"
std::string SMP_kavrad_low();     // the finer scale of values
std::string SMP_kavrad_high();    // the coarser one
