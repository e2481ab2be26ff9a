/* Values out of a netCDF file.
 *
 * Only files of the classic form are opened, and only data that are whole in the file are read.
 * Every read asks for the shape and type of a variable first and stays within its own buffers.
 */
#pragma once

#include "shell/missing.h"

#include <cstddef>
#include <cstdint>

constexpr int NETCDF_MOST_VALUES = 256; // of one read
constexpr int NETCDF_MOST_RANK = 8;

struct NetcdfInput {
    int id = -1;                // of the library; below 0 while nothing is open
    int64_t records = 0;        // that are whole in the file
    int record_dimension = -1;  // the unlimited one
    double missing_f = MISSING; // as the file writes them
    double missing_i = MISSING; //
    char missing_c = ' ';       //
};

/* A variable that holds numbers of a type of the classic form, or characters. */
struct NetcdfShape {
    int id = -1;
    int type = 0;
    int rank = 0;
    int dimensions[NETCDF_MOST_RANK] = {};
    long length[NETCDF_MOST_RANK] = {};
};

/* Some values, as the file has them. */
struct NetcdfValues {
    alignas(double) char bytes[NETCDF_MOST_VALUES * sizeof(double)];
    int type = 0;
    int count = 0;
};

/* Opens a file, and takes the missing values from its attributes "missing_val_f", "missing_val_i"
 * and "missing_val_c".  1 or 0.  Prints nothing. */
int NETCDF_open(const char *name, NetcdfInput *in);
void NETCDF_close(NetcdfInput *in);

int NETCDF_dimension(const NetcdfInput &in, const char *name); // -1 for none
long NETCDF_length(const NetcdfInput &in, int dimension);      // as told; 0 for none

bool NETCDF_find(const NetcdfInput &in, const char *name, NetcdfShape *shape);

/* Reads the values of one entry of the variable's first dimension, or with dimension -1 the whole
 * variable.  False when its first dimension is another, or there are too many values. */
bool NETCDF_read(const NetcdfInput &in, const char *name, int dimension, int entry,
                 NetcdfValues *values);
bool NETCDF_read_numbers(const NetcdfInput &in, const char *name, int dimension, int entry,
                         NetcdfValues *values);

/* The same of a text: at most most characters of it, without trailing blanks. */
bool NETCDF_read_text(const NetcdfInput &in, const char *name, int dimension, int entry,
                      size_t most, char *dest, size_t size);

/* The first so many values of a line of a variable of rank 2. */
bool NETCDF_read_line(const NetcdfInput &in, const NetcdfShape &shape, int line, int count,
                      NetcdfValues *values);

/* Global attributes: values, up to NETCDF_MOST_VALUES, and a text that has room in dest. */
bool NETCDF_attribute(const NetcdfInput &in, const char *name, NetcdfValues *values);
bool NETCDF_text_attribute(const NetcdfInput &in, const char *name, char *dest, size_t size);

bool NETCDF_is_text(const NetcdfValues &values);
bool NETCDF_is_number(const NetcdfValues &values);

/* One of the values; MISSING where the file says so, where it is no number, and past the end. */
double NETCDF_number(const NetcdfInput &in, const NetcdfValues &values, int i);
