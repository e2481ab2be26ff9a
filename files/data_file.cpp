#include "files/data_file.h"

#include "files/stream.h"
#include "shell/resource.h"

void FILE_data_name(const char *name, std::string *out) {
    FILE_join_path(RES_get("file_path"), name, out);
}

FILE *FILE_open_data(const char *name) {
    std::string path;
    FILE_data_name(name, &path);
    if (!FILE_is_stream(path.c_str()) && path[0] != '|' && FILE_is_dir(path.c_str()))
        return nullptr;
    return FILE_open(path.c_str(), "r");
}
