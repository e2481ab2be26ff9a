#include "tests/decoders/nids_input.h"
#include "tools/samples/nids_writer.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

std::string half(int value) { return {char(value >> 8 & 0xff), char(value & 0xff)}; }

std::string halves(std::initializer_list<int> values) {
    std::string out;
    for (const int value : values)
        out += half(value);
    return out;
}

/* A product with the packets in one layer, read as far as the first head; levels 0, 10 to 150. */
struct Product : NidsInput {
    explicit Product(const std::string &packets, int code = 19, const std::string &graphic = "")
        : NidsInput(bytes(packets, code, graphic)) {
        EXPECT_EQ(read_product(), 1);
    }

    static std::string bytes(const std::string &packets, int code, const std::string &graphic) {
        SampleProduct product;
        product.code = code;
        for (size_t i = 0; i < 16; i++)
            product.levels[i] = int(10 * i);
        product.symbology = SMP_symbology({packets});
        product.graphic = graphic;
        return SMP_message(product);
    }
};

/* The runs of the radial or row that is read, as "count*value". */
std::string runs(FILE *file) {
    std::string out;
    NidsRun run;
    while (NIDS_next_run(file, &run) > 0) {
        char text[40];
        snprintf(text, sizeof text, "%g*%g ", double(run.count), double(run.value));
        out += text;
    }
    return out;
}

TEST(NidsPackets, RadialRuns) {
    SampleRadials data;
    data.start = 3595;
    data.delta = 10;
    data.radials = {LevelRow(40, 3), {1, 1, 2}, {}};
    const Product in(SMP_radials(data));
    EXPECT_EQ(NIDS_packet()->bins, 40);
    float start, delta;
    ASSERT_EQ(NIDS_next_radial(in.file, &start, &delta), 1);
    EXPECT_EQ(start, 359.5f);
    EXPECT_EQ(delta, 1.0f);
    EXPECT_EQ(runs(in.file), "15*30 15*30 10*30 0*0 ") << "filled up to a whole halfword";
    ASSERT_EQ(NIDS_next_radial(in.file, &start, &delta), 1);
    EXPECT_EQ(start, 0.5f);
    EXPECT_EQ(runs(in.file), "2*10 1*20 ");
    ASSERT_EQ(NIDS_next_radial(in.file, &start, &delta), 1);
    NidsRun run;
    EXPECT_EQ(NIDS_next_run(in.file, &run), 0) << "a radial of length 0";
    EXPECT_EQ(NIDS_next_radial(in.file, &start, &delta), 0);
}

TEST(NidsPackets, DigitalRadialsAndRastersAndArrays) {
    SampleRadials data;
    data.radials = {{0, 1, 2, 100}};
    const std::vector<LevelRow> rows = {{5, 5, 5}};
    LevelRow wide(300, 0x23);
    wide.push_back(0xFF);
    struct Case {
        const char *why;
        int code;
        std::string packet;
        unsigned packet_code;
        const char *runs;
    };
    const Case cases[] = {
        {"step 1 from 0 on", 94, SMP_digital_radials(data), NIDS_DIGITAL_RADIAL,
         "1*-9999 1*-9999 1*2 1*100 "},
        {"raster", 37, SMP_raster(0xBA0F, rows), NIDS_RASTER, "3*50 0*0 "},
        {"its other code", 37, SMP_raster(0xBA07, rows), NIDS_RASTER, "3*50 0*0 "},
        {"raster in pairs", 37, SMP_packed_raster({wide}), NIDS_RASTER, "255*230 45*230 1*1650 "},
        {"array", 81, SMP_precip_array({wide}), NIDS_PRECIP_ARRAY, "255*0.35 45*0.35 1*-9999 "},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        const Product in(c.packet, c.code);
        EXPECT_EQ(NIDS_product()->packet, c.packet_code);
        EXPECT_EQ(NIDS_packet()->packet_code, c.packet_code);
        float start, delta;
        const auto next = [&] {
            return c.packet_code == NIDS_DIGITAL_RADIAL ? NIDS_next_radial(in.file, &start, &delta)
                                                        : NIDS_next_row(in.file);
        };
        ASSERT_EQ(next(), 1);
        EXPECT_EQ(runs(in.file), c.runs);
        EXPECT_EQ(next(), 0);
    }
}

