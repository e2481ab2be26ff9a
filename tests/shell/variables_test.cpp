#include "shell/variables.h"

#include "files/file_name.h"
#include "shell/resource.h"
#include "tests/shell/shell_fixture.h"

namespace {

/* A number, "-" for a missing one. */
std::string number(int value) { return value == MISSING ? "-" : std::to_string(value); }

/* The list as "name units kind attr role code; ...". */
std::string list_text() {
    std::string text;
    for (int i = 0; i < VAR_count(); i++) {
        const VarEntry &e = *VAR_entry(i);
        text += (i ? "; " : "") + e.name + " " + (e.units.empty() ? "-" : e.units) + " " +
                number(e.plot_kind) + " " + (e.attr.empty() ? "-" : e.attr) + " " + number(e.role) +
                " " + number(e.var_ids[0]);
    }
    return text;
}

constexpr const char *kFile = "a First_one mo=mdr +x,\\\n  +y ::text:ul\n"
                              "not a line\n"
                              "b Second_one mo=rc?,ft=9 [12h:]\n"
                              "self Itself 0 self,+x\n"
                              "wide Wide mo=mdr&mo=*d*,le=a wider,wider,wider,wider\n"
                              "wider Wider 1 wide,wide,wide,wide\n";

struct Variables : testing::Test {
    Folder folder;

    Variables() {
        fresh_shell();
        VAR_reset();
        FILE_name_reset();
        RES_set("file_path", folder.dir.c_str());
        folder.write("t.var", kFile);
        folder.write("variable.lup", "7,1,2,3,4 id Storm id\n8,0,0,0,0 +Top Storm top\nodd\n");
        VAR_open_file("t.var");
        MSG_set_levels("none");
    }
    ~Variables() override {
        VAR_reset();
        fresh_shell();
    }
};

} // namespace

TEST_F(Variables, ExpressionsBecomeEntries) {
    const struct {
        const char *why, *expression, *list;
    } cases[] = {
        {"a plain list", "zz, q", "zz - - - 0 -; q - - - 0 -"},
        {"codes by name and by number", "ID,+top,8",
         "ID - - - 0 7; top - - - 0 8; Storm top - - - 0 8"},
        {"units, kind, attributes", "+id:km:cf:co=red:ul", "id km 15 co=red:ul 0 7"},
        {"no plot word belongs to the attributes", "+id:km:ul", "id km - ul 0 7"},
        {"parameters", "q[km:cf:w2]", "q km 15 w2 0 -"},
        {"parameters go to the item before only", "q,z[km],y",
         "q - - - 0 -; z km - - 0 -; y - - - 0 -"},
        {"a named expression, with its continuation", "a", "x - - - 0 -; y - 3 ul 0 -"},
        {"a plus stops the look-up", "+a", "a - - - 0 -"},
        {"what is named inherits the kind", "a:barb", "x - 22 - 0 -; y - 3 ul 0 -"},
        {"a function and a group in it", "f(q,{z})w",
         "f - - - 2 -; q - - - 10 -; z - - - 11 -; w - - - 0 -"},
        {"a contour group", "g::cf{q}", "g - 15 - 5 -; q - 10 - 1 -"},
        {"a vector", "<u\\,v>", "u,v - - - 1 -"},
        {"a table", "#q", "#q - 40 - 0 -"},
        {"words of the page", "plot{q}", "plot - 30 - 5 -; q - 30 - 1 -"},
        {"times and levels", "time-12:500mb:q:m", "q m - - 0 -"},
        {"no time, no level", "q:500mb:cf", "q 500mb 15 - 0 -"},
        {"an open bracket ends it", "q,f(z", "q - - - 0 -"},
        {"nothing at all", ",,()[]", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(VAR_parse(VAR_file(), c.expression), *c.list ? 1 : 0);
        EXPECT_EQ(list_text(), c.list);
    }
    PAR_set(PAR_PLOT_TYPE, PLOT_FILLED_LINES);
    VAR_parse(VAR_file(), "q[km:barb],+z::barb");
    EXPECT_EQ(list_text(), "q km 16 - 0 -; z - 22 - 0 -");
}

TEST_F(Variables, ForeignExpressionsEnd) {
    MSG_set_levels("error");
    const auto parse = [](const std::string &text) {
        return output_of([&] { VAR_parse(VAR_file(), text.c_str()); });
    };
    testing::internal::CaptureStderr();
    EXPECT_EQ(parse("self"), "");
    EXPECT_EQ(list_text(), "");
    parse("wide");
    EXPECT_EQ(VAR_count(), 0);
    parse(std::string(5000, '(') + "q" + std::string(5000, ')'));
    EXPECT_EQ(VAR_count(), 0);
    parse("q<");
    std::string many;
    for (int i = 0; i < 100; i++)
        many += "q,";
    parse(many);
    EXPECT_EQ(VAR_count(), VAR_MAX);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unable to determine variables\nUnable to determine variables\nUnable to determine "
              "variables\nUnmatched <>\nUnable to determine variables\n");
    EXPECT_EQ(VAR_entry(VAR_MAX), nullptr);
    EXPECT_STREQ(VAR_name(-1), "");
}

TEST_F(Variables, LinesAreShownByTheirConditions) {
    std::string answer;
    PAR_set(PAR_BATCH, 1);
    const struct {
        const char *source, *first;
    } cases[] = {{"mdr", "a"}, {"rcm", "b"}, {"rc", "wider"}, {"", "wider"}};
    for (const auto &c : cases) {
        FILE_set_source(c.source);
        VAR_load_menu();
        EXPECT_EQ(VAR_menu("", "", &answer, 0), 1);
        EXPECT_EQ(answer, c.first);
    }
    VAR_close_file();
    VAR_load_menu();
    VAR_menu("", "", &answer, 0);
    EXPECT_EQ(answer, "def");
}

