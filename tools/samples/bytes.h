/* Big-endian values and packed bytes, of which the samples are made. */
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

std::string SMP_half(int value);   // 16 bits
std::string SMP_word(int value);   // 32 bits
std::string SMP_ieee(float value); // 32 bits
std::string SMP_halves(std::initializer_list<int> values);

std::string SMP_bzip2(const std::string &bytes); // one stream
std::string SMP_zlib(const std::string &bytes);  // one stream
std::string SMP_gzip(const std::string &bytes);  // a whole file
