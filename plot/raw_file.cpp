#include "plot/raw_file.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/scanner.h"
#include "shell/strings.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {
constexpr int kLine = 400;            // characters
constexpr int kLongestRest = 1000000; // characters of a line that are skipped behind them
constexpr int kMostRecords = 1000000;
constexpr int kTableLines = 10 * RAW_MAX_COLUMNS; // with the empty ones
constexpr size_t kNameLength = 19, kDescriptionLength = 59, kFormatLength = 39;
constexpr int kColumnEnd = RAW_COLUMN + RAW_MAX_COLUMNS; // the number that stands for a key
constexpr int kNumbersEnd = 76; // greater ones are names, such as those of pressure levels
constexpr const char *kMagic = "QRARAW";

/* One open file with the record that was read last. */
struct RawFile {
    FILE *file = nullptr; // owned
    std::string name;
    std::vector<RawColumnInfo> columns;
    int column_base = 1;
    std::string key;     // name that is sought in the records
    long records_at = 0; // place in the file
    int records = 0;
    bool warned = false; // of a long line

    char line[kLine + 1] = "";
    RawRecord head; // identifier and position
    int values = 0; // where they begin in line
    int next = -1;  // where the walk through them goes on, -1 outside one
    int place = 0;  // number of the column there
};
std::array<RawFile, 4> files; // the index is the handle

RawFile *open_file(int handle) {
    if (handle < 0 || size_t(handle) >= files.size() || !files[size_t(handle)].file)
        return nullptr;
    return &files[size_t(handle)];
}

// ---- Lines and words ----

/* Skips what is left of a line, telling how many characters. */
int skip_rest(FILE *file) {
    int c, n = 0;
    while ((c = getc(file)) != EOF && c != '\n' && n < kLongestRest)
        n++;
    if (c == '\n')
        ungetc(c, file);
    return n;
}

/* The next line without a carriage return; false at the end, and after one that has no end. */
bool read_line(RawFile &raw) {
    const int length = STR_read_line(raw.file, raw.line, kLine);
    const int rest = length == kLine ? skip_rest(raw.file) : 0;
    if (rest > 0 && !raw.warned) {
        MSG_print(MSG_WARN, "RAW_read_line: Lines cut at %d characters: %s\n", kLine,
                  raw.name.c_str());
        raw.warned = true;
    }
    STR_strip_cr(raw.line);
    return length >= 0 && rest < kLongestRest;
}

/* The word at a place of the line, which goes behind it; empty at the end. */
std::string_view next_word(const RawFile &raw, int *at) {
    const char *word = raw.line + *at;
    word += strspn(word, " \t\r\n");
    const size_t length = strcspn(word, " \t\r\n");
    *at = int(word + length - raw.line);
    return {word, length};
}

// ---- The head of a file ----

std::string cut(std::string_view text, size_t length) {
    return std::string(text.substr(0, length));
}

std::string with_blanks(std::string_view text, size_t length) {
    std::string out = cut(text, length);
    std::replace(out.begin(), out.end(), '_', ' ');
    return out;
}

/* "name:description:format"; a format has colons of its own. */
RawColumnInfo read_column(std::string_view word) {
    RawColumnInfo column;
    size_t colon = word.find(':');
    column.name = cut(word.substr(0, colon), kNameLength);
    if (colon == word.npos)
        return column;
    word.remove_prefix(colon + 1);
    colon = word.find(':');
    column.description = with_blanks(word.substr(0, colon), kDescriptionLength);
    if (colon != word.npos)
        column.format = with_blanks(word.substr(colon + 1), kFormatLength);
    return column;
}

int base_of(const std::vector<RawColumnInfo> &columns) {
    if (columns.size() < 3)
        return 1;
    const std::string &second = columns[1].name;
    if (second == "lat" || second == "x")
        return 3;
    return second == "p" || second == "pres" ? 2 : 1;
}

/* One word a line counts, but for the line of the identifier: the position may stand there. */
void add_columns(RawFile &raw, int at, std::string_view word) {
    raw.columns.push_back(read_column(word));
    if (raw.columns.size() > 1 || next_word(raw, &at) != "lat" || next_word(raw, &at) != "lon")
        return;
    raw.columns.push_back({"lat", "", ""});
    raw.columns.push_back({"lon", "", ""});
}

