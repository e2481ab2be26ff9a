#include "kernel/meta_reader.h"

#include "files/stream.h"
#include "kernel/meta_words.h"
#include "kernel/point.h"
#include "kernel/redraw_play.h"
#include "shell/message.h"

#include <cctype>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace {
constexpr size_t kWordLength = 9;
constexpr size_t kNumberLength = 63; // characters; the longest float takes 47
constexpr size_t kTextLength = 100;
constexpr size_t kMostPoints = 1 << 20;          // of one list
constexpr int64_t kMostBytes = int64_t(1) << 30; // of what has no size, such as a pipe

/* A file read by the character, as far as it went when it was opened: one that grows because it is
 * the very document that is being written comes to an end too. */
struct MetaInput {
    FILE *file;
    int64_t left;                // bytes
    int damaged = 0;             // records that could not be read
    std::vector<Point> points{}; // of the current list; only grows
};

struct TextRecord { // as the store keeps a text
    Point at;
    char text[kTextLength + 1];
};
static_assert(offsetof(TextRecord, text) == sizeof(Point));

int next_char(MetaInput &in) {
    if (in.left <= 0)
        return EOF;
    in.left--;
    return getc_unlocked(in.file);
}

void put_back(MetaInput &in, int c) {
    if (c == EOF)
        return;
    ungetc(c, in.file);
    in.left++;
}

void skip_line(MetaInput &in) {
    int c;
    do
        c = next_char(in);
    while (c != EOF && c != '\n');
}

int skip_blanks(MetaInput &in) {
    int c;
    do
        c = next_char(in);
    while (c != EOF && isspace(c));
    return c;
}

/* The next word, or as much of it as a keyword may have.  false at the end. */
bool read_word(MetaInput &in, std::string *word) {
    word->clear();
    int c = skip_blanks(in);
    for (; c != EOF && !isspace(c) && word->size() < kWordLength; c = next_char(in))
        word->push_back(char(c));
    put_back(in, c);
    return !word->empty();
}

bool is_of_number(int c) {
    return (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '+' || c == 'e' || c == 'E';
}

/* A number ends at a character that is none of its own; one that the file's end cuts is none, nor
 * is one that no float can hold. */
template <class T>
bool read_number(MetaInput &in, T *value) {
    char text[kNumberLength];
    size_t length = 0;
    int c = skip_blanks(in);
    if (c == '+')
        c = next_char(in);
    for (; length < kNumberLength && is_of_number(c); c = next_char(in))
        text[length++] = char(c);
    put_back(in, c);
    const auto [end, error] = std::from_chars(text, text + length, *value);
    return c != EOF && error == std::errc() && end == text + length;
}

bool read_pair(MetaInput &in, float pair[2]) {
    if (!read_number(in, &pair[0]))
        return false;
    const int comma = next_char(in);
    if (comma == ',')
        return read_number(in, &pair[1]);
    put_back(in, comma);
    return false;
}

template <class T>
bool read_numbers(MetaInput &in, int count, T *values) {
    for (int i = 0; i < count; i++)
        if (!read_number(in, &values[i]))
            return false;
    return true;
}

/* Room is taken as points come, whatever their count says. */
bool read_points(MetaInput &in, int count) {
    in.points.clear();
    for (int i = 0; i < count; i++) {
        float pair[2];
        if (in.points.size() == kMostPoints || !read_pair(in, pair))
            return false;
        in.points.push_back({pair[0], pair[1]});
    }
    return count >= 0;
}

/* One blank stands in front of the text; what is too long is cut. */
bool read_text(MetaInput &in, TextRecord *record) {
    float at[2];
    if (!read_pair(in, at))
        return false;
    record->at = {at[0], at[1]};
    size_t length = 0;
    int c = next_char(in);
    if (c == ' ')
        c = next_char(in);
    for (; c != EOF && c != '\n'; c = next_char(in))
        if (length < kTextLength)
            record->text[length++] = c ? char(c) : ' ';
    record->text[length] = '\0';
    return c != EOF;
}

/* Operands of a record, in the form in which the store keeps them. */
struct Operands {
    int whole[2];
    float real[4];
    TextRecord text;
};

/* Reads what stands behind a keyword, and points the object to it. */
bool read_operands(MetaInput &in, MetaForm form, Operands *room, GraphicsObject *object) {
    float *real = room->real;
    object->data = real;
    switch (form) {
    case MetaForm::Int:
        return read_number(in, &object->count);
    case MetaForm::Float:
        return read_number(in, real);
    case MetaForm::FloatPair:
        return read_pair(in, real);
    case MetaForm::IntPair:
        object->data = room->whole;
        return read_numbers(in, 2, room->whole);
    case MetaForm::Rect:
        if (!read_number(in, &object->count) || !read_numbers(in, 4, real))
            return false;
        std::swap(real[1], real[2]);
        return true;
    case MetaForm::Color: // the workstation is always the open one
        if (!read_numbers(in, 2, room->whole) || !read_numbers(in, 3, real))
            return false;
        object->count = room->whole[1];
        return true;
    case MetaForm::Points:
        if (!read_number(in, &object->count) || !read_points(in, object->count))
            return false;
        object->data = in.points.data();
        return true;
    case MetaForm::Text:
        object->data = &room->text;
        return read_text(in, &room->text);
    }
    return false;
}

const MetaWord *row_of(std::string_view word) {
    for (const MetaWord &row : kMetaWords)
        if (word == row.word)
            return &row;
    return nullptr;
}

/* What cannot be read is left where it stands: the words behind it are unknown ones, up to the end
 * of the line or the next record. */
void read_record(MetaInput &in, std::string_view word) {
    const MetaWord *row = row_of(word);
    if (!row)
        return skip_line(in);
    Operands room;
    GraphicsObject object;
    object.code = row->code;
    if (!read_operands(in, row->form, &room, &object))
        in.damaged++;
    else if (row->reading == MetaReading::Play)
        gobj_play(&object);
}

int64_t bytes_of(FILE *file) {
    struct stat info;
    return fstat(fileno(file), &info) == 0 && S_ISREG(info.st_mode) ? info.st_size : kMostBytes;
}
} // namespace

int gread_metafile(const char *name) {
    FILE *file = *name ? FILE_open(name, "r") : nullptr; // an empty name would be standard input
    if (!file) {
        MSG_print(MSG_WARN, "gread_metafile: Unable to open image file: %s\n", name);
        return 0;
    }
    MetaInput in{file, bytes_of(file)};
    skip_line(in);
    for (std::string word; read_word(in, &word);)
        read_record(in, word);
    if (in.damaged || ferror(file))
        MSG_print(MSG_WARN, "gread_metafile: Damaged metafile, %d records are lost: %s\n",
                  in.damaged, name);
    FILE_close(file);
    return 0;
}
