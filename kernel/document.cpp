#include "kernel/document.h"

#include "files/stream.h"
#include "shell/message.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <unistd.h>

static void flush(Document *doc) {
    if (doc->file && !doc->failed)
        doc->failed = fwrite(doc->text, 1, doc->used, doc->file) != doc->used;
    doc->used = 0;
}

/* Standard output, as a stream of the document's own: a run that goes to the background closes the
 * other one before the document is whole. */
static FILE *open_stdout() {
    fflush(stdout);
    const int copy = dup(STDOUT_FILENO);
    return copy < 0 ? nullptr : fdopen(copy, "w");
}

static FILE *open_target(const Document &doc, const char *target) {
    if (FILE_is_stream(doc.name.c_str()))
        return open_stdout();
    return doc.append ? FILE_open(doc.name.c_str(), "a") : FILE_open(target, "w");
}

int gdoc_open(Document *doc, const char *target) {
    const bool prefix = *target == '|' || *target == '+';
    MSG_print(MSG_MESS, "%s: %s\n",
              *target == '|'   ? "Spooling to"
              : *target == '+' ? "Appending to"
                               : "Creating",
              prefix ? target + 1 : target);
    return gdoc_open_quietly(doc, target);
}

int gdoc_open_quietly(Document *doc, const char *target) {
    gdoc_close(doc);
    doc->append = *target == '+';
    doc->failed = false;
    doc->used = 0;
    doc->name = *target == '|' || doc->append ? target + 1 : target;
    doc->file = open_target(*doc, target);
    return doc->file ? 1 : 0;
}

int gdoc_close(Document *doc) {
    if (!doc->file)
        return -1;
    flush(doc);
    doc->failed |= fflush(doc->file) != 0 || ferror(doc->file);
    errno = 0;
    // A detached process cannot wait for a command that its parent started: no fault of the text.
    doc->failed |= FILE_close(doc->file) != 0 && errno != ECHILD;
    doc->file = nullptr;
    return doc->failed ? 0 : 1;
}

char *gdoc_room(Document *doc) {
    if (!doc->file || doc->used > DOC_BUFFER - DOC_ROOM)
        flush(doc);
    return doc->text + doc->used;
}

static void put_bytes(Document *doc, const char *bytes, size_t count) {
    while (count > 0) {
        char *at = gdoc_room(doc);
        const size_t part = std::min(count, DOC_ROOM);
        memcpy(at, bytes, part);
        gdoc_took(doc, at + part);
        bytes += part;
        count -= part;
    }
}

void gdoc_text(Document *doc, const char *text) { put_bytes(doc, text, strlen(text)); }

void gdoc_printf(Document *doc, const char *format, ...) {
    char text[DOC_ROOM];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    gdoc_text(doc, text);
}

void gdoc_comment(Document *doc, const char *text) {
    std::string line = text;
    const auto is_control = [](unsigned char c) { return c < ' ' || c == 0x7f; };
    std::replace_if(line.begin(), line.end(), is_control, ' ');
    put_bytes(doc, line.data(), line.size());
}
