/* A temporary folder for one test, removed with it. */
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

struct Scratch {
    std::filesystem::path dir;

    Scratch() {
        std::string form = (std::filesystem::temp_directory_path() / "radar-test-XXXXXX").string();
        dir = mkdtemp(form.data());
    }
    Scratch(const Scratch &) = delete;
    Scratch &operator=(const Scratch &) = delete;
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }

    std::string path(const std::string &name) const { return (dir / name).string(); }

    /* Writes a file, making its folders, and returns its path. */
    std::string write(const std::string &name, const std::string &content) const {
        std::filesystem::create_directories((dir / name).parent_path());
        std::ofstream(dir / name, std::ios::binary) << content;
        return path(name);
    }

    std::string read(const std::string &name) const {
        std::ifstream in(dir / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
};
