/* Station data: the scanner of bulletin text, raw text files and symbol files.  The first byte of
 * an input chooses the reader. */
#include "fuzz/file_of.h"
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "plot/raw_file.h"
#include "plot/symbol_file.h"
#include "shell/message.h"
#include "shell/scanner.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/* Places for what a format stores.  The directives of a format are those of the input, so each
 * place holds a text of the greatest length, and is a number where one is wanted. */
union Place {
    char text[SCAN_TEXT];
    int whole;
    float real;
};

/* The format ends at the first line end.  It has at most 8 directives: there are no more places. */
static void scan(std::string text) {
    const size_t end = text.find('\n');
    if (end == text.npos)
        return;
    const std::string format = text.substr(0, end);
    text.erase(0, end + 1);
    size_t directives = 0;
    for (char c : format)
        directives += c == '%';
    if (directives > 8)
        return;
    Place p[8];
    ScanText cursor;
    SCAN_init(&cursor, text.data());
    const int matched =
        scanp(&cursor, format.c_str(), &p[0], &p[1], &p[2], &p[3], &p[4], &p[5], &p[6], &p[7]);
    if (matched != (matched < 0 ? -1 : cursor.matched) || cursor.consumed < 0 ||
        cursor.consumed > cursor.length)
        __builtin_trap();
}

static void read_column(int handle, int column) {
    RawRecord record;
    int count = 0;
    while (RAW_read_record(handle, &record, column, &count) >= 0)
        continue;
    RAW_rewind(handle);
}

static void read_raw(const char *name) {
    const int handle = RAW_file_open(name, nullptr, nullptr, "r");
    RawHeader header;
    if (RAW_read_header(handle, &header) > 0)
        for (const char *column : {"", "2", "10", "11", "14", "84", "temp", "wind"})
            read_column(handle, RAW_find_column(handle, column));
    RAW_close(handle);
}

static void draw_symbols(const char *name) {
    WX_symbol_reset();
    WX_symb_file(name);
    for (const char *symbol : {"a", "tsra", "+RA", "b"})
        WX_symbol(0.5f, 0.5f, 0.1f, symbol);
}

static void read_file(void (*reader)(const char *name), const uint8_t *data, size_t size) {
    const MemoryFile file(data, size);
    if (file.whole)
        reader(file.name().c_str());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 2)
        return 0;
    if (!gis_open()) {
        MSG_set_levels("none");
        gregister_devices();
        gopen_ws(1, "/dev/null", WS_PS);
    }
    if (data[0] % 3 == 0)
        scan(std::string(reinterpret_cast<const char *>(data + 1), size - 1));
    else
        read_file(data[0] % 3 == 1 ? read_raw : draw_symbols, data + 1, size - 1);
    return 0;
}
