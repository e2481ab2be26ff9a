/* Workstations: which device, opening and closing, type tests, sizes, notes.
 *
 * One workstation is open at a time; the number that callers pass for it is not looked at.
 */
#pragma once

enum WsType {
    WS_NONE = 0, // not chosen yet: ask the user
    WS_X11 = 1,
    WS_META = 3,
    WS_PS = 4,
    WS_HPGL = 5,
    WS_X11_ATTACHED = 6
};

/* Workstation type of the first letter of a `device` text. */
int gdevice_code(const char *text);

/* Converter of the `device` resource: slot PAR_DEVICE, and into dest (a const char **) the text
 * behind the first comma, where there is one.  Returns 1; or 0 with a null dest, and does nothing
 * then. */
int gdevice_convert(const char *text, void *dest);

/* connection is the device text behind the type: a target or a display, then words of the device.
 * 0, or -1 after a report. */
int gopen_ws(int ws, const char *connection, int type);

/* 0, or -1 when none is open. */
int gclose_ws(int ws);

/* Restores attributes and transforms: at an opening, stage 0 on a window, 2 PostScript, 3 HPGL,
 * 4 metafile; stage 1 after a window changed its size.  0; -1 for stage -1, which does nothing. */
int ginit_ws(int stage);
int gclear_ws(int ws, int flag);

/* Shows what was drawn; a window waits for the user. */
int gshow_ws(int ws);

/* A note to the document: a comment in PostScript, a record in a metafile. */
int gmessage(int ws, const char *text);

int gis_x11_window();
int gis_x11_attached();
int gis_x11();
int gis_ps();
int gis_hpgl();
int gis_meta();
int gis_open();
int gis_incomplete(); // the document closed last could not be written in full
int gget_ws_type();
int gset_ws_type(int type);

/* The drawing area in device units, and its offset. */
int gget_ws_dims(int *w, int *h);
int gget_ws_offset(int *x, int *y);
int gset_ws_size(int w, int h);
int gdepth();

/* Names for windows and documents: X resource name (31 characters) and title (59). */
void gset_names(const char *name, const char *title);
const char *gget_x_name();
const char *gget_title();

/* The procedure of the layers above that is told what happens in a window: a place in world
 * coordinates, what kind of event (EventKind), and its name; null for none. */
using EventProc = void (*)(float x, float y, int kind, const char *name);
int gset_event_call(EventProc proc);
EventProc gget_event_call();

void gworkstation_reset();
