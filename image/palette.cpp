#include "image/palette.h"

#include "shell/message.h"

#include <algorithm>
#include <array>
#include <bit>

namespace {
/* Where each colour stands in the palette, by pixel value: open slots, four to an entry. */
constexpr int kSlotBits = 10;
using PaletteSlots = std::array<int16_t, 1 << kSlotBits>;

/* A component of a true-colour pixel. */
struct PaletteMask {
    uint32_t mask = 0;
    int low = 0;  // position of the lowest bit
    int bits = 0; // that are set
};

struct PaletteSearch {
    const Image &image;
    const ImageDisplay &display;
    const std::vector<uint32_t> &kept; // pixel values that always have room, sorted
    Palette *palette;
    PaletteSlots slots{};
    PaletteMask red{}, green{}, blue{};
    int others = PALETTE_MAX; // room for what is not in kept
    int lost = 0;             // 1: a colour found no room
};
} // namespace

static uint32_t little(const uint8_t *at, int bytes) {
    uint32_t value = 0;
    for (int i = bytes; i-- > 0;)
        value = value << 8 | at[i];
    return value;
}

static uint32_t big(const uint8_t *at, int bytes) {
    uint32_t value = 0;
    for (int i = 0; i < bytes; i++)
        value = value << 8 | at[i];
    return value;
}

/* Bits from one pixel to the next; 0 for a depth that no picture has. */
static int pixel_step(const Image &image) {
    if (image.bits_per_pixel == 32)
        return 32;
    switch (image.depth) {
    case 15:
        return 16;
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
        return image.depth;
    default:
        return 0;
    }
}

uint32_t IMG_pixel(const Image &image, int x, int y) {
    const int step = pixel_step(image);
    if (!step || x < 0 || x >= image.width || y < 0 || y >= image.height)
        return 0;
    const int64_t bit = int64_t(x) * step;
    const int64_t line = int64_t(y) * image.bytes_per_line;
    const int64_t end = bit + step;
    if (end > int64_t(image.bytes_per_line) * 8 ||
        line + (end + 7) / 8 > int64_t(image.data.size()))
        return 0;
    const uint8_t *at = image.data.data() + line + bit / 8;
    switch (step) {
    case 32: // three bytes of colour, the fourth is not used
        return image.byte_order ? big(at + 1, 3) : little(at, 3);
    case 24:
    case 16:
        return image.byte_order ? big(at, step / 8) : little(at, step / 8);
    case 4:
        return x % 2 ? *at & 15 : *at >> 4;
    case 1:
        return *at >> (x % 8) & 1;
    default:
        return *at;
    }
}

static PaletteMask component_mask(uint32_t mask) {
    return {mask, mask ? std::countr_zero(mask) : 0, std::popcount(mask)};
}

/* The component scaled to 8 bits. */
static uint8_t component(uint32_t value, const PaletteMask &m) {
    const uint32_t bits = (value & m.mask) >> m.low;
    return uint8_t(m.bits > 8 ? bits >> (m.bits - 8) : bits << (8 - m.bits));
}

static void new_entry(PaletteSearch *search, uint32_t value) {
    Palette &palette = *search->palette;
    const Image &image = search->image;
    const int i = palette.count++;
    palette.value[i] = value;
    if (search->display.background == int64_t(value))
        palette.transparent = i;
    if (!image.colormapped) {
        palette.r[i] = component(value, search->red);
        palette.g[i] = component(value, search->green);
        palette.b[i] = component(value, search->blue);
        return;
    }
    const size_t at = size_t(value) * 3;
    if (at + 3 > image.colors.size())
        return; // a pixel without a colour is black
    palette.r[i] = uint8_t(int(image.colors[at] * 255.0f));
    palette.g[i] = uint8_t(int(image.colors[at + 1] * 255.0f));
    palette.b[i] = uint8_t(int(image.colors[at + 2] * 255.0f));
}

