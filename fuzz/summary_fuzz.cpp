/* Any bytes as a radar summary: its grid, and all its reports, forwards and a few again.  The first
 * byte of an input chooses the kind. */
#include "decoders/summary_reader.h"
#include "shell/message.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static constexpr int kKinds[] = {0, 1, 2, 3, 11, 12};

static RadarSummary summary;
static MdrReport mdr;
static RcmReport rcm;

static void read_reports(int handle, size_t size) {
    const int most = int(size) + 1; // a report has a byte
    int index = 0;
    while (RAD_read_mdr(handle, &mdr, index % 3 == 0, &index) == 0)
        if (index > most && index > 10'000)
            abort();
    for (int again = index / 2; again > 0; again /= 2) {
        int at = again;
        if (RAD_read_mdr(handle, &mdr, 0, &at) != 0 || at != again + 1)
            abort();
    }
    RAD_start_reports(handle);
    index = 0;
    while (RAD_read_rcm(handle, &rcm, 0, &index) == 0)
        if (rcm.storm_count > RCM_STORMS || rcm.tvs_count > RCM_TVS || rcm.meso_count > RCM_MESOS)
            abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1)
        return 0;
    MSG_set_levels("none");
    const int fd = memfd_create("summary", 0);
    if (write(fd, data + 1, size - 1) != ssize_t(size - 1))
        abort();
    int kind = kKinds[data[0] % 6];
    const int handle = RAD_open(("/proc/self/fd/" + std::to_string(fd)).c_str(), 0, &kind);
    if (handle >= 0) {
        RAD_read_grid(handle, &summary);
        read_reports(handle, size);
        RAD_close(handle);
    }
    close(fd);
    return 0;
}
