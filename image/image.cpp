#include "image/image.h"

void IMG_init(Image *image) { *image = Image{}; }

void IMG_free(Image *image) {
    image->data = {};
    image->colors = {};
    image->ncolors = 0;
}

int IMG_allocate(Image *image) {
    const int64_t bytes = int64_t(image->height) * image->bytes_per_line;
    if (image->width < 1 || image->height < 1 || image->bytes_per_line < 1 || bytes > IMG_MAX_BYTES)
        return 0;
    image->data.assign(size_t(bytes), 0);
    return 1;
}
