/* The seams between the folders, joined: the only place that knows everyone. */
#pragma once

/* Lends the conversions of the higher modules to the resource store, and the devices to the kernel.
 * Call once, before the options are read. */
void APP_wire();
