/* scanp: what each directive takes, stores and counts. */
#include "shell/scanner.h"

#include <cstring>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace {
struct Text {
    char at[SCAN_TEXT] = "~";
};
char *place(Text &text) { return text.at; }
int *place(int &number) { return &number; }
float *place(float &number) { return &number; }
std::ostream &operator<<(std::ostream &out, const Text &text) { return out << text.at; }

/* want is "matched assigned consumed", "..." for an unfinished format, and the three places behind
 * "|", of which one that gets nothing keeps what it was filled with. */
struct Case {
    const char *format;
    std::string text, want;
};

template <class Value>
void check(const std::vector<Case> &cases, const Value &filled) {
    for (const Case &c : cases) {
        std::vector<char> text(c.text.c_str(), c.text.c_str() + c.text.size() + 1);
        Value out[3] = {filled, filled, filled};
        ScanText scan;
        SCAN_init(&scan, text.data());
        std::ostringstream told;
        told << scanp(&scan, c.format, place(out[0]), place(out[1]), place(out[2])) << ' '
             << scan.assigned << ' ' << scan.consumed << (scan.complete ? "" : "...");
        for (const Value &value : out)
            told << '|' << value;
        EXPECT_EQ(told.str(), c.want) << c.format << " on " << c.text;
        EXPECT_EQ(scan.matched, atoi(c.want.c_str()));
    }
}
} // namespace

TEST(Scanner, Texts) {
    const std::string longest(80, 'x'), longer(200, 'x'), word = "%(" + longer + ")";
    const std::vector<Case> cases = {
        {"%5s%5s", "abcdef gh", "1 1 5...|abcde|~|~"},
        {"%<5s%s", "abc", "1 1 3...|abc|~|~"},
        {"%s %s", longer + " b", "1 1 80...|" + longest + "|~|~"},
        {"%100s", longer, "0 0 0...|~|~|~"},
        {"%S%S%S%S", longer, "3 3 200...|" + longest + "|" + longest + "|" + longer.substr(160)},
        {"%c%2c%*c", "abcd", "3 2 4|a|bc|~"},
        {"%A%N%S", "Ab12Z\n", "3 3 6|Ab|12|Z\n"},
        {"%W%w%s", " \t\r\n x", "3 3 6| \t\r|\n |x"},
        {"%*s %s", "one  \r\n two", "2 1 11|two|~|~"},
        {"%*(C)%2s%3s ", "C12ABC", "3 2 6...|12|ABC|~"}, // a blank wants one
        {"%[/N]%[/A]", "1N2ab", "2 2 5|1N2|ab|~"},       // N is a member too
        {"%[//x]%[^,]%[,", "x/x0,,", "3 3 6|x/x|0|,,"},
        {"%(ED|EDITED|)%s", "EDITED", "2 2 6|ED|ITED|~"},
        {"%(a|b|)%s", "c", "2 2 1||c|~"},
        {"%!MM!(a|b)%s", "Mc", "2 2 2||c|~"}, // counts as far as it agrees
        {"%1!MM!(a|b)%s", "MMc", "2 2 3||Mc|~"},
        {word.c_str(), longer, "1 1 200|" + longest + "|~|~"},
        {"%<(a|b)%s", "c", "2 2 1|~|c|~"},
        {"%*<(a|b)%s", "c", "2 2 1|c|~|~"},
        {"%<1(a|b)%s", "c", "0 0 0...|~|~|~"},
        {"%:%%x%q", ":%xq", "0 0 4|~|~|~"}, // letters that are no conversion
        {"ab%s", "ac", "0 0 1...|~|~|~"},
        {"%", "a", "0 0 0|~|~|~"},
    };
    check(cases, Text());
}

TEST(Scanner, Numbers) {
    const std::vector<Case> whole = {
        {"%3d%d", "-1234", "2 2 5|-12|34|7"},
        {"%3d", "12 ", "0 0 0...|7|7|7"},
        {"%3D%2D", "12  4", "2 2 5|12|4|7"},
        {"%3D", "   5", "0 0 0...|7|7|7"}, // a blank column
        {"%*2D%<3D", " 1-2", "2 1 4|-2|7|7"},
        {"%d", "-", "0 0 0...|7|7|7"},
        {"%4!-!D%n", "-   ", "2 2 1|-9999|1|7"},
        {"%1!--!d%n", "--", "1 1 0|7|0|7"}, // longer than the width: not there, and no harm
        {"%d", "99999999999999999999", "1 1 20|2147483647|7|7"},
    };
    check(whole, 7);
    const std::vector<Case> real = {
        {"%!-!f %!-!f", "- -1.5", "2 2 6|-9999|-1.5|7.5"},
        {"%!-!fx%f", "x2", "1 1 2|7.5|2|7.5"}, // neither: the next item goes on
        {"%*2D%8F%10F%4F", "72  35.39    -97.60  39", "3 2 20...|35.39|-97.6|7.5"},
        {"%f%f", "1.5e3.5", "2 2 7|1500|0.5|7.5"},
        {"%fe+%f", "1e+", "1 1 3...|1|7.5|7.5"}, // an exponent without digits is text
        {"%4f", "1.2e3", "0 0 0...|7.5|7.5|7.5"},
        {"%5F%f", " 1e1 .", "1 1 5...|10|7.5|7.5"},
        {"%f", "nan", "0 0 0...|7.5|7.5|7.5"},
    };
    check(real, 7.5f);
}

TEST(Scanner, TheCursorStaysInTheText) {
    char text[] = "one two 3";
    ScanText scan;
    SCAN_init(&scan, text);
    int value = 7;
    char pair[] = "-+";
    EXPECT_EQ(scanp(&scan, "%c", pair), 1);
    EXPECT_STREQ(pair, "o+") << "no end behind characters";
    EXPECT_TRUE(SCAN_find(&scan, "two") && !SCAN_find(&scan, "four"));
    EXPECT_EQ(scanp(&scan, "two %d", &value), 1);
    SCAN_advance(&scan);
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