TEST(NidsPackets, EachProductHasItsOwnValues) {
    SampleRadials data;
    data.radials = {{20}, {20}};
    struct Case {
        int code;
        const char *runs;
    };
    for (const Case &c : {Case{94, "1*20 "}, Case{99, "1*38.88 "}, Case{138, "1*2 "}}) {
        // The packets keep their state from one product to the next.
        SampleProduct product;
        product.code = c.code;
        product.levels = {0, 10, 254};
        product.symbology = SMP_symbology({SMP_digital_radials(data)});
        FILE *file = tmpfile();
        const std::string bytes = SMP_message(product);
        fwrite(bytes.data(), 1, bytes.size(), file);
        ASSERT_EQ(NIDS_read_product(file, NIDS_product()), 1);
        float start, delta;
        NIDS_next_radial(file, &start, &delta);
        EXPECT_EQ(runs(file), c.runs) << c.code;
        fclose(file);
    }
}

TEST(NidsPackets, VectorsWindsAndTexts) {
    const Product in(SMP_vectors({{1, 2, 3, 4}, {5, 6, 7, 65535}}) +
                         SMP_valued_vectors(-3, {{8, 9, 10, 11}}) +
                         SMP_winds({{2, 100, 200, 270, 35}, {16, 1, 2, 3, 4}}) +
                         SMP_text(1, 3, -5, 6, "ALT KFT") + SMP_text(8, 99, 7, 8, ""),
                     48);
    NidsVector v;
    ASSERT_EQ(NIDS_next_vector(in.file, &v), 1);
    EXPECT_EQ(v.value + v.x1 + v.y1 + v.x2 + v.y2, 10.0f);
    ASSERT_EQ(NIDS_next_vector(in.file, &v), 1);
    EXPECT_EQ(v.y2, 65535.0f);
    EXPECT_EQ(NIDS_next_vector(in.file, &v), 0);

    unsigned code;
    ASSERT_EQ(NIDS_read_packet(in.file, &code), 1);
    EXPECT_EQ(code, NIDS_VECTOR_VALUE);
    ASSERT_EQ(NIDS_next_vector(in.file, &v), 1);
    EXPECT_EQ(v.value, -3.0f);
    EXPECT_EQ(v.x1, 8.0f);
    EXPECT_EQ(NIDS_next_vector(in.file, &v), 0);

    NidsWind w;
    ASSERT_EQ(NIDS_read_packet(in.file, &code), 1);
    ASSERT_EQ(NIDS_next_wind(in.file, &w), 1);
    EXPECT_EQ(w.value, 20.0f);
    EXPECT_EQ(w.direction, 270.0f);
    EXPECT_EQ(w.speed, 35.0f);
    ASSERT_EQ(NIDS_next_wind(in.file, &w), 1);
    EXPECT_EQ(w.value, MISSING_F) << "an index behind the table";
    EXPECT_EQ(NIDS_next_wind(in.file, &w), 0);

    NidsText t;
    ASSERT_EQ(NIDS_read_packet(in.file, &code), 1);
    EXPECT_EQ(code, NIDS_TEXT);
    ASSERT_EQ(NIDS_read_text(in.file, &t), 1);
    EXPECT_STREQ(t.text, "ALT KFT");
    EXPECT_EQ(t.value, 30.0f);
    EXPECT_EQ(t.i, -5.0f);
    EXPECT_EQ(t.j, 6.0f);
    ASSERT_EQ(NIDS_read_packet(in.file, &code), 1);
    ASSERT_EQ(NIDS_read_text(in.file, &t), 1);
    EXPECT_STREQ(t.text, "");
    EXPECT_EQ(t.value, MISSING_F);
    EXPECT_EQ(NIDS_read_packet(in.file, &code), -1);
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
        const Product in(c.packets);
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
        std::string packets;
        int pages;
    };
    const Case cases[] = {
        {"the packet loop has met the divider", SMP_text(1, 0, 0, 0, "symbology"), 3},
        {"the divider is still there", "", 3},
        {"an unknown packet, then the divider", half(2), 3},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        const Product in(c.packets, 19, block);
        const NidsCount count = NIDS_count_product(in.file);
        EXPECT_EQ(count.pages, c.pages);
        EXPECT_EQ(count.vectors, 3);
        EXPECT_EQ(count.text.substr(count.text.find("one")), "one|one|two|one|");
    }
    const Product none(SMP_text(1, 0, 0, 0, "symbology"));
    EXPECT_EQ(NIDS_count_product(none.file).pages, 0);
}

