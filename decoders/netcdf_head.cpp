#include "decoders/netcdf_head.h"

#include "files/stream.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {
constexpr size_t kMostHead = 1 << 20; // bytes
constexpr uint32_t kMostRank = 8;
constexpr uint32_t kDimensionTag = 10, kVariableTag = 11, kAttributeTag = 12;
constexpr uint64_t kTypeBytes[] = {0, 1, 1, 2, 4, 4, 8}; // by type, 1 byte to 6 double

/* Reads past the end give 0 and are remembered. */
struct Head {
    std::string bytes;
    size_t at = 0;
    bool failed = false;
    bool wide = false;       // offsets of 64 bits
    uint64_t file_bytes = 0; // of the whole file

    std::vector<uint64_t> dimensions; // lengths; 0 for that of the records
    int record_dimension = -1;
    int record_variables = 0;
    uint64_t record_bytes = 0, unpadded_bytes = 0;
    uint64_t first_record = UINT64_MAX; // offset
};

void skip(Head &h, uint64_t n) {
    if (n > h.bytes.size() - h.at)
        h.failed = true;
    else
        h.at += size_t(n);
}

uint32_t word(Head &h) {
    const size_t at = h.at;
    skip(h, 4);
    uint32_t value = 0;
    for (size_t i = 0; i < 4 && !h.failed; i++)
        value = value << 8 | uint8_t(h.bytes[at + i]);
    return value;
}

uint64_t padded(uint64_t n) { return (n + 3) / 4 * 4; }

void skip_name(Head &h) { skip(h, padded(word(h))); }

/* Length of a list that begins here: two zeros stand for an empty one. */
uint32_t list_length(Head &h, uint32_t tag) {
    const uint32_t found = word(h), n = word(h);
    if (found != tag && (found != 0 || n != 0))
        h.failed = true;
    return n;
}

/* Bytes of a value of the type that is told here. */
uint64_t type_bytes(Head &h) {
    const uint32_t type = word(h);
    if (type >= std::size(kTypeBytes) || kTypeBytes[type] == 0) {
        h.failed = true;
        return 1;
    }
    return kTypeBytes[type];
}

void read_dimensions(Head &h) {
    const uint32_t n = list_length(h, kDimensionTag);
    for (uint32_t i = 0; i < n && !h.failed; i++) {
        skip_name(h);
        h.dimensions.push_back(word(h));
        if (h.dimensions.back() > 0)
            continue;
        h.failed |= h.record_dimension >= 0;
        h.record_dimension = int(i);
    }
}

void skip_attributes(Head &h) {
    const uint32_t n = list_length(h, kAttributeTag);
    for (uint32_t i = 0; i < n && !h.failed; i++) {
        skip_name(h);
        const uint64_t bytes = type_bytes(h);
        skip(h, padded(bytes * word(h)));
    }
}

/* What a variable takes of the file: all of it, or its part of a record. */
struct Extent {
    uint64_t values = 1;
    bool in_record = false;
};

Extent read_shape(Head &h) {
    Extent extent;
    const uint32_t rank = word(h);
    h.failed |= rank > kMostRank;
    for (uint32_t i = 0; i < rank && !h.failed; i++) {
        const uint32_t d = word(h);
        if (d >= h.dimensions.size() || (int(d) == h.record_dimension && i > 0)) {
            h.failed = true;
        } else if (int(d) == h.record_dimension) {
            extent.in_record = true;
        } else {
            extent.values *= h.dimensions[d]; // below 2 to the 32nd, and so is what is kept
            h.failed |= extent.values > std::min<uint64_t>(h.file_bytes, UINT32_MAX);
        }
    }
    return extent;
}

void read_variable(Head &h) {
    skip_name(h);
    const Extent extent = read_shape(h);
    skip_attributes(h);
    const uint64_t bytes = extent.values * type_bytes(h);
    skip(h, 4); // the size again, which nothing relies on
    uint64_t offset = h.wide ? word(h) : 0;
    offset = offset << 32 | word(h);
    if (offset > h.file_bytes || (!extent.in_record && bytes > h.file_bytes - offset)) {
        h.failed = true;
    } else if (extent.in_record) {
        h.record_variables++;
        h.record_bytes += padded(bytes);
        h.unpadded_bytes += bytes;
        h.first_record = std::min(h.first_record, offset);
    }
}

void read_head(Head &h) {
    h.wide = h.bytes[3] == 2;
    h.at = 8; // behind the number of records
    read_dimensions(h);
    skip_attributes(h);
    const uint32_t n = list_length(h, kVariableTag);
    for (uint32_t i = 0; i < n && !h.failed; i++)
        read_variable(h);
}

bool load(const char *name, Head *h) {
    if (!FILE_is_regular(name) || FILE_is_stream(name) || name[0] == '|')
        return false;
    FILE *file = FILE_open(name, "r");
    if (!file)
        return false;
    h->file_bytes = uint64_t(std::max<int64_t>(FILE_size(name), 0));
    h->bytes.resize(size_t(std::min<uint64_t>(h->file_bytes, kMostHead)));
    h->bytes.resize(fread(h->bytes.data(), 1, h->bytes.size(), file));
    FILE_close(file);
    const std::string mark = h->bytes.substr(0, 4);
    return h->bytes.size() >= 8 && (mark == "CDF\1" || mark == "CDF\2");
}

} // namespace

int64_t NETCDF_whole_records(const char *name) {
    Head h;
    if (!load(name, &h))
        return -1;
    read_head(h);
    if (h.failed)
        return -1;
    // A variable that is alone in the records is not padded.
    const uint64_t size = h.record_variables == 1 ? h.unpadded_bytes : h.record_bytes;
    return size ? int64_t((h.file_bytes - h.first_record) / size) : 0;
}
