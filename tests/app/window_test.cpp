/* The program in a window, with a user at its keyboard. */
#include "tests/app/program_run.h"
#include "tests/support/xserver.h"

#include <fcntl.h>
#include <sys/file.h>

namespace {

// A server has one pointer: the tests of other processes wait.
const int turn = open(RADAR_SOURCE_DIR "/tools/with_xservers", O_RDONLY | O_CLOEXEC);

/* What every user does: finds the window, presses keys in it and looks at its title. */
constexpr const char *kHands = R"sh(
w=$(timeout 60 xdotool search --sync --onlyvisible --name Storm)
press() { xdotool mousemove 720 720 key "$1"; }
is_at() { [ "$(xdotool getwindowname $w)" = "Storm [$1]" ]; }
shows() { # up to five seconds for a title
    for i in $(seq 100); do
        is_at $1 && echo "$1" && return
        sleep 0.05
    done
    echo "not $1"
}
stop_at_first() {
    press alt+l
    for i in $(seq 20); do
        sleep 0.2
        is_at 0 && return
        press alt+bracketright
    done
}
)sh";

struct WindowTest : testing::Test {
    Scratch scratch;
    const std::string loop =
        kSamples + "n0r_tlx.nids " + kSamples + "n0v_tlx.nids " + kSamples + "ncr_tlx.nids";

    void SetUp() override {
        NEED_X_SERVER("RADAR_X24");
        ASSERT_EQ(flock(turn, LOCK_EX), 0);
    }

    Outcome run_in_window(const std::string &arguments) {
        return run(scratch, "-inp nids -ti Storm -ge 200x160+700+700 -de d," +
                                std::string(getenv("RADAR_X24")) + " " + arguments);
    }

    /* The same with a user; *seen gets the titles that appeared. */
    Outcome run_with(const std::string &user, const std::string &arguments, std::string *seen) {
        scratch.write("user", "export DISPLAY=" + std::string(getenv("RADAR_X24")) + kHands + user);
        FILE *watched = popen(("bash " + scratch.path("user") + " 2>&1").c_str(), "r");
        const Outcome out = run_in_window(arguments);
        char line[80];
        while (fgets(line, sizeof line, watched))
            *seen += line;
        pclose(watched);
        return out;
    }
};
} // namespace

TEST_F(WindowTest, AUserStepsThroughALoopAndLeaves) {
    std::string seen;
    const Outcome out = run_with("stop_at_first\n"
                                 "for i in 1 2 0; do press alt+bracketright; shows $i; done\n"
                                 "press alt+bracketleft; shows 2\n"
                                 "press alt+d; press alt+bracketright; press alt+bracketright\n"
                                 "shows 1; press alt+v; press Return\n",
                                 loop, &seen);
    EXPECT_EQ(seen, "1\n2\n0\n2\n1\n");
    EXPECT_EQ(out.status, 0) << out.text;
    EXPECT_NE(out.text.find("\nLat:  "), std::string::npos) << out.text;
}

TEST_F(WindowTest, ALostWindowEndsTheRun) {
    std::string seen;
    const Outcome out = run_with("xdotool windowkill $w\n", kSamples + "n0r_tlx.nids", &seen);
    EXPECT_EQ(out.status, 4) << out.text << seen;
}

TEST_F(WindowTest, ABatchRunWritesAPictureForEachFrame) {
    const Outcome out = run_in_window("-ba -pp gif=frames_gif -ip . " + loop);
    EXPECT_EQ(out.status, 0) << out.text;
    std::vector<std::string> pictures;
    for (const char *name : {"qra_00.gif", "qra_01.gif", "qra_02.gif"}) {
        pictures.push_back(scratch.read(name));
        EXPECT_EQ(pictures.back().substr(0, 6), "GIF89a") << name;
    }
    EXPECT_NE(pictures[0], pictures[1]);
    EXPECT_NE(pictures[1], pictures[2]);
    EXPECT_FALSE(std::filesystem::exists(scratch.path("qra_03.gif")));
}
