/* Lengths of a radar's own map: nautical miles in the units of a plot. */
#pragma once

constexpr double RADAR_KM_PER_MILE = 1.852; // nautical

/* What a spacing of so many nautical miles is on the polar map around a radar: hundreds of
 * kilometres, times the map scale there. */
float RADAR_spacing(float latitude, float longitude, float miles);
