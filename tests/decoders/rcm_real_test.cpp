/* A message as it was sent against a second reading of its text.  It is no part of the project: the
 * variable RADAR_REAL_SAMPLES names a folder with text/. */
#include "decoders/rcm_reader.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {
/* Boxes of a text without its blanks, laid out row by row. */
struct SecondReading {
    std::string grid = std::string(RCM_SIZE * RCM_SIZE, '.');
    int boxes = 0;

    explicit SecondReading(std::string rows) {
        std::erase(rows, ' ');
        std::istringstream in(rows);
        for (std::string row; std::getline(in, row, ',');)
            take(row);
    }

    void take(const std::string &row) {
        const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
        const size_t small = letters.find(row[2]);
        size_t at = (letters.find(row[0]) * 4 + small % 4) * RCM_SIZE + letters.find(row[1]) * 4 +
                    small / 4;
        for (size_t i = 3; i < row.size(); i++) {
            const size_t repeats = letters.find(row[i]);
            const size_t count = repeats == letters.npos ? 1 : repeats + 1;
            const char value = repeats == letters.npos ? row[i] : grid[at - 1];
            grid.replace(at, count, count, value);
            at += count;
            boxes += int(count);
        }
    }
};

/* What stands behind a tag and its colon, up to the next tag. */
std::string list_of(const std::string &text, const std::string &tag) {
    const size_t begin = text.find(':', text.find(tag)) + 1;
    return text.substr(begin, text.find('/', begin) - begin);
}

void compare(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(in), {});
    const std::string text = bytes.substr(bytes.find("1234 "));
    FILE *file = fopen(path.c_str(), "r");
    RcmReport report;
    ASSERT_EQ(RCM_read(file, &report), 1);
    const SecondReading second(list_of(text, "/NI"));
    std::string grid(RCM_SIZE * RCM_SIZE, '.');
    for (int row = 0; row < RCM_SIZE; row++)
        for (int col = 0; col < RCM_SIZE; col++)
            if (report.grid[col][row] != 0xff)
                grid[size_t(row * RCM_SIZE + col)] = char('0' + report.grid[col][row]);
    EXPECT_EQ(grid, second.grid);
    EXPECT_GT(second.boxes, 0);
    for (int i = 0; i < report.storm_count; i++)
        EXPECT_NE(list_of(text, "/NCEN").find("C" + std::string(report.storms[i].id)), text.npos);
    EXPECT_EQ(RCM_read(file, &report), -1);
    fclose(file);
    printf("%d boxes agree\n", second.boxes);
}
} // namespace

TEST(RealMessages, AgreeWithASecondReading) {
    const char *folder = getenv("RADAR_REAL_SAMPLES");
    if (!folder || !*folder)
        GTEST_SKIP() << "RADAR_REAL_SAMPLES names no folder of real messages";
    int files = 0;
    for (const auto &entry : std::filesystem::directory_iterator(folder + std::string("/text")))
        if (entry.path().filename().string().starts_with("rcm_")) {
            SCOPED_TRACE(entry.path().filename());
            compare(entry.path());
            files++;
        }
    EXPECT_GT(files, 0);
}
