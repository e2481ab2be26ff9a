/* scanp: what each directive takes, stores and counts. */
#include "shell/scanner.h"

#include "shell/missing.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {
/* One scan into up to three places, which hold "~", 7 or 7.5 before.  Text without an end behind
 * length shows what reads too far. */
template <class Value>
struct Scanned {
    ScanText scan;
    int result;
    Value out[3];

    Scanned(const std::string &text, const char *format) {
        SCAN_init(&scan, buffer(text));
        for (Value &value : out)
            reset(value);
        result = scanp(&scan, format, place(out[0]), place(out[1]), place(out[2]));
        delete[] scan.text;
    }
    /* "matched assigned consumed", "..." behind it for an unfinished format. */
    std::string counts() const {
        EXPECT_EQ(result, scan.matched);
        return std::to_string(scan.matched) + " " + std::to_string(scan.assigned) + " " +
               std::to_string(scan.consumed) + (scan.complete ? "" : "...");
    }
    /* Texts joined with "|", "~" for one that was not touched. */
    std::string stored() const {
        std::string all;
        for (const Value &value : out)
            all += (&value == out ? "" : "|") +
                   (strcmp(value.data(), "~~~") ? std::string(value.data()) : "~");
        return all;
    }

  private:
    static char *buffer(const std::string &text) {
        return strcpy(new char[text.size() + 1], text.c_str());
    }
    static void reset(int &value) { value = 7; }
    static void reset(float &value) { value = 7.5f; }
    static void reset(std::array<char, SCAN_TEXT> &value) { value = {'~', '~', '~'}; }
    static int *place(int &value) { return &value; }
    static float *place(float &value) { return &value; }
    static char *place(std::array<char, SCAN_TEXT> &value) { return value.data(); }
};
using Texts = Scanned<std::array<char, SCAN_TEXT>>;

const std::string kLong(200, 'x');
const std::string kLongWord = "%(" + kLong + ")";
} // namespace

TEST(Scanner, Texts) {
    const struct {
        const char *format;
        std::string text;
        const char *counts;
        std::string stored; // joined with "|"
    } kCases[] = {
        {"%5s", "abcdef", "1 1 5", "abcde|~|~"},
        {"%5s", "abcd ef", "0 0 0...", "~|~|~"},
        {"%<5s%s", "abc", "1 1 3...", "abc|~|~"},
        {"%s %s", kLong + " b", "1 1 80...", kLong.substr(0, 80) + "|~|~"},
        {"%<79s ", kLong, "1 1 79...", kLong.substr(0, 79) + "|~|~"},
        {"%100s", kLong, "0 0 0...", "~|~|~"},
        {"%S", "a b\n", "1 1 4", "a b\n|~|~"},
        {"%S%S%S%S", kLong, "3 3 200...",
         kLong.substr(0, 80) + "|" + kLong.substr(0, 80) + "|" + kLong.substr(0, 40)},
        {"%c%2c%*c", "abcd", "3 2 4", "a~~|bc~|~"},
        {"%A%N%A", "Ab12Z", "3 3 5", "Ab|12|Z"},
        {"%W%w%s", " \t\r\n x", "3 3 6", " \t\r|\n |x"},
        {"%*s %s", "one  \r\n two", "2 1 11", "two|~|~"},
        {"%*(C)%2s%3s ", "C12ABC ", "3 2 7", "12|ABC|~"},
        {"%*(C)%2s%3s ", "C12ABC", "3 2 6...", "12|ABC|~"}, // a blank wants one
        {"%[/N]%[/A]", "1N2ab", "2 2 5", "1N2|ab|~"},       // N is a member too
        {"%[//x]%[^,]%[,", "x/x0,,", "3 3 6", "x/x|0|,,"},
        {"%[]", "x", "0 0 0...", "~|~|~"},
        {"%(ED|EDITED|)%s", "EDITED", "2 2 6", "ED|ITED|~"},
        {"%(a|b|)%s", "c", "2 2 1", "|c|~"},
        {"%(ab)", "a", "0 0 0...", "~|~|~"},
        {"%!-!(a|b)%s", "-c", "2 2 2", "|c|~"},
        {"%!MM!(a|b)%s", "Mc", "2 2 2", "|c|~"}, // counts as far as it agrees
        {"%!MM!(a|b)%s", "c", "2 2 1", "|c|~"},
        {"%1!MM!(a|b)%s", "MMc", "2 2 3", "|Mc|~"},
        {kLongWord.c_str(), kLong, "1 1 200", kLong.substr(0, 80) + "|~|~"},
        {"%<(a|b)%s", "c", "2 2 1", "~|c|~"},
        {"%*<(a|b)%s", "c", "2 2 1", "c|~|~"},
        {"%<1(a|b)%s", "c", "0 0 0...", "~|~|~"},
        {"%:%%x%q", ":%xq", "0 0 4", "~|~|~"}, // letters that are no conversion
        {"ab%s", "ac", "0 0 1...", "~|~|~"},
        {"%", "a", "0 0 0", "~|~|~"},
    };
    for (const auto &c : kCases) {
        SCOPED_TRACE(std::string(c.format) + " on " + c.text);
        const Texts s(c.text, c.format);
        EXPECT_EQ(s.counts(), c.counts);
        EXPECT_EQ(s.stored(), c.stored);
    }
}

