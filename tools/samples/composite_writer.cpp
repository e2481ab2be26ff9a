#include "tools/samples/composite_writer.h"

#include <algorithm>

namespace {

struct Run {
    uint8_t level;
    int count;
};

std::vector<Run> runs_of(const std::vector<uint8_t> &levels, size_t cells) {
    std::vector<Run> runs;
    for (size_t i = 0; i < cells; i++) {
        if (runs.empty() || runs.back().level != levels[i])
            runs.push_back({levels[i], 0});
        runs.back().count++;
    }
    return runs;
}

std::string tag(int code) { return {0, char(0xF0), char(code)}; }

std::string little_half(int value) { return {char(value & 0xff), char(value >> 8 & 0xff)}; }

std::string nowrad_run(Run run) {
    constexpr int kShort = 13, kByte = 256;
    if (run.count <= kShort)
        return {char((run.count - 1) << 4 | run.level)};
    if (run.count <= kByte)
        return {char(0xE0 | run.level), char(run.count - 1)};
    return char(0xD0 | run.level) + little_half(run.count - 1);
}

/* A value, and what one byte of it does not hold; to_end reaches the end of the row. */
std::string kavrad_run(Run run, bool to_end) {
    constexpr int kMost = 255, kShort = 31;
    const int first = std::min(run.count, 3);
    std::string out = {char(first << 6 | run.level)};
    int left = run.count - first;
    if (to_end && left > 0)
        return out + char(0x23);
    for (; left > kShort; left -= std::min(left, kMost))
        out += {char(0x24), char(std::min(left, kMost))};
    return left > 0 ? out + char(left) : out;
}

} // namespace

std::string SMP_nowrad_header(const SampleNowrad &header) {
    const std::string name = "mosaic";
    std::string product = header.product;
    product.resize(80, ' ');
    return tag(0x09) + char(name.size()) + name + '\0' + tag(0x0A) + std::to_string(header.rows) +
           " " + std::to_string(header.columns) + tag(0x03) + product + tag(0x0B) + header.kind +
           header.grid;
}

std::string SMP_nowrad_line(int number, const std::vector<uint8_t> &levels) {
    std::string out = tag(0x0C) + little_half(number);
    for (const Run &run : runs_of(levels, levels.size()))
        out += nowrad_run(run);
    return out;
}

std::string SMP_nowrad_end() { return tag(0xFF); }

std::string SMP_kavrad_header(const SampleKavrad &header) {
    constexpr size_t kAt = 1996;
    std::string out(2048, '\0');
    out[kAt + 14] = header.mode;
    out.replace(kAt + 16, header.time.size(), header.time);
    out[kAt + 38] = header.low ? 10 : 5;
    for (const int i : {0, 1}) {
        const int word = i == 0 ? header.word1 : header.word2;
        out[kAt + 42 + size_t(i) * 2] = char(word >> 8);
        out[kAt + 43 + size_t(i) * 2] = char(word & 0xff);
    }
    return out;
}

std::string SMP_kavrad_row(const std::vector<uint8_t> &levels) {
    const std::vector<Run> runs = runs_of(levels, levels.size() - 1);
    std::string out;
    for (size_t i = 0; i < runs.size(); i++)
        out += kavrad_run(runs[i], i + 1 == runs.size());
    return out;
}

std::string SMP_kavrad_end() { return {char(0x21)}; }
