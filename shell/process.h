/* The process: version, end, detaching. */
#pragma once

/* "5.59-LINUX-X11" and "50U". */
const char *VER_string();
const char *VER_build();

/* Ends the process with status through the normal exit path.  Every exit goes through here. */
[[noreturn]] void PROC_exit(int status);

/* Forks.  The parent ends with status 0; with a file device it first waits until the child has
 * ended (wait_for_child), so that a script that follows finds the document whole, and ends with the
 * child's status, or 1 when a signal killed it.  The child, with
 * SIGINT at its default, descriptors 0 to 2 on /dev/null and a process group of its own, returns 1;
 * 0 when /dev/null cannot be opened, -1 when the fork failed.  Buffered output is flushed
 * before the fork, so that nothing is written twice. */
int PROC_background(bool wait_for_child);
