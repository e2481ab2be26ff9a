#include "decoders/netcdf_input.h"

#include "decoders/netcdf_head.h"
#include "decoders/netcdf_library.h"
#include "files/stream.h"
#include "shell/strings.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace {

template <typename T>
double value_as(const NetcdfValues &v, int i) {
    T value;
    memcpy(&value, v.bytes + size_t(i) * sizeof value, sizeof value);
    return double(value);
}

bool is_numeric(int type) { return type >= NC_BYTE && type <= NC_DOUBLE && type != NC_CHAR; }

/* The library would take some names for addresses of servers. */
bool is_address(const char *name) { return strstr(name, "://") != nullptr; }

void read_missing(NetcdfInput *in) {
    NetcdfValues v;
    if (NETCDF_attribute(*in, "missing_val_f", &v) && NETCDF_is_number(v))
        in->missing_f = NETCDF_number(*in, v, 0);
    if (NETCDF_attribute(*in, "missing_val_i", &v) && NETCDF_is_number(v))
        in->missing_i = NETCDF_number(*in, v, 0);
    if (NETCDF_attribute(*in, "missing_val_c", &v) && NETCDF_is_text(v) && v.bytes[0])
        in->missing_c = v.bytes[0];
}

} // namespace

int NETCDF_open(const char *name, NetcdfInput *in) {
    *in = NetcdfInput{};
    in->records = is_address(name) ? -1 : NETCDF_whole_records(name);
    if (in->records < 0)
        return 0;
    if (!NETCDF_library())
        return 0;
    std::string path;
    FILE_expand_home(name, &path);
    in->id = NETCDF_library()->open(path.c_str(), NC_NOWRITE);
    if (in->id < 0)
        return 0;
    int dimensions, variables, attributes;
    NETCDF_library()->inquire(in->id, &dimensions, &variables, &attributes, &in->record_dimension);
    read_missing(in);
    return 1;
}

void NETCDF_close(NetcdfInput *in) {
    if (in->id >= 0)
        NETCDF_library()->close(in->id);
    *in = NetcdfInput{};
}

int NETCDF_dimension(const NetcdfInput &in, const char *name) {
    return NETCDF_library()->dimid(in.id, name);
}

long NETCDF_length(const NetcdfInput &in, int dimension) {
    long length;
    if (dimension < 0 || NETCDF_library()->diminq(in.id, dimension, nullptr, &length) < 0)
        return 0;
    return std::max(length, 0L);
}

bool NETCDF_find(const NetcdfInput &in, const char *name, NetcdfShape *shape) {
    shape->id = NETCDF_library()->varid(in.id, name);
    if (shape->id < 0 ||
        NETCDF_library()->varinq(in.id, shape->id, nullptr, &shape->type, &shape->rank, nullptr,
                                 nullptr) < 0 ||
        shape->rank > NETCDF_MOST_RANK)
        return false;
    NETCDF_library()->varinq(in.id, shape->id, nullptr, nullptr, nullptr, shape->dimensions,
                             nullptr);
    for (int i = 0; i < shape->rank; i++)
        shape->length[i] = NETCDF_length(in, shape->dimensions[i]);
    return is_numeric(shape->type) || shape->type == NC_CHAR;
}

bool NETCDF_read(const NetcdfInput &in, const char *name, int dimension, int entry,
                 NetcdfValues *v) {
    NetcdfShape shape;
    if (!NETCDF_find(in, name, &shape))
        return false;
    long start[NETCDF_MOST_RANK] = {};
    int first = 0; // of the dimensions that are read whole
    if (dimension >= 0) {
        if (shape.rank < 1 || shape.dimensions[0] != dimension || entry >= shape.length[0])
            return false;
        start[0] = entry;
        shape.length[0] = 1;
        first = 1;
    }
    long values = 1;
    for (int i = first; i < shape.rank; i++) {
        if (shape.length[i] < 1 || shape.length[i] > NETCDF_MOST_VALUES / values)
            return false;
        values *= shape.length[i];
    }
    v->type = shape.type;
    v->count = int(values);
    return NETCDF_library()->varget(in.id, shape.id, start, shape.length, v->bytes) >= 0;
}

bool NETCDF_read_numbers(const NetcdfInput &in, const char *name, int dimension, int entry,
                         NetcdfValues *v) {
    return NETCDF_read(in, name, dimension, entry, v) && NETCDF_is_number(*v);
}

bool NETCDF_read_text(const NetcdfInput &in, const char *name, int dimension, int entry,
                      size_t most, char *dest, size_t size) {
    NetcdfValues v;
    if (!NETCDF_read(in, name, dimension, entry, &v) || !NETCDF_is_text(v))
        return false;
    const size_t n = std::min({size_t(v.count), most, size - 1});
    memcpy(dest, v.bytes, n);
    dest[n] = '\0';
    STR_replace_char(dest, in.missing_c, ' ');
    STR_strip_trailing(dest);
    return true;
}

bool NETCDF_read_line(const NetcdfInput &in, const NetcdfShape &shape, int line, int count,
                      NetcdfValues *v) {
    if (shape.rank != 2 || line >= shape.length[0] || count < 1 || count > shape.length[1] ||
        count > NETCDF_MOST_VALUES)
        return false;
    const long start[] = {line, 0}, counts[] = {1, count};
    v->type = shape.type;
    v->count = count;
    return NETCDF_library()->varget(in.id, shape.id, start, counts, v->bytes) >= 0;
}

bool NETCDF_attribute(const NetcdfInput &in, const char *name, NetcdfValues *v) {
    int length;
    if (NETCDF_library()->attinq(in.id, NC_GLOBAL, name, &v->type, &length) < 0 || length < 1 ||
        length > NETCDF_MOST_VALUES || v->type > NC_DOUBLE)
        return false;
    v->count = length;
    return NETCDF_library()->attget(in.id, NC_GLOBAL, name, v->bytes) >= 0;
}

bool NETCDF_text_attribute(const NetcdfInput &in, const char *name, char *dest, size_t size) {
    nc_type type;
    int length;
    memset(dest, 0, size);
    return NETCDF_library()->attinq(in.id, NC_GLOBAL, name, &type, &length) >= 0 &&
           type == NC_CHAR && length >= 0 && size_t(length) < size &&
           NETCDF_library()->attget(in.id, NC_GLOBAL, name, dest) >= 0;
}

bool NETCDF_is_text(const NetcdfValues &v) { return v.type == NC_CHAR; }
bool NETCDF_is_number(const NetcdfValues &v) { return is_numeric(v.type); }

double NETCDF_number(const NetcdfInput &in, const NetcdfValues &v, int i) {
    if (i >= v.count)
        return MISSING;
    double value = MISSING, missing = in.missing_i;
    switch (v.type) {
    case NC_BYTE:
        value = value_as<int8_t>(v, i);
        break;
    case NC_SHORT:
        value = value_as<int16_t>(v, i);
        break;
    case NC_INT:
        value = value_as<int32_t>(v, i);
        break;
    case NC_FLOAT:
        value = value_as<float>(v, i);
        missing = double(float(in.missing_f)); // it may be told more closely than the values
        break;
    case NC_DOUBLE:
        value = value_as<double>(v, i);
        missing = in.missing_f;
        break;
    }
    return value == missing || !std::isfinite(value) ? MISSING : value;
}
