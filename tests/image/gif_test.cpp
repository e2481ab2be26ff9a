#include "image/gif.h"
#include "image/palette.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

/* The last bit is set from 256 on. */
static uint32_t color_of(uint32_t k) { return k % 256 * 0xfe00 | k % 128 << 1 | k >> 8; }

/* Every colour once, then stripes, or noise that makes new strings all the time. */
static Image make_image(int width, int height, uint32_t colors, int noise) {
    Image image;
    image.width = width, image.height = height, image.bytes_per_line = width * 4;
    image.depth = 24, image.bits_per_pixel = 32;
    image.red_mask = 0xff0000, image.green_mask = 0xff00, image.blue_mask = 0xff;
    uint32_t random = 1;
    for (uint32_t i = 0; i < uint32_t(width * height); i++) {
        random = random * 1664525 + 1013904223;
        const uint32_t v = color_of((i < colors ? i : noise ? random >> 8 : i / 50) % colors);
        for (uint32_t byte : {0x77u, v >> 16, v >> 8, v}) // the first is not used
            image.data.push_back(uint8_t(byte));
    }
    return image;
}

static std::string read_back(const std::string &path) {
    Image image;
    EXPECT_EQ(GIF_read(path.c_str(), &image, 0), 1);
    std::string colors;
    for (size_t index : image.data)
        for (size_t k = 0; k < 3; k++)
            colors += char(int(image.colors[3 * index + k] * 255.0f)); // exact for bytes
    return colors;
}

static std::string read_by_giftopnm(const Scratch &scratch) {
    EXPECT_EQ(system(("cd " + scratch.dir.string() + "; giftopnm a | ppmtoppm >b").c_str()), 0);
    const std::string ppm = scratch.read("b");
    return ppm.substr(std::min(ppm.size(), ppm.find("255\n") + 4));
}

TEST(Gif, EveryReaderSeesThePicture) {
    const Scratch scratch;
    // Width, height, colours, noise, interlace.
    constexpr int kCases[][5] = {{2, 1, 2, 0, 1},      {1, 3, 3, 0, 0},      {7, 5, 16, 1, 1},
                                 {101, 77, 256, 1, 0}, {129, 97, 300, 1, 1}, {401, 300, 2, 0, 0}};
    for (const auto &[width, height, colors, noise, interlace] : kCases) {
        const Image image = make_image(width, height, uint32_t(colors), noise);
        ASSERT_EQ(GIF_write(scratch.path("a").c_str(), image, {}, {interlace, 1}), 1);
        std::string expected;
        for (size_t i = 0; i < image.data.size(); i++)
            if (i % 4) // what finds no room is shown as the first colour
                expected += char(image.data[image.data[i | 3] & 1 ? i % 4 : i]);
        EXPECT_TRUE(colors < 256 || scratch.read("a")[800] == char(254)); // bytes of a full block
        EXPECT_TRUE(read_back(scratch.path("a")) == expected) << colors;
        EXPECT_TRUE(read_by_giftopnm(scratch) == expected) << colors;
    }
}

TEST(Gif, BytesOfOneColor) {
    const Scratch scratch;
    const char bytes[] =
        "GIF89a\3\0\1\0\xff\0\0\0\0\0!\xf9\4\1\n\0\0\0,\0\0\0\0\3\0\1\0\0\2\2\x84\v\0;";
    const ImageDisplay display{24, 0, "", {}};
    ASSERT_EQ(GIF_write(scratch.path("a").c_str(), make_image(3, 1, 1, 0), display, {0, 1}), 1);
    EXPECT_EQ(scratch.read("a"), std::string(bytes, sizeof bytes - 1));
}

TEST(Gif, ColorTableIsKeptFirst) {
    ImageDisplay display;
    for (uint32_t k = 290; k < 320; k++)
        display.table.push_back(color_of(k));
    Palette palette;
    IMG_palette(make_image(20, 15, 300, 0), display, &palette);
    for (uint32_t k = 0; k < 300; k++)
        EXPECT_EQ(palette.pixels[k], k < 246 ? k : k < 290 ? 0 : k - 44) << k;
}

TEST(Gif, PixelsOfEveryDepth) {
    Image image;
    image.width = image.bytes_per_line = 8, image.height = 1;
    image.data = {0x12, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
    constexpr int kCases[][4] = {
        {24, 32, 1, 0x667788}, {24, 32, 0, 0x776655}, {24, 24, 1, 0x445566},
        {24, 24, 0, 0x665544}, {16, 16, 1, 0x3344},   {15, 16, 0, 0x4433},
        {8, 0, 1, 0x22},       {4, 4, 1, 2},          {1, 1, 1, 1}};
    for (const auto &[depth, bits, order, value] : kCases) {
        image.depth = depth, image.bits_per_pixel = bits, image.byte_order = order;
        EXPECT_EQ(IMG_pixel(image, 1, 0), uint32_t(value)) << depth << " of " << bits;
    }
}

TEST(Gif, DamageEndsTheRead) {
    const Scratch scratch;
    ASSERT_EQ(GIF_write(scratch.path("a").c_str(), make_image(7, 5, 16, 1), {}, {}), 1);
    const std::string whole = scratch.read("a");
    const auto changed = [&](size_t at, const std::string &bytes, size_t size = SIZE_MAX) {
        const std::string file = std::string(whole).replace(at, bytes.size(), bytes);
        Image image;
        return GIF_read(scratch.write("b", "** \n" + file.substr(0, size)).c_str(), &image, 0);
    };
    EXPECT_EQ(changed(6, "\xff\xff\xff\xff"), 0);  // size of the picture
    EXPECT_EQ(changed(6, {"\3\0\2", 3}), 1);       // a picture smaller than its frame
    EXPECT_EQ(changed(61, ";"), 1);                // no frame
    EXPECT_EQ(changed(66, "\xff\xff\xff\xff"), 0); // a frame larger than any
    EXPECT_EQ(changed(71, "\f"), 0);               // bits of a code
    EXPECT_EQ(changed(73, "\xff"), 0);             // first code
    for (size_t n = 0; n < whole.size(); n++)
        EXPECT_EQ(changed(0, "", n), n >= 13) << n;
}
