#include "decoders/summary_reader.h"

#include "decoders/summary_netcdf.h"
#include "decoders/summary_text.h"
#include "files/stream.h"

#include <cstdio>
#include <cstring>

namespace {
constexpr int kHandle = 0; // the only one

/* What is done for a kind. */
struct Form {
    int kind;
    int (*open)(const char *name, int write, int kind);
    void (*close)();
    int (*read_grid)(RadarSummary *summary);
    int (*read_mdr)(MdrReport *report, int mode, int *index);
    void (*start_reports)() = [] {};
    int (*read_rcm)(RcmReport *report, int mode, int *index) = [](RcmReport *, int, int *) {
        return -1;
    };
};

constexpr Form text_form(int kind) {
    return {kind,
            RAD_text_open,
            RAD_text_close,
            RAD_text_read_grid,
            RAD_text_read_mdr,
            RAD_text_start_reports,
            RAD_text_read_rcm};
}
constexpr Form netcdf_form(int kind) {
    return {kind, RAD_netcdf_open, RAD_netcdf_close, RAD_netcdf_read_grid, RAD_netcdf_read_mdr};
}
constexpr Form kForms[] = {text_form(1), text_form(2), text_form(3), netcdf_form(11),
                           netcdf_form(12)};

struct ReaderState {
    const Form *open = nullptr;
};
ReaderState reader;

const Form *form_of(int kind) {
    for (const Form &form : kForms)
        if (form.kind == kind)
            return &form;
    return nullptr;
}

/* The form of the file that is open; null for a handle of none. */
const Form *opened(int handle) { return handle == kHandle ? reader.open : nullptr; }

} // namespace

int RAD_file_kind(const char *name) {
    FILE *file = FILE_is_dir(name) ? nullptr : FILE_open(name, "r");
    if (!file)
        return -1;
    const int c = getc(file);
    if (file == stdin && c != EOF)
        ungetc(c, file); // it stays open, and is read again
    FILE_close(file);
    switch (c) {
    case '*':
        return 1;
    case ' ':
    case '0':
    case '1':
    case '2':
        return 2;
    case 'Q':
    case 'W':
        return 3;
    case 'C':
        return RAD_netcdf_kind(name);
    }
    return -1;
}

int RAD_open(const char *name, int write, int *kind) {
    RAD_close(kHandle);
    if (*kind == 0 && !write)
        *kind = RAD_file_kind(name);
    const Form *form = form_of(*kind);
    if (!form || !form->open(name, write, *kind))
        return -1;
    reader.open = form;
    return kHandle;
}

void RAD_close(int handle) {
    if (const Form *form = opened(handle))
        form->close();
    if (handle == kHandle)
        reader.open = nullptr;
}

int RAD_read_grid(int handle, RadarSummary *summary) {
    const Form *form = opened(handle);
    return form ? form->read_grid(summary) : -1;
}

void RAD_start_reports(int handle) {
    if (const Form *form = opened(handle))
        form->start_reports();
}

int RAD_read_mdr(int handle, MdrReport *report, int mode, int *index) {
    const Form *form = opened(handle);
    return form ? form->read_mdr(report, mode, index) : -1;
}

int RAD_read_rcm(int handle, RcmReport *report, int mode, int *index) {
    const Form *form = opened(handle);
    return form ? form->read_rcm(report, mode, index) : -1;
}

void RAD_reader_reset() { RAD_close(kHandle); }
