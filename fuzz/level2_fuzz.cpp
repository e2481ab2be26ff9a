/* Any bytes as a Level II archive, read to its end with all gates.  The first byte of an input
 * chooses its form: as it is, with blocks asked for or not, or packed into blocks. */
#include "decoders/level2_reader.h"
#include "fuzz/file_of.h"
#include "shell/message.h"

#include <bzlib.h>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static constexpr int kMostMessages = 500'000; // an archive has no more in its 512 megabytes

static std::string block(const std::string &bytes) {
    std::string packed(bytes.size() + bytes.size() / 50 + 700, '\0');
    unsigned size = unsigned(packed.size());
    BZ2_bzBuffToBuffCompress(packed.data(), &size, const_cast<char *>(bytes.data()),
                             unsigned(bytes.size()), 1, 0, 0);
    packed.resize(size);
    const char length[] = {0, char(size >> 16), char(size >> 8), char(size)};
    return std::string(length, 4) + packed;
}

/* Two blocks behind the volume header. */
static std::string in_blocks(const std::string &bytes) {
    const std::string header = bytes.substr(0, 24), body = bytes.substr(header.size());
    return header + block(body.substr(0, body.size() / 2)) + block(body.substr(body.size() / 2));
}

static void read_archive(const char *name, int compressed) {
    Lev2Volume volume;
    Lev2Radial radial;
    LEV2_set_compressed(compressed);
    if (!LEV2_open_file(name) || !LEV2_read_volume(&volume))
        return;
    for (int messages = 0; LEV2_read_header(&radial); LEV2_next_message()) {
        if (++messages > kMostMessages)
            abort();
        for (int moment = 0; moment < 3; moment++)
            if (LEV2_select_moment(moment))
                for (int i = 0; i < (moment ? radial.vel_gates : radial.ref_gates); i++)
                    LEV2_next_gate();
    }
    LEV2_close_file();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1)
        return 0;
    MSG_set_levels("none");
    std::string bytes(reinterpret_cast<const char *>(data + 1), size - 1);
    if (data[0] % 4 == 3)
        bytes = in_blocks(bytes);
    const MemoryFile archive(bytes);
    if (archive.whole)
        read_archive(archive.name().c_str(), data[0] % 2);
    return 0;
}
