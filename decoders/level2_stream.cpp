#include "decoders/level2_stream.h"

#include "files/stream.h"
#include "shell/message.h"

#include <algorithm>
#include <bzlib.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>
#include <zlib.h>

namespace {
constexpr int kArea = 200'000;               // bytes; the largest message has 131082
constexpr int kInput = 65'536;               // bytes of a block that are read at once
constexpr uint8_t kTrailer[] = "\r\r\n\x03"; // ends a transmission
constexpr int kTrailerSize = sizeof kTrailer - 1;
constexpr char kBlockMark[] = "BZh"; // begins a block, behind its length
constexpr size_t kBlockMarkSize = sizeof kBlockMark - 1;
constexpr int kAhead = 4 + int(kBlockMarkSize);
constexpr uint32_t kTrace = MSG_DEBUG_D;

/* Bounds on made-up files.  Blocks of half a megabyte have been met, which inflate to some
 * megabytes, and volumes of a hundred. */
constexpr int64_t kMostBlock = 8'000'000;     // bytes of a block in the file
constexpr int64_t kMostInflated = 64'000'000; // bytes of a block
constexpr int64_t kMostVolume = 512'000'000;  // bytes of a file, and of what it inflates to

/* What each rewind starts anew.  Places are offsets in the area. */
struct Place {
    int total = 0;        // valid bytes of the area
    int message = 0;      // where the message in hand begins
    int size = 0;         // its bytes without its prefix; 0 before its header is read
    int gate = -1;        // end of the window: the next gate behind it; negative without gates
    bool started = false; // the volume header is read, so that messages come
    bool ended = false;   // the file holds no more
    bool damaged = false; // nothing more comes, and that is wrong; what is in the area stays good
    bool failed = false;  // a read came that far
    bool blocks = false;
    int64_t taken = 0;      // bytes of the file
    int64_t made = 0;       // bytes that came into the area
    int64_t block_left = 0; // bytes of the block that wait in the file
    int64_t block_made = 0; // bytes inflated from the block
    int ahead_left = 0;     // bytes read too far, at the end of ahead
};

struct ArchiveStream {
    Place at;
    Lev2Window window = {};
    FILE *file = nullptr; // owned; its bytes come through zip
    gzFile zip = nullptr; // owned; reads a plain file as it is
    bool moved = false;   // the file stands behind its start
    bz_stream bzip2 = {};
    bool bzip2_open = false;
    uint8_t ahead[kAhead] = {};
    uint8_t input[kInput] = {}; // piece of a block
    uint8_t area[kArea] = {};
};
constinit ArchiveStream stream;

int message_end() { return stream.at.message + LEV2_PREFIX + stream.at.size; }

void end_bzip2() {
    if (stream.bzip2_open)
        BZ2_bzDecompressEnd(&stream.bzip2);
    stream.bzip2_open = false;
}

// ---- Bytes of the file ----

/* Up to n bytes; fewer at the end of the file. */
int read_file(uint8_t *dest, int n) {
    Place &at = stream.at;
    const int again = std::min(n, at.ahead_left);
    if (again > 0)
        memcpy(dest, stream.ahead + kAhead - at.ahead_left, size_t(again));
    at.ahead_left -= again;
    if (again == n || at.ended)
        return again;
    const int got = again + std::max(gzread(stream.zip, dest + again, unsigned(n - again)), 0);
    stream.moved = true;
    at.ended = got < n;
    at.taken += got;
    int code = Z_OK; // a gzip stream may be cut off or damaged
    if (at.ended)
        gzerror(stream.zip, &code);
    at.damaged |= code != Z_OK || at.taken > kMostVolume;
    return got;
}

bool is_trailer(const uint8_t *bytes) { return memcmp(bytes, kTrailer, kTrailerSize) == 0; }

int64_t block_length(const uint8_t bytes[4]) {
    const int64_t length =
        int32_t(uint32_t(bytes[0]) << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3]);
    return std::abs(length); // the last block of a volume has a negative one
}

// ---- Blocks ----

