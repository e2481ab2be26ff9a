#include "image/image_read.h"
#include "image/native.h"
#include "image/palette.h"
#include "image/png_file.h"
#include "image/xwd.h"
#include "shell/resource.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

static std::string run(const std::string &command) {
    std::string out;
    FILE *pipe = popen(command.c_str(), "r");
    for (int c = getc(pipe); c != EOF; c = getc(pipe))
        out += char(c);
    EXPECT_EQ(pclose(pipe), 0) << command;
    return out;
}

static Image picture(int width, int height, int bits, int order) {
    Image image;
    image.width = width, image.height = height, image.byte_order = order;
    image.depth = std::min(bits, 24), image.bits_per_pixel = bits;
    image.bytes_per_line = width * bits / 8;
    image.red_mask = 0xff0000, image.green_mask = 0xff00, image.blue_mask = 0xff;
    IMG_allocate(&image);
    for (size_t i = 0; i < image.data.size(); i++)
        image.data[i] = uint8_t(i % 7 * 40 + i / 31 % 2);
    return image;
}

static std::string pixmap(const Image &image) {
    const std::string width = std::to_string(image.width), height = std::to_string(image.height);
    std::string rgb = "P6\n" + width + " " + height + "\n255\n";
    for (int i = 0; i < image.width * image.height; i++)
        for (size_t part = 0; part < 3; part++) {
            const uint32_t value = IMG_pixel(image, i % image.width, i / image.width);
            rgb += image.colormapped ? char(int(image.colors.at(value * 3 + part) * 255 + 0.5f))
                                     : char(value >> (16 - 8 * part));
        }
    return rgb;
}

TEST(PictureFiles, PngIsReadByOthers) {
    const Scratch scratch;
    const std::string path = scratch.path("a.png"), check = "pngcheck -vt " + path;
    for (const auto &[bits, order] : {std::pair{32, 0}, {32, 1}, {24, 0}, {24, 1}}) {
        const Image source = picture(33, 20, bits, order);
        ASSERT_EQ(PNG_write(path.c_str(), source, {24, -1, "a window", {}}), 1);
        EXPECT_EQ(run(check + " | grep -cE '256 palette|a window$|QRA.*v5.0|GMT$|No err'"), "5\n");
        EXPECT_EQ(run("pngtopnm " + path), pixmap(source));
    }
}

TEST(PictureFiles, PngOfOthersIsRead) {
    const Scratch scratch;
    const std::string dir = "exec 2>&-; cd " + scratch.dir.string() + "; ";
    scratch.write("a.ppm", pixmap(picture(37, 21, 32, 1)));
    run(dir + "pgmramp -lr 37 21 > alpha");
    const std::pair<const char *, int> kForms[] = {
        {"pnmtopng -force -interlace", 24},
        {"pnmtopng -alpha=alpha", 24},
        {"ppmtopgm | pnmtopng -alpha=alpha", 24},
        {"pamdepth 65535 | pnmtopng -force", 24},
        {"pnmquant 4 | pnmtopng", 8}, // 2 bits come as bytes
        {"pnmquant 2 | pnmtopng -interlace", 1},
    };
    for (const auto &[make, depth] : kForms) {
        run(dir + "cat a.ppm | " + make + " > a.png");
        Image back;
        ASSERT_EQ(IMG_read(scratch.path("a.png").c_str(), &back, 0, {}), 1);
        EXPECT_EQ(back.depth, depth) << make;
        EXPECT_EQ(pixmap(back), run(dir + "pngtopnm a.png | pamdepth 255 | ppmtoppm"));
        run(dir + "head -c -200 a.png > cut");
        EXPECT_EQ(PNG_read(scratch.path("cut").c_str(), &back, 0), 0);
    }
}

