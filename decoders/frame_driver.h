/* The skeleton of every plot: names, pages, frames, and an end for each.
 *
 * A decoder lends its own steps; the driver opens the page, runs through the files of the series
 * and closes.
 */
#pragma once

#include "files/date_time.h"
#include "plot/domain.h"
#include "plot/page.h"

#include <cstdint>

/* What differs between the inputs. */
struct PlotSteps {
    void (*prepare)();             // before the first page: options of the input
    void (*opened)() = [] {};      // behind it, with the first file looked at: overlays
    int (*open)(const char *name); // one file: 1, or 0 after a message
    void (*draw)();                // one picture of the file now open
    void (*close)();               //
    void (*begin)(const Domain *domain) = [](const Domain *) {}; // of the plot, each page of it
    DateTime *(*time)();                                         // time the plot is asked for
    const Domain *(*data_domain)();                              // of the file opened last
    PlotProc plot;     // the entry itself: replots after a zoom
    EventProc pointer; // events of the window
    void (*found)(int64_t newest, const char *name) = [](int64_t, const char *) {}; // by a refresh
    bool (*refreshes)() = [] { return false; }; // looks for new data every minute
    bool looks_first = true; // at the first file before the page, also where the domain is set
};

/* Plots the series of files.  An unset domain takes the data's own.  A single file that cannot be
 * opened ends the process with status 10; in a series it is passed over.  Returns 0. */
int FRAME_plot(const PlotSteps &steps, Domain *domain);

/* Looks for the newest file and draws it, as the last frame of a loop or in place of the picture.
 * Returns 0. */
int FRAME_refresh(Domain *domain);

/* Seconds of the last file seen, rounded down to a multiple of the step. */
int64_t FRAME_last_seen();

void FRAME_reset();
