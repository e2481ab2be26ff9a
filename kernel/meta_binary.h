/* Binary encoding of CGM: commands and parameters as words of 16 bits, the high byte first. */
#pragma once

#include "kernel/point.h"

#include <string_view>

constexpr int CGM_LONG = 31;        // length that stands for one in a word of its own
constexpr int CGM_MOST = 32767;     // bytes of parameters; a longer list would come in parts
constexpr int CGM_COMMAND_ROOM = 4; // bytes
constexpr int CGM_POINT_ROOM = 4;

struct CgmCommand {
    int number, id; // class and element
};
constexpr CgmCommand CGM_CLIP = {3, 5};
constexpr CgmCommand CGM_POLYLINE = {4, 1};
constexpr CgmCommand CGM_END_PICTURE = {0, 5};

/* Each writes at out and returns the place behind. */

/* length is the bytes of parameters, 0 to 31.  A second word holds extra, when that is above 0 or
 * length is CGM_LONG. */
char *gcgm_command(char *out, CgmCommand command, int length, int extra);
char *gcgm_word(char *out, int value); // cut at the ends of 16 bits
char *gcgm_point(char *out, Point at); // cut to whole numbers

/* What a file begins with, up to the body of its picture. */
std::string_view gcgm_header();
