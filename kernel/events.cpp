#include "kernel/events.h"

#include "files/stream.h"
#include "kernel/frame_table.h"
#include "kernel/frames.h"
#include "kernel/redraw_play.h"
#include "kernel/rubber.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "kernel/x11_resize.h"
#include "kernel/x11_state.h"
#include "kernel/x11_window.h"
#include "kernel/zoom.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <poll.h>
#include <string>
#include <thread>

namespace {
using Clock = std::chrono::steady_clock;

constexpr size_t kNotedMax = 256;   // events
constexpr int kKeyRoom = 80;        // bytes of a key's text
constexpr double kFrameNap = 0.2;   // seconds between looks for events in a long delay
constexpr int kEagerPasses = 50;    // of an idle wait with a timer
constexpr double kEagerNap = 0.1;   // seconds
constexpr double kIdleNap = 0.5;    //
constexpr int kBell = 50;           // percent
constexpr float kCoarseStep = 0.1f; // seconds of the loop delay
constexpr float kFineStep = 0.05f;

enum Request { REQUEST_FRAME = 2, REQUEST_END = 9 }; // of an attached client: first byte

enum class Wait { Idle, Waiting, Ended };

struct Place {
    int x, y; // pixels of the window
};

struct Noted {
    XEvent event;
    Place at; // of the pointer
};

struct EventState {
    Wait wait = Wait::Idle;
    bool busy = false;       // an event or the timer acts
    bool size_noted = false; // the window may have another size
    bool lost = false;       // the user was told that there were too many
    std::deque<Noted> noted;
    unsigned long shown = 0; // number of the request that filled the window, of this look
    Clock::time_point mark;  // when the frame was shown
    int timer_period = 0;    // seconds
    void (*timer_call)() = nullptr;
    Clock::time_point timer_next;
    FrameWriter gif = nullptr, xwd = nullptr;
};
EventState state;

/* While this lives, events are noted only. */
struct Busy {
    Busy() { state.busy = true; }
    Busy(const Busy &) = delete;
    ~Busy() { state.busy = false; }
};

struct CursorScope {
    int former;
    explicit CursorScope(int slot) : former(gset_cursor(slot)) {}
    CursorScope(const CursorScope &) = delete;
    ~CursorScope() { gset_cursor(former); }
};

bool listening() {
    return gx11().display && gx11().window && gis_x11_window() && gget_redraw_enabled();
}

double seconds_since(Clock::time_point then) {
    return std::chrono::duration<double>(Clock::now() - then).count();
}

void nap(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }

/* Sleeps, but not past the next event. */
void nap_or_event(double seconds) {
    Display *display = gx11().display;
    if (XPending(display) > 0)
        return;
    pollfd input = {ConnectionNumber(display), POLLIN, 0};
    poll(&input, 1, int(seconds * 1000.0));
}

void report(float x, float y, EventKind kind, const std::string &name) {
    const EventProc call = gget_event_call();
    if (!call)
        return;
    const CursorScope cursor(CURSOR_CALL);
    call(x, y, kind, name.c_str());
}

void report_at(Place at, EventKind kind, const std::string &name) {
    int x, y;
    gzoom_to_picture(at.x, at.y, &x, &y);
    report(gpx_to_world_x(float(x)), gpx_to_world_y(float(y)), kind, name);
}

std::string suffixes(unsigned held) {
    std::string text;
    if (held & Mod1Mask)
        text += "-Alt";
    if (held & ShiftMask)
        text += "-Shft";
    if (held & ControlMask)
        text += "-Cntrl";
    return text;
}

// Pictures of frames

struct DumpForm {
    const char *name, *ending;
    FrameWriter EventState::*writer;
    bool lone_in_path; // a picture without frames goes to image_path too
};
constexpr DumpForm kGif = {"GIF", "gif", &EventState::gif, true};
constexpr DumpForm kXwd = {"XWD", "xwd", &EventState::xwd, false};

std::string dump_path(const std::string &name) {
    std::string path;
    FILE_join_path(RES_get("image_path"), name.c_str(), &path);
    return path;
}

std::string dump_name(const DumpForm &form, int frame) {
    std::string name = std::string(gget_title()).substr(0, 5);
    std::replace(name.begin(), name.end(), ' ', '_');
    if (frame >= 0) {
        const std::string digits = std::to_string(frame);
        name += (digits.size() < 2 ? "-0" : "-") + digits;
    }
    return name + "." + form.ending;
}

bool write_dump(const DumpForm &form, const std::string &path) {
    if ((state.*form.writer)(path.c_str()) >= 0)
        return true;
    MSG_print(MSG_WARN, "gprocess_x11_event: Unable to write %s file: %s\n", form.name,
              path.c_str());
    return false;
}

void dump_one(const DumpForm &form, const std::string &path) {
    if (write_dump(form, path))
        MSG_print(MSG_MESS, "Created %s file: %s\n", form.name, path.c_str());
}

void dump_series(const DumpForm &form) {
    MSG_print(MSG_MESS, "Creating %s files:\n", form.name);
    for (int i = 0; i < gget_frame_count(); i++) {
        const std::string path = dump_path(dump_name(form, i));
        gselect_frame(i);
        if (write_dump(form, path))
            MSG_print(MSG_MESS, "%s\n", path.c_str());
    }
}

void dump_frames(const DumpForm &form) {
    if (!(state.*form.writer)) {
        MSG_print(MSG_WARN, "gprocess_x11_event: No writer of %s files\n", form.name);
        return;
    }
    const CursorScope cursor(CURSOR_WORK);
    const Pixmap target = gx11().draw_pixmap;
    if (gget_frame_count() < 2) {
        const std::string name = dump_name(form, -1);
        dump_one(form, form.lone_in_path ? dump_path(name) : name);
    } else if (gis_looping()) {
        dump_series(form);
    } else {
        const int frame = std::max(gcur_frame(), 0);
        gselect_frame(frame);
        dump_one(form, dump_path(dump_name(form, frame)));
    }
    gx11().draw_pixmap = target;
}

// Keys and buttons

void end_wait() { state.wait = Wait::Ended; }

void forward() {
    if (!gis_looping())
        gdisplay_frame(gnext_frame(1));
    else
        gstep_delay(gget_loop_delay() > 0.11f ? -kCoarseStep : -kFineStep);
}

void backward() {
    if (!gis_looping())
        gdisplay_frame(gnext_frame(-1));
    else
        gstep_delay(gget_loop_delay() >= 0.09f ? kCoarseStep : kFineStep);
}

void toggle() { gtoggle_looping(-1); }

/* A metafile that cannot be written is no reason to take the window from its user. */
void print_meta() {
    const CursorScope cursor(CURSOR_WORK);
    const int type = gget_ws_type();
    if (gprint_meta() < 0)
        gset_ws_type(type);
    else
        gset_bell(kBell);
}

/* With Alt held.  false: the layers above hear nothing of it. */
struct KeyCommand {
    char key;
    bool (*act)(Place at);
};
constexpr KeyCommand kKeys[] = {
    {'q', [](Place) { return end_wait(), true; }},
    {'d', [](Place) { return gdelete_frame(FRAME_CURRENT), true; }},
    {'z', [](Place at) { return gzoom(FRAME_CURRENT, at.x, at.y, -2, 0), true; }},
    {'u',
     [](Place) {
         const bool plain = gzoom_factor() == 1;
         return gunzoom(), plain;
     }},
    {'m', [](Place) { return print_meta(), true; }},
    {'g', [](Place) { return dump_frames(kGif), true; }},
    {'x', [](Place) { return dump_frames(kXwd), true; }},
    {'l', [](Place) { return toggle(), true; }},
    {']', [](Place) { return forward(), true; }},
    {'[', [](Place) { return backward(), true; }},
};

bool key_command(const std::string &text, const XKeyEvent &key) {
    if (!(key.state & Mod1Mask) || text.size() != 1)
        return true;
    for (const KeyCommand &k : kKeys)
        if (k.key == text[0])
            return k.act({key.x, key.y});
    return true;
}

int act_key(XKeyEvent &key, Place at) {
    char room[kKeyRoom];
    KeySym symbol = NoSymbol;
    const int length = XLookupString(&key, room, kKeyRoom, &symbol, nullptr);
    if (IsModifierKey(symbol)) // held for the next one
        return 0;
    std::string text(room, size_t(std::clamp(length, 0, kKeyRoom)));
    bool reported = true;
    if (symbol == XK_Return || symbol == XK_KP_Enter) {
        end_wait();
        text = "Ret";
    } else {
        reported = key_command(text, key);
    }
    if (reported)
        report_at(at, EVENT_KEY, text + suffixes(key.state));
    return 1;
}

void act_button(const XButtonEvent &button) {
    if (button.button == Button1)
        backward();
    else if (button.button == Button2)
        toggle();
    else
        forward();
}

/* Presses and releases; a wheel turns as buttons beyond the third, which mean nothing here. */
int act_button_event(const XButtonEvent &button) {
    if (button.button > Button3)
        return 0;
    const bool press = button.type == ButtonPress;
    const Place at = {button.x, button.y};
    if (press && !(button.state & Mod1Mask))
        act_button(button);
    if (press)
        grubber_start(at.x, at.y);
    else
        grubber_finish(at.x, at.y);
    report_at(at, EVENT_BUTTON,
              "B" + std::to_string(button.button) + (press ? "-P" : "-R") + suffixes(button.state));
    return 1;
}

// Size, requests, exposure

void act_size() {
    if (!gresize_ws(-1, -1))
        return;
    ginit_ws(1);
    grubber_reset();
    report(float(gstate().ws_width), float(gstate().ws_height), EVENT_KEY, "size");
}

/* A client wants a new frame.  It draws into one and the same pixmap, the first that the window
 * had: this becomes the last frame, and the frame before takes what it drew so far. */
void act_frame_request() {
    const int former = gget_frame_count();
    if (former == 0)
        gunzoom();
    const int n = gnew_frame(-1);
    if (former == 0 && n == 0) {
        gset_looping(1);
        gswap_frames(0, FRAME_BASE);
    } else if (n > 0) {
        gcopy_frame(n, n - 1);
        gswap_frames(n, n - 1);
        gclear_frame(n);
        gsync();
    }
    gset_title_suffix(""); // the client may go on
}

bool is_request(const XClientMessageEvent &message, Request request) {
    return message.format == 8 && message.data.b[0] == request;
}

bool is_close(const XClientMessageEvent &message) {
    return message.format == 32 && gx11().delete_window &&
           Atom(message.data.l[0]) == gx11().delete_window;
}

void act_message(const XClientMessageEvent &message) {
    if (is_close(message) || is_request(message, REQUEST_END))
        end_wait();
    else if (is_request(message, REQUEST_FRAME))
        act_frame_request();
}

/* One copy answers all that was uncovered before it: their events carry the number of an earlier
 * request. */
void expose(const XExposeEvent &event) {
    if (state.shown != 0 && event.serial < state.shown)
        return;
    state.shown = NextRequest(gx11().display);
    gx11().mapped = true;
    gcopy_to_window();
}

// Taking and acting

Place pointer_place(const XKeyEvent &key) {
    Window root, child;
    int root_x, root_y;
    unsigned held;
    Place at;
    if (!XQueryPointer(key.display, key.window, &root, &child, &root_x, &root_y, &at.x, &at.y,
                       &held))
        return {key.x, key.y};
    return at;
}

void note(const XEvent &event, Place at) {
    if (state.noted.size() < kNotedMax) {
        state.noted.push_back({event, at});
        return;
    }
    if (!state.lost)
        MSG_print(MSG_WARN, "gpoll_events: Too many keys and buttons wait, some are lost\n");
    state.lost = true;
}

/* Of motions in a row the last one counts. */
void note_motion(XEvent event) {
    XEvent next;
    while (XPending(gx11().display) > 0) {
        XPeekEvent(gx11().display, &next);
        if (next.type != MotionNotify)
            break;
        XNextEvent(gx11().display, &event);
    }
    if (!state.noted.empty() && state.noted.back().event.type == MotionNotify)
        state.noted.back().event = event;
    else
        note(event, {});
}

/* Takes one event, and waits for it if need be. */
void take_event() {
    X11State &x = gx11();
    XEvent event;
    XNextEvent(x.display, &event);
    if (event.type == MappingNotify)
        XRefreshKeyboardMapping(&event.xmapping);
    if (event.xany.window != x.window)
        return;
    switch (event.type) {
    case Expose:
        expose(event.xexpose);
        break;
    case MapNotify:
    case UnmapNotify:
        x.mapped = event.type == MapNotify;
        break;
    case ConfigureNotify:
        state.size_noted = true;
        break;
    case ClientMessage:
        if (is_request(event.xclient, REQUEST_FRAME))
            gset_title_suffix("+"); // the client waits until this is gone
        note(event, {});
        break;
    case KeyPress:
        note(event, pointer_place(event.xkey));
        break;
    case ButtonPress:
    case ButtonRelease:
        note(event, {});
        break;
    case MotionNotify:
        note_motion(event);
        break;
    default:
        break;
    }
}

int act(Noted &noted) {
    const Busy busy;
    switch (noted.event.type) {
    case ClientMessage:
        act_message(noted.event.xclient);
        return 0;
    case KeyPress:
        return act_key(noted.event.xkey, noted.at);
    case MotionNotify:
        grubber_move(noted.event.xmotion.x, noted.event.xmotion.y);
        return 0;
    default:
        return act_button_event(noted.event.xbutton);
    }
}

/* In the wait: what was noted.  The number of keys and buttons. */
int act_on_noted() {
    int seen = 0;
    while (state.wait == Wait::Waiting && !state.busy && listening()) {
        if (state.size_noted) {
            state.size_noted = false;
            const Busy busy;
            act_size();
        } else if (!state.noted.empty()) {
            Noted first = state.noted.front();
            state.noted.pop_front();
            if (first.event.xany.window == gx11().window) // not one that is closed since
                seen += act(first);
        } else {
            state.lost = false;
            break;
        }
    }
    return seen;
}

int take_events() {
    int seen = act_on_noted();
    while (listening() && state.wait != Wait::Ended && XPending(gx11().display) > 0) {
        take_event();
        seen += act_on_noted();
    }
    return seen;
}

// The wait

void set_wait_cursor(int slot) {
    if (gx11().cursor != slot)
        gset_cursor(slot);
}

void loop_pass() {
    set_wait_cursor(CURSOR_LOOP);
    gframe_wait();
    if (state.wait == Wait::Waiting && listening() && gx11().mapped && gis_looping())
        gdisplay_frame(gnext_frame(0));
    state.mark = Clock::now();
    gpoll_events();
}

/* idle counts the passes without a key or button. */
void still_pass(int *idle) {
    set_wait_cursor(gget_frame_count() > 1 ? CURSOR_FRAMES : CURSOR_PICTURE);
    if (!state.timer_call) {
        gwait_events();
        return;
    }
    nap_or_event(*idle < kEagerPasses ? kEagerNap : kIdleNap);
    *idle = gpoll_events() > 0 ? 0 : std::min(*idle + 1, kEagerPasses);
}

void start_timer() { state.timer_next = Clock::now() + std::chrono::seconds(state.timer_period); }

void run_timer() {
    const Clock::time_point now = Clock::now();
    if (!state.timer_call || now < state.timer_next || state.wait != Wait::Waiting)
        return;
    state.timer_next += std::chrono::seconds(state.timer_period);
    if (state.timer_next < now) // it took longer than its period
        start_timer();
    {
        const Busy busy;
        state.timer_call();
    }
    gpoll_events();
}
} // namespace

