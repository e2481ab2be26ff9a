#include "shell/process.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

const char *VER_string() { return "5.59-LINUX-X11"; }

const char *VER_build() { return "50U"; }

void PROC_exit(int status) { exit(status); }

constexpr int kChildDied = 1; // no document was finished

/* The streams and whatever else an exit handler would close belong to the child now, so the parent
 * leaves without running any. */
[[noreturn]] static void leave_parent(pid_t child, bool wait_for_child) {
    if (!wait_for_child)
        _exit(0);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    _exit(WIFEXITED(status) ? WEXITSTATUS(status) : kChildDied);
}

int PROC_background(bool wait_for_child) {
    fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        return -1;
    if (child > 0)
        leave_parent(child, wait_for_child);

    signal(SIGINT, SIG_DFL);
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; fd++)
        close(fd);
    if (open("/dev/null", O_RDWR) != STDIN_FILENO)
        return 0;
    const bool filled = dup(STDIN_FILENO) == STDOUT_FILENO && dup(STDIN_FILENO) == STDERR_FILENO;
    setpgid(0, 0);
    return filled ? 1 : 0;
}
