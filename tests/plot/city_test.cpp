/* City database: records, lookups, queries, the cache of a plot. */
#include "plot/city_cache.h"

#include "plot/projection.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "tests/support/scratch.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {
constexpr const char *kCities = "Chicago      IL US KORD  1   41.98  -87.90  204 72530\n"
                                "Chicago_Lake IL US -     *4* 42.10  -87.50 9999 72534 7\n"
                                "Buoy         MI B_ 45007 3*  42.70  -87.00    0 45007\n"
                                "broken line\n"
                                "\n"
                                "Davenport    IA US KDVN  *2  41.61  -90.58  229 99999\n"
                                "Chicagoland  IL US -     5   41.50  -88.00  190 99999\n"
                                "Madrid       MD ES LEMD  1   40.47   -3.56  610 08221\n";

struct CityTest : testing::Test {
    Scratch scratch;
    Domain domain;

    CityTest() {
        MSG_reset();
        RES_reset();
        CTY_reset();
        MSG_set_mask(0, MSG_ERROR); // no word of a search
        MSG_set_mask(9, MSG_PRINT);
        RES_set("file_path", scratch.dir.c_str());
        scratch.write("sao.cty", kCities);
        domain.proj = PROJ_POLAR;
        domain.clat = 42;
        domain.clon = -88;
        domain.nx = domain.ny = 11;
        domain.dx = domain.dy = 1;
    }
    ~CityTest() override {
        CTY_reset();
        RES_reset();
        MSG_reset();
    }
};

std::vector<CityRecord> read_all() {
    std::vector<CityRecord> records;
    FILE *file = CTY_open_file("sao.cty", nullptr);
    CityRecord record;
    while (CTY_read(file, &record) > 0)
        records.push_back(record);
    CTY_close(file);
    return records;
}

TEST_F(CityTest, ReadsTenWordsALine) {
    int count = -1;
    FILE *file = CTY_open_file(nullptr, &count);
    ASSERT_TRUE(file);
    EXPECT_EQ(count, int(strlen(kCities) / 59));
    CityRecord r;
    EXPECT_EQ(CTY_read(file, &r), 9);
    EXPECT_STREQ(r.name, "Chicago");
    EXPECT_STREQ(r.id, "KORD");
    EXPECT_EQ(r.elev, 204.0f);
    EXPECT_EQ(r.mark1, ' ');
    EXPECT_EQ(r.extra, 0);
    EXPECT_EQ(CTY_read(file, &r), 10);
    EXPECT_EQ(r.priority, 4);
    EXPECT_EQ(r.mark1, '*');
    EXPECT_EQ(r.mark2, '*');
    EXPECT_EQ(r.elev, MISSING_F);
    EXPECT_EQ(r.extra, 7);
    EXPECT_EQ(CTY_read(file, &r), 9);
    EXPECT_EQ(r.mark1, ' ');
    EXPECT_EQ(r.mark2, '*');
    EXPECT_LT(CTY_read(file, &r), 9);
    EXPECT_FALSE(CTY_has_position(r));
    CTY_rewind(file);
    CTY_read(file, &r);
    EXPECT_STREQ(r.id, "KORD");
    for (int i = 0; i < 6; i++)
        EXPECT_GT(CTY_read(file, &r), 0);
    EXPECT_EQ(CTY_read(file, &r), -1);
    CTY_close(file);
}

TEST_F(CityTest, WordsTooLongStayInTheRecord) {
    scratch.write("long.cty", std::string(5000, 'x') + " " + std::string(5000, '9') + "\n" +
                                  std::string(30, 'n') + " IL US " + std::string(30, 'i') +
                                  " 1 41 -87 200 72530\nGood IL US GOOD " + std::string(40, '7') +
                                  " 1e99 nan 99999999999999\n");
    CityRecord r;
    EXPECT_EQ(CTY_lookup("long.cty", "GOOD", &r), 0);
    FILE *file = CTY_open_file("long.cty", nullptr);
    while (CTY_read(file, &r) > 0) {
        EXPECT_LE(strlen(r.name), 20u);
        EXPECT_LE(strlen(r.id), 9u);
    }
    CTY_close(file);
}

