#include "tools/samples/netcdf_writer.h"

#include <cstdio>
#include <cstdlib>
#include <netcdf.h>
#include <netcdf_mem.h>

namespace {

constexpr size_t kFirstBytes = 1; // it grows to what is needed

void check(int status) {
    if (status == NC_NOERR)
        return;
    fprintf(stderr, "netCDF: %s\n", nc_strerror(status));
    abort();
}

template <typename Item>
Item &named(std::vector<Item> &items, const std::string &name) {
    for (Item &item : items)
        if (item.name == name)
            return item;
    fprintf(stderr, "netCDF: no %s\n", name.c_str());
    abort();
}

void define_variable(int id, const NetcdfVariable &v) {
    std::vector<int> dimensions(v.dimensions.size());
    for (size_t i = 0; i < dimensions.size(); i++)
        check(nc_inq_dimid(id, v.dimensions[i].c_str(), &dimensions[i]));
    int ignored;
    check(nc_def_var(id, v.name.c_str(), v.type, int(dimensions.size()), dimensions.data(),
                     &ignored));
}

void define(int id, const NetcdfFile &file) {
    int ignored;
    for (const NetcdfDimension &d : file.dimensions)
        check(nc_def_dim(id, d.name.c_str(), d.unlimited ? NC_UNLIMITED : size_t(d.length),
                         &ignored));
    for (const NetcdfAttribute &a : file.attributes)
        check(a.text.empty()
                  ? nc_put_att_double(id, NC_GLOBAL, a.name.c_str(), a.type, 1, &a.number)
                  : nc_put_att_text(id, NC_GLOBAL, a.name.c_str(), a.text.size(), a.text.c_str()));
    for (const NetcdfVariable &v : file.variables)
        define_variable(id, v);
    check(nc_enddef(id));
}

void put(int id, const NetcdfVariable &v, NetcdfFile file) {
    std::vector<size_t> start(v.dimensions.size()), count;
    size_t values = 1;
    for (const std::string &name : v.dimensions) {
        count.push_back(size_t(file.dimension(name).length));
        values *= count.back();
    }
    int variable;
    check(nc_inq_varid(id, v.name.c_str(), &variable));
    const bool is_text = v.type == NC_CHAR;
    if (values != (is_text ? v.text.size() : v.numbers.size())) {
        fprintf(stderr, "netCDF: values of %s\n", v.name.c_str());
        abort();
    }
    check(is_text ? nc_put_vara_text(id, variable, start.data(), count.data(), v.text.data())
                  : nc_put_vara_double(id, variable, start.data(), count.data(), v.numbers.data()));
}

} // namespace

NetcdfDimension &NetcdfFile::dimension(const std::string &name) { return named(dimensions, name); }
NetcdfVariable &NetcdfFile::variable(const std::string &name) { return named(variables, name); }

std::string SMP_netcdf(const NetcdfFile &file) {
    int id;
    check(nc_create_mem("summary", NC_CLOBBER, kFirstBytes, &id));
    define(id, file);
    for (const NetcdfVariable &v : file.variables)
        put(id, v, file);
    NC_memio made = {};
    check(nc_close_memio(id, &made));
    const std::string bytes(static_cast<const char *>(made.memory), made.size);
    free(made.memory);
    return bytes;
}
