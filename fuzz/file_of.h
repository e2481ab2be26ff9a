/* Bytes as a file with a name.  It is a pipe, so that no reader takes it for a file that may grow.
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <string>
#include <unistd.h>

struct FileOf {
    int end[2] = {-1, -1};
    bool whole = false; // a pipe holds a megabyte and no more

    FileOf(const uint8_t *data, size_t size) {
        if (pipe2(end, O_NONBLOCK) != 0)
            return;
        fcntl(end[1], F_SETPIPE_SZ, 1 << 20);
        whole = write(end[1], data, size) == ssize_t(size);
        close(end[1]);
    }
    FileOf(const FileOf &) = delete;
    FileOf &operator=(const FileOf &) = delete;
    ~FileOf() { close(end[0]); }

    std::string name() const { return "/proc/self/fd/" + std::to_string(end[0]); }
};
