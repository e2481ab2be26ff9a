/* What the tests of the shell share: fresh state, typed input, environment, a folder of its own. */
#pragma once

#include "shell/defaults.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/missing.h"
#include "shell/params.h"
#include "shell/prompt.h"
#include "shell/resource.h"
#include "tests/support/input.h"
#include "tests/support/scratch.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

inline void fresh_shell() {
    MSG_reset();
    RES_reset();
    DEF_reset();
    DRAW_reset();
    PAR_fill(MISSING);
}

using Typed = TypedInput;
using Folder = Scratch;

/* A variable of the environment while this lives. */
class Env {
  public:
    Env(const char *name, const char *value) : name_(name) { setenv(name, value, 1); }
    Env(const Env &) = delete;
    ~Env() { unsetenv(name_); }

  private:
    const char *name_;
};

/* Standard output of a call. */
template <class Call>
std::string output_of(Call call) {
    testing::internal::CaptureStdout();
    call();
    return testing::internal::GetCapturedStdout();
}
