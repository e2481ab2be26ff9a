#include "shell/strings.h"

#include "tests/shell/shell_fixture.h"

#include <cmath>
#include <cstring>
#include <vector>

TEST(Strings, SplitKeepsInnerEmptyItems) {
    const struct {
        const char *text;
        std::vector<std::string> items;
    } cases[] = {
        {"a,,b,", {"a", "", "b"}}, {",", {""}}, {",,,", {""}}, {",a", {"", "a"}},
        {"a b", {"a b"}},          {"", {}},    {nullptr, {}}, {"x,y,,,", {"x", "y"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text ? c.text : "null");
        const StrList list(c.text, ',');
        ASSERT_EQ(list.count, int(c.items.size()));
        EXPECT_EQ(list.list == nullptr, c.items.empty());
        for (int i = 0; i < list.count; i++)
            EXPECT_EQ(list[i], c.items[size_t(i)]);
        EXPECT_STREQ(list[-1], "");
        EXPECT_STREQ(list[list.count], "");
    }
}

TEST(Strings, ChangesInPlace) {
    const struct {
        void (*change)(char *);
        const char *before, *after;
    } cases[] = {
        {STR_strip_eol, "a\r b \r\n", "a b"},
        {STR_strip_eol, "  \n", ""},
        {STR_strip_trailing, " a  ", " a"},
        {STR_strip_cr, "a\rb\r\r", "a\rb"},
        {STR_unescape, "\\a\\\\b", "ab"},
        {[](char *t) { STR_replace_char(t, 'a', 'b'); }, "banana", "bbnbnb"},
        {[](char *t) { STR_remove_char(t, 'a'); }, "banana", "bnn"},
        {[](char *t) { STR_to_upper(t); }, "aZ1\xe4@[`{", "AZ1\xe4@[`{"},
        {[](char *t) { STR_to_lower(t); }, "aZ1\xc4@[`{", "az1\xc4@[`{"},
    };
    for (const auto &c : cases) {
        std::string text = c.before;
        c.change(text.data());
        EXPECT_STREQ(text.c_str(), c.after) << c.before;
    }
}

TEST(Strings, FormatsSignificantDigits) {
    const struct {
        float value;
        const char *spec, *text;
    } cases[] = {
        {3.14159f, "0.3.0", "3.14"},
        {31.4159f, "0.3.0", "31.4"},
        {314159.0f, "0.3.0", "314159"},
        {314.159f, "8.3.2", "  314.16"}, // the minimum of decimals wins
        {0.012345f, "0.3.0", "0.0123"},
        {-3.14159f, "6.3.0", " -3.14"},
        {0.000001f, "0.3.0", "   0"}, // counts as 0, which is laid out as 100 is
        {0.0f, "0.4.0", "  0.0"},
        {5.0f, "30.1.0", "        5"}, // no total above 9
        {0.0000152587890625f, "0.8.0", "0.000015258789"},
        {1.5f, "", "2"},
        {1.5f, "0.2147483647.0", nullptr}, // absurd counts stay within bounds
        {INFINITY, "5.3.0", "  inf"},
    };
    for (const auto &c : cases) {
        std::string out;
        STR_format_sig(c.value, &out, c.spec);
        if (c.text)
            EXPECT_EQ(out, c.text) << c.value << " " << c.spec;
        else
            EXPECT_LT(out.size(), 200u);
    }
}

/* Each read steps over the newline that the read before left. */
TEST(Strings, ReadsLines) {
    const Folder folder;
    FILE *file = fopen(folder.write("lines", "first\n\nlonger line\nrest\nlast").c_str(), "r");
    ASSERT_TRUE(file);
    char text[161];
    EXPECT_EQ(STR_read_line(file, text, 80), 5);
    EXPECT_STREQ(text, "first");
    EXPECT_EQ(STR_read_line(file, text, 80), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(STR_read_line(file, text, 6), 6);
    EXPECT_STREQ(text, "longer");
    EXPECT_EQ(STR_read_text(file, text, 2), 1);
    EXPECT_STREQ(text, " l");
    STR_skip_line(file);
    EXPECT_EQ(STR_read_160(file, text), 4);
    EXPECT_STREQ(text, "rest");
    STR_skip_line(file); // in front of the newline: the next read takes the next line
    EXPECT_EQ(STR_read_160(file, text), 4);
    EXPECT_STREQ(text, "last");
    EXPECT_LT(STR_read_line(file, text, 80), 0);
    EXPECT_LT(STR_read_text(file, text, 80), 0);
    EXPECT_LT(STR_read_160(file, text), 0);
    fclose(file);
}
