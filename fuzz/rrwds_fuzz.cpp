/* Any bytes as an RRWDS scan of a known radar, read to the last radial.  The gates of each radial
 * must be those that its bits tell one by one, and those of the bytes left behind the end. */
#include "decoders/rrwds_reader.h"
#include "fuzz/file_of.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/mman.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static constexpr size_t kHeader = 12, kRadial = 80, kFirstGate = 4;

/* A database of the one radar, so that no input ends the process. */
static bool make_stations() {
    constexpr char kPlace[] = "Place OK US TLX 1 35.3 -97.3 390 99999 0\n";
    const int fd = memfd_create("stations", 0);
    if (write(fd, kPlace, sizeof kPlace - 1) != ssize_t(sizeof kPlace - 1))
        abort();
    RES_set("city_file", ("/proc/self/fd/" + std::to_string(fd)).c_str());
    MSG_set_levels("none");
    return true;
}

static void compare(const uint8_t levels[RRWDS_GATES], const uint8_t *radial) {
    for (size_t gate = 0; gate < RRWDS_GATES; gate++) {
        int level = 0;
        for (size_t bit = 0; bit < 3; bit++) {
            const size_t at = 3 * gate + bit;
            level |= (radial[kFirstGate + at / 8] >> at % 8 & 1) << bit;
        }
        if (level != levels[gate])
            abort();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    [[maybe_unused]] static const bool ready = make_stations();
    if (size < kHeader)
        return 0;
    std::string bytes(reinterpret_cast<const char *>(data), size);
    memcpy(bytes.data(), "TLX", 3);
    const FileOf file(reinterpret_cast<const uint8_t *>(bytes.data()), size);
    if (!file.whole)
        return 0;
    RRWDS_set_time(nullptr);
    RRWDS_open_file(file.name().c_str());
    uint8_t levels[RRWDS_GATES], radial[kRadial] = {};
    for (size_t i = 0; i < RRWDS_RADIALS; i++) {
        RRWDS_next_radial(levels);
        const size_t at = kHeader + i * kRadial;
        if (at < size)
            memcpy(radial, data + at, std::min(kRadial, size - at));
        if (at < size + kRadial) // behind it all are alike
            compare(levels, radial);
    }
    RRWDS_close_file();
    return 0;
}
