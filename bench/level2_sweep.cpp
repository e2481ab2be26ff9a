/* The first sweep of a Level II volume in blocks: what libbz2 alone needs to inflate it, and what
 * the reader needs with every gate.
 *
 * RADAR_BENCH_VOLUME names an archive; without it a volume of invented weather is made.
 */
#include "decoders/level2_reader.h"
#include "tools/samples/level2_volumes.h"

#include <benchmark/benchmark.h>
#include <bzlib.h>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr size_t kHeader = 24;         // bytes of the volume header
constexpr size_t kMostBlock = 8000000; // bytes that a block inflates to

struct Volume {
    std::string path;
    bool own = false;
    std::vector<std::string> blocks; // of the first sweep, as they are packed
    size_t inflated = 0;             // bytes of them

    Volume();
    Volume(const Volume &) = delete;
    Volume &operator=(const Volume &) = delete;
    ~Volume() {
        if (own)
            std::filesystem::remove(path);
    }
};

uint32_t number(const std::string &bytes, size_t at, size_t count) {
    uint32_t value = 0;
    for (size_t i = 0; i < count; i++)
        value = value << 8 | uint8_t(bytes[at + i]);
    return value;
}

std::string inflate(const std::string &block, std::string *room) {
    unsigned size = unsigned(room->size());
    if (BZ2_bzBuffToBuffDecompress(room->data(), &size, const_cast<char *>(block.data()),
                                   unsigned(block.size()), 0, 0) != BZ_OK)
        return {};
    return room->substr(0, size);
}

/* Messages of whole blocks; true when one belongs to a later sweep. */
bool is_past(const std::string &messages) {
    for (size_t at = 0; at + 60 < messages.size();) {
        const bool sized = messages[at + 15] == 31;
        if (sized && messages[at + 12 + 38] > 1)
            return true;
        at += 12 + (sized ? 2 * number(messages, at + 12, 2) : 2420);
    }
    return false;
}

Volume::Volume() {
    const char *given = getenv("RADAR_BENCH_VOLUME");
    own = !given;
    path = given ? given : (std::filesystem::temp_directory_path() / "radar-bench-volume").string();
    if (own)
        std::ofstream(path, std::ios::binary) << SMP_new_volume();
    std::ifstream in(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(in), {});
    std::string room(kMostBlock, '\0');
    for (size_t at = kHeader; at + 4 < bytes.size();) {
        const size_t length = size_t(std::abs(int32_t(number(bytes, at, 4))));
        const std::string block = bytes.substr(at + 4, length);
        const std::string messages = inflate(block, &room);
        if (messages.empty() || is_past(messages))
            break;
        blocks.push_back(block);
        inflated += messages.size();
        at += 4 + length;
    }
}

const Volume &volume() {
    static const Volume only;
    return only;
}

void BM_InflateSweep(benchmark::State &state) {
    std::string room(kMostBlock, '\0');
    for (auto _ : state)
        for (const std::string &block : volume().blocks) {
            unsigned size = unsigned(room.size());
            BZ2_bzBuffToBuffDecompress(room.data(), &size, const_cast<char *>(block.data()),
                                       unsigned(block.size()), 0, 0);
            benchmark::DoNotOptimize(room.data());
        }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(volume().inflated));
}
BENCHMARK(BM_InflateSweep)->Unit(benchmark::kMillisecond);

/* Up to the first message of the next sweep. */
void BM_ReadSweep(benchmark::State &state) {
    int64_t gates = 0;
    for (auto _ : state) {
        Lev2Volume head;
        Lev2Radial radial;
        float sum = 0.0f;
        if (!LEV2_open_file(volume().path.c_str()) || !LEV2_read_volume(&head)) {
            state.SkipWithError("no volume");
            break;
        }
        for (; LEV2_read_header(&radial) && radial.elevation_number < 2; LEV2_next_message()) {
            if (!LEV2_select_moment(LEV2_REFLECTIVITY))
                continue;
            for (int i = 0; i < radial.ref_gates; i++)
                sum += LEV2_next_gate();
            gates += radial.ref_gates;
        }
        benchmark::DoNotOptimize(sum);
        LEV2_close_file();
    }
    state.SetItemsProcessed(gates);
}
BENCHMARK(BM_ReadSweep)->Unit(benchmark::kMillisecond);

} // namespace
