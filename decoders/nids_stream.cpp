#include "decoders/nids_stream.h"

#include "shell/message.h"

#include <algorithm>
#include <bzlib.h>
#include <cstring>
#include <zlib.h>

namespace {
constexpr int kBuffer = 10000;               // bytes of each buffer
constexpr int kShortFill = 1000;             // a fill below it ends the file
constexpr uint8_t kTrailer[] = "\r\r\n\x03"; // ends a transmission
constexpr size_t kTrailerSize = sizeof kTrailer - 1;
constexpr uint32_t kTrace = MSG_DEBUG_D;

/* Bytes of a packed product, ten times the largest that radars send.  A few hundred bytes can be
 * made to inflate to gigabytes. */
constexpr int64_t kMostInflated = 16'000'000;

/* What each product starts anew. */
struct Place {
    int mode = NIDS_PLAIN;
    int raw_count = 0;                // valid bytes in raw
    int raw_pos = 0;                  // next unconsumed byte of raw
    int raw_left = 0;                 // unconsumed bytes that the next fill carries over
    const uint8_t *out_end = nullptr; // of the undelivered bytes; their begin is the window's
    int last_code = 0;                // of the last inflate or BZ2_bzDecompress
    bool recheck = false;
    bool failed = false;  // libbz2 must not be called again behind an error
    int64_t made = 0;     // bytes delivered or waiting in out
    int64_t page_end = 0; // of the graphic page, as a count of delivered bytes; 0 without one
};

struct ProductStream {
    Place at;
    NidsWindow window = {}; // on out; closed while a read must look at more than the next bytes
    z_stream zlib = {};
    bool zlib_open = false;
    bz_stream bzip2 = {};
    bool bzip2_open = false;
    uint8_t raw[kBuffer] = {}; // as read from the file
    uint8_t out[kBuffer] = {}; // to be delivered
};
constinit ProductStream stream;

/* Undelivered bytes in out. */
int waiting() { return int(stream.at.out_end - stream.window.next); }

int64_t delivered() { return stream.at.made - waiting(); }

void end_streams() {
    if (stream.zlib_open)
        inflateEnd(&stream.zlib);
    if (stream.bzip2_open)
        BZ2_bzDecompressEnd(&stream.bzip2);
    stream.zlib_open = stream.bzip2_open = false;
}

/* Drops the trailer behind a short fill: in the midst of a file its bytes may be data. */
void drop_trailer(int bytes_read, int threshold) {
    Place &at = stream.at;
    if (bytes_read >= threshold - at.raw_left || at.raw_count < int(kTrailerSize))
        return;
    if (memcmp(stream.raw + at.raw_count - kTrailerSize, kTrailer, kTrailerSize) == 0)
        at.raw_count -= int(kTrailerSize);
}

/* Reads on in the file, behind what is left of the last fill.  False when there is nothing. */
bool fill(FILE *file) {
    Place &at = stream.at;
    const long file_pos = MSG_enabled(kTrace) ? ftell(file) : 0;
    memmove(stream.raw, stream.raw + at.raw_pos, size_t(at.raw_left));
    const int got = int(fread(stream.raw + at.raw_left, 1, size_t(kBuffer - at.raw_left), file));
    at.raw_count = at.raw_left + got;
    at.raw_pos = 0;
    MSG_print(kTrace, "Read: %d %d\n", int(file_pos), at.raw_count);
    if (at.raw_count < 1)
        return false;
    drop_trailer(got, kShortFill);
    return true;
}

void trace_inflate(char when, int code, unsigned in, unsigned total_in, unsigned out,
                   unsigned total_out) {
    MSG_print(kTrace, "Inflate%c %d = %d %d = %d %d\n", when, code, int(in), int(total_in),
              int(out), int(total_out));
}

/* What was in out is delivered or taken back; count bytes stand there now. */
void set_out(int count) {
    stream.at.made += count - waiting();
    stream.at.out_end = stream.out + count;
    stream.window = {stream.out, stream.out};
}

void refill_plain() {
    memcpy(stream.out, stream.raw, size_t(stream.at.raw_count));
    stream.at.raw_left = 0;
    set_out(stream.at.raw_count);
}

/* What a decompressor left: bytes made in out, bytes not taken from raw. */
void take_output(unsigned avail_out, unsigned avail_in) {
    stream.at.raw_left = int(avail_in);
    stream.at.raw_pos = stream.at.raw_count - stream.at.raw_left;
    set_out(kBuffer - int(avail_out));
}

int refill_zlib() {
    Place &at = stream.at;
    z_stream &z = stream.zlib;
    z.next_in = stream.raw + at.raw_pos;
    z.avail_in = unsigned(at.raw_count - at.raw_pos);
    z.next_out = stream.out;
    z.avail_out = kBuffer;
    trace_inflate('-', at.last_code, z.avail_in, unsigned(z.total_in), z.avail_out,
                  unsigned(z.total_out));
    at.last_code = inflate(&z, Z_PARTIAL_FLUSH);
    trace_inflate('+', at.last_code, z.avail_in, unsigned(z.total_in), z.avail_out,
                  unsigned(z.total_out));
    take_output(z.avail_out, z.avail_in);
    // No progress is an error code of its own, so a stream that stands still ends here too.
    return at.last_code < 0 || at.last_code == Z_NEED_DICT ? 0 : 1;
}

/* A bzip2 block gives nothing before it is read whole, so this reads on until it does.  The next
 * piece of the file is fetched as well when a block has just given its first bytes: what was not
 * taken of the piece before is then overwritten, and products are written as one block. */
int refill_bzip2(FILE *file) {
    Place &at = stream.at;
    bz_stream &bz = stream.bzip2;
    bz.next_in = reinterpret_cast<char *>(stream.raw);
    bz.avail_in = unsigned(at.raw_count);
    bz.next_out = reinterpret_cast<char *>(stream.out);
    bz.avail_out = kBuffer;
    while (waiting() == 0) {
        at.last_code = BZ2_bzDecompress(&bz);
        if (at.last_code < 0)
            return 0;
        take_output(bz.avail_out, bz.avail_in);
        trace_inflate('+', at.last_code, bz.avail_in, bz.total_in_lo32, bz.avail_out,
                      bz.total_out_lo32);
        at.raw_count = int(fread(stream.raw, 1, kBuffer, file));
        if (at.raw_count < 1)
            break;
        drop_trailer(at.raw_count, kBuffer);
        bz.next_in = reinterpret_cast<char *>(stream.raw);
        bz.avail_in = unsigned(at.raw_count);
    }
    return at.last_code == BZ_OK || at.last_code == BZ_STREAM_END ? 1 : 0;
}

int refill(FILE *file) {
    if (stream.at.mode == NIDS_PLAIN) {
        refill_plain();
        return 1;
    }
    if (stream.at.made > kMostInflated)
        return 0;
    return stream.at.mode == NIDS_ZLIB ? refill_zlib() : refill_bzip2(file);
}

bool start_zlib() {
    if (stream.zlib_open)
        inflateEnd(&stream.zlib);
    stream.zlib = z_stream{};
    stream.zlib_open = inflateInit(&stream.zlib) == Z_OK;
    stream.at.mode = NIDS_ZLIB;
    return stream.zlib_open;
}

bool start_bzip2() {
    if (stream.bzip2_open)
        BZ2_bzDecompressEnd(&stream.bzip2);
    stream.bzip2 = bz_stream{};
    stream.bzip2_open = BZ2_bzDecompressInit(&stream.bzip2, 0, 0) == BZ_OK;
    stream.at.mode = NIDS_BZIP2;
    return stream.bzip2_open;
}

/* The undelivered bytes are the head of a compressed stretch: they go back to be inflated. */
void move_out_to_raw() {
    Place &at = stream.at;
    memcpy(stream.raw, stream.window.next, size_t(waiting()));
    at.raw_pos = 0;
    at.raw_left = at.raw_count = waiting();
    set_out(0);
}

bool is_zlib_lead(const uint8_t *bytes) { return (bytes[0] << 8 | bytes[1]) % 31 == 0; }

/* Looks for a compressed stretch in plain bytes that wait in out. */
int detect_in_plain() {
    Place &at = stream.at;
    const uint8_t *head = stream.window.next;
    if (waiting() < 2)
        return 1;
    if (memcmp(head, "R3", 2) == 0) {
        MSG_print(kTrace, "Encrypted data\n");
        at.mode = NIDS_ENCRYPTED;
        return -1;
    }
    if (memcmp(head, "BZ", 2) == 0) {
        MSG_print(kTrace, "BZlib Compressed data\n");
        move_out_to_raw();
        return start_bzip2();
    }
    if (head[0] == 'x' && is_zlib_lead(head)) {
        MSG_print(kTrace, "Zlib Compressed data\n");
        move_out_to_raw();
        return start_zlib();
    }
    return 1;
}

/* The same in a compressed stretch.  Bytes already inflated stay, and so does the stretch, unless a
 * bzip2 lead stands in them; behind the end of a zlib stream another may follow, or plain bytes. */
int detect_in_compressed(bool stream_ended) {
    Place &at = stream.at;
    if (waiting() >= 2 && memcmp(stream.window.next, "BZ", 2) == 0) {
        MSG_print(kTrace, "BZlib Compressed data\n");
        return start_bzip2();
    }
    if (!stream_ended)
        return 1;
    if (at.raw_count - at.raw_pos >= 2 && is_zlib_lead(stream.raw + at.raw_pos)) {
        MSG_print(kTrace, "Zlib Compressed data\n");
        return start_zlib();
    }
    at.mode = NIDS_PLAIN;
    return 1;
}

/* Brings bytes into out; none may come of one call.  Returns 1, or the result of a failed read. */
int supply(FILE *file) {
    Place &at = stream.at;
    if (at.mode == NIDS_ENCRYPTED)
        return -1;
    bool stream_ended = false;
    if (waiting() == 0) {
        if (!fill(file))
            return -1;
        stream_ended = at.mode == NIDS_ZLIB && at.last_code == Z_STREAM_END;
        if (at.mode == NIDS_PLAIN)
            refill_plain();
    }
    if (at.recheck || stream_ended) {
        const int result =
            at.mode == NIDS_PLAIN ? detect_in_plain() : detect_in_compressed(stream_ended);
        if (result < 1)
            return result;
        at.recheck = false;
    }
    if (waiting() == 0 && refill(file) < 1)
        return 0;
    stream.window.end = at.out_end;
    return 1;
}

/* The same, where a failure is the end of the product. */
int supply_or_fail(FILE *file) {
    if (stream.at.failed)
        return 0;
    const int result = supply(file);
    stream.at.failed = result == 0;
    return result;
}

int read_on(uint8_t *dest, int n, FILE *file) {
    int remaining = n;
    int done = 0;
    while (remaining > 0) {
        const int result = supply_or_fail(file);
        if (result < 1)
            return result;
        const int piece = std::min(remaining, waiting());
        if (piece == 0)
            continue;
        memcpy(dest + done, stream.window.next, size_t(piece));
        stream.window.next += piece;
        done = piece; // not a sum: a third piece lands behind the length of the second
        remaining -= piece;
    }
    return 1;
}
} // namespace

