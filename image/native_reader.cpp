#include "files/stream.h"
#include "image/native.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace {
constexpr int kLine = 160;          // characters of a header line, and of a word
constexpr int kNumber = 64;         // characters of a number
constexpr size_t kMagic = 6;        // characters of "QRAIMG"; flags stand behind
constexpr uInt kPieceBytes = 10000; // deflated bytes read at a time
constexpr int kMostWaits = 10;      // seconds that a file is given to grow

constexpr const char *kWhole = "+-0123456789";
constexpr const char *kReal = "+-.0123456789eE";

struct NativeProjection {
    const char *letters; // of the word, the first two
    ProjCode code;
};
constexpr NativeProjection kProjections[] = {
    {"LL", PROJ_LATLON},  {"ME", PROJ_MERCATOR},  {"PS", PROJ_POLAR},
    {"LC", PROJ_LAMBERT}, {"SA", PROJ_SATELLITE},
};

/* Deflated pixels on their way. */
struct NativeInput {
    FILE *file;
    bool may_grow;
    int waits = 0;
    Bytef piece[kPieceBytes] = {};
};
} // namespace

/* Steps over blanks and gives the character behind them, which stays unread. */
static int peek_behind_blanks(FILE *file) {
    int c = getc(file);
    while (c != EOF && isspace(c))
        c = getc(file);
    ungetc(c, file);
    return c;
}

/* A word, up to the blank behind it, which stays unread; false without one and for one that is
 * longer than a line. */
static bool read_word(FILE *file, char word[kLine + 1]) {
    peek_behind_blanks(file);
    int n = 0, c = getc(file);
    for (; n < kLine && c != EOF && !isspace(c); c = getc(file))
        word[n++] = char(c);
    ungetc(c, file);
    word[n] = '\0';
    return n > 0 && (c == EOF || isspace(c));
}

/* The characters of a number; what ends it stays unread, and may be the first pixel but one. */
static bool read_number(FILE *file, const char *accepted, char text[kNumber + 1]) {
    peek_behind_blanks(file);
    int n = 0, c = getc(file);
    for (; n < kNumber && c > 0 && strchr(accepted, c); c = getc(file))
        text[n++] = char(c);
    ungetc(c, file);
    text[n] = '\0';
    return n > 0;
}

static bool read_whole(FILE *file, int32_t *value) {
    char text[kNumber + 1];
    if (!read_number(file, kWhole, text))
        return false;
    *value = int32_t(std::clamp<long>(strtol(text, nullptr, 10), INT_MIN, INT_MAX));
    return true;
}

static bool read_real(FILE *file, float *value) {
    char text[kNumber + 1];
    if (!read_number(file, kReal, text))
        return false;
    *value = strtof(text, nullptr);
    return std::isfinite(*value);
}

/* "LC:25:-95": the origin and the parameters, or a single number, which is the longitude of the
 * origin.  What is no number stays missing. */
static bool take_projection(const char *word, Domain *d) {
    const NativeProjection *const row =
        std::find_if(std::begin(kProjections), std::end(kProjections),
                     [&](const NativeProjection &p) { return !strncmp(word, p.letters, 2); });
    if (row == std::end(kProjections))
        return false;
    d->proj = row->code;
    const StrList parts(word, ':');
    float *const alone[] = {&d->plon};
    float *const in_order[] = {&d->plat, &d->plon, &d->parm[0], &d->parm[1], &d->parm[2]};
    float *const *place = parts.count == 2 ? alone : in_order;
    const int places = parts.count == 2 ? 1 : int(std::size(in_order));
    for (int i = 0; i < places; i++) {
        char *end = nullptr;
        const char *text = parts[i + 1];
        const float value = strtof(text, &end);
        if (end != text && std::isfinite(value))
            *place[i] = value;
    }
    return true;
}

/* "80 60", or a projection, the centre, the spacing and the size; then one byte.  A line that is
 * neither leaves a picture without a size. */
static void read_position(FILE *file, Image *image) {
    Domain &d = image->domain;
    const int c = peek_behind_blanks(file);
    int32_t columns = 0, rows = 0;
    char word[kLine + 1];
    bool good = true;
    if (c <= 0 || !strchr(kWhole, c)) {
        good = read_word(file, word) && take_projection(word, &d);
        for (float *value : {&d.clat, &d.clon, &d.dx, &d.dy})
            good = good && read_real(file, value);
    }
    if (!good || !read_whole(file, &columns) || !read_whole(file, &rows))
        return;
    getc(file);
    image->width = columns;
    image->height = rows;
    if (d.proj == MISSING)
        return;
    d.nx = columns;
    d.ny = rows;
}

/* True for a text that sends its reader to a file: "id:FILE:STATION", or one field with a colon.  A
 * picture must not choose what is opened, least of all a command. */
static bool names_file(const char *text) {
    const StrList fields(text, ',');
    for (int i = 0; i < fields.count; i++) {
        const bool station = !STR_ncasecmp(fields[i], "id:", 3);
        const char *colon = strchr(fields[i], ':');
        if (station && colon)
            colon = strchr(colon + 1, ':');
        if (colon && (station || fields.count == 1))
            return true;
    }
    return false;
}

