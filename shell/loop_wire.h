/* Messages to and from a loop window, as they stand on a message queue and on a socket.
 *
 * A message is a code, one byte that counts from "0", and a text.  On a queue it has a room of 120
 * bytes, on a socket it is a frame behind its length.  Every call is one attempt; none waits.
 */
#pragma once

#include <cstddef>
#include <string>

constexpr int WIRE_TO_WINDOW = 1; // type of a message on a queue; a reply has the client's number

constexpr size_t WIRE_QUEUE_TEXT = 118;  // characters of the longest text
constexpr size_t WIRE_SOCKET_TEXT = 254; //

enum WireResult {
    WIRE_BAD = -2, // what came is no message, and is gone
    WIRE_FAILED = -1,
    WIRE_NOT_YET = 0,
    WIRE_DONE = 1
};

struct WireMessage {
    int code = 0;
    std::string text; // of a reply, up to its first zero byte
};

/* text has at most WIRE_QUEUE_TEXT characters. */
WireResult WIRE_queue_put(int queue, const WireMessage &message);

/* Takes the first message of a type, 1 and above.  One that has no code, or more than its room, is
 * bad. */
WireResult WIRE_queue_take(int queue, int type, WireMessage *message);

/* A connected socket, with the frame that is on its way in each direction. */
struct WireSocket {
    int fd = -1; // owned
    std::string in, out;
};

/* Connects to a port of this machine; the first attempt opens the socket. */
WireResult WIRE_socket_connect(WireSocket *socket, int port);
void WIRE_socket_close(WireSocket *socket);

/* Adds a frame to what goes out; text has at most WIRE_SOCKET_TEXT characters. */
void WIRE_socket_put(WireSocket *socket, const WireMessage &message);
WireResult WIRE_socket_flush(WireSocket *socket);

/* A frame without a code is bad; the end of the connection is a failure. */
WireResult WIRE_socket_take(WireSocket *socket, WireMessage *message);