int gpoll_events() {
    state.shown = 0;
    return take_events();
}

int gwait_events() {
    state.shown = 0;
    if (!listening())
        return 0;
    take_event();
    return take_events();
}

int gwait_user(int) {
    if (!listening() || state.wait != Wait::Idle || state.busy)
        return 0;
    state.wait = Wait::Waiting;
    state.mark = Clock::now();
    start_timer();
    gpoll_events();
    gsync();
    int idle = 0;
    while (state.wait == Wait::Waiting && listening()) {
        // With nothing to see, the loop rests until the window is back.
        if (gis_looping() && gget_frame_count() > 0 && gx11().mapped)
            loop_pass();
        else
            still_pass(&idle);
        run_timer();
    }
    state.wait = Wait::Idle;
    state.noted.clear(); // for a picture that is done with
    grubber_reset();
    gset_bell(kBell);
    gset_cursor(CURSOR_NONE);
    return gsync();
}

int gframe_wait() {
    for (;;) {
        const FrameTable &table = gframe_table();
        if (table.current < 0 || table.current >= table.count)
            return -1;
        const double rest = double(table.frames[table.current].delay) - seconds_since(state.mark);
        if (rest <= 0.0)
            return 0;
        if (rest > kFrameNap)
            gpoll_events();
        if (state.wait == Wait::Ended || (state.wait == Wait::Waiting && !gis_looping()))
            return 0;
        nap(std::min(rest, kFrameNap));
    }
}

int gset_timer(int seconds, void (*call)()) {
    state.timer_period = seconds > 0 ? seconds : 0;
    state.timer_call = seconds > 0 ? call : nullptr;
    start_timer();
    return 0;
}

int gset_rubber(int mode) {
    grubber_set(mode);
    return 1;
}

void gset_frame_dump(FrameWriter gif, FrameWriter xwd) {
    state.gif = gif;
    state.xwd = xwd;
}

void gevents_forget() {
    state.noted.clear();
    state.size_noted = false;
    state.lost = false;
    state.shown = 0;
    grubber_reset();
}

void gevents_reset() {
    state = EventState{};
    grubber_reset();
}
