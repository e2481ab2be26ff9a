#include "tests/kernel/kernel_fixture.h"

#include <sstream>

namespace {
struct Attributes : KernelTest {
    Attributes() {
        COLOR_read_table(nullptr);
        MSG_reset();
    }
    /* The lines of a record but for what is missing. */
    static std::string shown(const PlotAttr &attr) {
        std::istringstream text(said_by([&] { ATTR_print(&attr); }));
        std::string kept, line;
        while (std::getline(text, line))
            if (line.find("-9999") == std::string::npos)
                kept += line + "\n";
        return kept;
    }
};
} // namespace

TEST_F(Attributes, TextIsLaidOverTheRecord) {
    const struct {
        const char *text, *want;
    } cases[] = {
        {"red:w2:s2", "Color: 2\nStyle: 2\nWidth:  2.00\n"},
        {"CO=red:wi=2.5:ST=LLSDSH", "Color: 2\nStyle: 4\nWidth:  2.50\n"},
        {"12=3", ""},
        {":h2:e3:t4", "Height:  2.00\nExpansion:  3.00\nFont: 4\n"},
        {"sc=2:te=3:fo=4", "Height:  2.00\nExpansion:  3.00\nFont: 4\n"},
        {"hi=1.5:st=77:fo=unknown", "Style: 77\nHeight:  1.50\nFont: 1\n"},
        {"w:x:W3", "Color: -1\n"}, // a lone w in front is a colour
        {"red:w:W3:s", "Color: 2\nStyle: 0\nWidth:  0.00\n"},
        {"red:f9:fM", "Color: 2\n"},
        {"end:fp=5%:f2", "Color: -2\nFill: 2\n"},
        {"red::fi=0%:", "Color: 2\nFill: 10\n"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(shown(style(c.text)), c.want) << c.text;
}

TEST_F(Attributes, ResourceGoesOverTheDefault) {
    PlotAttr attr;
    EXPECT_EQ(ATTR_from_resource("color_map", "blue:s4:w2", &attr), 0);
    EXPECT_EQ(shown(attr), "Color: 4\nStyle: 4\nWidth:  2.00\n");
    RES_set("color_map", "red:w3");
    EXPECT_EQ(ATTR_from_resource("color_map", "blue:s4:w2", &attr), 1);
    const PlotAttr over = style("w1:h2"); // "w1" stands first and is no colour name
    ATTR_merge(&attr, &over);
    EXPECT_EQ(said_by([&] { ATTR_print(&attr); }),
              "Color: -1\nStyle: 4\nHeight:  2.00\nWidth:  3.00\nExpansion: -9999.00\n"
              "Fill: -9999\nFont: -9999\n");
}

/* A marker's text only begins with the name; a fill's is the name. */
TEST_F(Attributes, MarkersAndFillsHaveNames) {
    const struct {
        const char *text;
        int marker, fill;
    } cases[] = {{"+3", 2, 3}, {"xx", 5, 9}, {"cross", 0, 0}, {"dot", 8, 0}, {"14", 14, 14}};
    for (const auto &c : cases) {
        EXPECT_EQ(ATTR_marker_index(c.text), c.marker) << c.text;
        EXPECT_EQ(ATTR_fill_index(c.text), c.fill) << c.text;
    }
}