bool read_table(RawFile &raw) {
    for (int n = 0; n < kTableLines && read_line(raw); n++) {
        int at = 0;
        const std::string_view word = next_word(raw, &at);
        if (word.starts_with('$'))
            return true;
        if (raw.columns.size() == RAW_MAX_COLUMNS)
            return false;
        if (!word.empty())
            add_columns(raw, at, word);
    }
    return false;
}

void take_title(const char *line, RawHeader *header) {
    snprintf(header->title, sizeof header->title, "%.49s", line);
    DT_parse(line, &header->date);
    DateTime date = header->date;
    if (date.month > 0)
        DT_format(&date, &header->date_text);
}

bool read_head_lines(RawFile &raw, RawHeader *header) {
    if (!read_line(raw) || strncmp(raw.line, kMagic, strlen(kMagic)) != 0 || !read_line(raw))
        return false;
    STR_strip_trailing(raw.line); // the date is sought at the end
    take_title(raw.line, header);
    if (!read_line(raw))
        return false;
    const bool table = raw.line[0] == '!';
    header->format = raw.line + table;
    return !table || read_table(raw);
}

// ---- The head of a record ----

bool is_number(const char *text) { return *text && strspn(text, "0123456789") == strlen(text); }

int to_int(const char *text) {
    return int(std::clamp<long>(strtol(text, nullptr, 10), INT_MIN, INT_MAX));
}

bool at_word_end(const ScanText &scan) {
    return strchr(" \t\r\n", SCAN_peek(&scan, scan.consumed)) != nullptr;
}

/* Two numbers, either may be missing, or two words in their place. */
void take_position(RawFile &raw, ScanText &scan) {
    float lat, lon;
    int second;
    if (scanp(&scan, "%!-!f %n%!-!f ", &lat, &second, &lon) == 3 &&
        (scan.complete || at_word_end(scan))) {
        SCAN_advance(&scan);
        if (lat != MISSING_F && lon != MISSING_F && std::isfinite(lat) && std::isfinite(lon)) {
            raw.head.lat = lat;
            raw.head.lon = lon;
        }
    } else if (!raw.columns.empty()) {
        for (int i = 0; i < 2; i++) {
            scanp(&scan, "%*s ");
            SCAN_advance(&scan);
        }
    }
}

/* Reads identifier and position of the next line.  False at the end of the records. */
bool read_record_head(RawFile &raw) {
    raw.head = RawRecord{};
    raw.next = -1;
    if (!read_line(raw))
        return false;
    if (raw.records++ == kMostRecords) {
        MSG_print(MSG_ERROR, "RAW_read_record: More than %d records: %s\n", kMostRecords,
                  raw.name.c_str());
        return false;
    }
    ScanText scan;
    SCAN_init(&scan, raw.line);
    scanp(&scan, " ");
    SCAN_advance(&scan);
    if (scanp(&scan, "%<79s ", raw.head.id) < 1)
        return false;
    SCAN_advance(&scan);
    if (strlen(raw.head.id) > 4 && is_number(raw.head.id))
        raw.head.wmo = to_int(raw.head.id);
    if (raw.columns.empty() || raw.column_base == 3) {
        take_position(raw, scan);
    } else if (raw.column_base == 2) { // a pressure, which no record holds
        scanp(&scan, "%*s ");
        SCAN_advance(&scan);
    }
    raw.values = SCAN_get_pos(&scan);
    return true;
}

// ---- Values ----

/* The key of "key=value"; a "=" behind a ":" belongs to the format. */
std::string_view key_of(std::string_view entry) {
    const size_t at = entry.find_first_of("=:");
    return at == entry.npos || entry[at] == ':' ? std::string_view{} : entry.substr(0, at);
}

int column_number(const RawFile &raw, std::string_view name) {
    for (size_t i = 0; i < raw.columns.size() && !name.empty(); i++)
        if (raw.columns[i].name == name)
            return int(i);
    return -1;
}

