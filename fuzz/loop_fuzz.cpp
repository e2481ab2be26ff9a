/* Any bytes as what a loop window says over its socket. */
#include "shell/loop_client.h"
#include "shell/message.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    constexpr size_t kRoom = 100000; // what a socket holds on its way
    if (size > kRoom)
        return 0;
    MSG_set_levels("none");
    LOOP_set_transport(1);
    int end[2];
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, end) != 0)
        abort();
    LOOP_adopt_socket(end[0]);
    if (write(end[1], data, size) != ssize_t(size) || shutdown(end[1], SHUT_WR) != 0)
        abort();
    const int client = LOOP_register(1);
    if (client == 0 || client > 21)
        abort();
    std::string text;
    for (size_t read = 0; read <= size; read += 2 + text.size()) {
        // A code below the digits reads as a failure does; the bytes may go on behind it.
        const int code = LOOP_read(1, client, &text);
        if (text.size() > 254 || code < -'0' || code > 255 - '0')
            abort();
    }
    LOOP_close();
    close(end[1]);
    return 0;
}
