/* Any bytes as a native picture file.  What is read is written again, unless that takes long. */
#include "fuzz/file_of.h"
#include "image/native.h"
#include "plot/domain_text.h"
#include "shell/message.h"
#include "shell/resource.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    MSG_set_levels("none");
    RES_set_converter(OPT_DOMAIN, DOM_convert);
    const FileOf file(data, size);
    Image image;
    if (file.whole && IMG_read_qra(file.name().c_str(), &image, 0) > 0 &&
        image.data.size() < 100'000)
        IMG_write("/dev/null", image, int(size % 2));
    return 0;
}
