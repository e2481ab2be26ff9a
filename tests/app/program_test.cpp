/* The whole program, as a user or a batch job runs it. */
#include "tests/app/program_run.h"

#include <gtest/gtest.h>

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
        {"a device that is not built", "-inp nids -de m,x.meta " + sample, 4, "not there yet"},
        {"an input that is not built", "-inp kavrad -de p,x.ps " + sample, 10, "not there yet"},
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
    const std::string whole = [] {
        std::ifstream in(kSamples + "n0q_tlx.nids", std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }();
    ASSERT_GT(whole.size(), 1000u);
    for (const size_t length : {size_t(1), size_t(17), size_t(30), size_t(119), size_t(130),
                                size_t(151), size_t(700), whole.size() / 2, whole.size() - 1}) {
        SCOPED_TRACE(length);
        const std::string name = scratch.write("cut", whole.substr(0, length));
        const Outcome out = run(scratch, "-inp nids -de p,x.ps " + name);
        EXPECT_TRUE(out.status == 0 || out.status == 10) << out.status << out.text;
    }
    std::string noise(20000, '\0');
    unsigned seed = 12345;
    for (char &c : noise)
        c = char((seed = seed * 1664525 + 1013904223) >> 24);
    const Outcome out = run(scratch, "-inp nids -de p,x.ps " + scratch.write("noise", noise));
    EXPECT_TRUE(out.status == 0 || out.status == 10) << out.status << out.text;
}

} // namespace