template <class Value>
static void expect_numbers(const char *format, const char *text, const char *counts, Value first,
                           Value second) {
    SCOPED_TRACE(std::string(format) + " on \"" + text + "\"");
    const Scanned<Value> s(text, format);
    EXPECT_EQ(s.counts(), counts);
    EXPECT_EQ(s.out[0], first);
    EXPECT_EQ(s.out[1], second);
}

TEST(Scanner, Numbers) {
    const struct {
        const char *format, *text, *counts;
        int first, second;
    } kWhole[] = {
        {"%3d%d", "-1234", "2 2 5", -12, 34},
        {"%3d", "12 ", "0 0 0...", 7, 7},
        {"%3D%2D", "12  4", "2 2 5", 12, 4},
        {"%3D", "12", "0 0 0...", 7, 7},
        {"%3D", "   5", "0 0 0...", 7, 7}, // a blank column
        {"%*2D%<3D", " 1-2", "2 1 4", -2, 7},
        {"%d", "x1", "0 0 0...", 7, 7},
        {"%d", "-", "0 0 0...", 7, 7},
        {"%4!-!D%n", "-   ", "2 2 1", MISSING, 1},
        {"%1!--!d%n", "--", "1 1 0", 7, 0}, // longer than the width: not there, and no harm
        {"%d", "99999999999999999999", "1 1 20", 2147483647, 7},
    };
    for (const auto &c : kWhole)
        expect_numbers(c.format, c.text, c.counts, c.first, c.second);

    const struct {
        const char *format, *text, *counts;
        float first, second;
    } kReal[] = {
        {"%!-!f %!-!f", "- -1.5", "2 2 6", MISSING_F, -1.5f},
        {"%!-!fx%f", "x2", "1 1 2", 7.5f, 2.0f}, // neither: the next item goes on
        {"%!-!f", "x", "0 0 0", 7.5f, 7.5f},
        {"%*2D%8F%10F%4F", "72  35.39    -97.60  39", "3 2 20...", 35.39f, -97.6f},
        {"%f%f", "1.5e3.5", "2 2 7", 1500.0f, 0.5f},
        {"%f%f", "1.2.3", "2 2 5", 1.2f, 0.3f},
        {"%fe%f", "1e2", "1 1 3...", 100.0f, 7.5f},
        {"%fe+%f", "1e+", "1 1 3...", 1.0f, 7.5f}, // an exponent without digits is text
        {"%4f", "1.2e3", "0 0 0...", 7.5f, 7.5f},
        {"%5F%f", " 1e1 .", "1 1 5...", 10.0f, 7.5f},
        {"%f", ".", "0 0 0...", 7.5f, 7.5f},
        {"%f", "nan", "0 0 0...", 7.5f, 7.5f},
    };
    for (const auto &c : kReal)
        expect_numbers(c.format, c.text, c.counts, c.first, c.second);
}

TEST(Scanner, TheCursorStaysInTheText) {
    char text[] = "one two 3";
    ScanText scan;
    SCAN_init(&scan, text);
    int value = 7;
    EXPECT_TRUE(SCAN_find(&scan, "two") && !SCAN_find(&scan, "four"));
    EXPECT_EQ(scanp(&scan, "two %d", &value), 1);
    SCAN_advance(&scan);
    EXPECT_EQ(SCAN_get_pos(&scan), 9);
    EXPECT_EQ(scanp(&scan, "%d", &value), -1);
    EXPECT_EQ(scan.complete + scan.consumed + scan.assigned + scan.matched, 0);
    EXPECT_EQ(std::string(SCAN_text(&scan)) + SCAN_peek(&scan, -1), "3");
    SCAN_poke(&scan, 0, 'x'); // nowhere
    SCAN_skip(&scan, -2147483647);
    EXPECT_EQ(scanp(&scan, ""), -1);
    SCAN_poke(&scan, 0, 'O');
    EXPECT_STREQ(text, "One two 3");
    SCAN_skip(&scan, 2147483647);
    EXPECT_EQ(SCAN_get_pos(&scan), 9);
}
