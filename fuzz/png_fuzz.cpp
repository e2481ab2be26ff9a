/* Any bytes as a PNG file, its checksums made to fit: damage shall reach what lies behind them. */
#include "fuzz/file_of.h"
#include "image/png_file.h"
#include "shell/message.h"

#include <zlib.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static uint32_t word(const uint8_t *at) {
    return uint32_t(at[0]) << 24 | uint32_t(at[1]) << 16 | uint32_t(at[2]) << 8 | at[3];
}

/* A chunk is its length, a name of 4 bytes, as many bytes as the length says, and the checksum. */
static void fit_checksums(std::vector<uint8_t> *bytes) {
    for (size_t at = 8; at + 12 <= bytes->size();) {
        uint8_t *chunk = bytes->data() + at;
        const size_t length = word(chunk);
        if (length > bytes->size() - at - 12)
            return;
        const uLong sum = crc32(0, chunk + 4, uInt(length + 4));
        for (int i = 0; i < 4; i++)
            chunk[8 + length + size_t(i)] = uint8_t(sum >> (24 - 8 * i));
        at += length + 12;
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    MSG_set_levels("none");
    std::vector<uint8_t> bytes(data, data + size);
    fit_checksums(&bytes);
    const FileOf file(bytes.data(), bytes.size());
    Image image;
    if (file.whole)
        PNG_read(file.name().c_str(), &image, 0);
    return 0;
}
