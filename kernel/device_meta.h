/* Metafiles: drawing calls as text records in world coordinates, or the lines of a plot in the
 * binary encoding of CGM.
 */
#pragma once

#include "kernel/device.h"

#include <cstdio>

extern const Device kMetaDevice;

/* Opens a target: "|" a command, "+" appends.  Null when it can't be opened. */
FILE *gmeta_open(const char *target);

int gmeta_header();
int gmeta_close(); // 0, -1 without a file

/* Writes in the text form only. */
int gmeta_printf(const char *format, ...) __attribute__((format(printf, 1, 2)));

/* A command of the binary form: a second word, of extra, stands behind the first when extra is
 * above 0 or length is 31. */
int gmeta_command(int number, int id, int length, int extra);
int gmeta_point(float x, float y); // of the world, in the binary form

int gset_meta_binary(int flag); // 0
int gget_meta_binary();