/* Steps to the next block.  False at the end of the file, and at a length that cannot be. */
bool open_block() {
    Place &at = stream.at;
    uint8_t head[4];
    const int got = read_file(head, sizeof head);
    if (got == 0 || (got == int(sizeof head) && is_trailer(head)))
        return false;
    at.block_left = got == int(sizeof head) ? block_length(head) : 0;
    at.block_made = 0;
    stream.bzip2 = bz_stream{};
    if (at.block_left >= 1 && at.block_left <= kMostBlock)
        stream.bzip2_open = BZ2_bzDecompressInit(&stream.bzip2, 0, 0) == BZ_OK;
    MSG_print(kTrace, "Block: %d %d - %d %d %d %d\n", int(at.block_left), got, at.message, at.size,
              at.total, kArea - at.total);
    at.damaged |= !stream.bzip2_open;
    return stream.bzip2_open;
}

/* The next piece of the block; a file that ends ends the block too. */
int read_block() {
    Place &at = stream.at;
    const int want = int(std::min<int64_t>(at.block_left, kInput));
    const int got = read_file(stream.input, want);
    at.block_left = got < want ? 0 : at.block_left - got;
    MSG_print(kTrace, "Read: %d %d - %d\n", want, got, int(at.block_left));
    return got;
}

/* Behind the stream a block may hold more, which is not data. */
void close_block() {
    end_bzip2();
    while (stream.at.block_left > 0)
        read_block();
}

/* One step of the stream; what it makes.  A damaged stream, or one that is cut off, fails: libbz2
 * must not be called again then. */
int inflate_block(uint8_t *dest, int room) {
    Place &at = stream.at;
    bz_stream &bz = stream.bzip2;
    if (bz.avail_in == 0) {
        bz.next_in = reinterpret_cast<char *>(stream.input);
        bz.avail_in = unsigned(read_block());
    }
    const bool last = bz.avail_in == 0;
    bz.next_out = reinterpret_cast<char *>(dest);
    bz.avail_out = unsigned(room);
    const int code = BZ2_bzDecompress(&bz);
    const int made = room - int(bz.avail_out);
    at.block_made += made;
    MSG_print(kTrace, "Decompress: %d %d:%d %d - %d\n", code, int(bz.avail_in), made, at.total,
              int(at.block_left));
    if (code == BZ_STREAM_END)
        close_block();
    else if (code < 0 || at.block_made > kMostInflated || (last && made == 0))
        at.damaged = true;
    return code < 0 ? 0 : made;
}

/* What one block has for the room; of the next ones when it has nothing.  Every step takes bytes of
 * the file or makes some. */
int fill_from_blocks(uint8_t *dest, int room) {
    int made = 0;
    while (made < room && !stream.at.damaged) {
        if (!stream.bzip2_open && (made > 0 || !open_block()))
            break;
        made += inflate_block(dest + made, room - made);
    }
    return made;
}

// ---- The area ----

int fill_plain(uint8_t *dest, int room) {
    const int got = read_file(dest, room);
    MSG_print(kTrace, "Read: %d %d - %d\n", room, got, stream.at.total);
    return got;
}

/* The message in hand goes to the head of the area, and what lay before it is gone. */
void slide() {
    Place &at = stream.at;
    memmove(stream.area, stream.area + at.message, size_t(at.total - at.message));
    at.total -= at.message;
    at.gate -= at.message;
    at.message = 0;
}

/* Brings bytes behind those of the area.  False when there are none. */
bool refill() {
    Place &at = stream.at;
    if (!at.started || at.failed || at.damaged)
        return false;
    slide();
    const int room = kArea - at.total;
    if (room == 0) { // a message that does not fit
        at.damaged = true;
        return false;
    }
    uint8_t *const dest = stream.area + at.total;
    const int made = at.blocks ? fill_from_blocks(dest, room) : fill_plain(dest, room);
    at.total += made;
    at.made += made;
    at.damaged |= at.made > kMostVolume;
    return made > 0;
}

/* Makes the area hold the message up to an end that counts from its first byte. */
bool reach(int end) {
    stream.at.gate = -1;
    stream.window = {};
    while (stream.at.total - stream.at.message < end)
        if (!refill())
            return false;
    return true;
}

void seek_window(int place) {
    stream.at.gate = place;
    stream.window = {};
    LEV2_more_gates();
}
} // namespace

