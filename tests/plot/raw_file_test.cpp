/* Raw text files: the head, the columns of records, damage. */
#include "plot/raw_file.h"

#include "tests/plot/page_fixture.h"

namespace {
constexpr const char *kTable = "QRARAW\r\nSurface 2016Z 20 MAY 13  \r\n!model\r\n"
                               "id lat lon and more\r\n"
                               "temp:Air_temperature:value:ul:co=red a note\r\n\r\n"
                               "wind\r\n$\r\n";

struct RawTest : PlotTest {
    RawHeader header;

    ~RawTest() override { RAW_reset(); }

    int open(const std::string &content) {
        RAW_reset();
        scratch.write("s.raw", content);
        return RAW_file_open("s.raw", nullptr, nullptr, "r");
    }

    /* All that is read of a column, twice: "id result lat text value value2 format", a row a
     * record, "=" and its number behind the identifier of a station that has one. */
    std::string read(const std::string &content, const char *column) {
        const int handle = open(content);
        EXPECT_EQ(RAW_read_header(handle, &header), 1);
        std::string all[2];
        for (std::string &rows : all) {
            int count = 0, result;
            for (RawRecord r; (result = RAW_read_record(handle, &r, RAW_find_column(handle, column),
                                                        &count)) >= 0;)
                rows += r.id + (r.wmo == MISSING ? " " : "=" + std::to_string(r.wmo) + " ") +
                        page_list(result, r.lat, r.text, r.value, r.value2, r.format) + "|";
            rows += std::to_string(count);
            RAW_rewind(handle);
        }
        EXPECT_EQ(all[0], all[1]);
        return all[0];
    }
};
} // namespace

TEST_F(RawTest, ReadsTheHeadAndWritesIt) {
    std::string column, format;
    scratch.write("s.raw", kTable);
    const int handle = RAW_file_open("s.raw:temp:cc:co=red", &column, &format, "r");
    ASSERT_EQ(RAW_read_header(handle, &header), 1);
    EXPECT_EQ(page_list(column, format, header.column_base, header.date_text, header.date.hour),
              "temp cc:co=red 3 2016Z 20 MAY 13 20");
    EXPECT_EQ(std::string(RAW_column_name(handle, 4)) + RAW_column_name(handle, 5), "wind");
    EXPECT_EQ(header.columns[3].description, "Air temperature");
    const int copy = RAW_file_open("t.raw", nullptr, nullptr, "w");
    EXPECT_EQ(RAW_write_header(copy, &header), 1);
    RAW_reset();
    EXPECT_EQ(scratch.read("t.raw"), "QRARAW\nSurface 2016Z 20 MAY 13\n!model\nid lat lon\n"
                                     "temp:Air_temperature:value:ul:co=red\nwind::\n$\n");
}

TEST_F(RawTest, ReadsColumns) {
    const std::string table = kTable, plain = "QRARAW\n99 12 31 24\nform\n", longest(79, 'k');
    const struct {
        const char *column;
        std::string content, found;
    } kCases[] = {
        {"temp", table + "KA 1 2 25 180,9\r\n KB 1 - -3\r\n72353 x y .5x\r\nKC\r\n\r\nKD 1 2 3\n",
         "KA 1 1 25 25 M value:ul:co=red|KB 1 M -3 -3 M value:ul:co=red|"
         "72353=72353 1 M .5x 0.5 M value:ul:co=red|KC 0 M  M M value:ul:co=red|4"},
        {"wind", table + "KA 1 2 25 180,9:co=blue\nKB 1 2 wind=5 temp=3\nKC - 2 1 -\n",
         "KA 1 1 180,9 180 9 co=blue|KB 1 1 5 5 M |KC 0 M  M M |3"},
        {"temp", table + "KA 1 2 wind=5,1 temp=3:sc=2\nKB 1 2 wind=5\n",
         "KA 1 1 3 3 M value:ul:co=red:sc=2|KB 0 1  M M value:ul:co=red|2"},
        {"", table + "KA 1 2 - temp=9 8\nKB 1 2\n",
         "KA 0 1  M M value:ul:co=red|KA 1 1 9 9 M value:ul:co=red|KA 1 1 8 8 M |KB 0 1  M M |2"},
        {"gust", table + "KA 1 2 3 gust=40\nKB 1 2 3 4 5\n", "KA 1 1 40 40 M |KB 0 1  M M |2"},
        {"11", plain + "KA 1 2 7\nKB few 7\nKC 1 2e 7\nKD 1e99 2 7",
         "KA 1 1 7 7 M |KB 1 M few M M |KC 1 M 1 1 M |KD 1 M 7 7 M |4"},
        {"850", "QRARAW\nt\n!\nid\np\n850\n$\nKA 9 -1e99,inf\nKB - 2\n", // a pressure level
         "KA 1 M -1e99,inf M M |KB 1 M 2 2 M |2"},
        {"2", plain + "KA\n" + std::string(1000, 'k') + "\n1234x\n99999999999\n",
         "KA 1 M KA M M |" + longest + " 1 M " + longest +
             " M M |1234x 1 M 1234x 1234 M |99999999999=2147483647 1 M 99999999999 1e+11 M |4"},
    };
    MSG_set_mask(0, MSG_ERROR); // not that a line was cut
    for (const auto &c : kCases)
        EXPECT_EQ(read(c.content, c.column), c.found) << c.column << " of\n" << c.content;
    EXPECT_EQ(header.date_text, "") << "no month by name";
    EXPECT_EQ(RAW_find_column(0, "9"), -1);
}

TEST_F(RawTest, RefusesDamage) {
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(RAW_file_open("none", nullptr, nullptr, "r"), -1); }),
              "RAW_file_open: Unable to open file: none\n");
    std::string many = "QRARAW\nt\n!\n";
    for (int i = 0; i <= RAW_MAX_COLUMNS; i++)
        many += "c\n";
    for (const std::string &content : {std::string(), std::string("QRARAX\nt\nf\n"),
                                       std::string("QRARAW\nt\n!\nid\n"), many + "$\n"})
        EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(RAW_read_header(open(content), &header), -1); }),
                  "RAW_read_header: No raw file: s.raw\n");
}
