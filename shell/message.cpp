#include "shell/message.h"

#include "files/date_time.h"
#include "files/stream.h"
#include "shell/params.h"
#include "shell/process.h"
#include "shell/strings.h"

#include <algorithm>
#include <bit>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {
enum LogMode { LOG_STAMPED = -1, LOG_ONLY = 0, LOG_BOTH = 1, LOG_REOPEN = 2 };
enum PageMode { PAGE_NEVER = 0, PAGE_ON_REQUEST = 1, PAGE_BY_COUNT = 2 };

constexpr int kPageLength = 22; // lines

struct MsgState {
    uint32_t mask = 0xfffff; // bits that are shown
    int explicit_count = 0;  // settings that a weak default must not overrule
    int log_mode = LOG_BOTH;
    int page_mode = PAGE_ON_REQUEST;
    int page_length = kPageLength;
    int line_count = 0;   // lines since the last pause
    FILE *log = nullptr;  // owned
    std::string log_name; // for LOG_REOPEN
};
MsgState msg;

enum class Change { Set, Add, Remove };

void close_log() {
    if (msg.log)
        FILE_close(msg.log);
    msg.log = nullptr;
}

/* A level shows every class below it too. */
uint32_t fill_down(uint32_t bits) {
    return bits ? uint32_t((uint64_t(1) << std::bit_width(bits)) - 1) : 0;
}

void change_mask(Change change, uint32_t bits) {
    switch (change) {
    case Change::Set:
        msg.mask = fill_down(bits);
        break;
    case Change::Add:
        msg.mask |= bits;
        break;
    case Change::Remove:
        msg.mask &= ~bits;
        break;
    }
}

void write_log(const char *text) {
    if (msg.log_mode == LOG_REOPEN) {
        close_log();
        msg.log = FILE_open(msg.log_name.c_str(), "a");
    }
    if (msg.log) {
        if (msg.log_mode == LOG_STAMPED) {
            std::string now;
            DT_timestamp(&now);
            fprintf(msg.log, "%s -- ", now.c_str());
        }
        fputs(text, msg.log);
    }
    if (msg.log_mode == LOG_REOPEN)
        close_log();
}

/* newlines counts those of the format: an expansion of many lines pages as one. */
int deliver(uint32_t level, const char *text, int newlines) {
    write_log(text);
    if (msg.log_mode == LOG_ONLY)
        return 0;
    fputs(text, level & (MSG_ERROR | MSG_WARN) ? stderr : stdout);
    if (msg.page_mode == PAGE_BY_COUNT) {
        msg.line_count += newlines;
        if (msg.line_count > msg.page_length)
            MSG_pause(level, "Press return to continue\n");
    }
    return 1;
}

int count_newlines(const char *text) { return int(std::count(text, text + strlen(text), '\n')); }
} // namespace

int MSG_print(uint32_t level, const char *format, ...) {
    if (!MSG_enabled(level))
        return 0;
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    char line[512];
    const int length = vsnprintf(line, sizeof line, format, args);
    va_end(args);
    std::string longer;
    if (length >= int(sizeof line)) {
        longer.resize(size_t(length));
        vsnprintf(longer.data(), size_t(length) + 1, format, again);
    }
    va_end(again);
    if (length < 0)
        return 0;
    return deliver(level, longer.empty() ? line : longer.c_str(), count_newlines(format));
}

int MSG_text(uint32_t level, const char *text) {
    return MSG_enabled(level) ? deliver(level, text, count_newlines(text)) : 0;
}

void MSG_banner(const char *title) {
    MSG_print(MSG_MESS, "      %s (Ver %s)\n\n", title, VER_string());
}

void MSG_pause(uint32_t level, const char *text) {
    if (!MSG_enabled(level) || msg.log_mode == LOG_ONLY || PAR_is_batch() ||
        msg.page_mode == PAGE_NEVER)
        return;
    // Not the rule of the messages: only a text that is an error and a warning leaves by stderr.
    const bool to_stderr = (level & MSG_ERROR) && (level & MSG_WARN);
    fputs(text, to_stderr ? stderr : stdout);
    fflush(stdout);
    getchar();
    msg.line_count = 0;
}

