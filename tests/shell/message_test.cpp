#include "shell/message.h"

#include "tests/shell/shell_fixture.h"

#include <cstring>

TEST(Message, LevelWordsSetTheMask) {
    const struct {
        const char *why, *text;
        uint32_t mask;
    } cases[] = {
        {"a bare word shows every class below it too", "error", 0x3f},
        {"warnings include errors", "warn", 0xff},
        {"case does not matter", "OUT2", 0xfffff},
        {"the top nibble fills the word", "debug", 0xffffffff},
        {"a plus adds its class alone", "+debug", 0xf00fffff},
        {"a minus takes its class away", "-out2", 0xffff},
        {"a last letter narrows to a sublevel", "out1a", 0x1fff},
        {"the letter is that of the whole item", "out2 xc", 0x7ffff},
        {"a sublevel is added alone", "+out3b", 0x2fffff},
        {"four letters tell the class", "warning", 0xff},
        {"none silences", "none", 0},
        {"an unknown word silences", "loud", 0},
        {"an unknown word with a sign does nothing", "+loud", 0xfffff},
        {"items act in turn", "print,+mess,-printa", 0xf0e},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        MSG_reset();
        MSG_set_levels(c.text);
        EXPECT_EQ(MSG_get_mask(), c.mask);
        EXPECT_EQ(MSG_explicit_count(), 1);
    }
}

struct Streams {
    int result;
    std::string out, err;
};

static Streams print(uint32_t level) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = MSG_print(level, "n=%d\n", 5);
    return {result, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

TEST(Message, ReachesTheStreamOfItsLevel) {
    fresh_shell();
    Streams s = print(MSG_PRINT);
    EXPECT_EQ(s.result, 1);
    EXPECT_EQ(s.out, "n=5\n");
    s = print(0x10 | MSG_PRINT);
    EXPECT_EQ(s.err, "n=5\n");
    EXPECT_EQ(s.out, "");
    EXPECT_EQ(print(0x80).err, "n=5\n");
    s = print(MSG_DEBUG);
    EXPECT_EQ(s.result, 0);
    EXPECT_EQ(s.out + s.err, "");
    const std::string longer(5000, 'x');
    EXPECT_EQ(output_of([&] { MSG_print(MSG_PRINT, "%s.", longer.c_str()); }), longer + ".");
    EXPECT_EQ(output_of([] { MSG_text(MSG_PRINT, "100%s %d\n"); }), "100%s %d\n");
}

TEST(Message, LogModes) {
    const struct {
        const char *item;
        bool terminal;
        const char *tail; // of the log after two messages
        size_t extra;     // characters of the stamp
    } cases[] = {
        {"fi=", false, "n=5\nn=5\n", 0},       {"+fi=", true, "n=5\nn=5\n", 0},
        {"-fi=", true, "n=5\nn=5\n", 0},       {"DFI:", true, "n=5\nn=5\n", 0},
        {"@fi=", true, "Z -- n=5\n", 2 * 24u},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.item);
        fresh_shell();
        const Folder folder;
        folder.write("log", "old\n");
        MSG_set_levels((c.item + folder.path("log")).c_str());
        const int results = print(MSG_PRINT).result + print(MSG_PRINT).result;
        print(MSG_DEBUG); // not shown, so not logged
        EXPECT_EQ(results, c.terminal ? 2 : 0);
        if (strncmp(c.item, "DFI", 3))
            MSG_reset(); // closes the log; the reopened one must be whole already
        const std::string log = folder.read("log");
        const std::string old = *c.item == '-' ? "" : "old\n";
        EXPECT_TRUE(log.starts_with(old));
        EXPECT_TRUE(log.ends_with(c.tail)) << log;
        EXPECT_EQ(log.size(), old.size() + 8 + c.extra);
    }
    fresh_shell();
    MSG_set_levels("fi=/nowhere/at/all/log"); // the log only, and there is none
    EXPECT_EQ(print(MSG_PRINT).out, "");
    fresh_shell();
}

/* The pause counts the newlines of the format. */
TEST(Message, PagesByTheLinesOfTheFormat) {
    fresh_shell();
    MSG_set_levels("out2,page,line=2");
    EXPECT_EQ(MSG_get_page_length(), 2);
    const Typed keys("\n\n\n\n\n");
    const auto three = [] {
        for (int i = 0; i < 3; i++)
            MSG_print(MSG_PRINT, "%s\n", "a\nb\nc");
    };
    EXPECT_EQ(output_of(three), "a\nb\nc\na\nb\nc\na\nb\nc\nPress return to continue\n");
    EXPECT_EQ(output_of([] { MSG_text(MSG_PRINT, "a\nb\nc\n"); }),
              "a\nb\nc\nPress return to continue\n");
    PAR_set(PAR_BATCH, 1);
    EXPECT_EQ(output_of(three).find("Press"), std::string::npos);
    PAR_set(PAR_BATCH, 0);
    testing::internal::CaptureStderr(); // a pause leaves by it only for both levels at once
    MSG_pause(MSG_ERROR | MSG_WARN, "wait");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "wait");
    EXPECT_EQ(output_of([] { MSG_pause(MSG_ERROR, "wait"); }), "wait");
    MSG_set_levels("out2,line=0,nopage");
    EXPECT_EQ(MSG_get_page_length(), 22);
    fresh_shell();
}
