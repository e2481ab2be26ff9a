#include "plot/dump.h"

#include "files/file_name.h"
#include "files/file_template.h"
#include "files/stream.h"
#include "kernel/workstation.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <string>

namespace {
struct DumpState {
    int format = DUMP_NONE;
    std::string name;
    DumpOptions options;
};
DumpState dump;

/* One form of picture file.  A row without a writer names a form that this program cannot write
 * yet. */
struct PictureForm {
    const char *word; // in messages
    const char *default_name;
    int (*write)(const char *path) = nullptr; // 0, or -1
};
constexpr PictureForm kForms[DUMP_FORMATS] = {
    {}, {"xdump", "qra.xwd"}, {"GIF", "qra.gif"}, {"IMG", "qra.xwd"}, {"PNG", "qra.png"},
};

/* Path of the picture that the convention makes of the keys. */
std::string picture_path() {
    DateTime now;
    DT_from_seconds(nullptr, &now);
    std::string name, path;
    FILE_date_name(&now, &name);
    FILE_join_path(RES_get("image_path"), name.c_str(), &path);
    return path;
}

void write_picture(const char *frame_key) {
    const PictureForm &form = kForms[dump.format];
    FILE_set_key('i', frame_key);
    FILE_set_key('p', gget_title());
    const std::string path = picture_path();
    if (!form.write)
        MSG_print(MSG_ERROR, "PLT_dump: Writing of %s files is not there yet: %s\n", form.word,
                  path.c_str());
    else if (form.write(path.c_str()) < 0)
        MSG_print(MSG_ERROR, "PLT_dump: Unable to write %s file: %s\n", form.word, path.c_str());
    else
        MSG_print(MSG_MESS, "Wrote %s file: %s\n", form.word, path.c_str());
}
} // namespace

void PLT_set_dump(int format, const char *name) {
    dump.format = format > DUMP_NONE && format < DUMP_FORMATS ? format : DUMP_NONE;
    const char *fallback = kForms[dump.format].default_name;
    if (name && *name)
        dump.name = name;
    else
        dump.name = fallback ? fallback : "";
}

int PLT_dump_format() { return dump.format; }

const char *PLT_dump_name() { return dump.name.c_str(); }

DumpOptions *PLT_dump_options() { return &dump.options; }

/* The devices of this program keep no frames: whichever is asked for, there is the one picture. */
int PLT_dump(int) {
    if (dump.format == DUMP_NONE)
        return -1;
    FILE_save_state();
    FILE_set_name(dump.name.c_str());
    write_picture("win");
    FILE_restore_state();
    return 0;
}

void PLT_dump_reset() { dump = DumpState{}; }
