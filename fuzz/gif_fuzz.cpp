/* GIF pictures: the first byte of an input chooses between the reader, and the writer with its
 * result read back.  Most pictures are kept small, so that the time goes into the codes. */
#include "fuzz/file_of.h"
#include "image/gif.h"
#include "image/palette.h"
#include "shell/message.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static void read_picture(std::string bytes) {
    if (bytes.size() > 9 && bytes[6] != '\xff')
        bytes[7] = bytes[9] = 0; // less than 256 by 256
    const MemoryFile file(bytes);
    Image image;
    if (file.whole && GIF_read(file.name().c_str(), &image, 0) &&
        image.data.size() != size_t(image.width) * size_t(image.height))
        __builtin_trap();
}

static Image make_picture(const uint8_t *data, size_t size) {
    constexpr int kForms[][2] = {{24, 32}, {24, 24}, {16, 16}, {8, 8}, {4, 4}, {1, 1}};
    const auto &form = kForms[data[0] % std::size(kForms)];
    Image image;
    image.depth = form[0];
    image.bits_per_pixel = form[1];
    image.byte_order = data[0] >> 7;
    image.width = data[1] + 1;
    image.bytes_per_line = (image.width * form[1] + 7) / 8 + data[2] % 8;
    image.height = std::max(1, int(size - 3) / image.bytes_per_line);
    image.red_mask = 0xf800, image.green_mask = 0x7e0, image.blue_mask = 0x3ff0000f;
    image.data.assign(data + 3, data + size); // the last row may be short
    return image;
}

static void write_picture(const uint8_t *data, size_t size, int interlace) {
    const Image image = make_picture(data, size);
    ImageDisplay display;
    display.background = 0;
    for (uint32_t v = 0; v < 100; v++)
        display.table.push_back(v * 77);
    const MemoryFile file;
    Image back;
    const int written = GIF_write(file.name().c_str(), image, display, {interlace, 1});
    const int read = GIF_read(file.name().c_str(), &back, 0);
    Palette palette;
    IMG_palette(image, display, &palette);
    // The head of a single colour does not fit its table, and such a file may not be readable.
    if (!written || (palette.count > 1 && (!read || back.data != palette.pixels)))
        __builtin_trap();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 5)
        return 0;
    MSG_set_levels("none");
    if (data[0] % 4)
        read_picture(std::string(reinterpret_cast<const char *>(data + 1), size - 1));
    else
        write_picture(data + 1, size - 1, data[0] >> 4 & 1);
    return 0;
}
