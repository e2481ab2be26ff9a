/* National mosaics: their runs alone, and with every cell on a PostScript page that nobody keeps.
 *
 * RADAR_BENCH_MOSAIC names a KAVRAD file; without it the sample of high resolution is made.
 */
#include "decoders/composite_plot.h"
#include "decoders/kavrad_reader.h"
#include "decoders/nowrad_reader.h"
#include "files/file_series.h"
#include "kernel/color_table.h"
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "tools/samples/composite_samples.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

/* A file that goes with the program, unless it was named. */
struct MosaicFile {
    std::string path;
    bool own;

    MosaicFile(const char *given, const char *name, std::string (*make)()) : own(!given) {
        path = given ? given : (std::filesystem::temp_directory_path() / name).string();
        if (own)
            std::ofstream(path, std::ios::binary) << make();
    }
    MosaicFile(const MosaicFile &) = delete;
    MosaicFile &operator=(const MosaicFile &) = delete;
    ~MosaicFile() {
        if (own)
            std::filesystem::remove(path);
    }
};

const MosaicFile &kavrad_file() {
    static const MosaicFile only(getenv("RADAR_BENCH_MOSAIC"), "radar-bench-kavrad",
                                 SMP_kavrad_high);
    return only;
}

const MosaicFile &nowrad_file() {
    static const MosaicFile only(nullptr, "radar-bench-nowrad", SMP_nowrad_degrees);
    return only;
}

void BM_DecodeKavrad(benchmark::State &state) {
    FILE *file = fopen(kavrad_file().path.c_str(), "r");
    CompositeHeader header;
    CompositeRun run;
    int64_t runs = 0;
    for (auto _ : state) {
        KAVRAD_read_header(file, &header);
        while (KAVRAD_next_run(file, header, &run))
            runs++;
    }
    state.SetItemsProcessed(runs);
    fclose(file);
}
BENCHMARK(BM_DecodeKavrad)->Unit(benchmark::kMillisecond);

void BM_DecodeNowrad(benchmark::State &state) {
    FILE *file = fopen(nowrad_file().path.c_str(), "r");
    CompositeHeader header;
    CompositeRun run;
    int64_t runs = 0;
    for (auto _ : state) {
        rewind(file);
        NOWRAD_read_header(file, &header);
        while (NOWRAD_next_line(file))
            while (NOWRAD_next_run(file, &run))
                runs++;
    }
    state.SetItemsProcessed(runs);
    fclose(file);
}
BENCHMARK(BM_DecodeNowrad)->Unit(benchmark::kMillisecond);

/* The United States on a polar map, where each cell is converted. */
Domain country() {
    Domain d;
    d.proj = PROJ_POLAR;
    d.clat = 39.0f;
    d.clon = -97.0f;
    d.nx = 25;
    d.ny = 17;
    d.dx = d.dy = 2.3f;
    return d;
}

/* Argument: 0 on that map, 1 on the data's own, where ten cells are filled at once. */
void draw(benchmark::State &state, const MosaicFile &file, int (*plot)(Domain *)) {
    MSG_set_levels("error");
    gregister_devices();
    if (!gis_open())
        gopen_ws(1, "/dev/null,color", WS_PS);
    RES_set("file_path", "data");
    COLOR_read_table(nullptr);
    RES_set("filename", file.path.c_str());
    DRAW_set(DRAW_MAP, 0);
    Domain domain = state.range(0) ? Domain{} : country();
    for (auto _ : state)
        plot(&domain);
}

void BM_DrawKavrad(benchmark::State &state) { draw(state, kavrad_file(), KAVRAD_plot); }
BENCHMARK(BM_DrawKavrad)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_DrawNowrad(benchmark::State &state) { draw(state, nowrad_file(), NOWRAD_plot); }
BENCHMARK(BM_DrawNowrad)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