TEST(PictureFiles, XwdComesBackAndRefusesDamage) {
    const Scratch scratch;
    Image source = picture(10, 6, 8, 1), back;
    source.colormapped = 1, source.ncolors = 2;
    source.colors = {0.0f, 0.5f, 1.0f, 0.25f, 0.1f, 0.9f};
    ASSERT_EQ(XWD_write(scratch.path("a.xwd").c_str(), source), 1);
    const std::tuple<size_t, char, const char *> kChanges[] = {
        {31, 0, ""},
        {0, 64, "Unable to read window name from dump file.\n"},
        {15, 9, "Incorrect depth: 9 > 8\n"},
        {19, 12, "Unable to read pixmap from dump file.\n"}, // wider than its lines
        {16, 99, "Unable to allocate data buffer.\n"},
        {104, 7, "Unable to read color map from dump file.\n"}, // no such pixel
    };
    for (const auto &[at, value, message] : kChanges) {
        std::string bytes = scratch.read("a.xwd");
        bytes.at(at) = value;
        testing::internal::CaptureStderr();
        const int result = IMG_read(scratch.write("b", bytes).c_str(), &back, 0, {8, -1, {}, {}});
        EXPECT_EQ(testing::internal::GetCapturedStderr(), message);
        EXPECT_EQ(result, *message ? 0 : 1);
        EXPECT_EQ(back.data, result ? source.data : std::vector<uint8_t>{});
        for (size_t i = 0; i < back.colors.size(); i++)
            EXPECT_NEAR(back.colors[i], source.colors[i], 1.0 / 65535);
    }
}

TEST(PictureFiles, NativeHeaders) {
    const Scratch scratch;
    RES_set_converter(OPT_DOMAIN, [](const char *text, void *dest) {
        Domain *d = static_cast<Domain *>(dest);
        return sscanf(text, "%d,%d", &d->nx, &d->ny) == 2 ? 1 : -1;
    });
    const std::string pixels = "abcdefghijklmnop", other = scratch.write("other", pixels);
    const std::string box = " 40.000000 -95.000000 1.500000 1.000000 4 4\n", x(1026, 'x');
    const std::pair<std::string, int> kHeaders[] = {
        // 2: is written again as it was
        {"QRAIMGz\n\n\n4 4\t", 1},
        {"QRAIMG\nd\ni\nPS" + box, 2},
        {"QRAIMG\nd\ni\nPS:-98.000000" + box, 2},
        {"QRAIMG\nd\ni\nLC:25.000000:-95.000000:20.000000:30.000000:-9999.000000" + box, 2},
        {"QRAIMGCV\nd\n\nSAT:0:-75 1 2 .5 -5 4 4\n" + x + "\n\1yy", 1},
        {"QRAIMG*\nd\ni\n4 4\n" + other + " ", 1},
        {"QRAIMG*\nd\ni\n4 4\n|echo ", -1},
        {"QRAIMG4\nd\ni\n4,4\n", 1},
        {"QRAIMG4\nd\ni\n4,4,id:-:KORD\n", 0},
        {"QRAIMG\nd\ni\n-9999 4\n", 0},
    };
    for (const auto &[head, result] : kHeaders) {
        const std::string path = scratch.write("a", head + pixels);
        Image image;
        EXPECT_EQ(IMG_read(path.c_str(), &image, 0, {}), std::min(result, 1)) << head;
        EXPECT_EQ(std::string(image.data.begin(), image.data.end()), result > 0 ? pixels : "");
        for (const int with_head : {1, 0})
            if (result == 2) {
                IMG_write(path.c_str(), image, 0, with_head);
                EXPECT_EQ(scratch.read("a"), (with_head ? head : "") + pixels);
            }
    }
    RES_reset();
}

TEST(PictureFiles, NativeDeflatedGrows) {
    const Scratch scratch;
    const std::string path = scratch.path("a"), dir = "cd " + scratch.dir.string();
    Image source = picture(100, 140, 8, 1), back;
    ASSERT_EQ(IMG_write(path.c_str(), source, 1), 1);
    run(dir + "; cp a b; head -c -50 b > a");
    EXPECT_EQ(IMG_read_qra(("|cat " + path).c_str(), &back, 0), 1); // a pipe does not grow
    EXPECT_NE(back.data, source.data);
    run(dir + "; (sleep 0.3; tail -c 50 b >> a) > /dev/null &");
    EXPECT_EQ(IMG_read_qra(path.c_str(), &back, 0), 1);
    EXPECT_EQ(back.data, source.data);
}
