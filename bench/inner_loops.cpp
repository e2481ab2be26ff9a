/* Inner loops of a plot: numbers, areas, projection, colours, decoding, maps. */
#include "decoders/nids_packets.h"
#include "decoders/nids_product.h"
#include "decoders/nids_record.h"
#include "files/data_file.h"
#include "files/stream.h"
#include "kernel/attributes.h"
#include "kernel/devices.h"
#include "kernel/number_writer.h"
#include "kernel/primitives.h"
#include "kernel/workstation.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "tools/samples/nids_writer.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace {

Domain polar_domain() {
    Domain d;
    d.proj = PROJ_POLAR;
    d.clat = 35.3f;
    d.clon = -97.3f;
    d.dx = d.dy = 0.01f;
    d.nx = 691;
    d.ny = 461;
    return d;
}

/* A document that nobody keeps. */
void open_sink() {
    MSG_set_levels("error");
    gregister_devices();
    if (!gis_open())
        gopen_ws(1, "/dev/null,color", WS_PS);
    const Domain d = polar_domain();
    PLT_set_domain(&d);
}

std::vector<float> coordinates() {
    std::vector<float> out;
    for (int i = 0; i < 4096; i++)
        out.push_back(float(std::fmod(i * 78.12345, 756.0)));
    return out;
}

void BM_NumberPrintf(benchmark::State &state) {
    const std::vector<float> values = coordinates();
    char text[64];
    for (auto _ : state)
        for (const float v : values)
            benchmark::DoNotOptimize(snprintf(text, sizeof text, "%3.2f", double(v)));
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(values.size()));
}
BENCHMARK(BM_NumberPrintf);

void BM_NumberWriter(benchmark::State &state) {
    const std::vector<float> values = coordinates();
    char text[NUMBER_ROOM];
    for (auto _ : state)
        for (const float v : values)
            benchmark::DoNotOptimize(gput_fixed2(text, v));
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(values.size()));
}
BENCHMARK(BM_NumberWriter);

void BM_FillArea(benchmark::State &state) {
    open_sink();
    const Point cell[5] = {{0.1f, 0.2f}, {0.2f, 0.2f}, {0.2f, 0.3f}, {0.1f, 0.3f}, {0.1f, 0.2f}};
    int color = 2;
    for (auto _ : state) {
        gset_fill_colr_ind(color = color == 2 ? 3 : 2);
        gfill_area(5, cell);
    }
    state.SetItemsProcessed(int64_t(state.iterations()));
}
BENCHMARK(BM_FillArea);

void BM_Project(benchmark::State &state) {
    Domain d = polar_domain();
    d.proj = int(state.range(0));
    PRJ_set_domain(&d);
    float lat = 30.0f, x, y;
    for (auto _ : state) {
        lat = lat > 40.0f ? 30.0f : lat + 0.01f;
        benchmark::DoNotOptimize(PRJ_latlon_to_xy(lat, -97.0f, &x, &y));
    }
    state.SetItemsProcessed(int64_t(state.iterations()));
}
BENCHMARK(BM_Project)->Arg(PROJ_POLAR)->Arg(PROJ_LAMBERT)->Arg(PROJ_MERCATOR);

void BM_Reproject(benchmark::State &state) {
    const Domain from = polar_domain();
    Domain to = from;
    to.plon = -100.0f;
    float x = 0.0f, xo, yo;
    for (auto _ : state) {
        x = x > 3.0f ? 0.0f : x + 0.001f;
        benchmark::DoNotOptimize(PRJ_reproject(x, 1.0f, &from, &to, &xo, &yo));
    }
    state.SetItemsProcessed(int64_t(state.iterations()));
}
BENCHMARK(BM_Reproject);

void BM_ColorForValue(benchmark::State &state) {
    CONT_clear_fill_colors();
    CONT_set_fill_colors("-100:off,5:2,10:3,15:4,20:5,25:6,30:7,35:8,40:9,45:10,50:11,55:12", 1);
    PlotAttr attr;
    float value = -32.0f;
    for (auto _ : state) {
        value = value > 70.0f ? -32.0f : value + 0.5f;
        CONT_color_for_value(value, &attr);
        benchmark::DoNotOptimize(attr);
    }
    state.SetItemsProcessed(int64_t(state.iterations()));
}
BENCHMARK(BM_ColorForValue);

/* Decoding alone: every run of a product, from a file. */
void BM_DecodeRuns(benchmark::State &state) {
    const bool digital = state.range(0) != 0;
    SampleProduct product;
    product.code = digital ? 94 : 19;
    product.levels = {-320, 5, 254};
    SampleRadials data;
    for (int i = 0; i < 360; i++) {
        LevelRow row;
        for (int bin = 0; bin < 460; bin++)
            row.push_back(uint8_t((bin / 3 + i) % (digital ? 200 : 16)));
        data.radials.push_back(row);
    }
    product.symbology = SMP_symbology({digital ? SMP_digital_radials(data) : SMP_radials(data)});
    const std::string bytes = SMP_message(product);
    FILE *file = tmpfile();
    fwrite(bytes.data(), 1, bytes.size(), file);
    for (auto _ : state) {
        NIDS_read_product(file, NIDS_product());
        float start, delta;
        NidsRun run;
        double sum = 0;
        while (NIDS_next_radial(file, &start, &delta) > 0)
            while (NIDS_next_run(file, &run) > 0)
                sum += double(run.count);
        benchmark::DoNotOptimize(sum);
    }
    fclose(file);
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes.size()));
}
BENCHMARK(BM_DecodeRuns)->Arg(0)->Arg(1);

/* A map file of 80,000 points onto one radar's plot; needs to run in the source folder. */
void BM_ReadMap(benchmark::State &state) {
    open_sink();
    RES_set("file_path", "data");
    for (auto _ : state) {
        FILE *file = FILE_open_data("qra.map");
        if (!file) {
            state.SkipWithError("no data/qra.map here");
            break;
        }
        MAP_read_file(file, false);
        FILE_close(file);
    }
}
BENCHMARK(BM_ReadMap);

} // namespace
