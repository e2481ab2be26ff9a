#include "shell/variables.h"

#include "files/file_name.h"
#include "shell/resource.h"
#include "tests/shell/shell_fixture.h"

namespace {

std::string number(int value) { return value == MISSING ? "-" : std::to_string(value); }

/* The list as "name units kind attr role code; ...". */
std::string list_text() {
    std::string text;
    for (int i = 0; i < VAR_count(); i++) {
        const VarEntry &e = *VAR_entry(i);
        text += (i ? "; " : "") + e.name;
        for (const std::string &field :
             {e.units, number(e.plot_kind), e.attr, number(e.role), number(e.var_ids[0])})
            text += " " + (field.empty() ? "-" : field);
    }
    return text;
}

struct Variables : testing::Test {
    Folder folder;

    Variables() {
        fresh_shell();
        VAR_reset();
        FILE_name_reset();
        FILE_set_source("mdr");
        RES_set("file_path", folder.dir.c_str());
        folder.write("t.var", "a First_one mo=mdr +x,\\\n\t +y ::text:ul\n"
                              "not a line\n"
                              "b Second_one mo=rc?,ft=9 [12h:]\n"
                              "longernames A,mo=mdr x\n"
                              "self Itself 0 self,+x\n"
                              "wide Wide mo=mdr&mo=*d*,le=a wide,wide,wide,wide\n");
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
        const char *expression, *list;
        int type = MISSING; // of the plot
    } cases[] = {
        {"ID,+top,8", "ID - - - 0 7; top - - - 0 8; Storm top - - - 0 8"},
        {"+id:km:cf:co=red:ul", "id km 15 co=red:ul 0 7"},
        {"q[km:cf:w2],z[km],y", "q km 15 w2 0 -; z km - - 0 -; y - - - 0 -"},
        {"a,+a", "x - - - 0 -; y - 3 ul 0 -; a - - - 0 -"},
        {"a:barb,q:barb", "x - 22 - 0 -; y - 3 ul 0 -; q barb - - 0 -"},
        {"longerna", "x - - - 0 -"},
        {"f(q,{z})w", "f - - - 2 -; q - - - 10 -; z - - - 11 -; w - - - 0 -"},
        {"g::cf{q}", "g - 15 - 5 -; q - 10 - 1 -"},
        {"<u\\,v>,#q", "u,v - - - 1 -; #q - 40 - 0 -"},
        {"plot{q}", "plot - 30 - 5 -; q - 30 - 1 -"},
        {"time-12:500mb:q:m,q:500mb:cf", "q m - - 0 -; q 500mb 15 - 0 -"},
        {"q,f(z", "q - - - 0 -"},
        {"q[km:barb],+z::barb,z:cf", "q km 16 - 0 -; z - 22 - 0 -; z cf 16 - 0 -",
         PLOT_FILLED_LINES},
        {"q[km:barb]", "q km 22 - 0 -", PLOT_NONE},
    };
    for (const auto &c : cases) {
        PAR_set(PAR_PLOT_TYPE, c.type);
        EXPECT_EQ(VAR_parse(VAR_file(), c.expression), 1);
        EXPECT_EQ(list_text(), c.list) << c.expression;
    }
}

TEST_F(Variables, ForeignExpressionsEnd) {
    std::string many;
    for (int i = 0; i < 100; i++)
        many += "q,";
    MSG_set_levels("error");
    testing::internal::CaptureStderr();
    EXPECT_EQ(VAR_parse(VAR_file(), "self") + VAR_parse(VAR_file(), "wide"), 0);
    EXPECT_EQ(VAR_parse(VAR_file(), (std::string(5000, '(') + std::string(5000, ')')).c_str()), 0);
    EXPECT_EQ(VAR_parse(VAR_file(), ",,()[],q<") + VAR_parse(VAR_file(), many.c_str()), 1);
    EXPECT_EQ(VAR_count(), VAR_MAX);
    EXPECT_EQ(VAR_entry(VAR_MAX), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unable to determine variables\nUnable to determine variables\nUnable to determine "
              "variables\nUnmatched <>\nUnable to determine variables\n");
}

TEST_F(Variables, TheMenuShowsLinesByTheirConditions) {
    std::string answer = "list";
    VAR_load_menu();
    MSG_set_levels("print");
    const Typed typed("list\n3\n");
    const std::string shown = output_of([&] { EXPECT_EQ(VAR_menu("T", "P", &answer, 0), 3); });
    EXPECT_EQ(answer, "wide");
    EXPECT_NE(shown.find("  1: First one   "), shown.npos);
    EXPECT_NE(shown.find(" Abbr    Description\na        First_one   "), shown.npos);
    PAR_set(PAR_BATCH, 1);
    for (const auto &[source, first] : {std::pair{"mdr", "a"}, {"rcm", "b"}, {"rc", "def"}}) {
        FILE_set_source(source);
        VAR_load_menu();
        EXPECT_EQ(VAR_menu("", "", &answer, 0), 1);
        EXPECT_EQ(answer, first);
    }
    const auto fits = [](const char *pattern) { return VAR_match_pattern(pattern, "mdr"); };
    for (const char *pattern : {"a|m?.", "~rcm", "*", "*r", "*[c-e]r", "[xm]dr", "**d*"})
        EXPECT_EQ(fits(pattern), 1) << pattern;
    for (const char *pattern : {"md", "mdrx", "", "~mdr", "m*x", "[a-c]dr", "[mdr"})
        EXPECT_EQ(fits(pattern), 0) << pattern;
    EXPECT_EQ(VAR_match_pattern("m*", ""), 0);
}

/* A label is the reverse of the words. */
TEST_F(Variables, TimesAndLevels) {
    const auto told = [](const char *time, const char *level) {
        int code = MISSING, level_1 = MISSING, level_2 = MISSING;
        std::string text = number(VAR_parse_time(time, &code)) + " ", label;
        text += number(VAR_parse_level(level, &level_1, &level_2)) + " ";
        VAR_make_datatype(code, level_1, level_2, &label);
        for (const int value : {code, level_1, level_2})
            text += number(value) + " ";
        return text + label;
    };
    EXPECT_EQ(told("time-12", "500mb"), "1 1 12 10000500 - 12 hour 500 mb");
    EXPECT_EQ(told("6-12acc", "1000-500mb"),
              "2 2 4006012 10101000 500 6-12 hour Accumulation 1000-500 mb");
    EXPECT_EQ(told("3.5day", "sfc"), "1 1 84 100000 - 3.5 day Surface");
    EXPECT_EQ(told("init", "0.995sig"), "1 1 1000000 10709950 - 0.995 sigma");
    EXPECT_EQ(told("anal", "10+20m_ag"), "1 2 0 10600010 20 10-20 m above ground");
    EXPECT_EQ(told("6-12", "100-200pv") + told("1000e", "-5mb"), "0 0 - - - 0 0 - - - ");
    EXPECT_EQ(told("99999999999999d", "1e30mb"), "0 0 - - - ");
}

TEST_F(Variables, LabelsTellTimeLevelAndDescription) {
    const auto labels = [](const char *expression) {
        VAR_parse(VAR_file(), expression);
        std::string all, text;
        for (int i = 0; i < VAR_count(); i++, all += text + "|")
            VAR_label(i, &text);
        return all;
    };
    PAR_set(PAR_FORECAST, 72);
    EXPECT_EQ(labels("id:kt,time-6:2m:f(8,q),map{q}"),
              "3 day Storm id (kt)|6 hour 2 m f|6 hour 2 m Storm top|6 hour 2 m q|"
              "3 day map|3 day q|");
    RES_set("plot_param", "labmin");
    EXPECT_EQ(labels("fi:none.var:id"), "3 day id|");
    EXPECT_EQ(VAR_file(), nullptr);
}

/* The files that are installed with the program: every line leads to variables of the table. */
TEST_F(Variables, InstalledFilesHold) {
    RES_set("file_path", RADAR_SOURCE_DIR "/data");
    const auto holds = [](const std::string &name) {
        bool all = VAR_parse(VAR_file(), name.c_str()) == 1;
        all = all && (VAR_count() > 1 || VAR_name(0) != name); // the line was found
        for (int i = 0; i < VAR_count(); i++)
            all = all && VAR_entry(i)->var_ids[0] != MISSING;
        return all;
    };
    ASSERT_TRUE(VAR_open_file("rad.var"));
    for (const char *name : {"rep", "ptype", "tops", "amv", "cmv", "rrep", "rhail", "rrot", "rmov"})
        EXPECT_TRUE(holds(name)) << name;
    ASSERT_TRUE(VAR_open_file("nids.var"));
    for (const char *name : {"storm", "hailp", "rot", "hsz", "vilp", "smov", "wbox"})
        EXPECT_TRUE(holds(name)) << name;
}
