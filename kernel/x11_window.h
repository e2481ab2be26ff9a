/* The window of the X11 device: title, cursor, size, what it shows.  Without a window the calls do
 * nothing.
 */
#pragma once

#include <string>

/* Of an attached workstation: 1 clear the picture, 2 ask the owner for a new one, 9 end its wait.
 */
int gset_attach_mode(int mode);

/* Window name: a title and, behind a blank, a suffix.  0, or -1 without a window. */
int gset_title(const char *name);
int gset_title_suffix(const char *text);
int gget_title_suffix(std::string *out);

enum CursorSlot {
    CURSOR_NONE = 0,
    CURSOR_CALL = 1,    // while a procedure of the layers above runs
    CURSOR_LOOP = 3,    // frames are looping
    CURSOR_FRAMES = 4,  // waiting, with frames
    CURSOR_PICTURE = 6, // waiting, with one picture
    CURSOR_WORK = 8,
};
int gset_cursor(int slot); // the former slot; waits for the display
int gset_cursor_nosync(int slot);

int gset_bell(int percent); // 0 is 50
int gsync();                // waits until the display has done everything
int gcopy_to_window();      // 0, or -1 without a window

/* Setting of the display for a resource name, or null. */
const char *gx11_preset(const char *name);
