/* Replays a metafile into the current workstation. */
#pragma once

/* Runs the records of a file through the kernel's calls.  Unknown ones are skipped; a record that
 * the file's end cuts is not drawn.  Returns 0, also after the message about a file that cannot be
 * opened. */
int gread_metafile(const char *file);
