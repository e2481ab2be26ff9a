#include "shell/loop_client.h"

#include "shell/loop_wire.h"
#include "shell/message.h"
#include "shell/process.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <poll.h>
#include <sys/msg.h>
#include <unistd.h>

namespace {
using Clock = std::chrono::steady_clock;

constexpr int kNoAnswerStatus = 7;
constexpr int kSocket = 1;         // transport
constexpr int kHandshake = 2;      // type and code of the reply that brings a client number
constexpr int kFirstClient = 3;    // client numbers that a window gives
constexpr int kLastClient = 21;    //
constexpr int kWindows = 50;       // numbers that are looked through
constexpr int kMostStale = 100000; // messages that are dropped from one queue
constexpr std::chrono::milliseconds kGrace(100); // from the alarm to the deadline

/* Pauses in front of an attempt, so that a quick reply costs nothing. */
constexpr int kQuickTries = 2;
constexpr int kShortTries = 200;
constexpr int kShortPause = 100; // ms
constexpr int kLongPause = 1000;

struct LoopState {
    int transport = 0;
    int key_base = 0;
    int timeout = 20; // seconds
    void (*handler)(int) = nullptr;
    WireSocket socket;
    bool refused = false;     // the last LOOP_connect found a queue that it may not use
    bool hears_alarm = false; // `before` holds what SIGALRM did
    struct sigaction before = {};
    volatile std::sig_atomic_t rang = 0;
    Clock::time_point deadline; // behind the alarm
};
LoopState loop;

void hear_alarm() {
    struct sigaction action = {}, before;
    action.sa_handler = [](int) { loop.rang = 1; };
    sigemptyset(&action.sa_mask);
    sigaction(SIGALRM, &action, &before);
    if (!loop.hears_alarm)
        loop.before = before;
    loop.hears_alarm = true;
}

void report_silence() { MSG_print(MSG_WARN, "Queue not responding!!\n"); }

/* True when a wait is over without an answer.  The alarm is acted on here, not in the signal: the
 * end of the process runs what must not run inside one. */
bool is_given_up() {
    if (!loop.rang) {
        if (Clock::now() < loop.deadline)
            return false;
        report_silence();
        return true;
    }
    loop.rang = 0;
    if (!loop.handler) {
        report_silence();
        PROC_exit(kNoAnswerStatus);
    }
    loop.handler(SIGALRM);
    return true;
}

/* Sleeps, at most until the socket is ready or the alarm rings. */
void pause_before(int tries, short events) {
    pollfd window = {loop.transport == kSocket ? loop.socket.fd : -1, events, 0};
    if (tries > kQuickTries)
        poll(&window, 1, tries <= kShortTries ? kShortPause : kLongPause);
}

/* Attempts until it is done, has failed or the alarm rings. */
template <class Attempt>
bool keep_trying(short events, Attempt attempt) {
    LOOP_alarm_on();
    WireResult result = WIRE_NOT_YET;
    for (int tries = 1; result == WIRE_NOT_YET; tries++) {
        pause_before(tries, events);
        result = attempt();
        if (result == WIRE_NOT_YET && is_given_up())
            result = WIRE_FAILED;
    }
    LOOP_alarm_off();
    return result == WIRE_DONE;
}

int connect_queue(int64_t key) {
    // The key that stands for no key would make a queue that nobody can find again.
    errno = ENOENT;
    const bool is_key = key >= INT_MIN && key <= INT_MAX && key_t(key) != IPC_PRIVATE;
    const int queue = is_key ? msgget(key_t(key), 0) : -1;
    if (queue >= 0)
        return queue;
    const bool none = errno == ENOENT;
    LOOP_close();
    loop.refused = !none;
    return none ? -1 : 0;
}

int connect_socket(int64_t port) {
    const bool connected = port > 0 && port <= UINT16_MAX && keep_trying(POLLOUT, [&] {
                               return WIRE_socket_connect(&loop.socket, int(port));
                           });
    if (loop.socket.fd >= 0)
        MSG_print(MSG_DEBUG_C, "Opened socket\n");
    if (!connected) {
        LOOP_close();
        return -1;
    }
    MSG_print(MSG_DEBUG_C, "Connected to socket\n");
    return 1;
}

__attribute__((format(printf, 1, 0))) std::string formatted(const char *format, va_list args) {
    va_list again;
    va_copy(again, args);
    const int length = vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::string text(size_t(std::max(length, 0)), '\0');
    vsnprintf(text.data(), text.size() + 1, format, args);
    return text;
}

/* Sends a message; its result, negative on failure. */
int put(int queue, const WireMessage &message) {
    if (loop.transport != kSocket)
        return keep_trying(0, [&] { return WIRE_queue_put(queue, message); }) ? 0 : -1;
    WIRE_socket_put(&loop.socket, message);
    const int size = int(loop.socket.out.size());
    return keep_trying(POLLOUT, [&] { return WIRE_socket_flush(&loop.socket); }) ? size : -1;
}

WireResult take(int queue, int type, WireMessage *message) {
    const WireResult result = loop.transport == kSocket ? WIRE_socket_take(&loop.socket, message)
                                                        : WIRE_queue_take(queue, type, message);
    MSG_print(MSG_DEBUG_D, "GET-MSG:%d %d %d %d\n", queue, type, int(result), message->code);
    if (result == WIRE_DONE)
        MSG_print(MSG_DEBUG_D, "GET:%s\n", message->text.c_str());
    return result;
}
} // namespace

