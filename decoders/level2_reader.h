/* Level II archives: volume header, messages, gates.
 *
 * The reader stands on one message; its gates are read from it one after another.
 */
#pragma once

#include "decoders/level2_record.h"
#include "plot/domain.h"

/* Opens an archive, and switches the colour bar on, unless that is forbidden.  1, or 0 after a
 * message. */
int LEV2_open_file(const char *name);
void LEV2_close_file();

/* Back to the start of the file: messages come again behind the next LEV2_read_volume. */
void LEV2_rewind();

/* Time of the plot; null takes that of the file name. */
void LEV2_set_time(const DateTime *date);

/* 1: the messages are in bzip2 blocks.  A file that begins with one is read so without that too. */
void LEV2_set_compressed(int flag);

/* Reads the volume header from the start of the file and finds the radar among the cities; an
 * unknown one keeps the default place.  The missing parts of the plot time are filled.  1, or 0
 * when there is none. */
int LEV2_read_volume(Lev2Volume *volume);

/* The volume read last. */
Lev2Volume *LEV2_volume();

/* Head of the message here, and of a message of type 1 or 31 its data head.  1; 0 at the end of the
 * data, with one warning for a file whose data end before they should. */
int LEV2_read_header(Lev2Radial *radial);

/* Goes to the next message. */
void LEV2_next_message();

/* Goes to the gates of a moment in the message read last.  1, or 0 when it has none.  A spectrum
 * width is found only beside reflectivity, and its bytes are those at the pointer of that, counted
 * from the start of the data held then, not of the message. */
int LEV2_select_moment(int moment);

/* Value of the next gate: -100 below threshold or behind the end of the message, -90 folded.  dBZ,
 * or m/s. */
float LEV2_next_gate();

/* Domain of a sweep: range is half the height, in kilometres. */
void LEV2_domain(float latitude, float longitude, float range, Domain *domain);

void LEV2_reset();
