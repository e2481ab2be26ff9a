/* The whole program, as a user or a batch job runs it. */
#include "kernel/devices.h"
#include "kernel/gph.h"
#include "kernel/meta_reader.h"
#include "kernel/workstation.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "tests/app/program_run.h"

#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <vector>

namespace {

bool ends_with(const std::string &text, const std::string &tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

int count(const std::string &text, const std::string &piece) {
    int n = 0;
    for (size_t at = 0; (at = text.find(piece, at)) != std::string::npos; at++)
        n++;
    return n;
}

TEST(Program, HelpWinsOverEverything) {
    const Scratch scratch;
    const Outcome out = run(scratch, "-inp nids -h missing");
    EXPECT_EQ(out.status, 0);
    EXPECT_EQ(out.text.find("radar: This program plots various types of radar data\n"
                            "radar syntax (version:5.59-LINUX-X11)\n"),
              0u);
    EXPECT_EQ(count(out.text, "RADAR DATA PLOTTING"), 0);
}

TEST(Program, ASampleBecomesAPage) {
    const Scratch scratch;
    const Outcome out = run(scratch, "-inp nids -de p,a.ps,color " + kSamples + "n0r_tlx.nids");
    EXPECT_EQ(out.status, 0) << out.text;
    EXPECT_EQ(out.text.find("      RADAR DATA PLOTTING (Ver 5.59-LINUX-X11)\n\n"), 0u) << out.text;
    const std::string page = scratch.read("a.ps");
    EXPECT_EQ(page.find("%!PS-Adobe-1.0\n"), 0u);
    EXPECT_TRUE(ends_with(page, "%%End of plot\nsaveobj restore\nshowpage\nend\n%%EOF\n"));
    EXPECT_GT(count(page, "%%FA:5\n"), 1000);
    EXPECT_EQ(count(page, "%%Message: NIDS Sum\n"), 1);
    EXPECT_EQ(count(page, "%%Message: NIDS Extra\n"), 1);
    EXPECT_EQ(count(page, "Base reflectivity (Dbz)\n"), 1);
    EXPECT_EQ(count(page, "%%Message: Map: "), 1);
}

TEST(Program, ABatchRunReturnsWithTheDocumentClosed) {
    const Scratch scratch;
    const Outcome out = run(scratch, "-ba -inp nids -de p,a.ps " + kSamples + "n0r_tlx.nids");
    EXPECT_EQ(out.status, 0);
    EXPECT_EQ(out.text, "");
    const std::string page = scratch.read("a.ps");
    EXPECT_EQ(count(page, "%%EOF\n"), 1);
    EXPECT_EQ(count(page, "%!PS-Adobe"), 1);
    EXPECT_TRUE(ends_with(page, "%%EOF\n"));
}

TEST(Program, ADocumentOnStandardOutputIsWholeInBatchToo) {
    const Scratch scratch;
    const Outcome out = run(scratch, "-ba -inp nids -de p,- " + kSamples + "n0r_tlx.nids");
    EXPECT_EQ(out.status, 0);
    EXPECT_EQ(out.text.find("%!PS-Adobe-1.0\n"), 0u);
    EXPECT_TRUE(ends_with(out.text, "%%EOF\n"));
}

TEST(Program, AFullDiskIsNoSuccess) {
    const Scratch scratch;
    const Outcome out = run(scratch, "-inp nids -de p,/dev/full " + kSamples + "n0r_tlx.nids");
    EXPECT_EQ(out.status, 4);
    EXPECT_NE(out.text.find("document is incomplete: /dev/full"), std::string::npos);
    EXPECT_EQ(run(scratch, "-ba -inp nids -de p,/dev/full " + kSamples + "n0r_tlx.nids").status, 4);
}

/* Draws a metafile alone onto a page. */
void replay(const std::string &meta, const std::string &device) {
    RES_set("file_path", (kSource + "/data").c_str());
    RES_set("device", device.c_str());
    RES_set_converter(OPT_DEVICE, gdevice_convert);
    MSG_set_levels("none");
    gregister_devices();
    int ws, type;
    float margins[4] = {};
    GPH_open(0.0f, &ws, &type, margins);
    gread_metafile(meta.c_str());
    GPH_end(ws);
    GPH_reset();
    RES_reset();
    MSG_reset();
}

/* A stream of a page's words from its first area on. */
std::istringstream areas_of(const std::string &page) {
    return std::istringstream(page.substr(std::min(page.find("%%FA"), page.size())));
}

/* The next word that is not of a note. */
std::string next_word(std::istringstream &page) {
    std::string word;
    while (page >> word && word == "%%Message:")
        std::getline(page, word);
    return page ? word : "";
}

/* The same, but for the last decimal of a number: a metafile has six, of any coordinates. */
bool is_alike(const std::string &a, const std::string &b) {
    char *end_a, *end_b;
    const bool close = std::fabs(strtod(a.c_str(), &end_a) - strtod(b.c_str(), &end_b)) < 0.0101;
    return a == b || (close && *end_a == '\0' && *end_b == '\0');
}

TEST(Program, AMetafileIsThePlot) {
    const Scratch scratch;
    // A page of the shape that a metafile has, and the colours of paper on both.
    const std::string paper = ",sz=14.39x11.62", sample = " -pp pscolor " + kSamples;
    for (const char *name : {"n0r_tlx.nids", "n0v_tlx.nids", "ncr_tlx.nids"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(run(scratch, "-inp nids -de m,x.meta" + sample + name).status, 0);
        EXPECT_EQ(run(scratch, "-inp nids -de p,a.ps" + paper + sample + name).status, 0);
        replay(scratch.path("x.meta"), "p," + scratch.path("b.ps") + ",color" + paper);
        std::istringstream direct = areas_of(scratch.read("a.ps"));
        std::istringstream replayed = areas_of(scratch.read("b.ps"));
        int words = 0, other = 0;
        for (std::string a, b; direct || replayed; words++) {
            a = next_word(direct);
            b = next_word(replayed);
            ASSERT_TRUE(is_alike(a, b)) << a << " " << b;
            other += a != b;
        }
        EXPECT_GT(words, 10000);
        EXPECT_LT(other, words / 20);
    }
}

TEST(Program, TwoRunsWriteTheSameBytesButForTheDate) {
    const Scratch scratch;
    std::string pages[2];
    for (std::string &page : pages) {
        run(scratch, "-inp nids -de p,a.ps -re us " + kSamples + "n0q_tlx.nids");
        page = scratch.read("a.ps");
        const size_t date = page.find("%%CreationDate:");
        page.erase(date, page.find('\n', date) - date);
    }
    EXPECT_GT(pages[0].size(), 100000u);
    EXPECT_EQ(pages[0] == pages[1], true);
}

TEST(Program, ExitStatuses) {
    const Scratch scratch;
    const std::string empty = scratch.write("empty", "");
    const std::string scan = scratch.write("scan", "QQQ" + std::string(9, '\0'));
    const std::string sample = kSamples + "n0r_tlx.nids";
    struct Case {
        const char *why;
        std::string arguments;
        int status;
        const char *text;
    };
    const Case cases[] = {
        {"a missing file", "-inp nids -de p,x.ps gone", 10, "NIDS_open_file: Unable to open file:"},
        {"an empty file", "-inp nids -de p,x.ps " + empty, 10,
         "NIDS_open_file: Unable to read file:"},
        {"a series without one usable file", "-inp nids -de p,x.ps gone gone2", 10, "gone2"},
        {"no current file", "-inp nids -cu la#3", 10, "File not found: "},
        {"no file in batch", "-ba -inp nids", 10, "File not found: "},
        {"a document that cannot be made", "-inp nids -de p,/proc/none/x.ps " + sample, 4,
         "GPH_begin: Error opening workstation\n"},
        {"a radar that nobody knows", "-inp rrwds -de p,x.ps " + scan, 11,
         "RRWDS_get_header: Station not found\n"},
        {"a region that is none", "-inp nowrad -re bad,99,x -de p,x.ps " + sample, 43,
         "Invalid domain\n"},
        {"a summary that is not there", "-ba -re us -de p,x.ps gone", 10, "gone"},
        {"a composite that is not there", "-ba -re us -inp kavrad -de p,x.ps gone", 10,
         "KAVRAD_open_file: Unable to open file: "},
        {"a message that is not there", "-inp rcmsite -id TLX -de p,x.ps " + empty, 10, ""},
        {"nothing to be drawn", "-inp nids -pl none " + sample, 0, ""},
        {"a list", "-inp nids list", 0, ""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        const Outcome out = run(scratch, c.arguments);
        EXPECT_EQ(out.status, c.status) << out.text;
        EXPECT_NE(out.text.find(c.text), std::string::npos) << out.text;
    }
}

TEST(Program, CutAndRandomFilesEndInAnOrderlyWay) {
    const Scratch scratch;
    std::string noise(20000, '\0');
    unsigned seed = 12345;
    for (char &c : noise)
        c = char((seed = seed * 1664525 + 1013904223) >> 24);
    const auto plot = [&](const std::string &options, const std::string &bytes) {
        const std::string name = scratch.write("damaged", bytes);
        const Outcome out = run(scratch, "-ba " + options + " -de p,x.ps " + name);
        EXPECT_TRUE(out.status == 0 || out.status == 10 || out.status == 11)
            << out.status << out.text;
    };
    const struct {
        const char *options, *sample;
        std::vector<size_t> lengths; // beside the half and all but the last byte
    } forms[] = {
        {"-inp nids", "n0q_tlx.nids", {1, 17, 30, 119, 130, 151, 700}},
        {"-inp lev2", "level2/KTLX/KTLX_20130520_2016", {24, 100}},
        {"-inp nowrad -re us", "nowrad/1305202015.now", {100, 200}},
        {"-inp kavrad -re us", "kavrad/1305202015.kav", {2000, 2048}},
        {"-inp rrwds", "rrwds/TLX_1305202015.rrw", {11, 50}},
        {"-inp rcmsite -id TLX", "rcm/1305202000.rcm", {60, 400}},
        {"-re us", "mdr/13052020.rad", {3, 60}},
        {"-re us", "nc11/13052020.rad", {3, 60}},
        {"-re us", "nc12/13052020.rad", {3, 60}},
        {"-inp rcm -re us", "native/13052020.rcm", {3, 60}},
    };
    for (const auto &form : forms) {
        SCOPED_TRACE(form.sample);
        std::ifstream in(kSamples + form.sample, std::ios::binary);
        const std::string whole(std::istreambuf_iterator<char>(in), {});
        ASSERT_GT(whole.size(), 100u);
        std::vector<size_t> lengths = form.lengths;
        lengths.insert(lengths.end(), {whole.size() / 2, whole.size() - 1});
        for (const size_t length : lengths)
            plot(form.options, whole.substr(0, length));
        plot(form.options, noise);
    }
}

} // namespace
