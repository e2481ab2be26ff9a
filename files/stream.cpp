#include "files/stream.h"

#include "shell/strings.h"

#include <algorithm>
#include <cstring>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

struct StreamState {
    std::vector<FILE *> pipes; // open ones, to be closed with pclose
};
StreamState streams;

bool stat_name(const char *name, struct stat *st) {
    if (!name)
        return false;
    std::string path;
    FILE_expand_home(name, &path);
    return stat(path.c_str(), st) == 0;
}

/* True for a file whose type bits are one of two. */
int has_type(const char *name, mode_t type, mode_t or_type) {
    struct stat st;
    if (!stat_name(name, &st))
        return 0;
    const mode_t found = st.st_mode & S_IFMT;
    return found == type || found == or_type;
}

} // namespace

FILE *FILE_open(const char *name, const char *mode) {
    const bool reading = mode[0] == 'r';
    if (FILE_is_stream(name))
        return reading ? stdin : stdout;
    if (name[0] == '|') {
        FILE *pipe = popen(name + 1, reading ? "r" : "w"); // pipes know no other modes
        if (pipe)
            streams.pipes.push_back(pipe);
        return pipe;
    }
    std::string path;
    FILE_expand_home(name, &path);
    if (!reading)
        FILE_make_dirs(&path, 1);
    return fopen(path.c_str(), mode);
}

int FILE_close(FILE *file) {
    if (!file)
        return 0;
    if (file == stdin)
        return 0;
    if (file == stdout || file == stderr)
        return fflush(file);
    const auto at = std::find(streams.pipes.begin(), streams.pipes.end(), file);
    if (at == streams.pipes.end())
        return fclose(file);
    streams.pipes.erase(at);
    return pclose(file);
}

int FILE_is_stream(const char *name) {
    if (!name || !*name || strcmp(name, "-") == 0)
        return 1;
    return STR_casecmp(name, "std") == 0 || STR_casecmp(name, "stdn") == 0;
}

int FILE_has_path(const char *name) {
    return name && (*name == '/' || *name == '.' || *name == '~');
}

void FILE_add_slash(std::string *path) {
    if (!path->empty() && path->back() != '/')
        *path += '/';
}

void FILE_join_path(const char *dir, const char *name, std::string *out) {
    std::string joined;
    if (dir && !FILE_is_stream(name) && !FILE_has_path(name)) {
        joined = dir;
        FILE_add_slash(&joined);
    }
    *out = joined + (name ? name : "");
}

void FILE_expand_home(const char *name, std::string *out) {
    if (!name || *name != '~') {
        *out = name ? name : "";
        return;
    }
    const char *slash = strchr(name, '/');
    const std::string user = slash ? std::string(name + 1, slash) : std::string(name + 1);
    const passwd *entry = user.empty() ? getpwuid(getuid()) : getpwnam(user.c_str());
    if (!entry) {
        *out = name;
        return;
    }
    *out = std::string(entry->pw_dir) + (slash ? slash : "");
}

int FILE_exists(const char *name) {
    struct stat st;
    return FILE_is_stream(name) || stat_name(name, &st);
}

int FILE_is_dir(const char *name) { return has_type(name, S_IFDIR, S_IFDIR); }

int FILE_is_regular(const char *name) { return has_type(name, S_IFREG, S_IFREG); }

int FILE_is_fifo(const char *name) { return has_type(name, S_IFIFO, S_IFIFO); }

int FILE_is_device(const char *name) { return has_type(name, S_IFCHR, S_IFBLK); }

int64_t FILE_size(const char *name) {
    struct stat st;
    return stat_name(name, &st) ? int64_t(st.st_size) : -1;
}

int64_t FILE_mtime(const char *name) {
    struct stat st;
    return stat_name(name, &st) ? int64_t(st.st_mtime) : -1;
}

int FILE_remove(const char *name) {
    std::string path;
    FILE_expand_home(name, &path);
    return unlink(path.c_str());
}

int FILE_make_dirs(std::string *name, int skip) {
    std::string &path = *name;
    std::replace(path.begin(), path.end(), '\\', '/');
    const size_t slash = path.rfind('/');
    if (slash != std::string::npos && slash > 0 && FILE_exists(path.substr(0, slash).c_str()))
        return 1;
    const StrList parts(path.c_str(), '/');
    std::string made;
    for (int i = 0; i < parts.count - skip; i++) {
        if (!*parts[i]) {
            if (made.empty() || made.back() != '/')
                made += '/';
            continue;
        }
        made += std::string(parts[i]) + "/";
        mkdir(made.c_str(), 0755);
    }
    return 0;
}
