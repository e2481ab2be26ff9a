/* Raw text files: the head, the columns of records, damage. */
#include "plot/raw_file.h"

#include "tests/plot/page_fixture.h"

namespace {
constexpr const char *kTable = "QRARAW\r\n"
                               "Surface 2016Z 20 MAY 13  \r\n"
                               "!model\r\n"
                               "id lat lon and more\r\n"
                               "temp:Air_temperature:value:ul:co=red a note\r\n"
                               "\r\n"
                               "wind\r\n"
                               "$\r\n";
constexpr const char *kPlain = "QRARAW\n99 12 31 24\nform\n"; // no month by name

struct RawTest : PlotTest {
    RawHeader header;

    ~RawTest() override { RAW_reset(); }

    int open(const std::string &content) {
        RAW_reset();
        scratch.write("s.raw", content);
        return RAW_file_open("s.raw", nullptr, nullptr, "r");
    }

    /* All that is read of a column: "id result lat text value value2 format", a row a record. */
    std::string read(const std::string &content, const char *column) {
        const int handle = open(content);
        EXPECT_EQ(RAW_read_header(handle, &header), 1);
        std::string all;
        int count = 0, result;
        for (RawRecord r;
             (result = RAW_read_record(handle, &r, RAW_find_column(handle, column), &count)) >= 0;)
            all += page_list(r.id, result, r.lat, r.text, r.value, r.value2, r.format) + "|";
        return all + std::to_string(count);
    }
};
} // namespace

TEST_F(RawTest, ReadsTheHead) {
    std::string column, format;
    scratch.write("s.raw", kTable);
    const int handle = RAW_file_open("s.raw:temp:cc:co=red", &column, &format, "r");
    ASSERT_EQ(RAW_read_header(handle, &header), 1);
    EXPECT_EQ(column + "|" + format, "temp|cc:co=red");
    EXPECT_EQ(page_list(header.title, "|", header.date_text, header.date.hour, header.format),
              "Surface 2016Z 20 MAY 13 | 2016Z 20 MAY 13 20 model");
    ASSERT_EQ(header.columns.size(), 5u);
    EXPECT_EQ(header.columns[3].description + header.columns[3].format,
              "Air temperaturevalue:ul:co=red");
    EXPECT_EQ(page_list(header.column_base, RAW_column_name(handle, 2), RAW_column_name(handle, 4),
                        RAW_column_name(handle, 5)),
              "3 lon wind ");

    const int copy = RAW_file_open("t.raw", nullptr, nullptr, "w");
    EXPECT_EQ(RAW_write_header(copy, &header), 1);
    RAW_reset();
    EXPECT_EQ(scratch.read("t.raw"), "QRARAW\nSurface 2016Z 20 MAY 13\n!model\nid lat lon\n"
                                     "temp:Air_temperature:value:ul:co=red\nwind::\n$\n");
}

TEST_F(RawTest, ReadsColumns) {
    const std::string table = kTable;
    const struct {
        const char *column;
        std::string content, found;
    } kCases[] = {
        {"temp", table + "KA 1 2 25 180,9\r\n KB 1 - -3\r\n72353 x y .5x\r\nKC\r\n\r\nKD 1 2 3\n",
         "KA 1 1 25 25 M value:ul:co=red|KB 1 M -3 -3 M value:ul:co=red|"
         "72353 1 M .5x 0.5 M value:ul:co=red|KC 0 M  M M value:ul:co=red|4"},
        {"wind", table + "KA 1 2 25 180,9:co=blue\nKB 1 2 wind=5 temp=3\nKC - 2 1 -\n",
         "KA 1 1 180,9 180 9 co=blue|KB 1 1 5 5 M |KC 0 M  M M |3"},
        {"temp", table + "KA 1 2 wind=5,1 temp=3:sc=2\nKB 1 2 wind=5\n",
         "KA 1 1 3 3 M value:ul:co=red:sc=2|KB 0 1  M M value:ul:co=red|2"},
        {"", table + "KA 1 2 - temp=9 8\nKB 1 2\n",
         "KA 0 1  M M value:ul:co=red|KA 1 1 9 9 M value:ul:co=red|KA 1 1 8 8 M |KB 0 1  M M |2"},
        {"2", table + "KA 1 2\n", "KA 1 1 KA M M |1"},
        {"11", table + "KA 1 2 3\n", "KA 1 1 1 1 M |1"}, // the latitude as it stands
        {"lon", table + "KA 1 2 3\n", "KA 1 1 2 2 M |1"},
        {"gust", table + "KA 1 2 3 gust=40\nKB 1 2 3 4 5\n", "KA 1 1 40 40 M |KB 0 1  M M |2"},
        {"11", std::string(kPlain) + "KA 1 2 7\nKB few 7\nKC 1 2e 7\nKD 1e99 2 7",
         "KA 1 1 7 7 M |KB 1 M few M M |KC 1 M 1 1 M |KD 1 M 7 7 M |4"},
        {"v", "QRARAW\nt\n!\nid\np\nv\n$\nKA 850 -1e99,inf\nKB - 2\n",
         "KA 1 M -1e99,inf M M |KB 1 M 2 2 M |2"},
        {"2", std::string(kPlain) + "KA\n" + std::string(1000, 'k') + "\nKB\n",
         "KA 1 M KA M M |" + std::string(79, 'k') + " 1 M " + std::string(79, 'k') +
             " M M |KB 1 M KB M M |3"},
    };
    MSG_set_mask(0, MSG_ERROR); // not that a line was cut
    for (const auto &c : kCases)
        EXPECT_EQ(read(c.content, c.column), c.found) << c.column << " of\n" << c.content;
}

TEST_F(RawTest, RecordsAgainAndNumbersOfStations) {
    const int handle =
        open(std::string(kPlain) + "12345 1 2\n1234 1 2\n99999999999 1 2\n1234x 1 2\n");
    RAW_read_header(handle, &header);
    EXPECT_EQ(header.date_text, "");
    std::string wmo;
    RawRecord record;
    int count = 0;
    for (int pass = 0; pass < 2; pass++, RAW_rewind(handle))
        while (RAW_read_record(handle, &record, RAW_ID, &count) > 0)
            wmo += page_list(record.wmo) + " ";
    EXPECT_EQ(wmo, "12345 M 2147483647 M 12345 M 2147483647 M ");
    EXPECT_EQ(count, 8);
    EXPECT_EQ(RAW_find_column(handle, "9") + RAW_find_column(handle, "99999999999"), -2);
}

TEST_F(RawTest, RefusesDamage) {
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(RAW_file_open("none", nullptr, nullptr, "r"), -1); }),
              "RAW_file_open: Unable to open file: none\n");
    std::string many = "QRARAW\nt\n!\n";
    for (int i = 0; i <= RAW_MAX_COLUMNS; i++)
        many += "c\n";
    for (const std::string &content :
         {std::string(""), std::string("QRARAX\nt\nf\n"), std::string("QRARAW\nt\n"),
          std::string("QRARAW\nt\n!\nid\n"), many + "$\n"})
        EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(RAW_read_header(open(content), &header), -1); }),
                  "RAW_read_header: No raw file: s.raw\n");
    RawRecord record;
    int count = 0;
    EXPECT_EQ(RAW_read_record(7, &record, RAW_ID, &count) + RAW_read_header(-1, &header), -2);
}
