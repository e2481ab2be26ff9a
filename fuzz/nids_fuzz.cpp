/* Any bytes as a NIDS product, read to their end with all packets and the graphic block. */
#include "tests/decoders/nids_input.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    NidsInput in(std::string_view(reinterpret_cast<const char *>(data), size));
    if (in.read_product())
        NIDS_count_product(in.file);
    return 0;
}
