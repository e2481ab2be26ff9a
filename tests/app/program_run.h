/* Runs of the whole program. */
#pragma once

#include "tests/support/scratch.h"

#include <string>
#include <sys/wait.h>

inline const std::string kSource = RADAR_SOURCE_DIR;
inline const std::string kSamples = kSource + "/data/samples/";

struct Outcome {
    int status = -1;  // -1 for a process that a signal ended
    std::string text; // standard output and error
};

/* Runs the program in a folder of its own, with the shipped data and no other settings. */
inline Outcome run(const Scratch &scratch, const std::string &arguments,
                   const std::string &before = "") {
    const char *program = getenv("RADAR_PROGRAM");
    const std::string command = "cd " + scratch.dir.string() +
                                " && env -u qradefault qrafile=" + kSource + "/data timeout 60 " +
                                before + " " + (program ? program : "radar") + " -df " +
                                scratch.path("none") + " " + arguments + " 2>&1 </dev/null";
    Outcome out;
    FILE *pipe = popen(command.c_str(), "r");
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        out.text.append(buffer, n);
    const int status = pclose(pipe);
    out.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return out;
}
