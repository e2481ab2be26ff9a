#include "shell/defaults.h"

#include "tests/shell/shell_fixture.h"

/* All active settings of a file, as "key=value;". */
static std::string settings(const std::string &text) {
    const Folder folder;
    EXPECT_EQ(DEF_open(folder.write("f", text).c_str()), 0);
    std::string all, key, value;
    while (DEF_get(&key, &value) > 0)
        all += key + "=" + value + ";";
    EXPECT_EQ(DEF_get(&key, &value), -1);
    DEF_close();
    return all;
}

TEST(Defaults, ReadsSettings) {
    const struct {
        const char *why;
        std::string text, settings;
    } cases[] = {
        {"key and value", "a b c\n", "a=b;"},
        {"case and colon of the key", "  Key.One: Value\r\n", "key.one=Value;"},
        {"comments and empty lines", "#a b\n\n  \n\t\na b", "a=b;"},
        {"a key alone is skipped", "a\nb c\n", "b=c;"},
        {"quotes keep blanks", "a \"b  c\" d\n", "a=b  c;"},
        {"quotes that never close", "a \"b c\r\n", "a=b c;"},
        {"empty quotes", "a \"\"\n", "a=;"},
        {"a long line is cut", "a " + std::string(300, 'b') + "\nc d\n",
         "a=" + std::string(247, 'b') + ";c=d;"},
        {"so is a long comment", "#" + std::string(248, ' ') + "c d\n", ""},
        {"zero bytes", std::string("a\0 b\n\0\nc d\n", 12), "a=b;c=d;"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        fresh_shell();
        MSG_set_levels("none");
        EXPECT_EQ(settings(c.text), c.settings);
    }
}

TEST(Defaults, DirectivesSwitchSettings) {
    const struct {
        const char *why, *text, *settings;
    } cases[] = {
        {"a tag of the search list", "IF DAY\na 1\nELSE\na 2\nEND\nb 3\n", "a=1;b=3;"},
        {"else of a tag that is not there", "IF no\na 1\nELSE\na 2\nEND\n", "a=2;"},
        {"a second else is off", "IF no\na 1\nELSE\na 2\nELSE\na 3\nEND\n", "a=2;"},
        {"elif", "IF no\na 1\nELIF day\na 2\nELIF day\na 3\nELSE\na 4\nEND\n", "a=2;"},
        {"elif that fits nothing", "IF no\na 1\nELIF no\na 2\nELSE\na 3\nEND\n", "a=3;"},
        {"inside a false if", "IF no\nIF day\na 1\nELSE\na 2\nEND\nEND\nb 1\n", "b=1;"},
        {"DEF acts in a branch that is off", "IF no\nDEF x\nEND\nIF x\na 1\nEND\n", "a=1;"},
        {"UNDEF", "DEF x\nUNDEF X\nIF x\na 1\nEND\nIF day\nb 1\nEND\n", "b=1;"},
        {"UNDEF of an unknown tag drops the last", "UNDEF y\nIF day\na 1\nEND\n", ""},
        {"an if needs a tag", "IF\na 1\n", "a=1;"},
        {"directives are upper case", "if no\na 1\n", "if=no;a=1;"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        fresh_shell();
        DEF_define("day");
        EXPECT_EQ(settings(c.text), c.settings);
    }
    fresh_shell();
    testing::internal::CaptureStderr();
    EXPECT_EQ(settings("ELSE\nELIF a\nEND\na 1\n"), "a=1;");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "DEF_get: else without an if\nDEF_get: elif without an if\n"
              "DEF_get: end without an if\n");
    EXPECT_EQ(settings("IF no\n"), "");
    EXPECT_EQ(settings("a 1\nEND\nb 2\n"), "b=2;") << "an open if goes on in the next file";
}

TEST(Defaults, ADirectoryGivesItsFirstFile) {
    const Folder folder;
    EXPECT_EQ(DEF_open(folder.path("").c_str()), -1);
    const struct {
        const char *file, *text, *value;
    } cases[] = {{"Qra.res", "a third\n", "third"},
                 {".qradef", "a second\n", "second"},
                 {"qra.cfg", "a first\n", "first"}};
    for (const auto &c : cases) {
        folder.write(c.file, c.text);
        ASSERT_EQ(DEF_open(folder.path("").c_str()), 0);
        std::string key, value;
        EXPECT_EQ(DEF_get(&key, &value), 1);
        EXPECT_EQ(value, c.value);
    }
    DEF_close();
    std::string key, value;
    EXPECT_EQ(DEF_get(&key, &value), -1);
}

TEST(Defaults, KeysMatchByPattern) {
    const struct {
        const char *name, *key;
        bool resource, program;
    } cases[] = {
        {"", "radar.region", true, true},
        {"", "*.region", true, true},
        {"", "*region", true, true},
        {"", "rad*.region", true, true},
        {"", "*.parameter", false, true},
        {"", "region", false, false},
        {"", "other.region", false, false},
        {"", "Radar.region", false, false},
        {"", "*r", false, false}, // found at the start first, and not sought again
        {"", "radar.*", false, true},
        {"", "radar.reg*n", true, false}, // the tail is what stands behind the "*"
        {"site", "site.region", true, true},
        {"site", "radar.region", false, false},
        {"+site", "radar.site.region", true, true},
        {"+site", "radar.region", false, false},
        {"+site", "*.region", true, true},
    };
    DEF_reset();
    DEF_set_program("/usr/bin/radar");
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.name) + " " + c.key);
        DEF_set_name(c.name);
        EXPECT_EQ(DEF_match_key("region", c.key), c.resource);
        EXPECT_EQ(DEF_match_program(c.key), c.program);
    }
    std::string tail;
    for (const char *key : {"a.b.tail", "a*tail", "tail"}) {
        DEF_key_tail(key, &tail);
        EXPECT_EQ(tail, "tail");
    }
    DEF_reset();
}
