#include "app/input.h"

#include "files/file_name.h"
#include "shell/message.h"
#include "shell/missing.h"
#include "shell/params.h"
#include "shell/resource.h"

#include <gtest/gtest.h>

namespace {

TEST(Input, WordsOfBothOptionsSelect) {
    struct Case {
        const char *why, *input, *in_file;
        int64_t code, converted, format;
        const char *convention, *source;
    };
    // Without a convention file the convention's key itself becomes the template.
    const Case cases[] = {
        {"nothing said", nullptr, nullptr, 31, MISSING, MISSING, "rad_cvt", "mdr"},
        {"input decides the type, in_file the convention all the same", "nids", "rad_raw", 33,
         MISSING, MISSING, "rad_raw", "mdr"},
        {"raw of input", "raw", nullptr, 31, 0, MISSING, "rad_dat", "mdr"},
        {"raw of in_file is another convention", nullptr, "RAWx", 31, 0, MISSING, "rad_raw", "mdr"},
        {"a word that holds lev2z", nullptr, "lev2z_mine", 38, MISSING, MISSING, "lev2z_mine",
         "mdr"},
        {"lev2 is not lev2z", nullptr, "lev2", 37, MISSING, MISSING, "lev2", "mdr"},
        {"input compares whole words", "lev2z_mine", nullptr, 31, MISSING, MISSING, "rad_cvt",
         "mdr"},
        {"lev2z of input", "LEV2Z", nullptr, 38, MISSING, MISSING, "lev2", "mdr"},
        {"mdr", nullptr, "mdr", 31, MISSING, MISSING, "rad_raw", "mdr"},
        {"rcm sets the tag", "rcm", nullptr, 31, MISSING, MISSING, "rcm_cvt", "rcm"},
        {"rcmsite does not", "rcmsite", nullptr, 35, MISSING, MISSING, "rcm_dat", "mdr"},
        {"later words overrule", "nids,kavrad", nullptr, 36, MISSING, MISSING, "kavrad", "mdr"},
        {"formats", nullptr, "nids_grd_qra", 33, MISSING, 3, "nids_grd_qra", "mdr"},
        {"netCDF", nullptr, "my.cdf", 31, MISSING, 12, "my.cdf", "mdr"},
        {"an unknown word names a convention", nullptr, "/data/%y.x", 31, MISSING, MISSING,
         "/data/%y.x", "mdr"},
        {"a converted site", "site,cvt", nullptr, 32, 1, MISSING, "rrwds", "mdr"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        RES_reset();
        FILE_name_reset();
        MSG_reset();
        MSG_set_levels("none");
        PAR_fill(MISSING);
        RES_set("name_conv", "/nowhere/at/all");
        if (c.input)
            RES_set("input", c.input);
        if (c.in_file)
            RES_set("in_file", c.in_file);
        RAD_select_input();
        EXPECT_EQ(PAR_get(PAR_INPUT), c.code);
        EXPECT_EQ(PAR_get(PAR_CONVERTED), c.converted);
        EXPECT_EQ(PAR_get(PAR_FORMAT), c.format);
        EXPECT_EQ(FILE_state().conv_input, c.convention);
        EXPECT_STREQ(FILE_get_source(), c.source);
    }
    RES_reset();
    FILE_name_reset();
    MSG_reset();
}

} // namespace
