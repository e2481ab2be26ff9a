/* Metafiles, replayed into a document that nobody keeps.  The first byte of an input chooses
 * between the records as they are, behind a first line, and the whole of a file. */
#include "fuzz/file_of.h"
#include "kernel/devices.h"
#include "kernel/gph.h"
#include "kernel/meta_reader.h"
#include "kernel/workstation.h"
#include "shell/message.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static constexpr size_t kMostOfOne = 1 << 16; // bytes

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0 || size > kMostOfOne)
        return 0;
    MSG_set_levels("none");
    gregister_devices();
    gopen_ws(1, data[0] & 1 ? "/dev/null,color" : "/dev/null,epsf", WS_PS);
    const std::string records(reinterpret_cast<const char *>(data + 1), size - 1);
    const MemoryFile file((data[0] & 2 ? "QRAMETA\n" : "") + records);
    if (file.whole)
        gread_metafile(file.name().c_str());
    gclose_ws(1);
    return 0;
}
