/* Events of the window: keys, buttons, exposure, and the wait for the user.
 *
 * Exposure is answered whenever events are taken.  Keys, buttons and changes of size act only in
 * the wait: while a plot is drawn, and while a procedure of the layers above runs, they are noted
 * for it, so that no plot starts inside another.
 */
#pragma once

/* What is reported: a key as its text ("v-Alt"), a button as "B1-P", "B1-R", with "-Alt", "-Shft",
 * "-Cntrl" behind; "size" with the new width and height.  x and y are world coordinates; kind is 2
 * for keys and sizes, 3 for buttons. */
enum EventKind { EVENT_KEY = 2, EVENT_BUTTON = 3 };

/* Take the events that are there; gwait_events first waits for one.  The number of keys and buttons
 * that acted. */
int gpoll_events();
int gwait_events();

/* Shows the picture until the user ends the wait; loops through the frames.  Inside a wait it does
 * nothing. */
int gwait_user(int ws);

/* Waits out the delay of the current frame, as long as the loop goes on; -1 without one. */
int gframe_wait();

/* A procedure every so many seconds of the wait; 0 or null ends that. */
int gset_timer(int seconds, void (*call)());

/* A line (1) or box (2) that follows the pointer from the next press, or the one that is being
 * reported, on to the release; 0 none. */
int gset_rubber(int mode);

/* Writers of the selected frame for the keys that dump frames: 0, or -1. */
using FrameWriter = int (*)(const char *file);
void gset_frame_dump(FrameWriter gif, FrameWriter xwd);

/* Drops what was noted, for a new window: it was meant for the one before. */
void gevents_forget();

void gevents_reset();
