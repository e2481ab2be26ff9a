#include "shell/loop_wire.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include <netinet/in.h>
#include <sys/msg.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
constexpr size_t kQueueRoom = 120; // bytes of a message: code, text, terminator

struct QueueMessage {
    long type;
    char body[kQueueRoom + 1]; // one more, to notice what does not fit
};

char code_byte(int code) { return char('0' + code); }

/* The bytes of a code and a text. */
void read_message(const char *bytes, size_t size, WireMessage *message) {
    message->code = uint8_t(bytes[0]) - '0';
    message->text.assign(bytes + 1, strnlen(bytes + 1, size - 1));
}

bool is_unready() { return errno == EAGAIN || errno == EINTR; }
} // namespace

WireResult WIRE_queue_put(int queue, const WireMessage &message) {
    QueueMessage sent{WIRE_TO_WINDOW, {}};
    sent.body[0] = code_byte(message.code);
    message.text.copy(sent.body + 1, WIRE_QUEUE_TEXT);
    if (msgsnd(queue, &sent, kQueueRoom, IPC_NOWAIT) == 0)
        return WIRE_DONE;
    return is_unready() ? WIRE_NOT_YET : WIRE_FAILED;
}

WireResult WIRE_queue_take(int queue, int type, WireMessage *message) {
    QueueMessage taken;
    const ssize_t size = msgrcv(queue, &taken, sizeof taken.body, type, IPC_NOWAIT | MSG_NOERROR);
    if (size < 0)
        return errno == ENOMSG || errno == EINTR ? WIRE_NOT_YET : WIRE_FAILED;
    if (size == 0 || size_t(size) > kQueueRoom)
        return WIRE_BAD;
    read_message(taken.body, size_t(size), message);
    return WIRE_DONE;
}

WireResult WIRE_socket_connect(WireSocket *window, int port) {
    if (window->fd < 0)
        window->fd = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (window->fd < 0)
        return WIRE_FAILED;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(uint16_t(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(window->fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 ||
        errno == EISCONN)
        return WIRE_DONE;
    return is_unready() || errno == EINPROGRESS || errno == EALREADY ? WIRE_NOT_YET : WIRE_FAILED;
}

void WIRE_socket_close(WireSocket *window) {
    if (window->fd >= 0)
        close(window->fd);
    *window = WireSocket{};
}

void WIRE_socket_put(WireSocket *window, const WireMessage &message) {
    const std::string text = message.text.substr(0, WIRE_SOCKET_TEXT);
    window->out += char(text.size() + 1);
    window->out += code_byte(message.code);
    window->out += text;
}

WireResult WIRE_socket_flush(WireSocket *window) {
    while (!window->out.empty()) {
        const ssize_t sent =
            send(window->fd, window->out.data(), window->out.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent < 0)
            return is_unready() ? WIRE_NOT_YET : WIRE_FAILED;
        window->out.erase(0, size_t(sent));
    }
    return WIRE_DONE;
}

WireResult WIRE_socket_take(WireSocket *window, WireMessage *message) {
    std::string &in = window->in;
    const auto missing = [&] { return in.empty() ? 1 : 1 + uint8_t(in[0]) - in.size(); };
    while (missing() > 0) {
        char bytes[UINT8_MAX];
        const ssize_t got = recv(window->fd, bytes, missing(), MSG_DONTWAIT);
        if (got < 0 && is_unready())
            return WIRE_NOT_YET;
        if (got <= 0)
            return WIRE_FAILED;
        in.append(bytes, size_t(got));
    }
    const std::string frame = std::exchange(in, {});
    if (frame.size() == 1)
        return WIRE_BAD;
    read_message(frame.data() + 1, frame.size() - 1, message);
    return WIRE_DONE;
}