void LOOP_set_transport(int transport) { loop.transport = transport; }
void LOOP_set_key_base(int base) { loop.key_base = base; }
void LOOP_set_timeout(int seconds) { loop.timeout = std::max(seconds, 1); }
void LOOP_set_handler(void (*handler)(int)) { loop.handler = handler; }

int LOOP_connect(int n) {
    LOOP_close();
    hear_alarm();
    const int64_t address = int64_t(loop.key_base) + n;
    return loop.transport == kSocket ? connect_socket(address) : connect_queue(address);
}

void LOOP_close() {
    WIRE_socket_close(&loop.socket);
    loop.refused = false;
    if (loop.hears_alarm)
        sigaction(SIGALRM, &loop.before, nullptr);
    loop.hears_alarm = false;
}

void LOOP_adopt_socket(int fd) {
    LOOP_close();
    hear_alarm();
    loop.socket.fd = fd;
}

int LOOP_register(int queue) {
    if (loop.refused)
        return -1;
    LOOP_flush(queue, kHandshake);
    std::string text;
    if (LOOP_send(queue, LOOP_ASK_NUMBER, "%d", int(getuid())) < 0 ||
        LOOP_read(queue, kHandshake, &text) != kHandshake)
        return -1;
    const long client = strtol(text.c_str(), nullptr, 10);
    if (client < kFirstClient || client > kLastClient)
        return -1;
    LOOP_flush(queue, int(client));
    return int(client);
}

int LOOP_send(int queue, int client, const char *format, ...) {
    va_list args;
    va_start(args, format);
    const WireMessage message{client, formatted(format, args)};
    va_end(args);
    const char *text = message.text.c_str();
    MSG_print(MSG_DEBUG_C, "PUT:%d:%s\n", client, text);
    // A setting that is cut would be a wrong one.
    if (message.text.size() > (loop.transport == kSocket ? WIRE_SOCKET_TEXT : WIRE_QUEUE_TEXT)) {
        MSG_print(MSG_WARN, "LOOP_send: message is too long: %s\n", text);
        return LOOP_TOO_LONG;
    }
    const int result = put(queue, message);
    MSG_print(MSG_DEBUG_C, "Send: %d %d %d => %s\n", queue, client, result, text);
    return result;
}

int LOOP_read(int queue, int client, std::string *text) {
    text->clear();
    WireMessage message;
    if (!keep_trying(POLLIN, [&] { return take(queue, client, &message); }))
        return -1;
    *text = std::move(message.text);
    MSG_print(MSG_DEBUG_C, "Received: %d %d %d => %s\n", queue, client, message.code,
              text->c_str());
    return message.code;
}

void LOOP_flush(int queue, int type) {
    WireMessage stale;
    for (int i = 0; i < kMostStale && loop.transport != kSocket; i++) {
        const WireResult result = WIRE_queue_take(queue, type, &stale);
        if (result == WIRE_NOT_YET || result == WIRE_FAILED)
            return;
    }
}

void LOOP_alarm_on() {
    loop.rang = 0;
    loop.deadline = Clock::now() + std::chrono::seconds(loop.timeout) + kGrace;
    alarm(unsigned(loop.timeout));
}

void LOOP_alarm_off() { alarm(0); }

int LOOP_find_free(int start) {
    for (int i = 0; i < kWindows && start <= INT_MAX - i; i++) {
        const bool is_free = LOOP_connect(start + i) == -1;
        LOOP_close();
        if (is_free)
            return start + i;
    }
    return -1;
}

void LOOP_reset() {
    LOOP_close();
    loop = LoopState{};
}
