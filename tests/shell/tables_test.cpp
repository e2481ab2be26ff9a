#include "shell/keyed_table.h"
#include "shell/station_code.h"

#include <cstring>
#include <gtest/gtest.h>

TEST(KeyedTable, FindsARecordUnderEachKey) {
    KeyedTable table;
    EXPECT_EQ(TBL_find(&table, 1, "a"), nullptr);
    const int numbers[] = {10, 11, 12, 13};
    const char *const keys[][2] = {
        {"ord", "chicago"}, {"mdw", "chicago"}, {"", "\xe9t\xe9"}, {"zzzzzzzzzzzzzzzzzzzzzz", "x"}};
    for (const int buckets : {1, 7, 35177}) {
        SCOPED_TRACE(buckets);
        ASSERT_EQ(TBL_create(&table, buckets, sizeof(int), 2), 0);
        EXPECT_EQ(TBL_find(&table, 1, "ord"), nullptr);
        for (int i = 0; i < 4; i++)
            ASSERT_EQ(TBL_insert(&table, &numbers[i], keys[i]), 0);
        for (int i = 0; i < 4; i++) {
            const auto *found = static_cast<const int *>(TBL_find(&table, 1, keys[i][0]));
            ASSERT_TRUE(found);
            EXPECT_EQ(*found, numbers[i]);
        }
        EXPECT_EQ(TBL_find(&table, 2, "\xe9t\xe9"), TBL_find(&table, 1, ""));
        EXPECT_EQ(TBL_find(&table, 2, "ord"), nullptr);
        for (const int number : {0, 3, -1})
            EXPECT_EQ(TBL_find(&table, number, "ord"), nullptr);

        void *found[3] = {};
        EXPECT_EQ(TBL_find_all(&table, 2, "chicago", found, 3), 2);
        EXPECT_EQ(found[0], TBL_find(&table, 1, "ord"));
        EXPECT_EQ(found[1], TBL_find(&table, 1, "mdw"));
        EXPECT_EQ(TBL_find_all(&table, 2, "chicago", found, 1), 1);

        for (int round = 0; round < 2; round++) {
            TBL_rewind(&table);
            for (const int number : numbers)
                EXPECT_EQ(*static_cast<int *>(TBL_next(&table)), number);
            EXPECT_EQ(TBL_next(&table), nullptr);
        }
        EXPECT_EQ(TBL_count(&table), 4);
    }
    const char *const lacking[] = {"a", nullptr};
    EXPECT_EQ(TBL_insert(&table, numbers, lacking), -1);
    EXPECT_EQ(TBL_count(&table), 4);
    TBL_free(&table);
    EXPECT_EQ(TBL_insert(&table, numbers, keys[0]), -1);
    EXPECT_EQ(TBL_create(&table, 0, 4, 1) + TBL_create(&table, -3, 4, 1) +
                  TBL_create(&table, 7, 4, 0) + TBL_create(&table, 2000000000, 4, 1),
              -4);
}

TEST(StationCode, NumbersOfCodes) {
    const struct {
        const char *code;
        int result, wmo;
    } cases[] = {
        {"03772", -1, 3772},  {"EN234", 0, 1234},  {"K2469", 0, 72469},   {"OE301", 0, 40301},
        {"OE299", 0, 41299},  {"OE300", 0, 300},   {"QQ123", 0, 123},     {"en234", 0, 234},
        {"U1234", 0, 21234},  {"X1234", 0, 21234}, {"Y4100", 0, 94100},   {"Z1234", 0, 50234},
        {"ZK010", 0, 47010},  {"EN23", -1, 99999}, {"EN2345", -1, 99999}, {"ENx34", -1, 99999},
        {"1N234", -1, 99999}, {"", -1, 99999},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.code);
        int wmo = 0;
        EXPECT_EQ(STN_wmo_from_code(c.code, &wmo), c.result);
        EXPECT_EQ(wmo, c.wmo);
    }
    int wmo = 0;
    EXPECT_EQ(STN_wmo_from_code(nullptr, &wmo), -1);
}

/* Every number reads back from its code but those of three blocks. */
TEST(StationCode, CodesReadBack) {
    for (const auto &[wmo, code] : {std::pair{72469, "K2469"},
                                    {5000, "05000"},
                                    {1499, "EN499"},
                                    {34567, "X4567"},
                                    {40350, "OE350"},
                                    {123456, "123456"}}) {
        std::string made;
        STN_code_from_wmo(&made, wmo);
        EXPECT_EQ(made, code);
    }
    for (int wmo = 0; wmo <= 99999; wmo++) {
        std::string code;
        STN_code_from_wmo(&code, wmo);
        int back = 0;
        const int result = STN_wmo_from_code(code.c_str(), &back);
        int expected = wmo;
        if (code[0] == 'X')
            expected = wmo - 10000;
        else if (wmo / 10000 == 5)
            expected = 50000 + wmo % 1000;
        else if (code.starts_with("DR"))
            expected = wmo % 1000;
        ASSERT_EQ(back, expected) << code;
        ASSERT_EQ(result, code[0] <= '9' ? -1 : 0) << code;
    }
}
