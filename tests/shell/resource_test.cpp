#include "shell/resource.h"

#include "tests/shell/shell_fixture.h"

TEST(Resource, HoldsReplacesAndAppends) {
    fresh_shell();
    EXPECT_EQ(RES_get("a"), nullptr);
    RES_set("a", nullptr);
    EXPECT_STREQ(RES_get("a"), "");
    RES_append(3, "a", "one", OPT_LIST); // the first text of a resource without one
    RES_append(3, "a", "two,three", OPT_LIST);
    EXPECT_STREQ(RES_get("a"), "one\ntwo,three");
    EXPECT_EQ(ResList("a").count, 2) << "the entry keeps the type of its first coming";
    RES_add(3, "a", RES_get("a"), OPT_LIST); // its own text
    const ResList list("a");
    ASSERT_EQ(list.count, 2);
    EXPECT_STREQ(list[1], "two,three");
    EXPECT_EQ(ResList("A").count, 0) << "names compare exactly";
    const char *kept = RES_get("a");
    for (int i = 0; i < 100; i++)
        RES_set(("free" + std::to_string(i)).c_str(), "x");
    EXPECT_EQ(RES_get("a"), kept) << "texts stay where they are";
}

TEST(Resource, ConvertsNumbers) {
    const struct {
        const char *text;
        int type;
        int64_t value; // 7 is what was there
    } cases[] = {
        {"12", OPT_INT, 12},     {"-12", OPT_INT, -12},
        {"+3x", OPT_INT, 3},     {"0x1F", OPT_INT, 31},
        {"abc", OPT_INT, 7},     {"0xffffffff", OPT_INT, -1},
        {"-4", OPT_SHORT, 7},    {"40000", OPT_SHORT, 40000 - 65536},
        {"-4", OPT_LONG, 7},     {"12345678901", OPT_LONG, 12345678901},
        {"-4", OPT_LONGINT, -4}, {"abc", OPT_LONGINT, 0},
        {"", OPT_INT, 7},        {"YES", OPT_BOOL, 1},
        {"off", OPT_BOOL, 0},    {"maybe", OPT_BOOL, 7},
        {nullptr, OPT_BOOL, 1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text ? c.text : "null");
        int32_t whole = 7;
        int16_t narrow = 7;
        int64_t wide = 7;
        const bool is_wide = c.type == OPT_LONG || c.type == OPT_LONGINT;
        void *dest = c.type == OPT_SHORT ? static_cast<void *>(&narrow)
                     : is_wide           ? static_cast<void *>(&wide)
                                         : &whole;
        EXPECT_EQ(RES_convert(c.text, dest, c.type), 1);
        EXPECT_EQ(c.type == OPT_SHORT ? narrow : is_wide ? wide : whole, c.value);
        EXPECT_EQ(RES_convert(c.text, nullptr, c.type), 0);
    }
    float scale = 7;
    RES_set("scale", "1.25x");
    EXPECT_EQ(RES_get_value("scale", &scale, OPT_FLOAT), 1);
    EXPECT_EQ(scale, 1.25f);
    EXPECT_EQ(RES_convert(nullptr, &scale, OPT_FLOAT), 0);
    EXPECT_EQ(RES_get_value("scale", nullptr, OPT_FLOAT), 0);
    EXPECT_EQ(RES_get_value("absent", &scale, OPT_BOOL), 0);
}

TEST(Resource, ConvertsTexts) {
    fresh_shell();
    for (const auto &[text, ends] : {std::pair{"/a/b", "/a/b/"}, {"b/", "b/"}, {"None", ""}}) {
        std::string path = "before";
        EXPECT_EQ(RES_convert(text, &path, OPT_PATH), 1);
        EXPECT_EQ(path, ends);
    }
    char copy[RES_COPY_SIZE + 1];
    copy[RES_COPY_SIZE] = 'x';
    testing::internal::CaptureStderr();
    RES_convert(std::string(1000, 'y').c_str(), copy, OPT_COPY);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(copy, std::string(RES_COPY_SIZE - 1, 'y'));
    EXPECT_EQ(copy[RES_COPY_SIZE], 'x');
}