int NIDS_read(void *dest, int n, FILE *file) {
    NidsWindow &window = stream.window;
    if (n > window.end - window.next)
        return read_on(static_cast<uint8_t *>(dest), n, file);
    if (n > 0) {
        memcpy(dest, window.next, size_t(n));
        window.next += n;
    }
    return 1;
}

NidsWindow *NIDS_stream_window() { return &stream.window; }

int NIDS_read_short(int16_t *dest, FILE *file) {
    uint8_t b[2] = {};
    const int result = NIDS_read(b, 2, file);
    *dest = result < 1 ? int16_t(0) : int16_t(b[0] << 8 | b[1]);
    return result;
}

int NIDS_read_int(int32_t *dest, FILE *file) {
    uint8_t b[4] = {};
    const int result = NIDS_read(b, 4, file);
    *dest = result < 1
                ? 0
                : int32_t(uint32_t(b[0]) << 24 | uint32_t(b[1]) << 16 | uint32_t(b[2]) << 8 | b[3]);
    return result;
}

int NIDS_skip_line(FILE *file) {
    uint8_t c = 0;
    int result;
    do
        result = NIDS_read(&c, 1, file);
    while (result > 0 && c != '\n');
    return result;
}

void NIDS_stream_rewind() {
    end_streams();
    stream.at = Place{};
    stream.window = {};
}

void NIDS_stream_recheck() {
    stream.at.recheck = true;
    stream.window.end = stream.window.next;
}

int NIDS_stream_mode() { return stream.at.mode; }

void NIDS_stream_open_page(int limit) { stream.at.page_end = limit > 0 ? delivered() + limit : 0; }

bool NIDS_stream_page_done() { return stream.at.page_end > 0 && delivered() >= stream.at.page_end; }

void NIDS_stream_reset() {
    end_streams();
    stream = ProductStream{};
}
