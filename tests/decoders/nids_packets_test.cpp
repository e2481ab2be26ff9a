#include "tests/decoders/nids_input.h"
#include "tools/samples/nids_writer.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

std::string halves(std::initializer_list<int> values) {
    std::string out;
    for (const int value : values)
        out += {char(value >> 8 & 0xff), char(value & 0xff)};
    return out;
}

/* A product with the packets in one layer; levels 0, 10 to 150. */
std::string product(int code, const std::string &packets, const std::string &graphic = "") {
    SampleProduct sample;
    sample.code = code;
    for (size_t i = 0; i < 16; i++)
        sample.levels[i] = int(10 * i);
    sample.symbology = SMP_symbology({packets});
    sample.graphic = graphic;
    return SMP_message(sample);
}

/* All packets of a product: runs as "count*value", other items by value and places; "!" where a
 * read fails. */
std::string content(FILE *file) {
    std::ostringstream out;
    const auto more = [&](int result) {
        out << (result < 0 ? "!" : "");
        return result > 0;
    };
    const auto put_runs = [&] {
        for (NidsRun run; more(NIDS_next_run(file, &run));)
            out << run.count << "*" << run.value << " ";
    };
    unsigned code = NIDS_product()->packet;
    do {
        const bool radials = code == NIDS_RADIAL || code == NIDS_DIGITAL_RADIAL;
        for (float start, delta; radials && more(NIDS_next_radial(file, &start, &delta));
             put_runs())
            out << start << "+" << delta << ": ";
        const bool rows = code == NIDS_RASTER || code == NIDS_PRECIP_ARRAY;
        for (; rows && more(NIDS_next_row(file)); put_runs())
            out << "row: ";
        const bool vectors = code == NIDS_VECTOR || code == NIDS_VECTOR_VALUE;
        for (NidsVector v; vectors && more(NIDS_next_vector(file, &v));)
            out << v.value << ": " << v.x1 << "," << v.y1 << " " << v.x2 << "," << v.y2 << "; ";
        for (NidsWind w; code == NIDS_WIND && more(NIDS_next_wind(file, &w));)
            out << w.value << ": " << w.x << "," << w.y << " " << w.direction << "/" << w.speed
                << "; ";
        NidsText text;
        if ((code == NIDS_TEXT || code == NIDS_TEXT8) && more(NIDS_read_text(file, &text)))
            out << text.value << ": " << text.i << "," << text.j << " " << text.text << "; ";
    } while (NIDS_read_packet(file, &code) > 0);
    return out.str();
}

TEST(NidsPackets, AreReadToTheirEnd) {
    SampleRadials coded, digital;
    coded.start = 3595;
    coded.radials = {LevelRow(40, 3), {1, 1, 2}, {}};
    digital.radials = {{0, 1, 2, 100}};
    const std::vector<LevelRow> rows = {{5, 5, 5}};
    LevelRow wide(300, 0x23);
    wide.push_back(0xFF);
    struct Case {
        const char *why;
        std::string packets;
        const char *content;
        int code = 19;
    };
    const Case cases[] = {
        {"filled up to a halfword; no length", SMP_radials(coded),
         "359.5+1: 15*30 15*30 10*30 0*0 0.5+1: 2*10 1*20 1.5+1: "},
        {"step 1 from 0 on", SMP_digital_radials(digital), "0+1: 1*-9999 1*-9999 1*2 1*100 ", 94},
        {"raster", SMP_raster(0xBA0F, rows), "row: 3*50 0*0 ", 37},
        {"its other code", SMP_raster(0xBA07, rows), "row: 3*50 0*0 ", 37},
        {"raster in pairs", SMP_packed_raster({wide}), "row: 255*230 45*230 1*1650 ", 37},
        {"array", SMP_precip_array({wide}), "row: 255*0.35 45*0.35 1*-9999 ", 81},
        {"vectors with a value, and without",
         SMP_valued_vectors(-3, {{8, 9, 10, 11}}) + SMP_vectors({{1, 2, 3, 4}, {5, 6, 7, 65535}}),
         "-3: 8,9 10,11; 0: 1,2 3,4; 0: 5,6 7,65535; "},
        {"an index behind the table", SMP_winds({{2, 100, 200, 270, 35}, {16, 1, 2, 3, 4}}),
         "20: 100,200 270/35; -9999: 1,2 3/4; "},
        {"texts", SMP_text(1, 3, -5, 6, "ALT KFT") + SMP_text(8, 99, 7, 8, ""),
         "30: -5,6 ALT KFT; -9999: 7,8 ; "},
        {"radials below 0", halves({0xAF1F, 0, 230, 0, 0, 999, -1}), "!"},
        {"a radial below 0", halves({0x10, 0, 230, 0, 0, 999, 1, -1, 0, 10}), "0+1: !"},
        {"rows below 0", halves({0xBA0F, 0, 0, 0, 0, 1, 0, 1, 0, -2, 2}), "!"},
        {"a row below 0", halves({0xBA0F, 0, 0, 0, 0, 1, 0, 1, 0, 1, 2, -9}), "row: !"},
        {"half a pair", halves({0xBA0F, 0, 0, 0, 0, 1, 0, 1, 0, 1, 1, 1}), "row: !"},
        {"vectors below 0", halves({7, -8}), "!"},
        {"a vector and a bit", halves({7, 10, 1, 2, 3, 4}), "0: 1,2 3,4; !"},
        {"a value and no more", halves({10, 0, 5}), "!"},
        {"half a wind", halves({4, 5}), "!"},
        {"a text below 0", halves({8, 5, 0, 0, 0}), "!"},
        {"a text far below 0", halves({8, -32768, 0, 0, 0}), "!"},
        {"a skip backward", SMP_text(1, 0, 0, 0, "a") + halves({6, -4, 6, -4}), "0: 0,0 a; "},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        // Behind the damaged ones stands more than any of them would need.
        NidsInput in(product(c.code, c.packets + std::string(400, '\x21')));
        EXPECT_EQ(in.read_product(), 1);
        EXPECT_EQ(content(in.file), c.content);
    }
}

