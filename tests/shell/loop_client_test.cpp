#include "shell/loop_client.h"

#include "shell/loop_settings.h"
#include "shell/start.h"
#include "tests/shell/shell_fixture.h"

#include <map>
#include <netinet/in.h>
#include <sys/msg.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using Texts = std::vector<std::string>;

namespace {
constexpr int kNumber = 5; // of the window

struct Line {
    int code;
    std::string text;
};

/* A loop window on a queue of its own.  Silent until it serves.  A process at its side removes the
 * queue when this one lets go of it, or ends in any way. */
struct Window {
    int id = -1, life = -1; // of the queue; the guardian waits for the end of life
    pid_t guardian;
    std::map<std::string, std::vector<Line>> has; // replies to queries, but for their end
    std::string client = "3", mute;               // no answer to mute
    Texts told;
    std::thread server;

    Window() {
        LOOP_reset();
        int ends[2] = {};
        id = msgget(0x52000000 + getpid(), IPC_CREAT | IPC_EXCL | 0600);
        EXPECT_EQ(id < 0 ? -1 : pipe(ends), 0);
        LOOP_set_key_base(0x52000000 + getpid() - kNumber);
        guardian = fork();
        close(ends[guardian != 0 ? 0 : 1]);
        life = ends[1];
        if (guardian != 0)
            return;
        setsid(); // an interrupt from the keyboard does not reach it
        const bool ended = read(ends[0], &ends, 1) == 0;
        msgctl(id, IPC_RMID, nullptr);
        _exit(!ended);
    }
    ~Window() {
        leave();
        LOOP_reset();
    }
    void leave() {
        close(life);
        life = -1;
        waitpid(guardian, nullptr, 0);
        if (server.joinable())
            server.join();
    }
    void serve() { server = std::thread(&Window::answer_all, this); }
    void put_raw(long type, const std::string &body) const {
        const std::string bytes(reinterpret_cast<char *>(&type), sizeof type);
        msgsnd(id, (bytes + body).data(), body.size(), 0);
    }
    void put(int type, const Line &line) const {
        put_raw(type, char('0' + line.code) + line.text + '\0');
    }
    void answer_all() {
        struct {
            long type;
            char body[120];
        } taken;
        while (msgrcv(id, &taken, sizeof taken.body, 1, 0) == sizeof taken.body) {
            const std::string text = taken.body + 1;
            if (taken.body[0] == '/') {
                put(2, {2, client});
                continue;
            }
            EXPECT_EQ(taken.body[0], '3');
            if (text.starts_with("query res "))
                for (const Line &line : has[text.substr(10)])
                    put(3, line);
            else
                told.push_back(text);
            if (text != mute)
                put(3, {1, ""});
        }
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
    Window window;
    window.has = {{"title", {{0, "wide\n"}}},
                  {"region", {{0, "us\n"}}},
                  {"con_path", {{0, ""}, {0, "!none\n"}, {0, "\n"}}},
                  {"label", {{0, "first\n"}, {0, "%s%n 50%\n"}, {0, "\n"}}}};
    window.put(2, {2, "9"}); // left by an earlier run
    window.put_raw(3, "");
    window.put(3, {0, "stale\n"});
    window.serve();
    EXPECT_EQ(warnings(one + ":#5:" + two, {"-rp=mine", "-zz", "5", "-ba", "file", "-dp", longest}),
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
    };
    const Folder folder;
    const std::string list = folder.write("own", "*.con_path: own\n") + ":#5";
    for (const auto &c : cases) {
        SCOPED_TRACE(c.warning);
        Window window;
        window.client = c.client;
        window.mute = c.mute;
        LOOP_set_timeout(c.mute[0] ? 1 : 20);
        window.has["title"] = c.title;
        window.serve();
        EXPECT_EQ(warnings(list, {"-ti", "own"}), c.warning);
        EXPECT_STREQ(RES_get("title"), "own");
    }
    fresh_shell();
}

TEST(LoopClient, AWindowThatGoesIsMissedOnce) {
    Window window;
    window.serve();
    LOOP_take_settings("5", {});
    LOOP_tell("title", "one");
    window.leave();
    testing::internal::CaptureStderr();
    LOOP_tell("title", "two");
    LOOP_tell("title", "three");
    LOOP_quit();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "QRAloop not running!\n");
    EXPECT_EQ(window.told, Texts{"set res title one"});
}

TEST(LoopClient, TheAlarmEndsAWait) {
    const Window silent;
    LOOP_set_timeout(1);
    EXPECT_EXIT(merge("#5"), testing::ExitedWithCode(7), "^Queue not responding!!\n$");
    static int rang;
    rang = 0;
    LOOP_set_handler([](int) { rang++; });
    std::string text = "old";
    EXPECT_EQ(LOOP_read(LOOP_connect(kNumber), 3, &text), -1);
    EXPECT_EQ(text, "");
    EXPECT_EQ(rang, 1) << "a handler that returns makes it a failed read";
}

TEST(LoopClient, AWindowIsFoundByItsNumber) {
    const Window window;
    EXPECT_EQ(LOOP_find_free(kNumber), kNumber + 1);
    EXPECT_EQ(LOOP_connect(kNumber), window.id);
    LOOP_set_key_base(-kNumber);
    EXPECT_EQ(LOOP_connect(kNumber), -1) << "that key would make a queue";

    const int port = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    listen(port, 1); // on a number that is free
    ASSERT_EQ(getsockname(port, reinterpret_cast<sockaddr *>(&address), &size), 0);
    LOOP_set_transport(1);
    LOOP_set_key_base(ntohs(address.sin_port) - kNumber);
    EXPECT_EQ(LOOP_connect(kNumber), 1);
    close(port);
    EXPECT_EQ(warnings("#5:#five"),
              "QRAloop window: 5 not running or no message queue exists\n"
              "QRAloop window: five not running or no message queue exists\n");
    fresh_shell();
}

TEST(LoopClient, MessagesKeepToTheirBounds) {
    const std::string x254(254, 'x'), room(120, '0'), zero(1, '\0');
    const struct {
        bool on_socket;
        Texts sent;
        std::vector<Line> want;
    } cases[] = {
        {false, {"", room + "0", room}, {{-1, ""}, {-1, ""}, {0, room.substr(1)}}},
        {false, {"1a%s" + zero + "b"}, {{1, "a%s"}}},
        {true, {"\3", "1ab\1", "0"}, {{1, "ab"}, {0, ""}}},
        {true, {"\xff", "0", x254}, {{0, x254}}},
        {true, {"\5-a", zero, "b%"}, {{LOOP_GONE, "a"}}},
        {true, {"\1\xff"}, {{255 - '0', ""}}}, // a code beyond the digits
        {true, {zero, "\1", "1"}, {{-1, ""}, {1, ""}}},
        {true, {"\5", "1ab"}, {{-1, ""}}}, // the end inside a frame
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(&c - cases);
        const Window window;
        MSG_set_levels("none");
        int end[2], queue = LOOP_connect(kNumber);
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, end), 0);
        LOOP_set_transport(c.on_socket);
        LOOP_adopt_socket(end[0]);
        for (const std::string &bytes : c.sent)
            c.on_socket ? void(send(end[1], bytes.data(), bytes.size(), 0))
                        : window.put_raw(3, bytes);
        shutdown(end[1], SHUT_WR);
        for (const Line &want : c.want) {
            std::string text;
            EXPECT_EQ(LOOP_read(queue, 3, &text), want.code);
            EXPECT_EQ(text, want.text);
        }
        const std::string longest(c.on_socket ? 254 : 118, 'x');
        EXPECT_EQ(LOOP_send(queue, 21, "%s", longest.c_str()), c.on_socket ? 256 : 0);
        EXPECT_EQ(LOOP_send(queue, 21, "%sx", longest.c_str()), LOOP_TOO_LONG);
        std::string frame(c.on_socket ? 256 : 0, ' ');
        recv(end[1], frame.data(), frame.size(), MSG_DONTWAIT);
        EXPECT_EQ(frame, c.on_socket ? "\xff" + ("E" + longest) : "");
        close(end[1]);
        EXPECT_EQ(LOOP_send(queue, 21, "quit"), c.on_socket ? -1 : 0);
    }
    fresh_shell();
}
