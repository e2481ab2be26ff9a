#include "shell/menu.h"

#include "tests/shell/shell_fixture.h"

#include <deque>
#include <vector>

namespace {
/* Rows 1 to n, of values 101 on.  In mode 1 only the even ones are shown; a row that is asked for
 * separates. */
class Menu {
  public:
    explicit Menu(int n, int separator = 0) {
        add("Top", "top", 100, 1);
        for (int i = 1; i <= n; i++)
            add((i == separator ? "-" : "Label") + std::to_string(i), "r" + std::to_string(i),
                100 + i, i % 2 == 0);
        rows_.push_back({nullptr, nullptr, 0, {}});
    }
    const MenuItem *items() const { return rows_.data(); }

  private:
    void add(const std::string &label, const std::string &abbr, int value, int in_mode_1) {
        texts_.push_back(label);
        const char *label_text = texts_.back().c_str();
        texts_.push_back(abbr);
        rows_.push_back({label_text, texts_.back().c_str(), value, {1, in_mode_1, 2, 0}});
    }
    std::deque<std::string> texts_;
    std::vector<MenuItem> rows_;
};

std::string cell(int n, const char *label) {
    char text[80];
    snprintf(text, sizeof text, " %2d: %-30s", n, label);
    return text;
}
const std::string kSeparator = " --------------------               ";
} // namespace

TEST(Menu, ShowsOneOrTwoColumns) {
    fresh_shell();
    const auto show = [](const Menu &menu, int mode, int flags) {
        return output_of([&] { MENU_show("100%s", menu.items(), mode, flags); });
    };
    EXPECT_EQ(show(Menu(2, 2), 0, MENU_EXIT | MENU_BACK | MENU_HELP),
              "100%s\n" + cell(1, "Label1") + "\n" + kSeparator +
                  "\n 99: Help                          \n"
                  "  0: Top                           \n -1: Exit program                  \n\n");
    EXPECT_EQ(show(Menu(4), 1, MENU_EXIT), "100%s\n" + cell(1, "Label2") + "\n" +
                                               cell(2, "Label4") +
                                               "\n  0: Exit program                  \n\n");
    EXPECT_EQ(show(Menu(4), 2, MENU_BACK), "100%s\n  0: Top                           \n\n");
    EXPECT_EQ(show(Menu(4), 4, 0), "100%s\n\n");

    const std::string twelve = show(Menu(12), 0, 0);
    EXPECT_NE(twelve.find("Label1                        \n"), std::string::npos);
    const std::string odd = show(Menu(13, 2), 0, MENU_EXIT | MENU_BACK);
    EXPECT_TRUE(odd.starts_with("100%s\n" + cell(1, "Label1") + " " + cell(8, "Label8") + "\n" +
                                kSeparator + cell(9, "Label9") + "\n"))
        << odd;
    EXPECT_TRUE(odd.ends_with("\n" + cell(7, "Label7") + "\n" + cell(0, "Top") +
                              "  -1: Exit program                  \n\n"))
        << odd;
    const std::string even = show(Menu(14, 14), 0, 0);
    EXPECT_TRUE(even.ends_with("\n" + cell(7, "Label7") + " " + kSeparator + "\n\n")) << even;
}

TEST(Menu, TakesNumbersAbbreviationsAndLabels) {
    const int all = MENU_EXIT | MENU_BACK;
    const struct {
        const char *why, *typed;
        int mode, flags, value;
        const char *answer;
    } cases[] = {
        {"a number", "2\n", 0, 0, 102, "r2"},
        {"a number counts the shown rows", "2\n", 1, 0, 104, "r4"},
        {"a separator has a number", "3\n", 0, 0, 103, "r3"},
        {"an abbreviation", "R4\n", 0, 0, 104, "r4"},
        {"a label", "label4\n", 0, 0, 104, "r4"},
        {"a row that is not shown", "r3\n", 1, 0, MISSING, "r3"},
        {"row 0 by name", "TOP\n", 0, 0, 100, "top"},
        {"0 with the exit alone", "0\n", 0, MENU_EXIT, 0, "0"},
        {"-1 with both", "-1\n", 0, all, -1, "-1"},
        {"-1 with the return alone", "-1\n", 0, MENU_BACK, MISSING, "-1"},
        {"0 with neither", "0\n", 0, 0, MISSING, "0"},
        {"main", "MAIN\n", 0, all, 0, "MAIN"},
        {"main with the exit alone", "main\n", 0, MENU_EXIT, MISSING, "main"},
        {"too high a number", "5\n", 0, 0, MISSING, "5"},
        {"an endless number", "99999999999999999999\n", 0, 0, MISSING, "9999999999999999999"},
        {"a word of the caller's", "list\n", 0, all, MISSING, "list"},
        {"an empty line leaves the answer", "\n", 0, 0, 101, "r1"},
        {"a question and the end of the input", "?\n", 0, 0, 101, "r1"},
    };
    const Menu menu(4, 3);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        fresh_shell();
        const Typed typed(c.typed);
        std::string answer = "r1";
        int value = 0;
        output_of([&] { value = MENU_ask("", menu.items(), c.mode, "", &answer, c.flags); });
        EXPECT_EQ(value, c.value);
        EXPECT_EQ(answer, c.answer);
    }
    const Typed typed("?\n2\n");
    std::string answer = "?";
    const std::string text =
        output_of([&] { MENU_ask("", menu.items(), 1, "> ", &answer, MENU_EXIT); });
    EXPECT_NE(text.find("> top,r2,r4\n\n> "), std::string::npos) << text;
}

TEST(Menu, FindsRows) {
    const Menu menu(4);
    EXPECT_EQ(MENU_find("label4", menu.items()), 104);
    EXPECT_EQ(MENU_find("x", menu.items()), MISSING);
    EXPECT_STREQ(MENU_abbr(102, menu.items()), "r2");
    EXPECT_EQ(MENU_abbr(99, menu.items()), nullptr);
    EXPECT_EQ(MENU_enabled(103, menu.items(), 0) - MENU_enabled(103, menu.items(), 1), 1);
}
