#include "shell/prompt.h"

#include "tests/shell/shell_fixture.h"

TEST(Prompt, TakesTheFirstWord) {
    const std::string full(79, 'a');
    const struct {
        const char *why;
        std::string typed;
        size_t size;
        const char *answer;
    } cases[] = {
        {"a word", "abc def\n", 79, "abc"},
        {"blanks and a carriage return", "  abc  \r\n", 79, "abc"},
        {"cut to the size", "abcdef\n", 4, "abc"},
        {"the smallest size is one character", "abc\n", 0, "a"},
        {"an empty line leaves the answer", "\nabc\n", 79, "before"},
        {"the end of the input is an empty line", "", 79, "before"},
        {"a last line without newline", "abc", 79, "abc"},
        {"a zero byte ends the line", std::string("ab\0cd\n", 6), 79, "ab"},
        {"a full line takes its newline along", full + "\nnext\n", 80, full.c_str()},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        fresh_shell();
        const Typed typed(c.typed);
        std::string answer = "before";
        EXPECT_EQ(output_of([&] { MSG_prompt("100%% of %s: ", &answer, c.size); }), "100% of %s: ");
        EXPECT_EQ(answer, c.answer);
    }
    const Typed typed(full + "bb\n" + full + "\nnext\n");
    std::string answer;
    for (const std::string &line : {full, std::string("bb"), full, std::string("next")}) {
        output_of([&] { MSG_prompt("", &answer, 100); });
        EXPECT_EQ(answer, line);
    }
}

TEST(Prompt, SetStoresAResourceAndAsksAgain) {
    const struct {
        const char *line, *name, *value;
    } cases[] = {
        {"set region=us", "region", "us"},
        {"SET region us", "region", "us"},
        {"setup region = = us,ne  x", "region", "us,ne  x"},
        {"set region", "region", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.line);
        fresh_shell();
        const Typed typed(std::string(c.line) + "\n\n");
        std::string answer = "before";
        EXPECT_EQ(output_of([&] { MSG_prompt("? ", &answer, 79); }), "? ? ");
        EXPECT_STREQ(RES_get(c.name), c.value);
        EXPECT_EQ(answer, "before");
    }
}

TEST(Prompt, SetAloneListsTheResources) {
    const std::string listing = "Set resources\na: 1\nb:\n\n";
    fresh_shell();
    RES_set("a", "1");
    RES_set("b", nullptr);
    const Typed typed("set\nset c=2\n");
    std::string answer = "set"; // must not count as typed
    EXPECT_EQ(output_of([&] { MSG_prompt("? ", &answer, 79); }), "? " + listing + "? ? ");
    const Typed menu("set c=3\nabcdefghijklmnopqrstuvwxyz\n");
    output_of([&] { MSG_prompt_word("? ", &answer); });
    EXPECT_EQ(answer, "abcdefghijklmnopqrs");
    EXPECT_STREQ(RES_get("c"), "2") << "a menu takes only the word";
}

TEST(Prompt, NumbersAreAskedForUntilThereIsOne) {
    const struct {
        const char *typed;
        int prompts;
        float as_float;
        int as_int;
    } cases[] = {
        {"12\n", 1, 12.0f, 12},
        {"abc\n\t-3 x\n", 2, -3.0f, -3},
        {"\n7\n", 1, 0.0f, 0},
        {"abc\n", 2, 0.0f, 0},
        {"", 1, 0.0f, 0},
        {"set n=1\n2.5e1\n", 2, 25.0f, 2},
        {"99999999999\n", 1, 1e11f, 2147483647},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.typed);
        fresh_shell();
        float as_float = -1;
        int as_int = -1;
        const std::string prompts(size_t(c.prompts), '?');
        {
            const Typed typed(c.typed);
            EXPECT_EQ(output_of([&] { as_float = MSG_prompt_float("?"); }), prompts);
        }
        const Typed typed(c.typed);
        EXPECT_EQ(output_of([&] { as_int = MSG_prompt_int("?"); }), prompts);
        EXPECT_FLOAT_EQ(as_float, c.as_float);
        EXPECT_EQ(as_int, c.as_int);
    }
}

TEST(PromptDeathTest, ExitEndsTheProgram) {
    for (const char *line : {"exit", "EXITING now"})
        EXPECT_EXIT(
            {
                const Typed typed(std::string(line) + "\n");
                std::string answer;
                MSG_prompt("", &answer, 79);
            },
            testing::ExitedWithCode(0), "");
}
