/* Output file of a device: text gathered in one large buffer in front of a stream.
 *
 * Without a stream every call does nothing.  A failed write is remembered until the end.
 */
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

constexpr size_t DOC_BUFFER = 64 * 1024;
constexpr size_t DOC_ROOM = 256; // bytes that one gdoc_room gives

struct Document {
    FILE *file = nullptr; // owned
    std::string name;     // as the user wrote it
    bool append = false;  // goes behind what the file holds already
    bool failed = false;
    size_t used = 0;
    char text[DOC_BUFFER];
};

/* Opens a target: a file, "|" and a command, "+" and a file to append to.  Says so at MSG_MESS.
 * Returns 1, or 0 when it cannot be opened. */
int gdoc_open(Document *doc, const char *target);
int gdoc_open_quietly(Document *doc, const char *target); // for a device with a message of its own

/* Writes out what is left and closes.  Returns 1; 0 when any part of the document was not written;
 * -1 when none is open. */
int gdoc_close(Document *doc);

/* The quick way in: room for DOC_ROOM bytes, and how far they were filled. */
char *gdoc_room(Document *doc);
inline void gdoc_took(Document *doc, const char *end) { doc->used = size_t(end - doc->text); }

void gdoc_text(Document *doc, const char *text);
void gdoc_printf(Document *doc, const char *format, ...) __attribute__((format(printf, 2, 3)));

/* Text from outside inside a comment line: control characters, which could end the line, come out
 * as blanks. */
void gdoc_comment(Document *doc, const char *text);