static void read_domain(FILE *file, Image *image) {
    char text[kLine + 1] = "";
    STR_read_160(file, text);
    getc(file);
    Domain domain;
    if (names_file(text)) {
        MSG_print(MSG_WARN, "IMG_read_qra: Domain of a picture names a file: %s\n", text);
        return;
    }
    if (RES_convert(text, &domain, OPT_DOMAIN) < 1)
        return;
    image->domain = domain;
    image->width = domain.nx;
    image->height = domain.ny;
}

static void skip_bytes(FILE *file, int count) {
    while (count-- > 0 && getc(file) != EOF)
        ;
}

/* Blocks between the header and the pixels, of no use here. */
static void skip_blocks(FILE *file, const char *flags) {
    if (strchr(flags, 'V'))
        skip_bytes(file, 1024);
    if (!strchr(flags, 'C'))
        return;
    skip_bytes(file, 3);
    const int count = getc(file);
    skip_bytes(file, 2 * count);
}

static bool is_regular(FILE *file) {
    struct stat st;
    return fstat(fileno(file), &st) == 0 && S_ISREG(st.st_mode);
}

/* The next deflated bytes.  A file that ends early may have a writer at work: it is waited for. */
static uInt next_piece(NativeInput *in) {
    for (;;) {
        const size_t n = fread(in->piece, 1, kPieceBytes, in->file);
        if (n > 0 || !in->may_grow || in->waits == kMostWaits)
            return uInt(n);
        in->waits++;
        clearerr(in->file);
        sleep(1);
    }
}

/* Streams one behind the other, until all pixels are there.  They go straight to their place, so a
 * stream without an end stops with the last of them. */
static void read_deflated(FILE *file, std::vector<uint8_t> *pixels) {
    NativeInput in{file, is_regular(file)};
    z_stream z{};
    if (inflateInit(&z) != Z_OK)
        return;
    z.next_out = pixels->data();
    z.avail_out = uInt(pixels->size());
    int status = Z_OK;
    while (status == Z_OK && z.avail_out > 0) {
        if (z.avail_in == 0) {
            z.next_in = in.piece;
            z.avail_in = next_piece(&in);
            if (z.avail_in == 0)
                break;
        }
        status = inflate(&z, Z_PARTIAL_FLUSH);
        MSG_print(MSG_DEBUG, "Inflate+ %d = %d %d = %d %d - %d %d\n", status, int(z.avail_in),
                  int(z.total_in), int(z.avail_out), int(z.total_out),
                  int(pixels->size() - z.avail_out), int(pixels->size()));
        if (status == Z_STREAM_END)
            status = inflateReset(&z);
    }
    inflateEnd(&z);
}

static void read_pixels(FILE *file, const char *flags, std::vector<uint8_t> *pixels) {
    if (strchr(flags, 'Z')) {
        read_deflated(file, pixels);
        return;
    }
    // What a short file lacks stays 0.
    if (fread(pixels->data(), 1, pixels->size(), file) < pixels->size())
        MSG_print(MSG_DEBUG, "IMG_read_qra: pixels end early\n");
}

/* The pixels of a file of their own.  The name comes from the picture, so it is a file's and
 * neither a command nor a terminal. */
static int read_other_file(FILE *file, const char *flags, std::vector<uint8_t> *pixels) {
    char name[kLine + 1];
    const bool plain =
        read_word(file, name) && *name != '|' && !FILE_is_stream(name) && FILE_is_regular(name);
    FILE *other = plain ? FILE_open(name, "r") : nullptr;
    if (!other) {
        MSG_print(MSG_WARN, "Unable to open: %s\n", name);
        return -1;
    }
    read_pixels(other, flags, pixels);
    FILE_close(other);
    return 1;
}

static void read_texts(FILE *file, Image *image) {
    char line[kLine + 1] = "";
    STR_read_160(file, line);
    snprintf(image->date_text, sizeof image->date_text, "%.*s", int(sizeof image->date_text) - 1,
             line);
    DT_parse(image->date_text, &image->date);
    *line = '\0';
    STR_read_160(file, line);
    snprintf(image->info, sizeof image->info, "%.*s", int(sizeof image->info) - 1, line);
}

static int read_picture(FILE *file, const char *flags, Image *image, int header_only) {
    image->source = IMG_NATIVE;
    image->version = strchr(flags, '4') ? 4 : 3;
    image->depth = image->bits_per_pixel = 8;
    read_texts(file, image);
    if (image->version == 4)
        read_domain(file, image);
    else
        read_position(file, image);
    image->bytes_per_line = image->width;
    skip_blocks(file, flags);
    if (header_only)
        return image->width > 0 && image->height > 0;
    if (!IMG_allocate(image)) {
        MSG_print(MSG_WARN, "Unable to allocate data buffer.\n");
        return 0;
    }
    if (strchr(flags, '*'))
        return read_other_file(file, flags, &image->data);
    read_pixels(file, flags, &image->data);
    return 1;
}

int IMG_read_qra(const char *file, Image *image, int header_only) {
    IMG_init(image);
    FILE *in = FILE_open(file, "r");
    if (!in) {
        MSG_print(MSG_WARN, "Unable to open: %s\n", file);
        return -1;
    }
    char magic[kLine + 1] = "";
    STR_read_160(in, magic);
    int result = -1;
    if (strncmp(magic, "QRAIMG", kMagic) != 0)
        MSG_print(MSG_WARN, "IMG_read_qra: Invalid image type\n");
    else
        result = read_picture(in, magic + kMagic, image, header_only);
    FILE_close(in);
    return result;
}
