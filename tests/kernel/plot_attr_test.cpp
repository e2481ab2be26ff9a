#include "tests/kernel/kernel_fixture.h"

namespace {
struct Attributes : KernelTest {
    Attributes() { COLOR_read_table(nullptr); }

    /* All fields, "-" for a missing one: color width height expansion style fill font. */
    static std::string shown(const PlotAttr &attr) {
        const auto whole = [](int v) { return v == MISSING ? "-" : std::to_string(v); };
        const auto real = [](float v) {
            return v == MISSING_F ? "-" : std::to_string(v).substr(0, 4);
        };
        return whole(attr.color) + " " + real(attr.width) + " " + real(attr.height) + " " +
               real(attr.expansion) + " " + whole(attr.style) + " " + whole(attr.fill) + " " +
               whole(attr.font);
    }
};
} // namespace

TEST_F(Attributes, TextIsLaidOverTheRecord) {
    const struct {
        const char *text, *want;
    } cases[] = {
        {"", "- - - - - - -"},
        {"red:w2:s2", "2 2.00 - - 2 - -"},
        {"co=red:wi=2:st=dsh", "2 2.00 - - 2 - -"},
        {"RED:WI=2.5:ST=LLSDSH", "2 2.50 - - 4 - -"},
        {"12", "12 - - - - - -"},
        {"12=3", "- - - - - - -"},
        {":h2:e3:t4", "- - 2.00 3.00 - - 4"},
        {"sc=2:te=3:fo=4", "- - 2.00 3.00 - - 4"},
        {"hi=1.5:st=77:fo=unknown", "- - 1.50 - 77 - 1"},
        {"w:x:W3", "-1 - - - - - -"}, // a lone w in front is a colour
        {"red:w:W3:s", "2 0.00 - - 0 - -"},
        {"red:f9:fM", "2 - - - - - -"},
        {"off:fi=hat", "-1 - - - - 9 -"},
        {"end:fp=5%:f2", "-2 - - - - 2 -"},
        {"red::fi=0%:", "2 - - - - 10 -"},
    };
    for (const auto &c : cases) {
        PlotAttr attr;
        ATTR_parse(c.text, &attr);
        EXPECT_EQ(shown(attr), c.want) << c.text;
    }
}

TEST_F(Attributes, ResourceGoesOverTheDefault) {
    PlotAttr attr;
    EXPECT_EQ(ATTR_from_resource("color_map", "blue:s4:w2", &attr), 0);
    EXPECT_EQ(shown(attr), "4 2.00 - - 4 - -");
    RES_set("color_map", "red:w3");
    EXPECT_EQ(ATTR_from_resource("color_map", "blue:s4:w2", &attr), 1);
    EXPECT_EQ(shown(attr), "2 3.00 - - 4 - -");

    PlotAttr over;
    ATTR_parse("w1:h2", &over); // "w1" stands first and is no colour name
    ATTR_merge(&attr, &over);
    EXPECT_EQ(shown(attr), "-1 3.00 2.00 - 4 - -");
    EXPECT_EQ(output_of([&] {
                  MSG_reset();
                  ATTR_print(&attr);
              }),
              "Color: -1\nStyle: 4\nHeight:  2.00\nWidth:  3.00\nExpansion: -9999.00\n"
              "Fill: -9999\nFont: -9999\n");
}

TEST_F(Attributes, MarkersAndFillsHaveNames) {
    const struct {
        const char *text;
        int marker;
    } markers[] = {{"pnt", 1}, {".", 1},     {"+3", 2}, {"star", 3}, {"*", 3}, {"circle", 4},
                   {"o", 4},   {"cross", 0}, {"x", 5},  {"SQR", 6},  {"#", 6}, {"triangle", 7},
                   {"dot", 8}, {"itri", 9},  {"v", 9},  {"7", 7},    {"", 0}};
    for (const auto &c : markers)
        EXPECT_EQ(ATTR_marker_index(c.text), c.marker) << c.text;
    const struct {
        const char *text;
        int fill;
    } fills[] = {{"sol", 0}, {"||", 5}, {"\\\\", 6}, {"//", 7}, {"xx", 9}, {"9%", 19}, {"14", 14}};
    for (const auto &c : fills)
        EXPECT_EQ(ATTR_fill_index(c.text), c.fill) << c.text;
}
