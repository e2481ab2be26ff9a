/* Bytes as a file with a name. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

/* A pipe, so that no reader takes it for a file that may grow. */
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

/* A file in memory, for readers that go back. */
struct MemoryFile {
    int fd = memfd_create("input", 0);
    bool whole;

    explicit MemoryFile(std::string_view bytes = {})
        : whole(write(fd, bytes.data(), bytes.size()) == ssize_t(bytes.size())) {}
    MemoryFile(const uint8_t *data, size_t size)
        : MemoryFile(std::string_view(reinterpret_cast<const char *>(data), size)) {}
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;
    ~MemoryFile() { close(fd); }

    std::string name() const { return "/proc/self/fd/" + std::to_string(fd); }
};
