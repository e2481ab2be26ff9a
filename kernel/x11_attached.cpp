/* Attached X11 workstation: drawing into a pixmap that another process owns. */
#include "files/data_file.h"
#include "files/stream.h"
#include "kernel/page_part.h"
#include "kernel/state.h"
#include "kernel/truncate.h"
#include "kernel/workstation.h"
#include "kernel/x11_open.h"
#include "kernel/x11_state.h"
#include "kernel/x11_window.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace {
constexpr int kDefaultWidth = 640, kDefaultHeight = 512;

/* What the owner is told, in the first byte of a client message. */
enum OwnerCall { OWNER_NEW = 2, OWNER_KILL = 9 };
constexpr Atom kOwnerMessage = 62;
constexpr useconds_t kOwnerPause = 200000; // microseconds between two looks
constexpr int kOwnerLooks = 150;           // half a minute

struct AttachState {
    int mode = 0;
};
constinit AttachState attach;

struct Identifier {
    int window = 0;
    int pixmap = 0;
    int width = kDefaultWidth, height = kDefaultHeight;
    int colormap = 0;
    bool whole = false; // with window and colormap
};

int refuse(const char *why) {
    MSG_print(MSG_WARN, "gopen_ws: %s\n", why);
    return -1;
}

bool is_digit(char c) { return isdigit(static_cast<unsigned char>(c)); }

/* Numbers of a server have at most 29 bits.  False when the text names no
 * pixmap. */
bool read_identifier(const char *text, Identifier *id) {
    if (*text == '+')
        id->whole = sscanf(text + 1, "%9d:%9d:%9dx%9d:%9d", &id->window, &id->pixmap, &id->width,
                           &id->height, &id->colormap) == 5;
    else if (STR_ncasecmp(text, "0x", 2) == 0)
        sscanf(text + 2, "%8x:%9dx%9d", reinterpret_cast<unsigned *>(&id->pixmap), &id->width,
               &id->height);
    else
        sscanf(text, "%9d:%9dx%9d", &id->pixmap, &id->width, &id->height);
    id->window = std::max(id->window, 0);
    id->width = std::clamp(id->width, 1, X11_MAX_SIDE);
    id->height = std::clamp(id->height, 1, X11_MAX_SIDE);
    return id->pixmap > 0;
}

/* "w" and "window" stand for one file, "w3" for that with a number. */
std::string file_of(const char *text) {
    if (*text != 'w' && *text != 'W')
        return text;
    return is_digit(text[1]) ? "qraloop." + std::to_string(atoi(text + 1)) : "qraloop.win";
}

/* Replaces the name of a file by the word that it begins with. */
bool read_file(std::string *text) {
    FILE *file = FILE_open_data(file_of(text->c_str()).c_str());
    if (!file)
        return false;
    char word[256] = "";
    (void)!fscanf(file, "%255s", word);
    FILE_close(file);
    *text = word;
    return true;
}

int find_identifier(const char *connection, Identifier *id) {
    const StrList words(connection, ',');
    const char *given = words.count >= 2 ? words[1] : getenv("qrawindow");
    if (!given)
        given = getenv("WINDOW");
    if (!given)
        return refuse("window parameters not specified");
    std::string text = given;
    if (text.empty())
        return refuse("window id not specified");
    if (!is_digit(text[0]) && text[0] != '+' && !read_file(&text))
        return refuse("unable to open window id file");
    return read_identifier(text.c_str(), id) ? 0 : refuse("window id not specified");
}

/* The title of the owner's window, without what stands in brackets behind it.
 */
void take_title() {
    const X11State &x = gx11();
    const X11Quiet quiet; // the window may be a pixmap, which has no name
    char *name = nullptr;
    if (!XFetchName(x.display, x.window, &name) || !name)
        return;
    const std::string whole = name;
    XFree(name);
    gset_names(gget_x_name(), whole.substr(0, whole.find(" [")).c_str());
}