TEST(NidsPackets, StormTableInBothForms) {
    const SampleStorm storm = {"A0", 317, 24, true, false, 90,  100,
                               2.75, 71,  68, 21.4, 47.8,  229, 28};
    const std::vector<SampleStorm> storms(6, storm);
    struct Case {
        StormTable form;
        const char *mark, *row;
    };
    const Case cases[] = {
        {StormTable::Words, "VLOW", "A0  317  24  YES  NO   POS  68 21.4  3.5 >47.8  229  28"},
        {StormTable::Columns, "VIL",
         "A0  317/ 24 TVS  NONE   90/100/ 2.75    71  68 21.4  47.8  229/ 28"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.mark);
        const Product in(SMP_text(1, 0, 0, 0, "map"), 37, SMP_storm_block(c.form, storms));
        const NidsCount count = NIDS_count_product(in.file);
        EXPECT_EQ(count.pages, 2);
        EXPECT_EQ(count.texts, 1 + 2 + 6);
        EXPECT_NE(count.text.find(c.mark), std::string::npos);
        EXPECT_NE(count.text.find(c.row), std::string::npos) << count.text;
    }
}

TEST(NidsPackets, CountsThatCannotBeMetAreFailedReads) {
    const std::string tail(400, '\x11'); // more than any of them would need
    struct Case {
        const char *why;
        std::string packet;
        int (*next)(FILE *file);
        int first; // result of the first call; the second fails
    };
    const auto radial = [](FILE *file) {
        float start, delta;
        return NIDS_next_radial(file, &start, &delta);
    };
    const auto run = [](FILE *file) {
        float start, delta;
        NidsRun one;
        return NIDS_next_radial(file, &start, &delta) < 1 ? -2 : NIDS_next_run(file, &one);
    };
    const auto row_run = [](FILE *file) {
        NidsRun one;
        return NIDS_next_row(file) < 1 ? -2 : NIDS_next_run(file, &one);
    };
    const auto row = [](FILE *file) { return NIDS_next_row(file); };
    const auto vector = [](FILE *file) {
        NidsVector one;
        return NIDS_next_vector(file, &one);
    };
    const auto wind = [](FILE *file) {
        NidsWind one;
        return NIDS_next_wind(file, &one);
    };
    const auto text = [](FILE *file) {
        NidsText one;
        return NIDS_read_text(file, &one);
    };
    const Case cases[] = {
        {"radials below 0", halves({0xAF1F, 0, 230, 0, 0, 999, -1}), radial, -1},
        {"a radial below 0", halves({0x10, 0, 230, 0, 0, 999, 1, -1, 0, 10}), run, -1},
        {"rows below 0", halves({0xBA0F, 0, 0, 0, 0, 1, 0, 1, 0, -2, 2}), row, -1},
        {"a row below 0", halves({0xBA0F, 0, 0, 0, 0, 1, 0, 1, 0, 1, 2, -9}), row_run, -1},
        {"half a pair", halves({0xBA0F, 0, 0, 0, 0, 1, 0, 1, 0, 1, 1, 1}), row_run, -1},
        {"vectors below 0", halves({7, -8}), vector, -1},
        {"a vector and a bit", halves({7, 10}), vector, 1},
        {"a value and no more", halves({10, 0, 5}), vector, -1},
        {"half a wind", halves({4, 5}), wind, -1},
        {"a text below 0", halves({8, 5, 0, 0, 0}), text, -1},
        {"a text far below 0", halves({8, -32768, 0, 0, 0}), text, -1},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        const Product in(c.packet + tail);
        EXPECT_EQ(c.next(in.file), c.first);
        EXPECT_LT(c.next(in.file), 0);
    }
}

TEST(NidsPackets, SkipBackwardEndsTheData) {
    const Product in(SMP_text(1, 0, 0, 0, "one") + halves({6, -4, 6, -4}));
    EXPECT_EQ(NIDS_count_product(in.file).packets, 1);
}

TEST(NidsPackets, NoFileNoData) {
    unsigned code;
    float start, delta;
    NidsRun run;
    NidsVector vector;
    NidsWind wind;
    NidsText text;
    const int results[] = {NIDS_read_symbology(nullptr),
                           NIDS_read_layer(nullptr),
                           NIDS_read_graphic(nullptr),
                           NIDS_read_page(nullptr),
                           NIDS_read_packet(nullptr, &code),
                           NIDS_next_radial(nullptr, &start, &delta),
                           NIDS_next_row(nullptr),
                           NIDS_next_run(nullptr, &run),
                           NIDS_next_vector(nullptr, &vector),
                           NIDS_next_wind(nullptr, &wind),
                           NIDS_read_text(nullptr, &text)};
    for (const int result : results)
        EXPECT_EQ(result, 0);
}

} // namespace
