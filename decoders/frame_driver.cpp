#include "decoders/frame_driver.h"

#include "files/file_name.h"
#include "files/file_series.h"
#include "files/file_template.h"
#include "plot/dump.h"
#include "plot/plot_window.h"
#include "shell/message.h"

#include <string>

namespace {

struct FrameState {
    int64_t last_seen = 0;
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
    adopt_domain(steps, domain);
    steps.opened();
    PLT_open(DOM_aspect(domain));
    PLT_set_zoom_handler(steps.plot);
    PLT_set_redraw_handler(steps.plot);
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
    frames.last_seen = seconds - seconds % FILE_step_or_default();
}

void draw_frame(const PlotSteps &steps, Domain *domain, int frame) {
    if (domain->proj == MISSING)
        late_domain(steps, domain);
    note_time();
    steps.draw();
    steps.close();
    PLT_dump(frame);
}

} // namespace

int FRAME_plot(const PlotSteps &steps, Domain *domain) {
    const bool redraw = gis_open();
    if (redraw)
        PLT_reopen(DOM_aspect(domain));
    else
        first_page(steps, domain);
    if (domain->proj != MISSING)
        begin_plot(steps, domain);
    FILE_series_init(steps.time());
    const bool looping = FILE_series_count() != 0;
    if (looping)
        MSG_print(MSG_WARN, "FRAME_plot: Frames are not there yet, a series shares one page\n");
    std::string name;
    int drawn = 0;
    for (int frame = 0; FILE_series_next(&name); frame++) {
        if (steps.open(name.c_str())) {
            draw_frame(steps, domain, frame);
            drawn++;
        } else if (!looping) {
            PLT_exit(10);
        }
    }
    if (drawn == 0)
        PLT_exit(10); // no usable file in the whole series
    if (!redraw)
        PLT_close();
    return 0;
}

int64_t FRAME_last_seen() { return frames.last_seen; }

void FRAME_reset() { frames = FrameState{}; }
