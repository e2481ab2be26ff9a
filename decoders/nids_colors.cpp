#include "decoders/nids_colors.h"

#include "decoders/nids_record.h"
#include "decoders/radar_colors.h"
#include "plot/levels.h"
#include "shell/resource.h"

namespace {

constexpr const char *kReflectivity = "-100:off,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:"
                                      "lgreen,35:brown,40:yellow,45:red,50:lred,"
                                      "55:magenta,60:lmagenta,65:dgray,70:lgray,75:white";
constexpr const char *kSixteen = "off,blue,lblue,cyan,lcyan,green,lgreen,brown,yellow,red,lred,"
                                 "magenta,lmagenta,dgray,lgray,white";
constexpr const char *kProfile = "lblue,lcyan,lgreen,yellow,lred";
constexpr const char *kRain = "0.01:blue,.1:lblue,.2:cyan,.5:lcyan,.8:green,1.0:lgreen,1.2:brown,"
                              "1.5:yellow,1.8:red,2.0:lred,2.5:magenta,3.0:lmagenta,4.0:dgray,"
                              "6.0:lgray,8.0:white";
constexpr const char *kStormVelocity =
    "-50:lblue,-40:cyan,-30:lcyan,-22:green,-10:lgreen,-5:dgray,-1:off,0:lgray,5:yellow,10:brown,"
    "22:lred,30:red,40:lmagenta,50:magenta";
constexpr const char *kLiquid =
    "-100:off,0:blue,5:lblue,10:cyan,15:lcyan,20:green,25:lgreen,30:brown,35:yellow,40:red,45:lred,"
    "50:magenta,55:lmagenta,60:dgray,65:lgray,70:white";
constexpr const char *kDifferential =
    "-7.0:blue,-6.3:lblue,-4.9:cyan,-3.5:lcyan,-2.5:green,-1.9:lgreen,-.9:dgray,0:off,.1:lgray,"
    "1.0:yellow,2.0:brown,2.6:lred,3.6:red,5.0:lmagenta,6.4:magenta";
constexpr const char *kAccumulation =
    "-100:off,.01:blue,.05:lblue,.1:cyan,.25:lcyan,.5:green,.75:lgreen,1:brown,1.25:yellow,1.5:red,"
    "2:lred,2.5:magenta,3:lmagenta,4:dgray,6:lgray,8:white";
constexpr const char *kClasses = "-100:off,10:magenta,20:lmagenta,30:cyan,40:blue,50:lblue,60:"
                                 "dgreen,70:green,80:lgreen,90:lcyan,"
                                 "100:red,140:dgray,150:lgray";
constexpr const char *kCorrelation =
    "-200:off,-1.:blue,-.8:lblue,-.6:cyan,-.4:lcyan,-.2:green,0:yellow,.2:brown,.4:lred,.6:red,"
    ".8:lmagenta,1.:magenta";

constexpr float kFlags[] = {-100.0f, -95.0f, -90.0f}; // of velocities: no wind was found

enum class Levels {
    Text,      // the colour string holds them
    Threshold, // the product's own
    Steps,     // computed: base 0, interval 4, up to 16
};

/* Codes first to last.  The first row that holds the product's code decides. */
struct ColorRow {
    int first, last;
    Levels levels;
    const char *colors;
    bool inbound = false; // values below the first level take its colour
};
constexpr ColorRow kColors[] = {
    {32, 32, Levels::Text, kReflectivity},
    {94, 94, Levels::Text, kReflectivity},
    {186, 186, Levels::Text, kReflectivity},
    {48, 48, Levels::Steps, kProfile},
    {81, 81, Levels::Text, kRain},
    {138, 138, Levels::Text, kRain},
    {55, 56, Levels::Text, kStormVelocity, true},
    {134, 135, Levels::Text, kLiquid},
    {22, 27, Levels::Text, RADAR_VELOCITY_COLORS, true},
    {99, 99, Levels::Text, RADAR_VELOCITY_COLORS, true},
    {182, 182, Levels::Text, RADAR_VELOCITY_COLORS, true},
    {158, 159, Levels::Text, kDifferential},
    {170, 176, Levels::Text, kAccumulation},
    {165, 165, Levels::Text, kClasses},
    {177, 177, Levels::Text, kClasses},
    {161, 161, Levels::Text, kCorrelation},
    {163, 163, Levels::Text, kCorrelation},
};
constexpr ColorRow kOthers = {0, 0, Levels::Threshold, kSixteen};

const ColorRow &row_of(int code) {
    for (const ColorRow &row : kColors)
        if (code >= row.first && code <= row.last)
            return row;
    return kOthers;
}

/* The product's levels as far as they rise: a product of eight levels ends early. */
void set_thresholds(const float thresholds[16]) {
    int n = 1;
    while (n < 16 && thresholds[n] > thresholds[n - 1])
        n++;
    CONT_set_levels(thresholds, n);
}

void set_steps() {
    CONT_clear_levels();
    CONT_set_interval(4.0f);
    CONT_set_base(0.0f);
    CONT_set_range(16.0f, 0.0f);
}

} // namespace

void NIDS_choose_colors() {
    const NidsProduct *product = NIDS_product();
    const ColorRow &row = row_of(product->code);
    CONT_clear_fill_colors();
    CONT_clear_levels();
    if (row.levels == Levels::Threshold)
        set_thresholds(product->thresholds);
    if (row.levels == Levels::Steps)
        set_steps();
    if (row.inbound)
        RADAR_use_wind_colors(row.colors, kFlags);
    else
        RADAR_use_colors(row.colors);
    RADAR_check_interval();
}
