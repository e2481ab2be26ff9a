#include "shell/start.h"

#include "files/date_time.h"
#include "shell/loop_client.h"
#include "tests/shell/shell_fixture.h"

#include <set>
#include <vector>

/* Runs the merge with a search list that holds no file, unless the arguments name one. */
static void start(std::vector<std::string> args) {
    fresh_shell();
    args.insert(args.begin(), "/opt/bin/radar");
    const Env no_files("qradefault", "/nowhere");
    std::vector<char *> argv;
    for (std::string &arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    RES_init(int(args.size()), argv.data(), OPT_keyed_ids, OPT_positional_ids);
}

TEST(Start, OptionsFindTheirResource) {
    const char *const absent = "(absent)";
    const struct {
        const char *why;
        std::vector<std::string> args;
        const char *name, *value;
    } cases[] = {
        {"a value behind =", {"-pl=cf"}, "plot_type", "cf"},
        {"no value reads as an empty text", {"-fp"}, "file_path", ""},
        {"two dashes", {"--plot_type=cf"}, "plot_type", "cf"},
        {"the name of the resource", {"-Plot_Type", "cf"}, "plot_type", "cf"},
        {"the start of the name", {"-plot_t", "cf"}, "plot_type", "cf"},
        {"the first row that begins so", {"-p", "cf"}, "plot_domain", "cf"},
        {"in is the interval", {"-in", "5"}, "con_interval", "5"},
        {"an unknown word is free", {"-zz", "5"}, "zz", "5"},
        {"a key has 49 characters",
         {"-" + std::string(60, 'k') + "=v"},
         "kkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkkk",
         "v"},
        {"batch takes no word", {"-ba", "a.dat"}, "filename", "a.dat"},
        {"but takes one behind =", {"-ba=x", "a.dat"}, "batch", "x"},
        {"a path takes its word", {"-fp", "a.dat"}, "filename", absent},
        {"numbers and a dash are names", {"-5", "--", "-"}, "filename", "-5\n-"},
        {"-name is no option of the table", {"-name", "x"}, "name_conv", absent},
        {"nor is its word positional", {"-na", "x", "y"}, "filename", "y"},
        {"-NA is", {"-NA", "x"}, "name_conv", "x"},
        {"-df names the search list", {"-df", "/none"}, "default", "/none"},
        {"--df is taken by nobody", {"--df", "y"}, "filename", absent},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        start(c.args);
        const char *value = RES_get(c.name);
        EXPECT_STREQ(value ? value : absent, c.value);
    }
    start({"a", "b"});
    EXPECT_EQ(ResList("filename").count, 2);
    start({"-filename", "a,b"});
    EXPECT_EQ(ResList("filename").count, 2) << "a free resource splits at commas";
    fresh_shell();
}

TEST(Start, LaterSourcesWin) {
    const Folder folder;
    const std::string one = folder.write("one", "*.con_path one\n*.parameter dbz\n*.title one\n"
                                                "other.icon x\nradar.data_path one\n");
    const std::string two = folder.write("two", "*.con_path two\n*.data_path two\n");
    const std::string list = one + ":+night:#3:" + folder.path("none") + ":" + two;
    const Env con("qracon", "environment");
    const Env raw("qraradar.raw_path", "full name");
    const Env raw_short("qraraw", "not this");
    const Env plain("qragrid_path", "plain name");
    const Env zone("qratz", "EST:-5");
    LOOP_set_key_base(0x51000000); // where nobody has a window
    testing::internal::CaptureStderr();
    start({"-df", list, "-ti", "line"});
    const std::string warning = testing::internal::GetCapturedStderr();
    EXPECT_EQ(warning, "QRAloop window: 3 not running or no message queue exists\n");
    EXPECT_STREQ(RES_get("con_path"), "environment");
    EXPECT_STREQ(RES_get("data_path"), "two");
    EXPECT_STREQ(RES_get("title"), "line");
    EXPECT_STREQ(RES_get("parameter"), "dbz");
    EXPECT_STREQ(RES_get("raw_path"), "full name");
    EXPECT_STREQ(RES_get("grid_path"), "plain name");
    EXPECT_EQ(RES_get("icon"), nullptr);
    EXPECT_EQ(DT_zone_offset(), -5 * 3600);
    DT_zone_reset();
    LOOP_reset();
    fresh_shell();
}

TEST(Start, TheNameAimsTheFiles) {
    const Folder folder;
    const std::string file =
        folder.write("f", "radar.title plain\nsite.title site\nradar.site.title both\n"
                          "IF night\n*.icon on\nEND\n");
    start({"-df", file});
    EXPECT_STREQ(RES_get("title"), "plain");
    start({"-na", "site", "-df", "+night:" + file});
    EXPECT_STREQ(RES_get("title"), "site");
    EXPECT_STREQ(RES_get("name"), "site");
    EXPECT_STREQ(RES_get("icon"), "on");
    start({"-n=+site", "-df=" + file});
    EXPECT_STREQ(RES_get("title"), "both");
    fresh_shell();
}

TEST(Start, ConversionActsOnceAtTheEnd) {
    start({"-ba", "-pf", "over", "-pl", "cf", "-dr", "map"});
    EXPECT_TRUE(PAR_is_batch());
    EXPECT_FALSE(PAR_is_help());
    EXPECT_EQ(PAR_get(PAR_FILE_MODE), 1);
    EXPECT_EQ(PAR_get(PAR_PLOT_TYPE), PLOT_FILLED);
    EXPECT_EQ(DRAW_get(DRAW_DATA), 0);
    EXPECT_EQ(MSG_get_mask(), 0xffu);
    EXPECT_EQ(PAR_get(PAR_FORECAST), MISSING);
    EXPECT_STREQ(RES_program_path(), "/opt/bin/radar");
    EXPECT_STREQ(RES_program_name(), "radar");
    fresh_shell();
    EXPECT_STREQ(RES_program_name(), "QRA");
}

TEST(Options, EveryIdIsDescribedAndEveryKeyedOptionIsItsOwn) {
    fresh_shell();
    std::set<std::string> options;
    for (const OptionSpec &row : OPT_table(OPT_keyed_ids, OPT_positional_ids)) {
        EXPECT_NE(std::string(row.name), "");
        if (row.position == 0) {
            EXPECT_TRUE(options.insert(row.option).second) << row.option;
        }
    }
    EXPECT_EQ(options.size(), 57u);
    OptionSpec row;
    int described = 0;
    const std::string unknown = output_of([&] {
        for (int id = 1; id <= 115; id++) {
            OPT_describe(&row, id);
            described += *row.name != '\0';
        }
    });
    EXPECT_EQ(described, 89);
    EXPECT_TRUE(unknown.starts_with("1\n4\n7\n")) << unknown;
    OPT_describe(&row, 49);
    EXPECT_STREQ(row.name, "filename");
    EXPECT_EQ(row.position, 1);
}

TEST(Options, UsageNamesEveryOption) {
    fresh_shell();
    const std::string text =
        output_of([] { OPT_usage("radar", OPT_keyed_ids, OPT_positional_ids); });
    EXPECT_TRUE(text.starts_with("radar syntax (version:5.59-LINUX-X11)\n"
                                 "   radar [options...]\n"
                                 "Keyed options...\n"
                                 " -df file    Resource/defaults file name\n"
                                 " -na name    Program name\n"
                                 " -h          Print this help\n"
                                 " -ba         Run program in batch mode\n"
                                 " -me level   Message level"))
        << text;
    EXPECT_TRUE(text.ends_with("Positional options...\n"
                               " file [file...]  Input file names\n"));
    for (const char *line :
         {"               none,print,error,warn,mess,out1,*out2,out3,out4,debug\n",
          " -in type    Type of input\n", " -in intrvl  Contour interval\n",
          " -pd region or [proj],clat,clon[,nx,ny][,dx,dy]\n",
          "dx,dy=grid spacing\n               us,ne,at,se,mw,sp,nw,sw,var\n -pr"})
        EXPECT_NE(text.find(line), std::string::npos) << line;
}
