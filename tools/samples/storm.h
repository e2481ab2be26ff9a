/* An afternoon of weather around a radar, invented: a supercell with a hook, a squall line, and
 * rain between and behind them.  A function of place alone, so every product shows the same storm.
 *
 * x and y in kilometres from the radar, east and north.
 */
#pragma once

/* Reflectivity of the lowest sweep, dBZ; below 0 where there is next to nothing. */
double STORM_dbz(double x, double y);

/* Largest reflectivity of the column. */
double STORM_column_dbz(double x, double y);

/* Wind along the beam, knots, away from the radar positive. */
double STORM_velocity(double x, double y);

/* Rain of the last hour, inches. */
double STORM_rain(double x, double y);
