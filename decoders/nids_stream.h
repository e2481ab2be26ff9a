/* Product stream: the bytes of a NIDS file, inflated as they come.
 *
 * A file is plain, or zlib streams behind a text lead, or plain up to the end of the product
 * description and bzip2 from there on; a caller sees the bytes of the product alone.  The four
 * bytes that a transmission puts behind a product are dropped.  Values are big-endian.
 *
 * One stream is current in the process.  A result below 1 ends the data: -1 at the end of the file
 * or in front of encrypted data, 0 when inflating failed; it stays so up to the next rewind.  A
 * file position of the caller refers to the file, which runs ahead of the stream by what is
 * buffered here.
 */
#pragma once

#include <cstdint>
#include <cstdio>

/* Delivers n bytes.  A failed read may have filled a part of them. */
int NIDS_read(void *dest, int n, FILE *file);

/* One value in host order; 0 at a failed read. */
int NIDS_read_short(int16_t *dest, FILE *file);
int NIDS_read_int(int32_t *dest, FILE *file);

/* Reads up to and with the next line feed.  A failed read ends it, and is its result. */
int NIDS_skip_line(FILE *file);

/* The bytes at hand: who reads many single ones may take them here, and advances next.  An empty
 * window says nothing of the end of the data, only that the next byte needs a read. */
struct NidsWindow {
    const uint8_t *next, *end;
};
NidsWindow *NIDS_stream_window(); // the same one always

/* The next read starts anew, at the place where the file stands then. */
void NIDS_stream_rewind();

/* The next read looks for a compressed stretch, first in the bytes that are not delivered yet. */
void NIDS_stream_recheck();

enum NidsStreamMode { NIDS_PLAIN = 0, NIDS_ZLIB = 1, NIDS_ENCRYPTED = 2, NIDS_BZIP2 = 3 };
int NIDS_stream_mode(); // of the bytes delivered last

/* A graphic page of limit bytes begins here; 0 or less: it has no end. */
void NIDS_stream_open_page(int limit);
bool NIDS_stream_page_done(); // true once the bytes of the page are delivered

void NIDS_stream_reset();