void tell_owner(OwnerCall call) {
    const X11State &x = gx11();
    const X11Quiet quiet;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = x.window;
    event.xclient.message_type = kOwnerMessage;
    event.xclient.format = 8;
    event.xclient.data.b[0] = char(call);
    XSendEvent(x.display, x.window, True, NoEventMask, &event);
}

/* Asks the owner for a new picture, and waits while it shows by its title that
 * it makes one. */
void ask_for_picture() {
    tell_owner(OWNER_NEW);
    for (int look = 0; look < kOwnerLooks; look++) {
        usleep(kOwnerPause);
        std::string suffix;
        gget_title_suffix(&suffix);
        if (suffix.empty() || suffix[0] != '+')
            return;
    }
    refuse("The owner of the window makes no new picture");
}

int place_in(int full, float fraction) { return gtrunc(double(float(full) * fraction)); }

/* Upper edge of a part of a page, which is told from below.  A hair is added, as thirds and the
 * like leave a tile just short of its pixel. */
int top_in(int full, const PagePart &part) {
    constexpr double kHair = 0.01; // pixels
    return gtrunc(full * (1.0 - double(part.y) - double(part.h)) + kHair);
}

void place_fraction(const char *text) {
    PagePart part;
    gpage_part(text, &part);
    KernelState &kern = gstate();
    kern.ws_x = std::clamp(place_in(kern.full_width, part.x), -X11_MAX_SIDE, X11_MAX_SIDE);
    kern.ws_y = std::clamp(top_in(kern.full_height, part), -X11_MAX_SIDE, X11_MAX_SIDE);
    kern.ws_width = std::clamp(place_in(kern.full_width, part.w), 1, X11_MAX_SIDE);
    kern.ws_height = std::clamp(place_in(kern.full_height, part.h), 1, X11_MAX_SIDE);
}

void place_pixels(const char *text) {
    int w, h, x, y;
    const int count = sscanf(text, "%9dx%9d+%9d+%9d", &w, &h, &x, &y);
    if (count != 4 && count != 2)
        return;
    KernelState &kern = gstate();
    kern.ws_width = std::clamp(w, 1, kern.full_width);
    kern.ws_height = std::clamp(h, 1, kern.full_height);
    if (count == 2)
        return;
    kern.ws_x = std::clamp(x, -X11_MAX_SIDE, X11_MAX_SIDE);
    kern.ws_y = std::clamp(y, -X11_MAX_SIDE, X11_MAX_SIDE);
}

/* The part of the pixmap that is drawn on. */
void place_drawing(const Identifier &id) {
    KernelState &kern = gstate();
    kern.ws_x = kern.ws_y = 0;
    kern.ws_width = kern.full_width = id.width;
    kern.ws_height = kern.full_height = id.height;
    const char *text = RES_get("geometry");
    if (!text || !*text)
        return;
    if (*text == 'P' || *text == 'p')
        place_fraction(text + 1);
    else
        place_pixels(text);
}
} // namespace

int gx11_open_attached(const char *connection) {
    Identifier id;
    if (gx11_open_display(connection) < 0)
        return -1;
    X11State &x = gx11();
    if (find_identifier(connection, &id) < 0) {
        gx11_close_display();
        return -1;
    }
    x.base_pixmap = x.draw_pixmap = Pixmap(id.pixmap);
    x.window = id.window ? Window(id.window) : Window(id.pixmap);
    x.private_cmap = id.whole ? Colormap(std::max(id.colormap, 0)) : 0;
    take_title();
    x.gc = gx11_make_gc(x.window);
    if (attach.mode == OWNER_NEW)
        ask_for_picture();
    gx11_init_colormap();
    place_drawing(id);
    return 0;
}

void gx11_close_attached() {
    X11State &x = gx11();
    if (!x.display)
        return;
    gx11_free_contexts();
    XSync(x.display, False);
    if (attach.mode == OWNER_KILL)
        tell_owner(OWNER_KILL);
    gx11_close_display();
}

int gset_attach_mode(int mode) {
    attach.mode = mode;
    return 0;
}

int gget_attach_mode() { return attach.mode; }
