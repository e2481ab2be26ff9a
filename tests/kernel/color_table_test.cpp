#include "tests/kernel/kernel_fixture.h"

namespace {
std::string heard; // by the listener, an entry and ";" each

std::string entry(int index, float r, float g, float b) {
    char text[80];
    snprintf(text, sizeof text, "%d %g %g %g", index, double(r), double(g), double(b));
    return text;
}
std::string entry(int index) {
    float r, g, b;
    COLOR_get_rgb(index, &r, &g, &b);
    return entry(index, r, g, b);
}

struct ColorTable : KernelTest {
    ColorTable() {
        heard.clear();
        COLOR_set_listener(
            [](float r, float g, float b, int index) { heard += entry(index, r, g, b) + ";"; });
    }
    void read(const std::string &content, const char *files = "t.clr") {
        scratch.write("t.clr", content);
        COLOR_read_table(files);
    }
};
} // namespace

TEST_F(ColorTable, EachFormOfLineMakesAnEntry) {
    read("# comment\n  one 0.1 0.2 0.3  \ntwo #FF8000\n5 five 1 0 0\nsix 0 1 0\n2three #0000ff\n"
         "broken 1 2\nwild 7 -3 nan\n300 far 1 1 1\nfarther 1 1 1\n-4 before 1 1 1\n"
         "9 last 0.5 0.5 0.5");
    const struct {
        const char *name, *want;
    } cases[] = {{"one", "0 0.1 0.2 0.3"},  {"TWO", "1 1 0.501961 0"}, {"five", "5 1 0 0"},
                 {"six", "6 0 1 0"},        {"three", "2 0 0 1"},      {"wild", "3 1 0 0"},
                 {"last", "9 0.5 0.5 0.5"}, {"far", "-1 0 0 0"},       {"farther", "-1 0 0 0"},
                 {"before", "-1 0 0 0"},    {"broken", "-1 0 0 0"}};
    for (const auto &c : cases)
        EXPECT_EQ(entry(COLOR_index(c.name)), c.want) << c.name;
    EXPECT_EQ(COLOR_count(), 10);
    EXPECT_STREQ(COLOR_name(200), "last") << "beyond the count";
    EXPECT_EQ(entry(256), "256 0.5 0.5 0.5");
    EXPECT_STREQ(COLOR_name(-1), "");
}

TEST_F(ColorTable, LaterFilesGoOnBehindTheFirst) {
    scratch.write("b.clr", "c 0 0 1\nEND\n3 d 1 0 0\n");
    RES_set("color_table", "t.clr,missing.clr,,b.clr");
    read("a 1 0 0\nb 0 1 0\nend\ne 0 0 0\n", nullptr);
    EXPECT_EQ(COLOR_index("e"), 2);
    EXPECT_EQ(COLOR_index("c"), 3);
    EXPECT_EQ(COLOR_index("d"), 6);
    EXPECT_EQ(COLOR_count(), 7);
    EXPECT_EQ(COLOR_last_standard(), 1) << "the entry in front of END in the first file";
    read("a 1 0 0\n", "t.clr");
    EXPECT_EQ(COLOR_count(), 1) << "a table begins anew";
    EXPECT_EQ(COLOR_last_standard(), 1) << "only the resource sets it";
    read("a 1 0 0\nb 0 0 0\nc 0 0 0\n", nullptr);
    EXPECT_EQ(COLOR_last_standard(), 2) << "without END the highest";
    COLOR_read_table("missing.clr");
    EXPECT_EQ(COLOR_count(), 0);
    EXPECT_EQ(entry(5), "5 0 0 0");
}

TEST_F(ColorTable, NamesAreTriedBeforeLiteralsAndNumbers) {
    read("red 1 0 0\nEnd 0 1 0\n4you 0 0 1\n");
    const struct {
        const char *name;
        int index;
    } cases[] = {{nullptr, -1}, {"", -1},       {"end", -2}, {"None", -1},
                 {"PWHT", 503}, {"ptgry", 508}, {"red", 0},  {"12", 12},
                 {"4yo", 4},    {"redd", -1},   {"#12", -1}, {"#gghhii", -1}};
    for (const auto &c : cases)
        EXPECT_EQ(COLOR_index(c.name), c.index) << (c.name ? c.name : "none");
    EXPECT_EQ(heard, "");
    EXPECT_EQ(COLOR_index("#ff0080"), 5);
    EXPECT_EQ(COLOR_index("#255128999"), 6);
    EXPECT_EQ(COLOR_index("#FF0080"), 5) << "found again";
    EXPECT_EQ(heard, "5 1 0 0.501961;6 1 0.501961 1;");
    for (int i = 7; i < COLOR_MAX; i++)
        EXPECT_EQ(COLOR_add(0.0f, 0.0f, 0.0f, "more"), i);
    EXPECT_EQ(COLOR_index("#010203"), -1) << "the table is full";
    EXPECT_EQ(COLOR_count(), COLOR_MAX);
}