float known(float value) { return std::isfinite(value) ? value : MISSING_F; }

/* The value itself.  1, or 0 for none. */
int take_value(RawRecord *record, std::string_view text) {
    if (text.empty() || text == "-")
        return 0;
    record->text = text;
    const char first = text[0];
    if (first == '-' || first == '.' || (first >= '0' && first <= '9')) {
        ScanText scan;
        SCAN_init(&scan, record->text.data());
        scanp(&scan, "%f,%f", &record->value, &record->value2);
        record->value = known(record->value);
        record->value2 = known(record->value2);
    }
    return 1;
}

/* An entry: "[key=]value[:format]". */
int set_value(RawRecord *record, std::string_view entry) {
    const size_t colon = entry.find(':');
    if (colon != entry.npos) {
        record->format += record->format.empty() ? "" : ":";
        record->format += entry.substr(colon + 1);
    }
    const std::string_view key = key_of(entry);
    if (key.data())
        entry.remove_prefix(key.size() + 1);
    return take_value(record, entry.substr(0, entry.find(':')));
}

void begin_value(const RawFile &raw, RawRecord *record, int number) {
    *record = raw.head;
    record->index = number;
    if (number >= 0 && size_t(number) < raw.columns.size())
        record->format = raw.columns[size_t(number)].format;
}

/* Next value of the record that is walked through, or its end. */
int walk_value(RawFile &raw, RawRecord *record) {
    const std::string_view entry = next_word(raw, &raw.next);
    if (entry.empty()) {
        raw.next = -1;
        return -1;
    }
    const int keyed = column_number(raw, key_of(entry));
    begin_value(raw, record, keyed >= 0 ? keyed : raw.place);
    raw.place++;
    return set_value(record, entry);
}

/* The entry "name=...", or empty. */
std::string_view keyed_entry(const RawFile &raw, std::string_view name) {
    std::string_view entry;
    int at = raw.values;
    do
        entry = next_word(raw, &at);
    while (!entry.empty() && (!key_of(entry).data() || key_of(entry) != name));
    return entry;
}

/* The entry in the place of a column, or empty when another column's stands there. */
std::string_view placed_entry(const RawFile &raw, int number) {
    const bool is_value = number >= raw.column_base;
    int at = is_value ? raw.values : 0;
    std::string_view entry = next_word(raw, &at);
    for (int i = is_value ? raw.column_base : 0; i < number; i++)
        entry = next_word(raw, &at);
    const int owner = column_number(raw, key_of(entry));
    return owner < 0 || owner == number ? entry : std::string_view{};
}

/* The value of one column, of which the number may be that of the key. */
int column_value(const RawFile &raw, RawRecord *record, int number) {
    const bool is_key = number == RAW_MAX_COLUMNS;
    begin_value(raw, record, number);
    std::string_view entry;
    if (is_key || size_t(number) < raw.columns.size())
        entry = keyed_entry(raw, is_key ? raw.key : raw.columns[size_t(number)].name);
    if (entry.empty() && !is_key)
        entry = placed_entry(raw, number);
    return set_value(record, entry);
}
} // namespace

// ---- Files ----

int RAW_file_open(const char *name, std::string *column, std::string *format, const char *mode) {
    const std::string text = name ? name : "";
    const size_t first = std::min(text.find(':'), text.size());
    const size_t second = std::min(text.find(':', first + 1), text.size());
    if (column)
        *column = first < text.size() ? text.substr(first + 1, second - first - 1) : "";
    if (format)
        *format = second < text.size() ? text.substr(second + 1) : "";
    const auto free = std::find_if(files.begin(), files.end(), [](auto &raw) { return !raw.file; });
    if (free == files.end()) {
        MSG_print(MSG_ERROR, "RAW_file_open: Too many files: %s\n", text.c_str());
        return -1;
    }
    *free = RawFile{};
    free->name = text.substr(0, first);
    if (free->name.empty()) {
        free->file = nullptr; // not standard input
    } else if (*mode == 'r') {
        free->file = FILE_open_data(free->name.c_str());
    } else {
        std::string path;
        FILE_data_name(free->name.c_str(), &path);
        free->file = FILE_open(path.c_str(), mode);
    }
    if (!free->file) {
        MSG_print(MSG_ERROR, "RAW_file_open: Unable to open file: %s\n", free->name.c_str());
        return -1;
    }
    return int(free - files.begin());
}