TEST(Resource, WordsReachTheirSlots) {
    const struct {
        int type;
        const char *text;
        int slot;
        int64_t value;
    } cases[] = {
        {OPT_FILEPARAM, "Reuse", PAR_FILE_MODE, 3},
        {OPT_FILEPARAM, "recalc", PAR_FILE_MODE, 1},
        {OPT_FILEPARAM, "app", PAR_FILE_MODE, 2},
        {OPT_FILEPARAM, "append", PAR_FILE_MODE, -9999},
        {OPT_PLOTTYPE, "LCF", PAR_PLOT_TYPE, 16},
        {OPT_PLOTTYPE, "gvalue", PAR_PLOT_TYPE, 17},
        {OPT_PLOTTYPE, "stream", PAR_PLOT_TYPE, 23},
        {OPT_PLOTTYPE, "none", PAR_PLOT_TYPE, 99},
        {OPT_PLOTTYPE, "blob", PAR_PLOT_TYPE, -9999},
        {OPT_BATCH, nullptr, PAR_BATCH, 1},
        {OPT_HELP, nullptr, PAR_HELP, 1},
        {OPT_PLOTTYPE, nullptr, PAR_PLOT_TYPE, -9999},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text ? c.text : "null");
        fresh_shell();
        RES_convert(c.text, nullptr, c.type);
        EXPECT_EQ(PAR_get(c.slot), c.value);
    }
    EXPECT_EQ(PAR_get(30), 0);
    EXPECT_EQ(PAR_set(-1, 5), -1);
}

TEST(Resource, AnExplicitLevelWinsOverBatchInEitherOrder) {
    for (const bool batch_first : {true, false}) {
        fresh_shell();
        RES_add(0, batch_first ? "batch" : "message", batch_first ? nullptr : "out1",
                batch_first ? OPT_BATCH : OPT_MESSAGE);
        RES_add(1, batch_first ? "message" : "batch", batch_first ? "out1" : nullptr,
                batch_first ? OPT_MESSAGE : OPT_BATCH);
        RES_add(MISSING, "free", "debug", OPT_MESSAGE); // never converted
        RES_convert_all();
        EXPECT_EQ(MSG_get_mask(), 0xffffu);
    }
    fresh_shell();
    RES_convert(nullptr, nullptr, OPT_BATCH);
    EXPECT_EQ(MSG_get_mask(), 0xffu);
}

TEST(Resource, ConvertersAreLentFromAbove) {
    fresh_shell();
    int seen = 0;
    const ResConverter note = [](const char *value, void *dest) {
        PAR_set(PAR_DOMAIN, value[0]);
        return dest ? 43 : 2;
    };
    for (const int type : {OPT_HOUR, OPT_REGION, OPT_DOMAIN, OPT_DEVICE}) {
        EXPECT_EQ(RES_convert("us", &seen, type), 0);
        RES_set_converter(type, note);
        EXPECT_EQ(RES_convert("us", &seen, type), 43);
        EXPECT_EQ(RES_convert(nullptr, &seen, type), 0);
        EXPECT_EQ(RES_convert("us", nullptr, type), type == OPT_HOUR ? 2 : 0);
    }
    EXPECT_EQ(PAR_get(PAR_DOMAIN), 'u');
}

TEST(DrawList, NamesWhatIsDrawn) {
    const struct {
        const char *why, *text;
        int parts[DRAW_PARTS];
    } cases[] = {
        {"a bare list names all that is drawn",
         "Data,map",
         {0, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 2}},
        {"text brings the border", "text", {6, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 1, 13}},
        {"a sign keeps the others", "-text_ul", {5, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 15}},
        {"none forgets its sign", "+none,+grid", {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1}},
        {"so does all", "-all", {6, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 17}},
        {"a later bare word adds", "-bord,sum", {6, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 16}},
        {"an unknown first word clears", "borders", {}},
        {"no text changes nothing", "", {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        DRAW_reset();
        DRAW_parse(c.text);
        for (int i = 0; i < DRAW_PARTS; i++)
            EXPECT_EQ(DRAW_get(i), c.parts[i]) << "entry " << i;
    }
    DRAW_set(DRAW_PARTS, 5);
    EXPECT_EQ(DRAW_get(DRAW_PARTS) + DRAW_get(-1), 0);
}
