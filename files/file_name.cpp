#include "files/file_name.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <cctype>
#include <cstring>

namespace {

constexpr int kLineWidth = 160;  // characters of a convention line
constexpr size_t kKeyWidth = 29; // characters of a key's value

FileNameState names;

struct SavedNames {
    std::string conv_input, conv_output, current_name;
    int time_step = 3600;
    int name_given = 0;
};
SavedNames saved;

/* One line of the convention file. */
struct Convention {
    char key[kLineWidth + 1] = "";
    char input[kLineWidth + 1] = "";
    char output[kLineWidth + 1] = "";
    int min_size = 0;
};

/* Takes ":c=value" settings out of a text, which is cut at the first of them. */
std::string take_keys(const char *text) {
    std::string head = text;
    bool cut = false;
    for (size_t i = 0; text[i]; i++) {
        char c = 0;
        char value[kLineWidth + 1] = "";
        if (text[i] != ':' || sscanf(text + i + 1, "%c=%160[^:]", &c, value) != 2)
            continue;
        FILE_set_key(static_cast<unsigned char>(c), value);
        MSG_print(MSG_DEBUG_D, "KEY: %c = %s\n", c, value);
        if (!cut)
            head.resize(i);
        cut = true;
    }
    return head;
}

void use_convention(const Convention &line) {
    names.conv_input = line.input;
    names.conv_output = strcmp(line.output, "-") == 0 ? "" : line.output;
    names.conv_min_size = line.min_size;
}

void use_as_template(const std::string &text) {
    names.conv_input = text;
    names.conv_output.clear();
    names.conv_min_size = 0;
}

/* Takes a line whose key is the text or begins it.  Returns 1 when it was taken. */
int try_convention(const Convention &line, const std::string &text) {
    if (STR_casecmp(text.c_str(), line.key) == 0) {
        use_convention(line);
        MSG_print(0x10000000, "File name match for: %s\n", text.c_str());
        return 1;
    }
    if (STR_ncasecmp(text.c_str(), line.key, strlen(line.key)) != 0)
        return 0;
    use_convention(line);
    const size_t underscore = text.rfind('_');
    if (underscore != std::string::npos)
        names.extension = text.substr(underscore + 1);
    MSG_print(0x10000000, "File name partial match for: %s-%s ext: %s\n", text.c_str(), line.key,
              names.extension.c_str());
    return 1;
}

/* Seeks a text in the convention file.  Returns 1 when a line fits. */
int search_conventions(FILE *file, const std::string &text) {
    char buffer[kLineWidth + 1];
    while (STR_read_line(file, buffer, kLineWidth) >= 0) {
        if (buffer[0] == '#')
            continue;
        Convention line;
        sscanf(buffer, "%160s %160s %160s %9d", line.key, line.input, line.output, &line.min_size);
        if (try_convention(line, text))
            return 1;
    }
    return 0;
}

/* Reads up to width digits at *text and moves over them.  Returns false when there is none. */
bool take_digits(const char **text, int width, int32_t *value) {
    if (!isdigit(static_cast<unsigned char>(**text)))
        return false;
    int32_t n = 0;
    for (int i = 0; i < width && isdigit(static_cast<unsigned char>(**text)); i++)
        n = n * 10 + *(*text)++ - '0';
    *value = n;
    return true;
}

/* Hour and minute; a minus in front of an hour of 0 belongs to the minute. */
void parse_clock(const char *text, DateTime *date) {
    if (text[0] == ':') {
        sscanf(text, ":%9d", &date->minute);
        return;
    }
    if (text[0] == '-' && text[1] == ':') {
        if (sscanf(text, "-:%9d", &date->minute) == 1)
            date->minute = -date->minute;
        return;
    }
    sscanf(text, "%9d:%9d", &date->hour, &date->minute);
    if (text[0] != '-' || date->hour != 0)
        return;
    date->hour = MISSING;
    if (date->minute != MISSING)
        date->minute = -date->minute;
}

} // namespace

FileNameState &FILE_state() { return names; }

