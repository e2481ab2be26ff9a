/* Colours of radar values: a level table for a picture, and the fill of one value. */
#pragma once

#include <span>

/* Wind along the beam, as every velocity picture shows it. */
constexpr const char *RADAR_VELOCITY_COLORS =
    "-70:blue,-63:lblue,-49:cyan,-35:lcyan,-25:green,-19:lgreen,-9:dgray,0:off,1:lgray,10:yellow,"
    "20:brown,26:lred,36:red,50:lmagenta,64:magenta";

/* Fills the level table, unless the user's colours stand.  Levels that were set before stay when
 * the text has none. */
void RADAR_use_colors(const char *text);

/* The same for a wind: values below the first level take its colour, but for the flags among them,
 * which stay good while the table is in use. */
void RADAR_use_wind_colors(const char *text, std::span<const float> flags);

/* Warns where nothing will be drawn: colours without levels, as a user may give them, need an
 * interval. */
void RADAR_check_interval();

/* Makes the fill attribute of a value current.  False when the value is not drawn. */
bool RADAR_set_color(float value);

/* Draws the colour bar, when it is on, and selects transform 2. */
void RADAR_draw_bar();

void RADAR_colors_reset();
