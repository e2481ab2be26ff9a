#include "shell/loop_settings.h"

#include "shell/loop_client.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>

namespace {
/* Of one reply. */
constexpr int kMostLines = 1000;
constexpr std::chrono::seconds kMostWait(100);

/* The open window. */
struct SettingsState {
    bool open = false;
    int queue = 0;
    int client = 0;
};
constinit SettingsState window;

void close_window() {
    LOOP_close();
    window = SettingsState{};
}

/* A window that does not answer as it should is left; it may hear of it. */
void lose_window() {
    MSG_print(MSG_WARN, "QRAloop not running!\n");
    LOOP_send(window.queue, window.client, "quit");
    close_window();
}

/* Reads a reply to its end and hands on its lines.  False for one that fails or has no end. */
template <class Line>
bool read_reply(Line take_line) {
    const auto deadline = std::chrono::steady_clock::now() + kMostWait;
    std::string line;
    for (int i = 0; i < kMostLines && std::chrono::steady_clock::now() < deadline; i++) {
        const int code = LOOP_read(window.queue, window.client, &line);
        if (code != 0)
            return code > 0;
        take_line(line);
    }
    return false;
}

bool drain_reply() {
    return read_reply([](const std::string &) {});
}

bool is_asked(const OptionSpec &row) { return row.name && *row.name; }

/* Whether a line holds a value: its last character only ends the line. */
bool is_value(const std::string &line) {
    return !line.empty() && line[0] != '!' && line[0] != '\n';
}

void ask_for(const std::vector<OptionSpec> &table) {
    for (const OptionSpec &row : table)
        if (is_asked(row))
            LOOP_send(window.queue, window.client, "query res %s", row.name);
}

/* Tells the window a setting.  1 when it is to answer, 0 when no message holds the setting, -1 when
 * the window is lost. */
int tell(const char *name, const char *value) {
    const int sent = LOOP_send(window.queue, window.client, "set res %s %s", name, value);
    return sent >= 0 ? 1 : sent == LOOP_TOO_LONG ? 0 : -1;
}

/* Stores what the window has for the rows.  Returns how many settings it was told in turn; -1 when
 * it is lost. */
int hear_and_tell(const std::vector<OptionSpec> &table) {
    int told = 0;
    for (size_t i = 0; i < table.size(); i++) {
        const OptionSpec &row = table[i];
        if (!is_asked(row))
            continue;
        bool answered = false;
        const bool ended = read_reply([&](const std::string &line) {
            if (!is_value(line))
                return;
            RES_add(int(i), row.name, line.substr(0, line.size() - 1).c_str(), row.type);
            answered = true;
        });
        if (!ended)
            return -1;
        const char *own = RES_get(row.name);
        const int sent = !answered && own && *own ? tell(row.name, own) : 0;
        if (sent < 0)
            return -1;
        told += sent;
    }
    return told;
}
} // namespace

void LOOP_take_settings(const char *number, const std::vector<OptionSpec> &table) {
    LOOP_quit();
    window.queue = LOOP_connect(atoi(number));
    if (window.queue == -1) {
        MSG_print(MSG_WARN, "QRAloop window: %s not running or no message queue exists\n", number);
        return;
    }
    window.client = LOOP_register(window.queue);
    if (window.client < 0) {
        MSG_print(MSG_WARN, "QRAloop window: %s unable to connect\n", number);
        close_window();
        return;
    }
    window.open = true;
    ask_for(table);
    int told = hear_and_tell(table);
    signal(SIGALRM, SIG_IGN); // what it says to the settings it was told matters no more
    while (told > 0 && drain_reply())
        told--;
    if (told != 0)
        lose_window();
}

void LOOP_tell(const char *name, const char *value) {
    if (!window.open)
        return;
    const int sent = tell(name, value);
    if (sent < 0 || (sent > 0 && !drain_reply()))
        lose_window();
}

void LOOP_quit() {
    if (!window.open)
        return;
    if (LOOP_send(window.queue, window.client, "quit") >= 0)
        drain_reply();
    close_window();
}
