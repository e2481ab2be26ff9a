#include "files/overwrite.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/missing.h"
#include "shell/params.h"
#include "tests/support/input.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

namespace {

TEST(Stream, NamesOfTheStandardStreams) {
    for (const char *name : {"", "-", "std", "STD", "StdN"}) {
        EXPECT_EQ(FILE_is_stream(name), 1) << name;
        EXPECT_EQ(FILE_exists(name), 1) << name;
        EXPECT_EQ(FILE_open(name, "r"), stdin) << name;
        EXPECT_EQ(FILE_open(name, "w"), stdout) << name;
    }
    EXPECT_EQ(FILE_is_stream("stdx"), 0);
}

TEST(Stream, JoinsPaths) {
    struct Case {
        const char *dir, *name, *joined;
    };
    for (const Case &c : {Case{"/a", "b", "/a/b"}, Case{"/a/", "b", "/a/b"},
                          Case{"/a", "~/b", "~/b"}, Case{"/a", "./b", "./b"},
                          Case{nullptr, "b", "b"}, Case{"", "b", "b"}, Case{"/a", "-", "-"}}) {
        std::string out;
        FILE_join_path(c.dir, c.name, &out);
        EXPECT_EQ(out, c.joined);
    }
}

TEST(Stream, WritingMakesTheFoldersAndAPipeRunsACommand) {
    const Scratch scratch;
    const std::string name = scratch.path("one/two/three.txt");
    FILE *file = FILE_open(name.c_str(), "w");
    ASSERT_NE(file, nullptr);
    fputs("12345", file);
    EXPECT_EQ(FILE_close(file), 0);
    EXPECT_EQ(FILE_size(name.c_str()), 5);
    EXPECT_EQ(FILE_is_regular(name.c_str()), 1);
    EXPECT_EQ(FILE_is_dir(scratch.path("one").c_str()), 1);

    FILE *pipe = FILE_open(("|cat > " + scratch.path("piped")).c_str(), "a");
    ASSERT_NE(pipe, nullptr);
    fputs("through", pipe);
    EXPECT_EQ(FILE_close(pipe), 0);
    EXPECT_EQ(scratch.read("piped"), "through");

    EXPECT_EQ(FILE_remove(name.c_str()), 0);
    EXPECT_EQ(FILE_size(name.c_str()), -1);
    EXPECT_EQ(FILE_open(name.c_str(), "r"), nullptr);
}

TEST(Stream, HomesOfUsers) {
    std::string out;
    FILE_expand_home("~nobody_here/x", &out);
    EXPECT_EQ(out, "~nobody_here/x");
    FILE_expand_home("~root/x", &out);
    EXPECT_EQ(out, "/root/x");
    FILE_expand_home("plain", &out);
    EXPECT_EQ(out, "plain");
}

TEST(Overwrite, AsksOnlyWhereNothingDecides) {
    const Scratch scratch;
    const std::string name = scratch.write("out", "x");
    PAR_fill(MISSING);
    MSG_reset();
    MSG_set_levels("none");
    EXPECT_EQ(FILE_check_overwrite(scratch.path("new").c_str(), 2), 1);
    EXPECT_EQ(FILE_check_overwrite("-", 1), 1);
    struct Case {
        int kind;
        const char *answer;
        int mode;
    };
    for (const Case &c :
         {Case{2, "yes\n", 1}, Case{2, "o\n", 1}, Case{2, "app\n", 2}, Case{2, "n\n", 3},
          Case{2, "\n", 3}, Case{1, "app\n", 3}, Case{1, "Over\n", 1}, Case{7, "y\n", 0}}) {
        SCOPED_TRACE(c.answer);
        const TypedInput typed(c.answer);
        EXPECT_EQ(FILE_check_overwrite(name.c_str(), c.kind), c.mode);
    }
    PAR_set(PAR_BATCH, 1);
    EXPECT_EQ(FILE_check_overwrite(name.c_str(), 2), 3);
    PAR_set(PAR_FILE_MODE, 2);
    EXPECT_EQ(FILE_check_overwrite(name.c_str(), 2), 2);
    PAR_fill(MISSING);
    MSG_reset();
}

} // namespace
