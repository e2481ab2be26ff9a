/* Any bytes as a window dump. */
#include "fuzz/file_of.h"
#include "image/xwd.h"
#include "shell/message.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    MSG_set_levels("none");
    const FileOf file(data, size);
    Image image;
    if (file.whole && XWD_read(file.name().c_str(), &image, 32))
        XWD_write("/dev/null", image);
    return 0;
}
