#include "image/image_read.h"

#include "files/stream.h"
#include "image/gif.h"
#include "image/native.h"
#include "image/png_file.h"
#include "image/xwd.h"
#include "shell/message.h"

#include <cstring>

static constexpr size_t kMagic = 6;     // bytes that tell the forms apart
static constexpr int kDeepestFile = 32; // bits of a pixel, where no display sets the limit

/* The first bytes, zero past the end of the file; or those behind a first line that begins "** ".
 */
static void read_magic(FILE *file, char magic[kMagic]) {
    size_t n = fread(magic, 1, 3, file);
    if (n == 3 && memcmp(magic, "** ", 3) == 0) {
        for (int c = getc(file); c != EOF && c != '\n';)
            c = getc(file);
        n = 0;
    }
    n += fread(magic + n, 1, kMagic - n, file);
    memset(magic + n, 0, kMagic - n);
}

static int read_form(const char magic[kMagic], const char *file, Image *image, int header_only,
                     const ImageDisplay &display) {
    if (memcmp(magic, "GIF", 3) == 0)
        return GIF_read(file, image, header_only);
    if (memcmp(magic + 1, "PNG", 3) == 0)
        return PNG_read(file, image, header_only);
    if (memcmp(magic, "QRAIMG", 6) == 0)
        return IMG_read_qra(file, image, header_only);
    const bool any_depth = header_only && display.depth == 0;
    return XWD_read(file, image, any_depth ? kDeepestFile : display.depth);
}

int IMG_read(const char *file, Image *image, int header_only, const ImageDisplay &display) {
    FILE *in = FILE_open(file, "r");
    if (!in) {
        MSG_print(MSG_WARN, "IMG_read: Unable to open image file: %s\n", file);
        return 0;
    }
    char magic[kMagic];
    read_magic(in, magic);
    FILE_close(in);
    IMG_init(image);
    const int result = read_form(magic, file, image, header_only, display);
    if (result < 1)
        IMG_init(image);
    return result;
}
