/* Radar summaries of the invented evening over the United States, in each of their forms. */
#pragma once

#include <string>

std::string SMP_summary_bulletin();
std::string SMP_summary_stations();
std::string SMP_summary_native();
std::string SMP_summary_netcdf11();
std::string SMP_summary_netcdf12();