/* Index of a pixel value, which is entered when it is new and there is room. */
static int palette_index(PaletteSearch *search, uint32_t value) {
    Palette &palette = *search->palette;
    size_t at = (value * 2654435761u) >> (32 - kSlotBits);
    while (search->slots[at] >= 0 && palette.value[search->slots[at]] != value)
        at = (at + 1) % search->slots.size();
    if (search->slots[at] >= 0)
        return search->slots[at];
    const bool kept = std::binary_search(search->kept.begin(), search->kept.end(), value);
    if (palette.count == PALETTE_MAX || (!kept && search->others < 1)) {
        search->lost = 1;
        return 0;
    }
    if (!kept)
        search->others--;
    search->slots[at] = int16_t(palette.count);
    new_entry(search, value);
    return palette.count - 1;
}

/* Pixels that the bytes of a line hold, which may be more than the width. */
static int64_t line_pixels(const Image &image) {
    const int step = pixel_step(image);
    return step ? int64_t(image.bytes_per_line) * 8 / step : 0;
}

/* Returns 1, or 0 when a colour found no room. */
static int fill_palette(const Image &image, const ImageDisplay &display,
                        const std::vector<uint32_t> &kept, Palette *palette) {
    *palette = Palette{};
    PaletteSearch search{image, display, kept, palette};
    search.slots.fill(-1);
    search.others = std::max(0, PALETTE_MAX - int(kept.size()));
    search.red = component_mask(image.red_mask);
    search.green = component_mask(image.green_mask);
    search.blue = component_mask(image.blue_mask);
    if (image.width < 1 || image.height < 1)
        return 1;
    palette->pixels.resize(size_t(image.width) * size_t(image.height));
    uint8_t *out = palette->pixels.data();
    uint32_t last = IMG_pixel(image, 0, 0);
    int index = palette_index(&search, last);
    for (int y = 0; y < image.height; y++) {
        for (int x = 0; x < image.width; x++) {
            const uint32_t value = IMG_pixel(image, x, y);
            if (value != last)
                index = palette_index(&search, value);
            last = value;
            *out++ = uint8_t(index);
        }
        if (y == 0 && line_pixels(image) > image.width)
            palette_index(&search, 0); // what fills up the lines has an entry, too
    }
    return !search.lost;
}

/* The values of the colour table that occur in the picture, sorted. */
static std::vector<uint32_t> table_in_use(const Image &image, std::vector<uint32_t> table) {
    std::sort(table.begin(), table.end());
    table.erase(std::unique(table.begin(), table.end()), table.end());
    std::vector<uint8_t> seen(table.size());
    uint32_t last = ~IMG_pixel(image, 0, 0);
    for (int y = 0; y < image.height; y++)
        for (int x = 0; x < image.width; x++) {
            const uint32_t value = IMG_pixel(image, x, y);
            if (value == last)
                continue;
            last = value;
            const auto at = std::lower_bound(table.begin(), table.end(), value);
            if (at != table.end() && *at == value)
                seen[size_t(at - table.begin())] = 1;
        }
    size_t used = 0;
    for (size_t i = 0; i < table.size(); i++)
        if (seen[i])
            table[used++] = table[i];
    table.resize(used);
    return table;
}

void IMG_palette(const Image &image, const ImageDisplay &display, Palette *palette) {
    if (!image.colormapped) {
        const PaletteMask red = component_mask(image.red_mask);
        const PaletteMask green = component_mask(image.green_mask);
        const PaletteMask blue = component_mask(image.blue_mask);
        MSG_print(MSG_DEBUG, "mask: %d-%d %d-%d %d-%d\n", red.low, red.bits, green.low, green.bits,
                  blue.low, blue.bits);
    }
    if (!fill_palette(image, display, {}, palette)) {
        const std::vector<uint32_t> kept = table_in_use(image, display.table);
        if (!kept.empty())
            fill_palette(image, display, kept, palette);
    }
    MSG_print(MSG_DEBUG, "num_color: %d\n", palette->count);
}