/* What is buffered already comes next, so a skip passes the bytes behind the first 10000. */
TEST(NidsPackets, SkipsActOnTheFile) {
    const std::string text(99, 'x'), next = SMP_text(8, 0, 0, 0, "next");
    const auto skip = [](int bytes) { return halves({15, bytes}); };
    // Texts up to the end of the buffer: the packets begin at 136, the skip takes 4.
    std::string filler;
    for (int i = 0; i < 90; i++)
        filler += SMP_text(8, 0, 0, 0, text);
    filler += SMP_text(8, 0, 0, 0, std::string(10000 - 140 - 90 * 109 - 10, 'y'));
    struct Case {
        const char *why;
        std::string packets;
        int texts;
        const char *last;
    };
    const Case cases[] = {
        {"a small file: nothing is passed", skip(14) + next, 1, "next|"},
        {"a large one", skip(500) + filler + std::string(500, '\0') + next, 92, "next|"},
        {"over the end", skip(500) + filler + next, 91, "yyy|"},
        {"the rest of a long text is no packet", SMP_text(8, 0, 0, 0, text + "and more") + next, 1,
         "xxx|"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        NidsInput in(product(19, c.packets));
        in.read_product();
        const NidsCount count = NIDS_count_product(in.file);
        EXPECT_EQ(count.texts, c.texts);
        EXPECT_TRUE(count.text.ends_with(c.last));
    }
}

TEST(NidsPackets, GraphicBlockFollowsItsDivider) {
    const std::string page = SMP_text(8, 1, 2, 3, "one") + SMP_vectors({{1, 2, 3, 4}});
    const std::string block = SMP_graphic({page, page + SMP_text(8, 0, 0, 0, "two"), page});
    struct Case {
        const char *why;
        std::string packets, graphic;
        int pages;
        const char *text;
    };
    const Case cases[] = {
        {"the packet loop has met the divider", SMP_text(1, 0, 0, 0, "s"), block, 3,
         "s|one|one|two|one|"},
        {"the divider is still there", "", block, 3, "one|one|two|one|"},
        {"an unknown packet, then the divider", halves({2}), block, 3, "one|one|two|one|"},
        {"no block", SMP_text(1, 0, 0, 0, "s"), "", 0, "s|"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        NidsInput in(product(19, c.packets, c.graphic));
        in.read_product();
        const NidsCount count = NIDS_count_product(in.file);
        EXPECT_EQ(count.pages, c.pages);
        EXPECT_EQ(count.vectors, c.pages);
        EXPECT_EQ(count.text, c.text);
    }
}

TEST(NidsPackets, NoFileNoData) {
    unsigned code;
    float start, delta;
    NidsRun run;
    NidsVector vector;
    NidsWind wind;
    NidsText text;
    EXPECT_EQ(NIDS_read_symbology(nullptr) | NIDS_read_layer(nullptr) | NIDS_read_graphic(nullptr) |
                  NIDS_read_page(nullptr) | NIDS_read_packet(nullptr, &code) |
                  NIDS_next_radial(nullptr, &start, &delta) | NIDS_next_row(nullptr) |
                  NIDS_next_run(nullptr, &run) | NIDS_next_vector(nullptr, &vector) |
                  NIDS_next_wind(nullptr, &wind) | NIDS_read_text(nullptr, &text),
              0);
}

} // namespace
