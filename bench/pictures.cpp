/* Picture files of a plot in a window; needs to run in the source folder. */
#include "image/gif.h"
#include "image/palette.h"
#include "image/png_file.h"

#include <benchmark/benchmark.h>
#include <string>

namespace {

/* A plot of 800 by 600 as a window has it: 32 bits a pixel. */
Image plot() {
    Image from, to;
    if (!PNG_read("docs/images/window.png", &from, 0))
        return to;
    to.width = from.width;
    to.height = from.height;
    to.depth = 24;
    to.bits_per_pixel = 32;
    to.bytes_per_line = 4 * to.width;
    to.byte_order = 0;
    to.red_mask = 0xff0000;
    to.green_mask = 0xff00;
    to.blue_mask = 0xff;
    IMG_allocate(&to);
    for (int y = 0; y < to.height; y++)
        for (int x = 0; x < to.width; x++) {
            const size_t color = 3 * IMG_pixel(from, x, y);
            for (size_t i = 0; i < 3; i++)
                to.data[size_t(y) * size_t(to.bytes_per_line) + 4 * size_t(x) + 2 - i] =
                    uint8_t(from.colors[color + i] * 255.0f + 0.5f);
        }
    return to;
}

template <typename Write>
void write_plot(benchmark::State &state, Write write) {
    const Image image = plot();
    for (auto _ : state)
        if (!write(image))
            state.SkipWithError("no picture was written");
}

void BM_PictureGif(benchmark::State &state) {
    write_plot(state, [](const Image &image) {
        return GIF_write("/dev/null", image, ImageDisplay{}, GifOptions{});
    });
}
BENCHMARK(BM_PictureGif)->Unit(benchmark::kMillisecond);

void BM_PicturePng(benchmark::State &state) {
    write_plot(state,
               [](const Image &image) { return PNG_write("/dev/null", image, ImageDisplay{}); });
}
BENCHMARK(BM_PicturePng)->Unit(benchmark::kMillisecond);

} // namespace