TEST_F(Variables, TheMenuListsTheFileAndAsksAgain) {
    FILE_set_source("mdr");
    VAR_load_menu();
    MSG_set_levels("print");
    const Typed typed("list\n2\n");
    std::string answer = "list";
    const std::string shown = output_of([&] { EXPECT_EQ(VAR_menu("T", "P", &answer, 0), 2); });
    EXPECT_EQ(answer, "wide");
    EXPECT_NE(shown.find("  1: First one   "), std::string::npos);
    EXPECT_NE(shown.find(" Abbr    Description\na        First_one   "), std::string::npos);
}

TEST_F(Variables, Patterns) {
    const struct {
        const char *pattern, *text;
        int result;
    } cases[] = {
        {"mdr", "mdr", 1},    {"mdr", "mdrx", 0},  {"mdrx", "mdr", 0}, {"", "mdr", 0},
        {"m*", "", 0},        {"a|m?.", "mdr", 1}, {"~mdr", "mdr", 0}, {"~mdr", "rcm", 1},
        {"*", "x", 1},        {"*r", "mdr", 1},    {"m*x", "mdr", 0},  {"*[c-e]r", "mdr", 1},
        {"[xm]dr", "mdr", 1}, {"[a-c]", "d", 0},   {"[abc", "a", 0},   {"**d*", "mdr", 1},
    };
    for (const auto &c : cases)
        EXPECT_EQ(VAR_match_pattern(c.pattern, c.text), c.result) << c.pattern << " " << c.text;
}

/* A label is the reverse of the words. */
TEST_F(Variables, TimesAndLevels) {
    const struct {
        const char *time, *level;
        int kinds, code, level_1, level_2; // kinds: of the time * 10 + of the level
        const char *label;
    } cases[] = {
        {"time-12", "500mb", 11, 12, 10000500, MISSING, "12 hour 500 mb"},
        {"6-12acc", "1000-500mb", 22, 4006012, 10101000, 500, "6-12 hour Accumulation 1000-500 mb"},
        {"3.5day", "sfc", 11, 84, 100000, MISSING, "3.5 day Surface"},
        {"init", "0.995sig", 11, 1000000, 10709950, MISSING, "0.995 sigma"},
        {"anal", "10+20m_ag", 12, 0, 10600010, 20, "10-20 m above ground"},
        {"12", "mb", 0, MISSING, MISSING, MISSING, ""},
        {"6-12", "100-200pv", 0, MISSING, MISSING, MISSING, ""},
        {"1000e", "-5mb", 0, MISSING, MISSING, MISSING, ""},
        {"99999999999999d", "1e30mb", 0, MISSING, MISSING, MISSING, ""},
        {"", "", 11, MISSING, MISSING, MISSING, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.time) + " " + c.level);
        int code = MISSING, level_1 = MISSING, level_2 = MISSING;
        EXPECT_EQ(VAR_parse_time(c.time, &code) * 10 + VAR_parse_level(c.level, &level_1, &level_2),
                  c.kinds);
        EXPECT_EQ(code, c.code);
        EXPECT_EQ(level_1, c.level_1);
        EXPECT_EQ(level_2, c.level_2);
        std::string label;
        VAR_make_datatype(code, level_1, level_2, &label);
        EXPECT_EQ(label, c.label);
    }
}

TEST_F(Variables, LabelsTellTimeLevelAndDescription) {
    const auto label = [](int index) {
        std::string text;
        VAR_label(index, &text);
        return text;
    };
    PAR_set(PAR_FORECAST, 72);
    VAR_parse(VAR_file(), "id:kt,time-6:2m:f(8,q)");
    EXPECT_EQ(label(0), "3 day Storm id (kt)");
    EXPECT_EQ(label(2), "6 hour 2 m Storm top");
    EXPECT_EQ(label(3) + label(4), "6 hour 2 m q");
    RES_set("plot_param", "labmin");
    VAR_parse(VAR_file(), "fi:none.var:id");
    EXPECT_EQ(label(0), "3 day id");
    EXPECT_EQ(VAR_file(), nullptr);
}

/* The files that are installed with the program. */
TEST_F(Variables, InstalledFilesHold) {
    RES_set("file_path", RADAR_SOURCE_DIR "/data");
    const struct {
        const char *file, *source, *names;
    } cases[] = {
        {"rad.var", "mdr", "rep ptype tops amv cmv wbox"},
        {"rad.var", "rcm", "rrep rhail rrot rmov wbox"},
        {"nids.var", "", "storm hailp rot hsz vilp smov wbox"},
    };
    for (const auto &c : cases) {
        ASSERT_TRUE(VAR_open_file(c.file));
        std::istringstream names(c.names);
        for (std::string name; names >> name;) {
            SCOPED_TRACE(name);
            EXPECT_EQ(VAR_parse(VAR_file(), name.c_str()), 1);
            for (int i = 0; i < VAR_count(); i++) {
                EXPECT_NE(VAR_entry(i)->var_ids[0], MISSING);
                EXPECT_NE(VAR_name(i), name);
                EXPECT_TRUE(VAR_entry(i)->plot_kind > 0 || name == "wbox");
            }
        }
    }
}
