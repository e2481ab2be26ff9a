#include "decoders/frame_driver.h"

#include "files/file_current.h"
#include "files/file_name.h"
#include "files/file_series.h"
#include "files/file_template.h"
#include "kernel/frames.h"
#include "plot/dump.h"
#include "plot/plot_window.h"
#include "plot/pointer.h"
#include "shell/message.h"

#include <string>

namespace {

constexpr int kRefresh = 60; // seconds

struct FrameState {
    int64_t last_seen = 0;
    const PlotSteps *steps = nullptr; // of the plot on display
};
FrameState frames;

/* An unset domain takes that of the file which the plot begins with. */
void adopt_domain(const PlotSteps &steps, Domain *domain) {
    std::string name;
    FILE_date_name(steps.time(), &name);
    if (!steps.open(name.c_str()))
        return;
    steps.close();
    if (domain->proj == MISSING)
        *domain = *steps.data_domain();
}

void first_page(const PlotSteps &steps, Domain *domain) {
    steps.prepare();
    if (steps.looks_first || domain->proj == MISSING)
        adopt_domain(steps, domain);
    steps.opened();
    PLT_open(DOM_aspect(domain));
    PLT_set_event_handler(steps.pointer);
    PLT_set_zoom_handler(steps.plot);
    PLT_set_redraw_handler(steps.plot);
    PLT_set_timer_handler(kRefresh, steps.refreshes() ? FRAME_refresh : nullptr);
}

void begin_plot(const PlotSteps &steps, const Domain *domain) {
    steps.begin(domain);
    PLT_set_domain(domain);
}

/* The first file of a series could not be read: the first that can gives the domain. */
void late_domain(const PlotSteps &steps, Domain *domain) {
    *domain = *steps.data_domain();
    PLT_reopen(DOM_aspect(domain));
    begin_plot(steps, domain);
}

void note_time() {
    DateTime date;
    FILE_get_date(&date);
    const int64_t seconds = DT_to_seconds(&date);
    const int step = FILE_get_step();
    frames.last_seen = step > 0 ? seconds - seconds % step : seconds; // as FILE_current rounds
}

/* A frame for the next picture: that of the plot before, which it replaces, or a new one. */
int next_frame(int drawn) { return gnew_frame(drawn < gget_frame_count() ? drawn : -1); }

/* Draws the file now open, into a frame of its own where frames loop.  False, after a message,
 * without room for one. */
bool draw_frame(const PlotSteps &steps, Domain *domain, int drawn, bool looping) {
    if (domain->proj == MISSING)
        late_domain(steps, domain);
    note_time();
    const int frame = looping ? next_frame(drawn) : drawn;
    if (frame < 0) {
        steps.close();
        return false;
    }
    if (looping)
        gselect_frame(frame);
    steps.draw();
    steps.close();
    if (looping)
        gdisplay_frame(frame);
    PLT_dump(frame);
    return true;
}

/* Draws the files of the series.  Returns how many were. */
int draw_series(const PlotSteps &steps, Domain *domain, bool looping) {
    std::string name;
    int drawn = 0;
    while (FILE_series_next(&name)) {
        if (!steps.open(name.c_str())) {
            if (!looping)
                break;
            continue;
        }
        drawn += draw_frame(steps, domain, drawn, looping && gis_x11_window());
    }
    return drawn;
}

/* Frames of the plot before that no file has replaced. */
void drop_stale_frames(int drawn) {
    while (drawn > 0 && gget_frame_count() > drawn && gdelete_frame(FRAME_LAST)) {
    }
}

} // namespace

int FRAME_plot(const PlotSteps &steps, Domain *domain) {
    const bool redraw = gis_open();
    frames.steps = &steps;
    if (redraw)
        PLT_reopen(DOM_aspect(domain));
    else
        first_page(steps, domain);
    if (domain->proj != MISSING)
        begin_plot(steps, domain);
    FILE_series_init(steps.time());
    const bool looping = FILE_series_count() != 0;
    if (looping && !gis_x11_window())
        MSG_print(MSG_WARN, "FRAME_plot: A series shares one page on this device\n");
    const int drawn = draw_series(steps, domain, looping);
    if (!redraw && drawn == 0)
        PLT_exit(10); // no usable file in the whole series
    if (looping && gis_x11_window())
        drop_stale_frames(drawn);
    if (looping)
        gset_looping(1);
    if (!redraw)
        PLT_close();
    return 0;
}

int FRAME_refresh(Domain *domain) {
    const PlotSteps &steps = *frames.steps;
    std::string name;
    const int64_t newest = FILE_current(nullptr, &name);
    steps.found(newest, name.c_str());
    if (newest == frames.last_seen)
        return 0;
    const DateTime asked = *steps.time();
    DT_clear(steps.time()); // the data tell it
    if (!steps.open(name.c_str())) {
        *steps.time() = asked;
        return 0;
    }
    const int count = gget_frame_count();
    for (int i = 0; i + 1 < count; i++)
        gswap_frames(i, i + 1);
    const int target = count > 0 ? FRAME_LAST : FRAME_BASE;
    gselect_frame(target);
    gclear_frame(target);
    PLT_set_domain(domain);
    note_time();
    steps.draw();
    steps.close();
    if (count > 0)
        gdisplay_frame(count - 1);
    PLT_dump(FRAME_LAST);
    return 0;
}

int64_t FRAME_last_seen() { return frames.last_seen; }

void FRAME_reset() { frames = FrameState{}; }
