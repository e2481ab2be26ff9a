/* Plot page: opening, closing, and the procedures a decoder lends to its window. */
#pragma once

#include "kernel/workstation.h"
#include "plot/domain.h"

/* Takes plot_param, and opens the device and a page on it, with the viewport of the data fitted to
 * an aspect (width over height) inside the margins.  Returns 0; -1 without opening when nothing is
 * to be drawn. */
int PLT_open(float aspect);

/* A new page on the open device; otherwise likewise. */
int PLT_reopen(float aspect);

/* Shows the picture, unless it goes to a picture file, and closes everything.
 *
 * A batch run detaches first.  With a file device the first process ends with the detached one, and
 * with its status; with a window it ends at once, with status 0.  A run that cannot detach closes
 * what it has and ends with status 1.  Returns 0; -1 when nothing was to be drawn. */
int PLT_close();

/* Closes the kernel and ends the process. */
[[noreturn]] void PLT_exit(int status);

/* The procedures: for events (null leaves the kernel's as it is), and for a replot after a zoom or
 * a redraw. */
using PlotProc = int (*)(Domain *domain);
void PLT_set_event_handler(EventProc proc);
void PLT_set_zoom_handler(PlotProc proc);
void PLT_set_redraw_handler(PlotProc proc);

struct PlotHandlers {
    EventProc event = nullptr;
    PlotProc zoom = nullptr;
    PlotProc redraw = nullptr;
};
const PlotHandlers *PLT_handlers();

void PLT_reset();
