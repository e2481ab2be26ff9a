#include "plot/dump.h"

#include "files/file_name.h"
#include "files/file_template.h"
#include "files/stream.h"
#include "image/gif.h"
#include "image/native.h"
#include "image/png_file.h"
#include "image/xwd.h"
#include "kernel/events.h"
#include "kernel/frames.h"
#include "kernel/workstation.h"
#include "kernel/x11_image.h"
#include "plot/labels.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <cstdio>
#include <string>

namespace {
struct DumpState {
    int format = DUMP_NONE;
    std::string name;
    DumpOptions options;
};
DumpState dump;

/* The drawing pixmap as a file of each form.  1, or 0. */
int write_xwd(const char *path) {
    Image image;
    return gget_image(&image) && XWD_write(path, image);
}

int write_gif(const char *path) {
    Image image;
    ImageDisplay display;
    if (!gget_image(&image))
        return 0;
    gget_image_display(&display);
    return GIF_write(path, image, display,
                     {dump.options.gif_interlace, dump.options.gif_transparent});
}

int write_png(const char *path) {
    Image image;
    ImageDisplay display;
    if (!gget_image(&image))
        return 0;
    gget_image_display(&display);
    return PNG_write(path, image, display);
}

/* The domain of the plot, told in the pixels of its picture. */
void take_domain(Image *image) {
    Domain &domain = image->domain;
    PRJ_get_domain(&domain);
    if (domain.nx == image->width || image->width < 2 || image->height < 2)
        return;
    domain.dx *= float(domain.nx - 1) / float(image->width - 1);
    domain.dy *= float(domain.ny - 1) / float(image->height - 1);
    domain.nx = image->width;
    domain.ny = image->height;
}

int write_native(const char *path) {
    Image image;
    if (!gget_image(&image))
        return 0;
    take_domain(&image);
    snprintf(image.info, sizeof image.info, "%s [%s]", PLT_get_label(0, 0), PLT_get_label(5, 0));
    snprintf(image.date_text, sizeof image.date_text, "%s", PLT_get_label(2, 0));
    return IMG_write(path, image, 0, dump.options.image_header);
}

/* One form of picture file. */
struct PictureForm {
    const char *word; // in messages
    const char *default_name;
    int (*write)(const char *path) = nullptr;
};
constexpr PictureForm kForms[DUMP_FORMATS] = {
    {},
    {"xdump", "qra.xwd", write_xwd},
    {"GIF", "qra.gif", write_gif},
    {"IMG", "qra.xwd", write_native},
    {"PNG", "qra.png", write_png},
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
    if (!form.write(path.c_str()))
        MSG_print(MSG_ERROR, "PLT_dump: Unable to write %s file: %s\n", form.word, path.c_str());
    else
        MSG_print(MSG_MESS, "Wrote %s file: %s\n", form.word, path.c_str());
}

/* A frame under a number of its own. */
void write_frame(int frame, int number) {
    char key[12];
    snprintf(key, sizeof key, "%2.2d", number);
    gselect_frame(frame);
    write_picture(key);
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

int PLT_dump(int frame) {
    if (dump.format == DUMP_NONE)
        return -1;
    FILE_save_state();
    FILE_set_name(dump.name.c_str());
    const int frames = gget_frame_count();
    if (frames == 0)
        write_picture("win");
    else if (frame == DUMP_ALL && frames > 1)
        for (int i = 0; i < frames; i++)
            write_frame(i, i + gget_dropped_frames());
    else
        write_frame(frame, gcur_frame() + gget_dropped_frames());
    FILE_restore_state();
    return 0;
}

void PLT_dump_reset() { dump = DumpState{}; }

void PLT_lend_dumps() {
    gset_frame_dump([](const char *path) { return write_gif(path) ? 0 : -1; },
                    [](const char *path) { return write_xwd(path) ? 0 : -1; });
}
