/* The installed text files: colours, regions, cities, fonts, levels, conventions, defaults.  The
 * first byte of an input chooses the reader. */
#include "files/file_name.h"
#include "fuzz/file_of.h"
#include "kernel/color_table.h"
#include "kernel/devices.h"
#include "kernel/fonts.h"
#include "kernel/workstation.h"
#include "plot/city.h"
#include "plot/levels.h"
#include "plot/region.h"
#include "shell/defaults.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

using Reader = void (*)(const char *name);

static void read_defaults(const char *name) {
    DEF_reset();
    std::string key, value;
    if (DEF_open(name) == 0)
        while (DEF_get(&key, &value) > 0)
            DEF_match_program(key.c_str());
    DEF_close();
}

static void read_cities(const char *name) {
    CityRecord record;
    CTY_lookup(name, "ORD", &record);
}

static void read_regions(const char *name) {
    std::string text;
    REG_lookup(name, "us", &text);
    REG_reset();
    REG_read_table(name);
    REG_list(name);
}

static void read_levels(const char *name) {
    CONT_clear_fill_colors();
    CONT_set_fill_colors(name, 1);
    PlotAttr attr;
    CONT_color_for_value(17.0f, &attr);
}

static void read_conventions(const char *name) {
    RES_set("name_conv", name);
    FILE_set_name("nids_x");
}

static constexpr Reader kReaders[] = {
    read_defaults,
    read_cities,
    read_regions,
    read_levels,
    read_conventions,
    [](const char *name) { COLOR_read_table(name); },
    [](const char *name) { read_font(name); },
};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 2)
        return 0;
    if (!gis_open()) {
        MSG_set_levels("none");
        gregister_devices();
        gopen_ws(1, "/dev/null", WS_PS);
    }
    const MemoryFile table(data + 1, size - 1);
    if (table.whole)
        kReaders[data[0] % std::size(kReaders)](table.name().c_str());
    return 0;
}
