/* What the tests of the shell share: fresh state, typed input, environment, a folder of its own. */
#pragma once

#include "shell/defaults.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/missing.h"
#include "shell/params.h"
#include "shell/prompt.h"
#include "shell/resource.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <unistd.h>

inline void fresh_shell() {
    MSG_reset();
    RES_reset();
    DEF_reset();
    DRAW_reset();
    PAR_fill(MISSING);
}

/* Standard input holds text while this lives. */
class Typed {
  public:
    explicit Typed(const std::string &text) : saved_(dup(STDIN_FILENO)), file_(tmpfile()) {
        fwrite(text.data(), 1, text.size(), file_);
        rewind(file_);
        dup2(fileno(file_), STDIN_FILENO);
        MSG_prompt_reset();
    }
    Typed(const Typed &) = delete;
    ~Typed() {
        MSG_prompt_reset();
        dup2(saved_, STDIN_FILENO);
        close(saved_);
        fclose(file_);
    }

  private:
    int saved_;
    FILE *file_;
};

/* A variable of the environment while this lives. */
class Env {
  public:
    Env(const char *name, const char *value) : name_(name) { setenv(name, value, 1); }
    Env(const Env &) = delete;
    ~Env() { unsetenv(name_); }

  private:
    const char *name_;
};

/* A folder that goes with its files. */
class Folder {
  public:
    Folder() {
        std::string name = testing::TempDir() + "shell_XXXXXX";
        path_ = mkdtemp(name.data());
    }
    Folder(const Folder &) = delete;
    ~Folder() { std::filesystem::remove_all(path_); }

    std::string path(const std::string &name) const { return path_ + "/" + name; }
    std::string write(const std::string &name, const std::string &text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }
    std::string read(const std::string &name) const {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

  private:
    std::string path_;
};

/* Standard output of a call. */
template <class Call>
std::string output_of(Call call) {
    testing::internal::CaptureStdout();
    call();
    return testing::internal::GetCapturedStdout();
}