TEST_F(CityTest, TheResourceNamesTheDatabase) {
    scratch.write("other.cty", "Elsewhere XX YY KELS 1 10 20 30 40\n");
    float lat = 1, lon = 1;
    EXPECT_EQ(CTY_find_latlon("other.cty", "kels", &lat, &lon), 1);
    EXPECT_EQ(lat, 10.0f);
    EXPECT_EQ(CTY_find_latlon("", "KORD", &lat, &lon), 1);
    RES_set("city_file", "other.cty");
    EXPECT_EQ(CTY_find_latlon("sao.cty", "KORD", &lat, &lon), 0);
    RES_set("city_file", "None");
    testing::internal::CaptureStderr();
    EXPECT_EQ(CTY_open_file("sao.cty", nullptr), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    RES_set("city_file", "absent");
    testing::internal::CaptureStderr();
    EXPECT_EQ(CTY_find_latlon("sao.cty", "KORD", &lat, &lon), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "CTY_open_file: Database file not found: absent\n");
}

TEST_F(CityTest, LooksUpByIdentifierNameAndNumber) {
    const struct {
        const char *key;
        const char *name; // null: not found
    } kCases[] = {{"kdvn", "Davenport"}, {"CHICAGO", "Chicago"}, {"45007", "Buoy"},
                  {"08221", "Madrid"},   {"8221", nullptr},      {"broken", nullptr},
                  {"", nullptr}};
    for (const auto &c : kCases) {
        CityRecord r;
        EXPECT_EQ(CTY_lookup("sao.cty", c.key, &r), c.name ? 1 : 0) << c.key;
        EXPECT_STREQ(r.name, c.name ? c.name : "") << c.key;
    }
    CityRecord r;
    EXPECT_EQ(CTY_lookup("sao.cty", nullptr, &r), 0);
    MSG_reset();
    testing::internal::CaptureStdout();
    CTY_lookup("sao.cty", "KORD", &r);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Searching the city database file for: KORD ...\n");
}

TEST_F(CityTest, QueriesChooseRecords) {
    const struct {
        const char *query;
        const char *names; // first letters: Chicago, Lake, Buoy, Davenport, lAnd, Madrid
    } kCases[] = {
        {"Name=\"chicago\"", "CLA"},
        {"Name=\"\"", "CLBDAM"},
        {"Name=", ""},
        {"ST=il", "CLA"},
        {"ST=IL_US", "CLA"},
        {"ST=IL_ES", ""},
        {"ST=ILL", ""},
        {"ST:IL", "CLA"},
        {"ST:MD_ES", "M"},
        {"CN=US", "CLDA"},
        {"cn:ES", "M"},
        {"ID=kord", "C"},
        {"RA<41.98:-87.90:60", "CLA"},
        {"RA<41.98:-87.90:0", "C"},
        {"RA<41.98:-87.90", ""},
        {"P=1", "CM"},
        {"P<2", "CDM"},
        {"P>4", "LA"},
        {"Lat>42.1", "LB"},
        {"Lat<41.5", "AM"},
        {"Lon>-87.5:CN=US", "L"},
        {"Elev>204:P=1", "CM"},
        {"Elev<0", "LB"},
        {"WMO=08221", "M"},
        {"WMO=8221", ""},
        {"WMO>72534:WMO<80000", "L"},
        {"ST=IL:P>4:Lat<42", "A"},
        {"kdvn", "D"},
        {"45007", "B"},
        {"Chic", ""},
        {"Chica", "CLA"},
        {"ST=IL:unknown", ""},
        {"", ""},
    };
    const std::vector<CityRecord> records = read_all();
    ASSERT_EQ(records.size(), 7u);
    const char *letters = "CLB?DAM";
    for (const auto &c : kCases) {
        std::string query = c.query, names;
        char *list[] = {query.data()};
        for (size_t i = 0; i < records.size(); i++)
            if (letters[i] != '?' && CTY_match(1, list, &records[i]) == 0)
                names += letters[i];
        EXPECT_EQ(names, c.names) << c.query;
    }
    std::string first = "KXXX", second = "ST=IL";
    char *list[] = {first.data(), second.data()};
    EXPECT_EQ(CTY_match(2, list, &records[0]), 1);
    EXPECT_EQ(CTY_match(2, list, &records[6]), -1);
    EXPECT_EQ(CTY_match(0, nullptr, &records[6]), 1);
}

TEST_F(CityTest, TellsQueriesFromIdentifiers) {
    for (const auto &[text, is_query] : {std::pair{"ST=IL", true},
                                         {"st:IL", true},
                                         {"P>3", true},
                                         {"RA<1:2:3", true},
                                         {"STL", false},
                                         {"ST", false},
                                         {"PHX", false},
                                         {"KORD", false},
                                         {"", false}}) {
        std::string plain = "KORD", query = text;
        char *list[] = {plain.data(), query.data()};
        EXPECT_EQ(CTY_is_query(2, list), is_query) << text;
    }
}

TEST_F(CityTest, TheCacheHoldsWhatLiesOnThePlot) {
    const struct {
        const char *identifier, *prior;
        int max_priority, count;
    } kCases[] = {{nullptr, nullptr, MISSING, 5}, {nullptr, nullptr, 3, 3},
                  {nullptr, "1", MISSING, 1},     {"all", nullptr, MISSING, 5},
                  {"ALL", nullptr, 9, 5},         {"KORD,ST=IA", nullptr, 9, 2},
                  {"KXXX", nullptr, 9, 0}};
    for (const auto &c : kCases) {
        RES_reset();
        RES_set("file_path", scratch.dir.c_str());
        if (c.identifier)
            RES_set("identifier", c.identifier);
        if (c.prior)
            RES_set("stat_prior", c.prior);
        EXPECT_EQ(CTY_load("sao.cty", 2, &domain, c.max_priority), c.count);
    }
    EXPECT_EQ(CTY_load("absent", 2, &domain, 9), 0);
    EXPECT_EQ(CTY_find("KORD"), nullptr);
}

TEST_F(CityTest, TheMarginIsThreeCells) {
    domain.nx = domain.ny = 1;
    domain.clat = 41.98f;
    domain.clon = -87.9f;
    domain.dx = domain.dy = 0.1f;
    scratch.write("margin.cty",
                  "Near IL US NEAR 1 42.2 -87.9 0 1\nFar IL US FAR 1 42.3 -87.9 0 2\n");
    EXPECT_EQ(CTY_load("margin.cty", 2, &domain, 9), 1);
    EXPECT_TRUE(CTY_find("NEAR"));
}

TEST_F(CityTest, LabelsFollowTheForm) {
    scratch.write("labels.cty", "Both X Y KORD 1 42 -88 0 72530\nNumber X Y - 1 42 -88 0 72534\n"
                                "Name X Y KDVN 1 42 -88 0 99999\nBuoy X B_ - 1 42 -88 0 45007\n"
                                "Named X B_ LAKE 1 42 -88 0 45008\n");
    const struct {
        int form;
        const char *both, *number, *name, *buoy, *named_buoy;
    } kCases[] = {{0, "KORD", "72534", "KDVN", "b45007", "LAKE"},
                  {1, "72530", "72534", "KDVN", "b45007", "b45008"},
                  {2, "KORD", "K2534", "KDVN", "b45007", "LAKE"}};
    const auto label = [](const char *key) {
        const auto *entry = static_cast<StationEntry *>(CTY_find(key));
        return entry ? entry->label : "none";
    };
    for (const auto &c : kCases) {
        SCOPED_TRACE(c.form);
        CTY_set_label_form(c.form);
        CTY_load("labels.cty", 2, &domain, 9);
        EXPECT_STREQ(label("72530"), c.both);
        EXPECT_STREQ(label("72534"), c.number);
        EXPECT_STREQ(label("99999"), c.name);
        EXPECT_STREQ(label("b45007"), c.buoy);
        EXPECT_STREQ(label("b45008"), c.named_buoy);
    }
}

TEST_F(CityTest, FindsByIdentifierNumberAndCode) {
    CTY_load("sao.cty", 1, &domain, 9);
    const struct {
        const char *key, *name;
    } kCases[] = {{"KORD", "Chicago"},
                  {"72530", "Chicago"},
                  {"K2530", "Chicago"},
                  {"b45007", "Buoy"},
                  {"K2534", "Chicago_Lake"}};
    for (const auto &c : kCases) {
        const auto *entry = static_cast<CityEntry *>(CTY_find(c.key));
        ASSERT_TRUE(entry) << c.key;
        EXPECT_STREQ(entry->record.name, c.name);
    }
    for (const char *key : {"kord", "45007", "LEMD", "", "b4500", "123456"})
        EXPECT_EQ(CTY_find(key), nullptr) << key;
    EXPECT_EQ(CTY_find(nullptr), nullptr);

    EXPECT_EQ(CTY_add("KNEW", "12345"), 0);
    const auto *added = static_cast<CityEntry *>(CTY_find("12345"));
    ASSERT_TRUE(added);
    EXPECT_STREQ(added->record.id, "KNEW");
    EXPECT_EQ(added->record.lat, MISSING_F);
    CTY_load("sao.cty", 2, &domain, 9);
    EXPECT_EQ(CTY_add("KNEW", "12345"), -1);
}

TEST_F(CityTest, TheNearestStationLiesWithinFiftyRings) {
    CTY_load("sao.cty", 3, &domain, 9);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const struct {
        float lat, lon;
        const char *label; // null: none
    } kCases[] = {{41.9f, -87.9f, "KORD"},   {42.05f, -87.5f, "72534"}, {41.6f, -95.4f, "KDVN"},
                  {41.6f, -95.6f, nullptr},  {47.55f, -87.0f, "45007"}, {47.7f, -87.0f, nullptr},
                  {MISSING_F, -87, nullptr}, {nan, -87, nullptr},       {41, 1e30f, nullptr}};
    for (const auto &c : kCases) {
        StationEntry entry{};
        EXPECT_EQ(CTY_find_near(c.lat, c.lon, &entry), c.label ? 1 : 0) << c.lat << " " << c.lon;
        EXPECT_STREQ(entry.label, c.label ? c.label : "");
    }
    // On a ring the row above is tried first, then the column to the right, below, to the left.
    scratch.write("ring.cty", "L X Y LEFT 1 40.0 -90.1 0 1\nB X Y BELO 1 39.9 -90.0 0 2\n"
                              "R X Y RIGH 1 40.0 -89.9 0 3\nA X Y ABOV 1 40.1 -90.0 0 4\n"
                              "Z X Y ZERO 1 -0.04 0.04 0 5\n");
    domain.proj = PROJ_LATLON;
    domain.nx = domain.ny = 400;
    CTY_load("ring.cty", 3, &domain, 9);
    StationEntry entry{};
    EXPECT_EQ(CTY_find_near(40, -90, &entry), 1);
    EXPECT_STREQ(entry.label, "ABOV");
    EXPECT_EQ(CTY_find_near(0.02f, -0.02f, &entry), 1);
    EXPECT_STREQ(entry.label, "ZERO");
    CTY_load("ring.cty", 2, &domain, 9);
    EXPECT_EQ(CTY_find_near(40, -90, &entry), 0);
}

TEST_F(CityTest, StationsCarryExtraTexts) {
    CTY_set_extra(8, [](const CityRecord *record, char *buffer) {
        snprintf(buffer, 8, "<%.5s>", record->id);
    });
    for (int mode : {1, 3}) {
        CTY_load("sao.cty", mode, &domain, 9);
        std::string all;
        for (const char *extra = CTY_first_extra(); extra; extra = CTY_next_extra())
            all += extra;
        EXPECT_EQ(all, "<KORD><-><45007><KDVN><->");
        EXPECT_STREQ(CTY_find_extra("KDVN"), "<KDVN>");
        EXPECT_EQ(CTY_find_extra("KXXX"), nullptr);
    }
    CTY_set_extra(0, nullptr);
    CTY_load("sao.cty", 3, &domain, 9);
    EXPECT_EQ(CTY_first_extra(), nullptr);
    EXPECT_EQ(CTY_find_extra("KDVN"), nullptr);
}

TEST_F(CityTest, DefaultPriority) {
    EXPECT_EQ(CTY_default_priority(), 10);
    RES_set("stat_prior", "+3");
    EXPECT_EQ(CTY_default_priority(), 3);
    RES_set("stat_prior", "many");
    EXPECT_EQ(CTY_default_priority(), 10);
}
} // namespace
