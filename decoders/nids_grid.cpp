#include "decoders/nids_grid.h"

#include "decoders/nids_record.h"
#include "files/file_name.h"
#include "files/file_template.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <cstring>
#include <string>

namespace {

struct GridState {
    FILE *file = nullptr; // owned
    std::string name;
};
GridState grid;

/* The word of `out_file` that asks for a grid; "" when there is none. */
std::string grid_word() {
    const ResList words("out_file");
    for (int i = 0; i < words.count; i++)
        if (STR_ncasecmp(words[i], "qra", 3) == 0)
            return words[i];
    return "";
}

void choose_name(const std::string &word) {
    FILE_save_state();
    FILE_set_name(word.size() <= 4 ? "nids_grd_qra" : word.c_str() + 4);
    FILE_date_name(&NIDS_product()->scan_time, &grid.name);
    FILE_restore_state();
}

/* Projection, its parameters, and the grid, on one line. */
void write_domain(FILE *file, const Domain &d) {
    if (d.proj == PROJ_LATLON)
        fprintf(file, "LL ");
    else if (d.proj == PROJ_MERCATOR)
        fprintf(file, "ME ");
    else if (d.proj == PROJ_POLAR && (d.plon == MISSING_F || d.plon == d.clon))
        fprintf(file, "PS ");
    else if (d.proj == PROJ_POLAR)
        fprintf(file, "PS:%f ", double(d.plon));
    else if (d.proj == PROJ_LAMBERT && d.parm[0] != MISSING_F)
        fprintf(file, "LC:%f:%f:%f:%f:%f ", double(d.plat), double(d.plon), double(d.parm[0]),
                double(d.parm[1]), double(d.parm[2]));
    else if (d.proj == PROJ_LAMBERT && d.plon != MISSING_F)
        fprintf(file, "LC:%f ", double(d.plon));
    else if (d.proj == PROJ_LAMBERT)
        fprintf(file, "LC ");
    fprintf(file, "%f %f %f %f %d %d\n", double(d.clat), double(d.clon), double(d.dx), double(d.dy),
            d.nx, d.ny);
}

} // namespace

bool NIDS_grid_requested() { return !grid_word().empty(); }

void NIDS_grid_open() {
    const std::string word = grid_word();
    if (word.empty())
        return;
    choose_name(word);
    MSG_print(MSG_MESS, "Opening grid file: %s\n", grid.name.c_str());
    grid.file = FILE_open(grid.name.c_str(), "w");
    if (!grid.file) {
        MSG_print(MSG_ERROR, "NIDS_draw_data: Unable to open grid file:%s\n", grid.name.c_str());
        return;
    }
    const NidsProduct *product = NIDS_product();
    fprintf(grid.file, "QRAGRID\n%s\n%s\n", product->time_text, product->title);
    write_domain(grid.file, product->domain);
}

void NIDS_grid_put(const NidsRun &run) {
    if (!grid.file)
        return;
    for (int i = 0; i < int(run.count); i++)
        fprintf(grid.file, "%f\n", double(run.value));
}

void NIDS_grid_close() {
    if (!grid.file)
        return;
    const bool failed = ferror(grid.file) != 0;
    if (FILE_close(grid.file) != 0 || failed)
        MSG_print(MSG_ERROR, "NIDS_draw_data: Unable to write grid file:%s\n", grid.name.c_str());
    grid = GridState{};
}
