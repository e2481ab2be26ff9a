/* City database: records, lookups, queries, the cache of a plot. */
#include "tests/plot/page_fixture.h"

#include <cstring>

namespace {
constexpr const char *kCities = "Chicago      IL US KORD  1   41.98  -87.90  204 72530\n"
                                "Chicago_Lake IL US -     *4* 42.10  -87.50 9999 72534 7\n"
                                "Buoy         MI B_ 45007 3*  42.70  -87.00    0 45007\n"
                                "broken line\n"
                                "\n"
                                "Davenport    IA US KDVN  *2  41.61  -90.58  229 99999\n"
                                "Chicagoland  IL US -     5   41.50  -88.00  190 99999\n"
                                "Madrid       MD ES LEMD  1   40.47   -3.56  610 08221\n";

struct CityTest : PlotTest {
    Domain domain = page_latlon(42.0f, -88.0f, 1.0f);

    CityTest() {
        MSG_set_mask(0, MSG_ERROR); // no word of a search
        scratch.write("sao.cty", kCities);
        domain.proj = PROJ_POLAR; // of two cells each way: Davenport lies in its margin
        domain.dy = 1.0f;
    }
};

/* Name of the record that a key leads to, "" for none. */
std::string looked_up(const char *key) {
    CityRecord record;
    const int result = CTY_lookup("sao.cty", key, &record);
    EXPECT_EQ(result, *record.name ? 1 : 0);
    return record.name;
}

/* Label of a compact cached record, "-" for none. */
std::string label(const char *key) {
    const void *entry = CTY_find(key);
    return entry ? static_cast<const StationEntry *>(entry)->label : "-";
}

/* Label of the nearest one, "" for none. */
std::string nearest(float lat, float lon) {
    StationEntry entry{};
    const int result = CTY_find_near(lat, lon, &entry);
    EXPECT_EQ(result, *entry.label ? 1 : 0);
    return entry.label;
}

std::vector<CityRecord> read_all() {
    std::vector<CityRecord> records;
    FILE *file = CTY_open_file(nullptr, nullptr);
    for (CityRecord record; CTY_read(file, &record) > 0;)
        records.push_back(record);
    CTY_close(file);
    return records;
}

TEST_F(CityTest, ReadsTenWordsALine) {
    const std::string x(5000, 'x');
    scratch.write("sao.cty", kCities + x + " " + x + "\n" + x.substr(0, 30) + " IL US " + x + "\n");
    std::string all;
    for (const CityRecord &r : read_all()) {
        all += page_list(r.name, r.id, r.priority, r.mark1, r.mark2, r.elev, r.wmo, r.extra, "|");
        EXPECT_TRUE(strlen(r.name) <= 20 && strlen(r.id) <= 9) << "too long for its place";
    }
    EXPECT_TRUE(all.starts_with("Chicago KORD 1     204 72530 0 |Chicago_Lake - 4 * * M 72534 7 |"
                                "Buoy 45007 3   * 0 45007 0 |broken  0     M M 0 |"));
}

TEST_F(CityTest, LooksUpByIdentifierNameAndNumber) {
    EXPECT_EQ(looked_up("kdvn") + looked_up("CHICAGO") + looked_up("45007") + looked_up("08221"),
              "DavenportChicagoBuoyMadrid");
    EXPECT_EQ(looked_up("8221") + looked_up("broken") + looked_up("") + looked_up(nullptr), "");
    scratch.write("other.cty", "Elsewhere XX YY KELS 1 10 20 30 40\nBad X Y BAD 1 1e99 nan 0 1\n");
    RES_set("city_file", "other.cty");
    EXPECT_EQ(looked_up("kels") + looked_up("KORD") + looked_up("bad"), "Elsewhere");
    MSG_set_mask(0, MSG_MESS | MSG_ERROR);
    for (const auto &[file, errors] :
         {std::pair{"None", ""}, {"absent", "CTY_open_file: Database file not found: absent\n"}}) {
        RES_set("city_file", file);
        EXPECT_EQ(page_errors_of([] { looked_up("KORD"); }), errors);
    }
    RES_set("city_file", "");
    EXPECT_EQ(page_output_of([] { looked_up("KORD"); }),
              "Searching the city database file for: KORD ...\n");
}

/* Queries by the records that they choose: Chicago, Lake, Buoy, Davenport, lAnd, Madrid. */
TEST_F(CityTest, QueriesChooseRecords) {
    const std::pair<const char *, std::vector<std::string>> kCases[] = {
        {"CLBDAM", {"Name=\"\""}},
        {"CLDA", {"CN=US"}},
        {"CLA", {"Name=\"chicago\"", "st=il", "ST=IL_US", "ST:IL", "RA<41.98:-87.90:60", "Chica"}},
        {"CDM", {"P<2"}},
        {"CM", {"P=1", "Elev>204:P=1"}},
        {"LB", {"Lat>42.1", "Elev<0"}}, // a missing value is the number that stands for it
        {"C", {"ID=kord", "RA<41.98:-87.90:0"}},
        {"L", {"Lon>-87.5:CN=US", "WMO>72534:WMO<80000"}},
        {"M", {"ST:MD_ES", "cn:ES", "WMO=08221"}},
        {"B", {"45007"}},
        {"", {"Name=", "ST=IL_ES", "ST=ILL", "RA<41.98:-87.90", "WMO=8221", "ST=IL:unknown"}},
        {"", {"Chic", "PHX", "ST", ""}},
    };
    std::vector<CityRecord> records = read_all();
    ASSERT_EQ(records.size(), 7u);
    records.erase(records.begin() + 3); // the broken one
    for (const auto &[expected, queries] : kCases)
        for (std::string query : queries) {
            char *list[] = {query.data()};
            std::string names;
            for (size_t i = 0; i < records.size(); i++)
                if (CTY_match(1, list, &records[i]) == 0)
                    names += "CLBDAM"[i];
            EXPECT_EQ(names, expected) << query;
            EXPECT_EQ(CTY_is_query(1, list), query.find_first_of("=<>:") != query.npos) << query;
        }
    EXPECT_EQ(CTY_match(0, nullptr, &records[5]), 1);
}

TEST_F(CityTest, TheCacheHoldsWhatLiesOnThePlot) {
    const auto loaded = [&](const char *identifier, const char *prior, int max_priority) {
        RES_set("identifier", identifier);
        RES_set("stat_prior", prior);
        return CTY_load("sao.cty", 2, &domain, max_priority);
    };
    EXPECT_EQ(page_list(loaded("", "", 9), loaded("", "", 3), loaded("", "+1", MISSING)), "5 3 1");
    EXPECT_EQ(page_list(loaded("ALL", "", 9), loaded("KORD,ST=IA", "", 9), loaded("KXXX", "", 9)),
              "5 2 0");
    EXPECT_EQ(CTY_load("absent", 2, &domain, 9), 0);
}

TEST_F(CityTest, StationsAreLabelledAndFound) {
    scratch.write("c.cty", "Both X Y KORD 1 42 -88 0 72530\nNumber X Y - 1 42 -88 0 72534\n"
                           "Name X Y KDVN 1 42 -88 0 99999\nBuoy X B_ - 1 42 -88 0 45007\n"
                           "Named X B_ LAKE 1 42 -88 0 45008\n");
    for (const auto &[word, labels] : {std::pair{"wmo", "72530 72534 KDVN b45007 b45008"},
                                       {"id", "KORD 72534 KDVN b45007 LAKE"},
                                       {"cod_wmo", "KORD K2534 KDVN b45007 LAKE"}}) {
        RES_set("plot_param", word);
        PLT_param();
        EXPECT_EQ(CTY_load("c.cty", 2, &domain, 9), 5);
        EXPECT_EQ(page_list(label("K2530"), label("72534"), label("99999"), label("b45007"),
                            label("b45008")),
                  labels);
        EXPECT_EQ(label("kord") + label("45007") + label("b4500") + label("123456") + label(""),
                  "-----");
    }
    CTY_set_extra(8, [](const CityRecord *r, char *text) { snprintf(text, 8, "%.5s,", r->id); });
    CTY_load("c.cty", 1, &domain, 9);
    std::string extras = CTY_find_extra("72530");
    for (const char *extra = CTY_first_extra(); extra; extra = CTY_next_extra())
        extras += extra;
    EXPECT_EQ(extras, "KORD,KORD,-,KDVN,-,LAKE,");
    EXPECT_EQ(CTY_add("KNEW", "12345"), 0);
    EXPECT_EQ(CTY_find("KNEW"), CTY_find("12345"));
}

TEST_F(CityTest, TheNearestStationLiesWithinFiftyRings) {
    CTY_load("sao.cty", 3, &domain, 9);
    EXPECT_EQ(page_list(nearest(41.9f, -87.9f), nearest(41.6f, -95.4f), nearest(47.55f, -87.0f)),
              "KORD KDVN 45007");
    EXPECT_EQ(nearest(41.6f, -95.6f) + nearest(47.7f, -87.0f), "");
    EXPECT_EQ(nearest(MISSING_F, -87) + nearest(NAN, -87) + nearest(41, 1e30f), "");
    // On a ring the row above is tried first, then the column to the right, below, to the left.
    scratch.write("ring.cty", "L X Y LEFT 1 40.0 -90.1 0 1\nB X Y BELO 1 39.9 -90.0 0 2\n"
                              "R X Y RIGH 1 40.0 -89.9 0 3\nA X Y ABOV 1 40.1 -90.0 0 4\n"
                              "Z X Y ZERO 1 -0.04 0.04 0 5\n");
    const Domain earth = page_latlon(0.0f, 0.0f, 360.0f);
    CTY_load("ring.cty", 3, &earth, 9);
    EXPECT_EQ(page_list(nearest(40, -90), nearest(40.1f, -89.9f), nearest(0.02f, -0.02f)),
              "ABOV RIGH ZERO");
}
} // namespace
