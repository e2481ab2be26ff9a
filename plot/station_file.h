/* Plot of a raw text file of stations: the "rf:" entries of a map list. */
#pragma once

/* Plots "file[:column[:format]]": what a column holds, or the name of a column, "2" for the
 * identifiers; without a column every value of a record, each by the format that its column has in
 * the file.  The format is one of PLOT_parse_format, under those of columns and entries.  So
 * "stations.raw", "stations.raw:temp:ul:co=red", "stations.raw:2:lc", "stations.raw::co=cyan".
 *
 * A record without a position stands where the station list has its identifier, and is left out
 * when that does not know it.  On a row of categories it stands at its number, as high as the
 * second number of its position or else its value, with names under the plot.  With labels the
 * title of the file and its time become labels of the plot, and an `identifier` that is a query
 * chooses the records.  0, or -1 when the file cannot be read. */
int PLOT_file(const char *name, int labels);