bool MSG_enabled(uint32_t level) { return (level & msg.mask) != 0; }

namespace {
struct LevelWord {
    const char *name;
    size_t match;
    uint32_t mask;
};
constexpr LevelWord kLevelWords[] = {
    {"none", 4, 0},        {"print", 5, MSG_PRINT}, {"error", 5, MSG_ERROR}, {"warn", 4, MSG_WARN},
    {"mess", 4, MSG_MESS}, {"out1", 4, MSG_OUT1},   {"out2", 4, MSG_OUT2},   {"out3", 4, MSG_OUT3},
    {"out4", 4, MSG_OUT4}, {"debug", 5, MSG_DEBUG},
};
constexpr uint32_t kSublevels[] = {0x11111111, 0x22222222, 0x44444444, 0x88888888}; // a to d

/* An unknown word stands for no bit at all: without a sign it silences the program. */
void set_level(const char *item) {
    const Change change = *item == '+' ? Change::Add : *item == '-' ? Change::Remove : Change::Set;
    const char *word = change == Change::Set ? item : item + 1;
    uint32_t bits = 0;
    for (const LevelWord &w : kLevelWords)
        if (!STR_ncasecmp(word, w.name, w.match))
            bits = w.mask;
    const char last = *item ? item[strlen(item) - 1] : '\0';
    if (last >= 'a' && last <= 'd')
        bits &= kSublevels[last - 'a'];
    change_mask(change, bits);
}

void open_log(const char *name, const char *file_mode, int log_mode) {
    close_log();
    msg.log = FILE_open(name, file_mode);
    msg.log_mode = log_mode;
}

void set_page_length(const char *number) {
    const long lines = strtol(number, nullptr, 10);
    msg.page_length = lines < 1 ? kPageLength : int(std::min(lines, 1000000L));
}

struct SettingWord {
    const char *name; // compared on its whole length
    void (*act)(const char *value);
};
constexpr SettingWord kSettingWords[] = {
    {"@fi", [](const char *name) { open_log(name, "a", LOG_STAMPED); }},
    {"+fi", [](const char *name) { open_log(name, "a", LOG_BOTH); }},
    {"-fi", [](const char *name) { open_log(name, "w", LOG_BOTH); }},
    {"dfi",
     [](const char *name) {
         close_log();
         msg.log_name = name;
         msg.log_mode = LOG_REOPEN;
     }},
    {"fi", [](const char *name) { open_log(name, "a", LOG_ONLY); }},
    {"nopage", [](const char *) { msg.page_mode = PAGE_NEVER; }},
    {"page", [](const char *) { msg.page_mode = PAGE_BY_COUNT; }},
    {"line", set_page_length},
};

void set_item(const char *item) {
    for (const SettingWord &w : kSettingWords) {
        const size_t match = strlen(w.name);
        if (STR_ncasecmp(item, w.name, match))
            continue;
        w.act(strlen(item) > match ? item + match + 1 : ""); // behind any one separator
        return;
    }
    set_level(item);
}
} // namespace

void MSG_set_levels(const char *text) {
    msg.explicit_count++;
    const StrList items(text, ',');
    for (int i = 0; i < items.count; i++)
        set_item(items[i]);
}

void MSG_set_mask(int code, uint32_t bits) {
    if (code < 5)
        msg.explicit_count++;
    if (code >= 16 && msg.explicit_count != 0)
        return;
    switch (code) {
    case 0:
    case 10:
    case 20:
        change_mask(Change::Set, bits);
        break;
    case 1:
    case 11:
    case 21:
        change_mask(Change::Add, bits);
        break;
    case -1:
    case 9:
    case 19:
        change_mask(Change::Remove, bits);
        break;
    default:
        break;
    }
}

uint32_t MSG_get_mask() { return msg.mask; }

int MSG_explicit_count() { return msg.explicit_count; }

int MSG_get_page_length() { return msg.page_length; }

void MSG_set_log_mode(int mode) { msg.log_mode = mode; }

void MSG_set_page_mode(int mode) { msg.page_mode = mode; }

void MSG_reset() {
    close_log();
    msg = MsgState{};
}
