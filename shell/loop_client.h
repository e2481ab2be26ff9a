/* Client of a loop window: a program of its own that holds settings and gives them to what starts
 * beside it, over a System V message queue or a socket on the loopback address.
 *
 * One window is open at a time.  From LOOP_connect to LOOP_close the SIGALRM of the process is the
 * alarm of the window: it bounds each wait.  Shortly after it, a wait of which the alarm was not
 * heard (the signal is ignored) ends too, as a failure with a message.
 */
#pragma once

#include <string>

constexpr int LOOP_ASK_NUMBER = -1; // client number in a message that asks for one
constexpr int LOOP_GONE = -3;       // code of a reply: the window is not running
constexpr int LOOP_TOO_LONG = -2;   // of a send: nothing was sent, and a message says so

/* 0 a message queue (the start value), 1 a socket. */
void LOOP_set_transport(int transport);
void LOOP_set_key_base(int base); // added to the number of a window
void LOOP_set_timeout(int seconds);
void LOOP_set_handler(void (*handler)(int)); // of the alarm; null ends the process with status 7

/* Opens window n.  On a queue its id, -1 when there is none, 0 on another failure; on a socket 1 or
 * -1. */
int LOOP_connect(int n);

/* Gives the socket and the alarm back.  The window is not told. */
void LOOP_close();

/* Takes a connected socket for the window's, as LOOP_connect does with its own. */
void LOOP_adopt_socket(int fd);

/* Asks for a client number.  The number, or -1. */
int LOOP_register(int queue);

/* Formats and sends a message.  0 or more; -1 on failure, or LOOP_TOO_LONG. */
int LOOP_send(int queue, int client, const char *format, ...) __attribute__((format(printf, 3, 4)));

/* Waits for a reply to a client number.  The code of it, or a negative error. */
int LOOP_read(int queue, int client, std::string *text);

/* Drops what waits on the queue for a client number. */
void LOOP_flush(int queue, int type);

void LOOP_alarm_on();
void LOOP_alarm_off();

/* First of 50 window numbers from start on that nobody has, or -1.  Not while a window is open. */
int LOOP_find_free(int start);

void LOOP_reset();