int LEV2_stream_open(const char *name) {
    LEV2_stream_close();
    stream.file = FILE_open(name, "r");
    if (!stream.file)
        return 0;
    const int fd = dup(fileno(stream.file));
    stream.zip = fd < 0 ? nullptr : gzdopen(fd, "rb");
    if (!stream.zip) {
        if (fd >= 0)
            close(fd);
        LEV2_stream_close();
        return 0;
    }
    gzbuffer(stream.zip, kInput);
    return 1;
}

void LEV2_stream_close() {
    end_bzip2();
    if (stream.zip)
        gzclose(stream.zip);
    FILE_close(stream.file);
    stream.zip = nullptr;
    stream.file = nullptr;
    stream.moved = false;
    stream.at = Place{};
    stream.window = {};
}

int LEV2_stream_rewind() {
    end_bzip2();
    stream.at = Place{};
    stream.window = {};
    if (stream.zip && stream.moved) {
        gzclearerr(stream.zip); // an error would stay
        stream.moved = gzrewind(stream.zip) != 0;
    }
    stream.at.failed = !stream.zip || stream.moved;
    return stream.at.failed ? 0 : 1;
}

int LEV2_read_volume_header(uint8_t header[LEV2_VOLUME_HEADER], bool blocks) {
    if (!LEV2_stream_rewind() || read_file(header, LEV2_VOLUME_HEADER) < LEV2_VOLUME_HEADER) {
        stream.at.failed = true;
        return 0;
    }
    uint8_t ahead[kAhead] = {};
    const int got = read_file(ahead, kAhead);
    stream.at.ahead_left = got;
    memcpy(stream.ahead + kAhead - got, ahead, size_t(got));
    stream.at.blocks = blocks || memcmp(ahead + 4, kBlockMark, kBlockMarkSize) == 0;
    stream.at.started = true;
    return 1;
}

int LEV2_begin_message() {
    Place &at = stream.at;
    at.size = LEV2_MESSAGE_HEADER;
    if (!at.failed && reach(LEV2_PREFIX + LEV2_MESSAGE_HEADER))
        return 1;
    const int left = at.total - at.message;
    const bool trailer = left == kTrailerSize && is_trailer(stream.area + at.message);
    at.failed |= at.damaged || (left > 0 && !trailer); // else it is the end of the file
    at.size = 0;
    return 0;
}

int LEV2_set_message_size(int size) {
    stream.at.size = size;
    if (size < LEV2_MESSAGE_HEADER || LEV2_PREFIX + size > kArea) {
        stream.at.failed = true;
        return 0;
    }
    return 1;
}

void LEV2_end_message() {
    Place &at = stream.at;
    if (at.size == 0)
        return;
    const bool whole = reach(LEV2_PREFIX + at.size);
    at.failed |= !whole;
    at.message = whole ? message_end() : at.total;
    at.size = 0;
}

const uint8_t *LEV2_message_bytes(int offset, int count) {
    Place &at = stream.at;
    const bool inside = offset >= 0 && count <= at.size && offset <= at.size - count;
    if (at.failed || !inside || !reach(LEV2_PREFIX + offset + count)) {
        at.failed = true;
        return nullptr;
    }
    return stream.area + at.message + LEV2_PREFIX + offset;
}

Lev2Window *LEV2_gate_window() { return &stream.window; }

void LEV2_seek_gates(int offset) { seek_window(stream.at.message + LEV2_PREFIX + offset); }

void LEV2_seek_area(int offset) { seek_window(offset); }

bool LEV2_more_gates() {
    Place &at = stream.at;
    if (at.gate < 0)
        return false;
    while (at.gate >= at.total) // then it lies in the message, and slides along
        if (at.gate >= message_end() || !refill())
            return false;
    const int end = std::min(at.total, message_end());
    if (at.gate >= end)
        return false;
    stream.window = {stream.area + at.gate, stream.area + end};
    at.gate = end;
    return true;
}

bool LEV2_stream_failed() { return stream.at.failed; }

void LEV2_stream_fail() { stream.at.failed = true; }

void LEV2_stream_reset() {
    LEV2_stream_close();
    stream = ArchiveStream{};
}
