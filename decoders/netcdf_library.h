/* The netCDF library, loaded when the first file of that form is opened.
 *
 * It brings some forty libraries with it, whose loading takes longer than most plots.
 */
#pragma once

#include <netcdf.h>

/* Its calls, under their names without the "nc" in front. */
struct NetcdfLibrary {
    decltype(&ncopen) open;
    decltype(&ncclose) close;
    decltype(&ncinquire) inquire;
    decltype(&ncdimid) dimid;
    decltype(&ncdiminq) diminq;
    decltype(&ncvarid) varid;
    decltype(&ncvarinq) varinq;
    decltype(&ncvarget) varget;
    decltype(&ncattinq) attinq;
    decltype(&ncattget) attget;
};

/* Null after a message where the library cannot be loaded. */
const NetcdfLibrary *NETCDF_library();