void RAW_close(int handle) {
    if (RawFile *raw = open_file(handle)) {
        FILE_close(raw->file);
        *raw = RawFile{};
    }
}

int RAW_read_header(int handle, RawHeader *header) {
    *header = RawHeader{};
    RawFile *raw = open_file(handle);
    if (!raw)
        return -1;
    raw->columns.clear();
    const bool whole = read_head_lines(*raw, header);
    header->columns = raw->columns;
    header->column_base = raw->column_base = base_of(raw->columns);
    raw->records_at = ftell(raw->file);
    if (!whole) {
        MSG_print(MSG_ERROR, "RAW_read_header: No raw file: %s\n", raw->name.c_str());
        return -1;
    }
    return 1;
}

static void write_piece(FILE *file, std::string text) {
    STR_replace_char(text.data(), ' ', '_');
    fprintf(file, ":%s", text.c_str());
}

int RAW_write_header(int handle, const RawHeader *header) {
    RawFile *raw = open_file(handle);
    if (!raw)
        return -1;
    const char *format = header->format.c_str();
    if (header->columns.empty()) {
        fprintf(raw->file, "%s\n%s\n%s\n", kMagic, header->title, format);
        return 1;
    }
    fprintf(raw->file, "%s\n%s\n!%s\nid lat lon\n", kMagic, header->title, format);
    for (size_t i = size_t(header->column_base); i < header->columns.size(); i++) {
        const RawColumnInfo &column = header->columns[i];
        fputs(column.name.c_str(), raw->file);
        write_piece(raw->file, column.description);
        write_piece(raw->file, column.format);
        fputc('\n', raw->file);
    }
    fputs("$\n", raw->file);
    return 1;
}

const char *RAW_column_name(int handle, int index) {
    const RawFile *raw = open_file(handle);
    if (!raw || index < 0 || size_t(index) >= raw->columns.size())
        return "";
    return raw->columns[size_t(index)].name.c_str();
}

int RAW_find_column(int handle, const char *name) {
    RawFile *raw = open_file(handle);
    if (!raw)
        return -1;
    if (!name || !*name)
        return RAW_ALL;
    if (is_number(name) && to_int(name) < kNumbersEnd) {
        const int number = to_int(name);
        return number == RAW_ALL || number == RAW_ID || number >= RAW_COLUMN ? number : -1;
    }
    const int number = column_number(*raw, name);
    if (number >= 0)
        return RAW_COLUMN + number;
    raw->key = name;
    return kColumnEnd;
}

int RAW_read_record(int handle, RawRecord *record, int column, int *count) {
    *record = RawRecord{};
    RawFile *raw = open_file(handle);
    if (!raw)
        return -1;
    if (column == RAW_ALL && raw->next >= 0)
        if (const int result = walk_value(*raw, record); result >= 0)
            return result;
    if (!read_record_head(*raw))
        return -1;
    ++*count;
    if (column == RAW_ALL) {
        raw->next = raw->values;
        raw->place = raw->column_base;
        if (const int result = walk_value(*raw, record); result >= 0)
            return result;
    } else if (column == RAW_ID) {
        begin_value(*raw, record, 0);
        return take_value(record, record->id);
    } else if (column >= RAW_COLUMN && column <= kColumnEnd) {
        return column_value(*raw, record, column - RAW_COLUMN);
    }
    *record = raw->head;
    return 0;
}

void RAW_rewind(int handle) {
    RawFile *raw = open_file(handle);
    if (!raw || fseek(raw->file, raw->records_at, SEEK_SET) != 0)
        return;
    raw->records = 0;
    raw->next = -1;
}

void RAW_reset() {
    for (int handle = 0; size_t(handle) < files.size(); handle++)
        RAW_close(handle);
}
