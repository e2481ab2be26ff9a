/* The bytes of a Level II archive: an area that slides over the data, inflated as it moves.
 *
 * Behind the volume header an archive is plain, or a row of bzip2 blocks, each behind its length;
 * the whole file may be gzipped.  One archive is open in the process.  No more is read and inflated
 * than the area holds.
 *
 * Offsets inside a message count from behind its prefix of 12 bytes.  A read that fails ends the
 * data: nothing more comes before the next rewind.
 */
#pragma once

#include <cstdint>

constexpr int LEV2_VOLUME_HEADER = 24; // bytes
constexpr int LEV2_PREFIX = 12;        // bytes in front of a message
constexpr int LEV2_MESSAGE_HEADER = 16;

/* Opens a file.  1, or 0. */
int LEV2_stream_open(const char *name);
void LEV2_stream_close();

/* Back to the start of the file, with an empty area.  1, or 0 when the file cannot do that. */
int LEV2_stream_rewind();

/* The volume header, at the start of the file; the first message lies behind it.  blocks: it is in
 * blocks whatever it looks like, else that shows.  1, or 0. */
int LEV2_read_volume_header(uint8_t header[LEV2_VOLUME_HEADER], bool blocks);

/* Brings the header of the message that begins here.  1, or 0 at the end of the data. */
int LEV2_begin_message();

/* Bytes of the message without its prefix, once its header tells them.  1; 0 for a size that cannot
 * be. */
int LEV2_set_message_size(int size);

/* Moves behind the message. */
void LEV2_end_message();

/* count bytes at an offset in the message, good until the next call; null when they are not there,
 * and the read has failed. */
const uint8_t *LEV2_message_bytes(int offset, int count);

/* Gates: single bytes, one after another up to the end of the message. */
struct Lev2Window {
    const uint8_t *next, *end;
};
Lev2Window *LEV2_gate_window(); // the same one always

/* Puts the window on an offset in the message, or in the area as it lies now. */
void LEV2_seek_gates(int offset);
void LEV2_seek_area(int offset);

/* More gates behind an empty window.  False at the end of the message or of the data. */
bool LEV2_more_gates();

/* True when the data ended before they should, or could not be read. */
bool LEV2_stream_failed();

/* Ends the data here: what they say cannot be. */
void LEV2_stream_fail();

void LEV2_stream_reset();
