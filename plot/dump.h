/* Picture files of a plot: which form, which name, and the writing. */
#pragma once

enum DumpFormat { DUMP_NONE = 0, DUMP_XWD, DUMP_GIF, DUMP_IMG, DUMP_PNG, DUMP_FORMATS };

/* Chooses a form and the name, or the key of a name convention, of its files.  A null or empty name
 * is "qra.gif", "qra.png", or "qra.xwd" for the other forms.  A form that there is not is
 * DUMP_NONE. */
void PLT_set_dump(int format, const char *name);
int PLT_dump_format();
const char *PLT_dump_name();

/* How the writers write. */
struct DumpOptions {
    int gif_interlace = 0;
    int gif_transparent = 0;
    int image_header = 1; // the native form begins with its header
};
DumpOptions *PLT_dump_options();

constexpr int DUMP_ALL = -4; // frames

/* Writes a frame, from 0, or all, or without frames the whole window, to a file under
 * `image_path`.  The convention's keys are i, the number of the frame or "win", and p, the title of
 * the window; its date is now.  Returns 0, also after a message about a file that was not written;
 * -1 without a form. */
int PLT_dump(int frame);

/* Lends the writers of GIF and window dumps to the keys of the window. */
void PLT_lend_dumps();

void PLT_dump_reset();
