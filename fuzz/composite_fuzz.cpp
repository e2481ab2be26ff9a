/* Any bytes as a NOWRad mosaic, and as the runs of a KAVRAD one: each in its header's place, read
 * to their ends. */
#include "decoders/kavrad_reader.h"
#include "decoders/nowrad_reader.h"
#include "shell/message.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static constexpr size_t kKavradHeader = 1996;
static CompositeHeader header;
static CompositeRun run;

/* Every run takes a byte, so that there are no more of them. */
static void count_run(size_t *left) {
    if ((*left)-- == 0)
        abort();
}

static void read_nowrad(FILE *file, size_t size) {
    if (NOWRAD_read_header(file, &header) && (header.domain.nx < 1 || header.domain.ny < 1))
        abort();
    while (NOWRAD_next_line(file))
        while (NOWRAD_next_run(file, &run))
            count_run(&size);
}

static void read_kavrad(FILE *file, size_t size) {
    if (KAVRAD_read_header(file, &header))
        while (KAVRAD_next_run(file, header, &run))
            count_run(&size);
}

static void read_file(const std::string &bytes, void (*read)(FILE *file, size_t size)) {
    FILE *file = fmemopen(const_cast<char *>(bytes.data()), bytes.size(), "r");
    if (!file) // no bytes at all
        return;
    read(file, bytes.size());
    fclose(file);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    MSG_set_levels("none");
    const std::string bytes(reinterpret_cast<const char *>(data), size);
    read_file(bytes, read_nowrad);
    read_file(std::string(kKavradHeader, '\0') + bytes, read_kavrad);
    return 0;
}
