#include "kernel/state.h"

#include "shell/message.h"

#include <cstdarg>
#include <cstdio>

namespace {
constinit KernelState kern;

constexpr int kReportRoom = 256; // bytes of one report
} // namespace

KernelState &gstate() { return kern; }

void gstate_reset() { kern = KernelState{}; }

int gerror(const char *name, const char *format, ...) {
    if (!kern.reports)
        return -1;
    char text[kReportRoom];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    MSG_print(MSG_WARN, "%s: ", name);
    MSG_print(MSG_WARN, "%s\n", text);
    return -1;
}
