#include "tests/kernel/kernel_fixture.h"

namespace {
struct ColorTable : KernelTest {
    std::string heard; // by the listener, "index r g b;"

    static ColorTable *current;
    ColorTable() {
        current = this;
        COLOR_set_listener([](float r, float g, float b, int index) {
            char text[80];
            snprintf(text, sizeof text, "%d %.2f %.2f %.2f;", index, double(r), double(g),
                     double(b));
            current->heard += text;
        });
    }
    void read(const std::string &content, const char *files = "t.clr") {
        scratch.write("t.clr", content);
        COLOR_read_table(files);
    }
    static std::string rgb(int index) {
        float r, g, b;
        COLOR_get_rgb(index, &r, &g, &b);
        char text[80];
        snprintf(text, sizeof text, "%.3f %.3f %.3f", double(r), double(g), double(b));
        return text;
    }
};
ColorTable *ColorTable::current;
} // namespace

TEST_F(ColorTable, EachFormOfLineMakesAnEntry) {
    read("# comment\n"
         "  one 0.1 0.2 0.3  \n"
         "two #FF8000\n"
         "5 five 1 0 0\n"
         "six 0 1 0\n"
         "2three #0000ff\n"
         "broken 1 2\n"
         "wild 7 -3 nan\n"
         "300 far 1 1 1\n"
         "farther 1 1 1\n"
         "-4 before 1 1 1\n"
         "9 last 0.5 0.5 0.5");
    EXPECT_EQ(COLOR_count(), 10);
    const struct {
        const char *name;
        int index;
        const char *rgb;
    } want[] = {{"one", 0, "0.100 0.200 0.300"},   {"TWO", 1, "1.000 0.502 0.000"},
                {"five", 5, "1.000 0.000 0.000"},  {"six", 6, "0.000 1.000 0.000"},
                {"three", 2, "0.000 0.000 1.000"}, {"wild", 3, "1.000 0.000 0.000"},
                {"last", 9, "0.500 0.500 0.500"}};
    for (const auto &row : want) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(COLOR_index(row.name), row.index);
        EXPECT_EQ(rgb(row.index), row.rgb);
    }
    for (const char *name : {"far", "farther", "before", "broken"})
        EXPECT_EQ(COLOR_index(name), COLOR_OFF) << name;
    EXPECT_STREQ(COLOR_name(9), "last");
    EXPECT_STREQ(COLOR_name(200), "last") << "beyond the count";
    EXPECT_EQ(rgb(256), "0.500 0.500 0.500") << "beyond the count";
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
    EXPECT_EQ(COLOR_last_standard(), 1) << "only the resource's first file sets it";
    read("a 1 0 0\nb 0 0 0\nc 0 0 0\n", nullptr);
    EXPECT_EQ(COLOR_last_standard(), 2) << "without END the highest";

    RES_set("color_table", "missing.clr");
    COLOR_read_table("");
    EXPECT_EQ(COLOR_count(), 0);
    EXPECT_STREQ(COLOR_name(0), "");
    EXPECT_EQ(rgb(5), "0.000 0.000 0.000");
}

TEST_F(ColorTable, NamesAreTriedBeforeLiteralsAndNumbers) {
    read("red 1 0 0\nEnd 0 1 0\n4you 0 0 1\n");
    const struct {
        const char *name;
        int index;
    } cases[] = {{"", -1},      {"end", -2},    {"None", -1},   {"off", -1},    {"back", -1},
                 {"pblk", 500}, {"ptgry", 508}, {"PWHT", 503},  {"red", 0},     {"12", 12},
                 {"4yo", 4},    {"redd", -1},   {"#12345", -1}, {"#gghhii", -1}};
    for (const auto &c : cases)
        EXPECT_EQ(COLOR_index(c.name), c.index) << c.name;
    EXPECT_EQ(COLOR_index(nullptr), -1);
    EXPECT_EQ(heard, "");
}

TEST_F(ColorTable, LiteralsMakeOneEntryEach) {
    read("red 1 0 0\n");
    EXPECT_EQ(COLOR_index("#ff0080"), 1);
    EXPECT_EQ(COLOR_index("#255128999"), 2);
    EXPECT_EQ(COLOR_index("#FF0080"), 1) << "found again";
    EXPECT_EQ(COLOR_count(), 3);
    EXPECT_EQ(heard, "1 1.00 0.00 0.50;2 1.00 0.50 1.00;");
    for (int i = 3; i < COLOR_MAX; i++)
        EXPECT_EQ(COLOR_add(0.0f, 0.0f, 0.0f, "more"), i);
    EXPECT_EQ(COLOR_index("#010203"), -1) << "the table is full";
    EXPECT_EQ(COLOR_count(), COLOR_MAX);
}
