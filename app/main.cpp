/* radar: plots weather radar data. */
#include "app/input.h"
#include "app/wiring.h"
#include "shell/message.h"
#include "shell/options.h"
#include "shell/params.h"
#include "shell/process.h"
#include "shell/resource.h"
#include "shell/start.h"

#include <csignal>

int main(int argc, char **argv) {
    // A command that takes the document may die: the write fails then, and is reported.  The signal
    // is caught rather than ignored, since the commands that the program runs would inherit that.
    signal(SIGPIPE, [](int) {});
    APP_wire();
    RES_init(argc, argv, OPT_keyed_ids, OPT_positional_ids);
    if (PAR_is_help()) {
        MSG_print(MSG_PRINT, "%s: This program plots various types of radar data\n",
                  RES_program_name());
        OPT_usage(RES_program_name(), OPT_keyed_ids, OPT_positional_ids);
        PROC_exit(0);
    }
    RAD_select_input();
    MSG_banner("RADAR DATA PLOTTING");
    RAD_dispatch();
    return 0;
}
