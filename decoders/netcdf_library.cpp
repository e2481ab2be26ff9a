#include "decoders/netcdf_library.h"

#include "shell/message.h"

#include <dlfcn.h>

namespace {

struct LibraryState {
    bool tried = false;
    bool whole = true; // every call was found
    NetcdfLibrary calls = {};
};
LibraryState library;

template <typename Call>
void find(void *handle, const char *name, Call *call) {
    *call = reinterpret_cast<Call>(dlsym(handle, name));
    library.whole = library.whole && *call;
}

void find_calls(void *handle) {
    NetcdfLibrary &c = library.calls;
    find(handle, "ncopen", &c.open);
    find(handle, "ncclose", &c.close);
    find(handle, "ncinquire", &c.inquire);
    find(handle, "ncdimid", &c.dimid);
    find(handle, "ncdiminq", &c.diminq);
    find(handle, "ncvarid", &c.varid);
    find(handle, "ncvarinq", &c.varinq);
    find(handle, "ncvarget", &c.varget);
    find(handle, "ncattinq", &c.attinq);
    find(handle, "ncattget", &c.attget);
}

/* The library stays loaded: it does not stand being loaded twice. */
void load() {
    library.tried = true;
    void *handle = dlopen(RADAR_NETCDF_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (handle)
        find_calls(handle);
    library.whole = library.whole && handle;
    if (!library.whole) {
        MSG_print(MSG_ERROR, "NETCDF_library: Unable to load: %s\n", dlerror());
        return;
    }
    if (int *options = static_cast<int *>(dlsym(handle, "ncopts")))
        *options = 0; // it neither prints nor exits
}

} // namespace

const NetcdfLibrary *NETCDF_library() {
    if (!library.tried)
        load();
    return library.whole ? &library.calls : nullptr;
}
