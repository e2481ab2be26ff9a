/* Redraw store: a list in which the kernel can record every drawing call, and the count of calls
 * that keeps a window alive during a long plot.
 *
 * Recording starts off and nothing in the program turns it on: the store is the pump of events.
 */
#pragma once

#include "kernel/object_code.h"

#include <cstddef>

/* One recorded call. */
struct GraphicsObject {
    int code = 0;
    int count = 0; // points, or the call's whole number
    void *data = nullptr;
    GraphicsObject *next = nullptr;
};

/* What an OBJ_CALL holds. */
struct ObjectCall {
    void (*proc)(void *argument);
    void *argument; // owned by the store, from malloc
};

/* Counts a call, and on every 500th runs the poll procedure.  When recording, adds an object with
 * a copy of size bytes of data (null leaves them for the caller to fill).
 * Returns the object's bytes; null when nothing was recorded, or none were asked for. */
void *gobj_new(ObjCode code, int count, size_t size, const void *data);

/* Empties the store and starts the count anew.  The environment variable `qraredraw`, or the
 * display's setting "redraw", as "no" turns recording off. */
int gobj_init();
int gobj_free();

/* The first call of the store; null when it is empty. */
const GraphicsObject *gobj_first();

/* Returns the former value. */
int gobj_set_saving(int flag);
int gobj_saving();

int gset_redraw_enabled(int flag);
int gget_redraw_enabled();

/* The procedure that looks for events; null for none. */
void gobj_set_poll(void (*poll)());
void gobj_poll(); // looks now

void gobj_reset();
