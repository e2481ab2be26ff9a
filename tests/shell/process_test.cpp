#include "shell/process.h"

#include "tests/shell/shell_fixture.h"

#include <csignal>
#include <sys/wait.h>

/* Runs the detaching in a process of its own, whose standard output is a file. */
static int run_detached(const Folder &folder, bool wait_for_child) {
    const std::string out = folder.path("out");
    const std::string mark = folder.path("mark");
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGINT, SIG_IGN);
        if (!freopen(out.c_str(), "w", stdout))
            _exit(90);
        printf("once");
        const int result = PROC_background(wait_for_child);
        printf("not seen");
        fflush(stdout);
        usleep(200000);
        const bool detached =
            result == 1 && signal(SIGINT, SIG_DFL) == SIG_DFL && getpgrp() == getpid();
        FILE *file = fopen((mark + ".new").c_str(), "w");
        if (file) {
            fprintf(file, detached ? "done" : "not detached");
            fclose(file);
        }
        rename((mark + ".new").c_str(), mark.c_str());
        _exit(5);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(Process, BackgroundDetachesTheChild) {
    const Folder folder;
    EXPECT_EQ(run_detached(folder, true), 5) << "the parent ends as the child did";
    EXPECT_EQ(folder.read("mark"), "done") << "the parent waits for the end of the child";
    EXPECT_EQ(folder.read("out"), "once");

    std::filesystem::remove(folder.path("mark"));
    EXPECT_EQ(run_detached(folder, false), 0);
    for (int i = 0; i < 500 && folder.read("mark").empty(); i++)
        usleep(10000);
    EXPECT_EQ(folder.read("mark"), "done");
}