int FILE_set_name(const char *text) {
    if (!names.keys_cleared) {
        for (std::string &key : names.keys)
            key.clear();
        names.keys_cleared = true;
    }
    names.current_name.clear();
    if (STR_casecmp(text, "none") == 0) {
        names.conv_input.clear();
        return 0;
    }
    if (text[0] == '@') {
        use_as_template(text + 1);
        return 1;
    }
    const std::string key = take_keys(text);
    const char *resource = RES_get("name_conv");
    std::string path;
    FILE_data_name(resource && *resource ? resource : "name_conv", &path);
    FILE *file = FILE_is_dir(path.c_str()) ? nullptr : FILE_open(path.c_str(), "r");
    if (!file) {
        MSG_print(MSG_WARN, "FILE_set_name: No file name convention file: %s\n", path.c_str());
        use_as_template(key);
        return 0;
    }
    MSG_print(0x10000000, "Opening name convention file: %s\n", path.c_str());
    names.extension.clear();
    const int found = search_conventions(file, key);
    FILE_close(file);
    if (!found) {
        use_as_template(key);
        MSG_print(0x10000000, "No file name conversion for: %s\n", key.c_str());
    }
    return found;
}

void FILE_set_suffix_mode(int flag) { names.suffix_mode = flag; }

const char *FILE_get_suffix() { return names.suffix.c_str(); }

void FILE_set_suffix(const char *text) { names.suffix = text ? text : ""; }

void FILE_set_key(unsigned char c, const char *text) {
    std::string value = text ? text : "";
    for (char &ch : value)
        if (ch == ' ')
            ch = '_';
    names.keys[c] = value.substr(0, kKeyWidth);
}

void FILE_get_key(unsigned char c, std::string *out) { *out = names.keys[c]; }

void FILE_get_date(DateTime *date) { *date = names.file_date; }

void FILE_set_user_date(const DateTime *date) { names.user_date = *date; }

void FILE_get_user_date(DateTime *date) { *date = names.user_date; }

void FILE_clear_date_fields(DateTime *date) {
    date->year = date->month = date->day = date->hour = date->minute = MISSING;
}

void FILE_clear_user_date() { FILE_clear_date_fields(&names.user_date); }

const char *FILE_scan_date(const char *text, DateTime *date) {
    struct Field {
        int width;
        int32_t DateTime::*field;
    };
    constexpr Field kFields[] = {{4, &DateTime::year},
                                 {2, &DateTime::month},
                                 {2, &DateTime::day},
                                 {2, &DateTime::hour},
                                 {2, &DateTime::minute}};
    for (const Field &f : kFields)
        if (!take_digits(&text, f.width, &(date->*f.field)))
            break;
    return text;
}

int FILE_parse_hour(const char *text, void *) {
    DateTime date;
    const size_t length = strlen(text);
    const bool digit = isdigit(static_cast<unsigned char>(text[0]));
    const bool colon = strchr(text, ':') != nullptr;
    if (text[0] == '#')
        FILE_scan_date(text + 1, &date);
    else if (length == 6 && !colon)
        sscanf(text, "%2d%2d%2d", &date.month, &date.day, &date.hour);
    else if (length == 4 && digit && !colon)
        sscanf(text, "%2d%2d", &date.day, &date.hour);
    else if (length == 3 && digit && !colon)
        sscanf(text, "%1d%2d", &date.day, &date.hour);
    else if (strchr(text, 'd'))
        sscanf(text, "%9dd%9d:%9d", &date.day, &date.hour, &date.minute);
    else
        parse_clock(text, &date);
    FILE_set_user_date(&date);
    return 1;
}

int FILE_get_step() { return names.time_step; }

void FILE_set_step(int seconds) { names.time_step = seconds; }

int FILE_step_or_default() { return names.time_step < 1 ? 100000 : names.time_step; }

int FILE_get_min_size() {
    return names.min_size_override != 0 ? names.min_size_override : names.conv_min_size;
}

void FILE_set_min_size(int bytes) { names.min_size_override = bytes; }

void FILE_set_current(const char *name) {
    names.current_name = name ? name : "";
    names.name_given = 1;
}

const char *FILE_get_current() { return names.current_name.c_str(); }

void FILE_set_source(const char *tag) { names.source = tag ? tag : ""; }

const char *FILE_get_source() { return names.source.c_str(); }

void FILE_save_state() {
    saved = {names.conv_input, names.conv_output, names.current_name, names.time_step,
             names.name_given};
}

void FILE_restore_state() {
    names.conv_input = saved.conv_input;
    names.conv_output = saved.conv_output;
    names.current_name = saved.current_name;
    names.time_step = saved.time_step;
    names.name_given = saved.name_given;
}

void FILE_name_reset() {
    names = FileNameState{};
    saved = SavedNames{};
}
