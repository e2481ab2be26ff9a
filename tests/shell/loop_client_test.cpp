#include "shell/loop_client.h"

#include "shell/start.h"
#include "tests/shell/shell_fixture.h"

#include <map>
#include <netinet/in.h>
#include <sys/msg.h>
#include <sys/socket.h>
#include <thread>
#include <vector>

using Texts = std::vector<std::string>;

namespace {
constexpr int kNumber = 5; // of the window

struct Line {
    int code;
    std::string text;
};

/* A loop window, on a queue or a port of its own that go with it.  Silent until it serves. */
struct Window {
    const bool on_socket;
    int id = -1, peer = -1;
    std::map<std::string, std::vector<Line>> has; // replies to queries, but for their end
    std::string client = "3";
    std::string mute; // no answer to this
    Texts told;
    std::thread server;

    explicit Window(bool socket_form) : on_socket(socket_form) {
        LOOP_reset();
        LOOP_set_transport(on_socket);
        const int key = on_socket ? listen_anywhere() : 0x52000000 + getpid();
        LOOP_set_key_base(key - kNumber);
        if (!on_socket)
            id = msgget(key, IPC_CREAT | IPC_EXCL | 0600);
        EXPECT_GE(id, 0);
    }
    ~Window() {
        leave();
        LOOP_reset();
    }
    void serve() { server = std::thread(&Window::answer_all, this); }
    void leave() {
        on_socket ? shutdown(id, SHUT_RDWR) : msgctl(id, IPC_RMID, nullptr);
        if (server.joinable())
            server.join();
        close(on_socket ? id : -1);
        id = -1;
    }
    int listen_anywhere() {
        id = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *any = reinterpret_cast<sockaddr *>(&address);
        EXPECT_EQ(bind(id, any, size) + listen(id, 1) + getsockname(id, any, &size), 0);
        return ntohs(address.sin_port);
    }
    void put_raw(long type, const std::string &body) const {
        const std::string bytes(reinterpret_cast<char *>(&type), sizeof type);
        msgsnd(id, (bytes + body).data(), body.size(), 0);
    }
    void put(int type, const Line &line) const {
        const std::string body = char('0' + line.code) + line.text;
        if (!on_socket)
            return put_raw(type, body + '\0');
        send(peer, (char(body.size()) + body).data(), body.size() + 1, MSG_NOSIGNAL);
    }
    /* The next message: its code in front of its text. */
    bool take(std::string *message) const {
        struct {
            long type;
            char body[120];
        } taken;
        if (!on_socket) {
            const bool whole = msgrcv(id, &taken, sizeof taken.body, 1, 0) == sizeof taken.body;
            *message = whole ? taken.body : "";
            return whole;
        }
        unsigned char size = 0;
        recv(peer, &size, 1, MSG_WAITALL);
        message->resize(size);
        return size > 0 && recv(peer, message->data(), size, MSG_WAITALL) == size;
    }
    void answer_all() {
        if (on_socket)
            peer = accept(id, nullptr, nullptr);
        for (std::string message; take(&message);) {
            if (message[0] == '/') {
                put(2, {2, client});
                continue;
            }
            EXPECT_EQ(message[0], '3');
            if (message.starts_with("3query res "))
                for (const Line &line : has[message.substr(11)])
                    put(3, line);
            else
                told.push_back(message.substr(1));
            if (message.substr(1) != mute)
                put(3, {1, ""});
        }
        close(peer);
    }
};

/* Runs the merge over a search list. */
void merge(const std::string &list, Texts args = {}) {
    fresh_shell();
    args.insert(args.begin(), {"radar", "-df", list});
    std::vector<char *> argv;
    for (std::string &arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    RES_init(int(args.size()), argv.data(), OPT_keyed_ids, OPT_positional_ids);
}

/* What it warns of. */
std::string warnings(const std::string &list, const Texts &args = {}) {
    testing::internal::CaptureStderr();
    merge(list, args);
    return testing::internal::GetCapturedStderr();
}
} // namespace

TEST(LoopClient, SettingsGoBothWays) {
    const Folder folder;
    const std::string one = folder.write("one", "*.title: one\n*.con_path: own\n*.raw_path: own\n");
    const std::string two = folder.write("two", "*.region: two\n"), longest(300, 'x');
    for (const bool on_socket : {false, true}) {
        SCOPED_TRACE(on_socket);
        Window window(on_socket);
        window.has = {{"title", {{0, "wide\n"}}},
                      {"region", {{0, "us\n"}}},
                      {"con_path", {{0, ""}, {0, "!none\n"}, {0, "\n"}}},
                      {"label", {{0, "first\n"}, {0, "%s%n 50%\n"}, {0, "\n"}}}};
        if (!on_socket) { // left by an earlier run
            window.put(2, {2, "9"});
            window.put_raw(3, "");
            window.put(3, {0, "stale\n"});
        }
        window.serve();
        EXPECT_EQ(
            warnings(one + ":#5:" + two, {"-rp=mine", "-zz", "5", "-ba", "file", "-dp", longest}),
            "LOOP_send: message is too long: set res data_path " + longest + "\n");
        window.leave();
        EXPECT_EQ(window.told,
                  (Texts{"set res con_path own", "set res raw_path own", "set res raw_path mine",
                         "set res zz 5", "set res batch ", "quit"}));
        for (const auto &[name, value] : {std::pair{"title", "wide"},
                                          {"region", "two"},
                                          {"con_path", "own"},
                                          {"label", "%s%n 50%"},
                                          {"raw_path", "mine"}})
            EXPECT_STREQ(RES_get(name), value) << name;
        EXPECT_EQ(RES_get("help"), nullptr) << "what was stale is gone";
    }
}

TEST(LoopClient, AMergeGoesOnWithoutAWindow) {
    const std::string lost = "QRAloop not running!\n", window_5 = "QRAloop window: 5 ";
    const struct {
        const char *client, *mute;
        std::vector<Line> title;
        std::string warning;
    } cases[] = {
        {"3", "", {{LOOP_GONE, ""}}, lost},
        {"3", "", std::vector<Line>(1001, {0, "without end\n"}), lost},
        {"3", "set res con_path own", {}, "Queue not responding!!\n" + lost},
        {"2", "", {}, window_5 + "unable to connect\n"},
        {"22", "", {}, window_5 + "unable to connect\n"},
        {"-99999999999999999999", "", {}, window_5 + "unable to connect\n"},
    };
    const Folder folder;
    const std::string list = folder.write("own", "*.con_path: own\n") + ":#5";
    for (const auto &c : cases) {
        SCOPED_TRACE(c.warning);
        Window window(true);
        window.client = c.client;
        window.mute = c.mute;
        LOOP_set_timeout(c.mute[0] ? 2 : 20);
        window.has["title"] = c.title;
        window.serve();
        EXPECT_EQ(warnings(list, {"-ti", "own"}), c.warning);
        EXPECT_STREQ(RES_get("title"), "own");
    }
    for (const bool on_socket : {false, true}) {
        Window window(on_socket);
        window.leave();
        EXPECT_EQ(warnings("#5:#five"),
                  window_5 + "not running or no message queue exists\n"
                             "QRAloop window: five not running or no message queue exists\n");
    }
    fresh_shell();
}

TEST(LoopClient, AWindowThatNeverAnswersEndsTheProgram) {
    for (const bool on_socket : {false, true}) {
        const Window window(on_socket);
        LOOP_set_timeout(1);
        EXPECT_EXIT(merge("#5"), testing::ExitedWithCode(7), "^Queue not responding!!\n$");
    }
}

TEST(LoopClient, AQueueIsReadWithinBounds) {
    const Window window(false);
    EXPECT_EQ(LOOP_find_free(kNumber), kNumber + 1);
    EXPECT_EQ(LOOP_connect(kNumber), window.id);
    window.put_raw(4, "");
    window.put_raw(4, std::string(121, 'x'));
    window.put_raw(4, std::string(120, '0'));
    window.put_raw(4, "1a%s" + std::string(3, '\0') + "b");
    std::string text;
    for (const Line &want : {Line{-1, ""}, {-1, ""}, {0, std::string(119, '0')}, {1, "a%s"}}) {
        EXPECT_EQ(LOOP_read(window.id, 4, &text), want.code);
        EXPECT_EQ(text, want.text);
    }
    static int rang;
    rang = 0;
    LOOP_set_timeout(1);
    LOOP_set_handler([](int) { rang++; });
    EXPECT_EQ(LOOP_read(window.id, 4, &text), -1);
    EXPECT_EQ(rang, 1) << "a handler that returns makes it a failed read";
    MSG_set_levels("none");
    EXPECT_EQ(LOOP_send(window.id, 3, "%s", std::string(118, 'x').c_str()), 0);
    EXPECT_EQ(LOOP_send(window.id, 3, "%s", std::string(119, 'x').c_str()), -1);
    LOOP_set_key_base(-kNumber);
    EXPECT_EQ(LOOP_connect(kNumber), -1) << "that key would make a queue";
    fresh_shell();
}

TEST(LoopClient, FramesOfASocketAreReadWithinBounds) {
    const std::string x254(254, 'x');
    const struct {
        const char *why;
        std::string bytes;
        std::vector<Line> want;
    } cases[] = {
        {"two frames", "\x03" + std::string("1ab\x01") + "0", {{1, "ab"}, {0, ""}}},
        {"the longest", "\xff" + ("0" + x254), {{0, x254}}},
        {"a zero inside", std::string("\x05-a\0b%", 6), {{LOOP_GONE, "a"}}},
        {"a code beyond the digits", "\x01\xff", {{255 - '0', ""}}},
        {"no code", std::string("\0\x01", 2) + "1", {{-1, ""}, {1, ""}}},
        {"the end inside a frame", "\x05" + std::string("1ab"), {{-1, ""}}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        int end[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, end), 0);
        LOOP_set_transport(1);
        LOOP_adopt_socket(end[0]);
        send(end[1], c.bytes.data(), c.bytes.size(), 0);
        shutdown(end[1], SHUT_WR);
        for (const Line &want : c.want) {
            std::string text;
            EXPECT_EQ(LOOP_read(1, 3, &text), want.code);
            EXPECT_EQ(text, want.text);
        }
        EXPECT_EQ(LOOP_send(1, 3, "%s", x254.c_str()), 256);
        close(end[1]);
        EXPECT_EQ(LOOP_send(1, 3, "quit"), -1) << "the window is gone";
    }
    LOOP_reset();
}
