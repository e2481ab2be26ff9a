/* A netCDF file of the classic form, made in memory. */
#pragma once

#include <string>
#include <vector>

struct NetcdfDimension {
    std::string name;
    int length;
    bool unlimited = false; // length counts the records then
};

/* Values in the order of the dimensions: numbers, or characters of a text. */
struct NetcdfVariable {
    std::string name;
    int type; // of the library: NC_BYTE, NC_CHAR, NC_SHORT, NC_INT, NC_FLOAT, NC_DOUBLE
    std::vector<std::string> dimensions;
    std::vector<double> numbers = {};
    std::string text = "";
};

/* A number, or a text when there is one. */
struct NetcdfAttribute {
    std::string name;
    int type;
    double number = 0.0;
    std::string text = "";
};

struct NetcdfFile {
    std::vector<NetcdfDimension> dimensions;
    std::vector<NetcdfAttribute> attributes;
    std::vector<NetcdfVariable> variables;

    NetcdfDimension &dimension(const std::string &name);
    NetcdfVariable &variable(const std::string &name);
};

/* Its bytes.  Values that are too few or too many are a fault of the caller, which ends it. */
std::string SMP_netcdf(const NetcdfFile &file);
