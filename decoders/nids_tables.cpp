#include "decoders/nids_tables.h"

#include <algorithm>
#include <iterator>

namespace {
using F = NidsFields;
using L = NidsLevels;
using V = NidsValues;

constexpr unsigned kElevation = NIDS_SHOW_ELEVATION;
constexpr unsigned kPackedTilt = NIDS_SHOW_ELEVATION | NIDS_PACKED;
constexpr unsigned kPackedSum = NIDS_PACKED | NIDS_PER_CENT;
constexpr unsigned kRelative = NIDS_SHOW_ELEVATION | NIDS_HIDE_RANGE | NIDS_STORM_MOTION;

constexpr char kReflectivity[] = "Base reflectivity (Dbz)";
constexpr char kVelocity[] = "Base velocity (knt)";
constexpr char kWidth[] = "Base spectrum width (knt)";
constexpr char kComposite[] = "Comp reflectivity (Dbz)";
constexpr char kRelativeVelocity[] = "Stm rel mn rad velocity (knt)";
constexpr char kRain1[] = "Sfc 1 hr rainfall acc. (in)";
constexpr char kRain3[] = "Sfc 3 hr rainfall acc. (in)";
constexpr char kRainTotal[] = "Sfc storm total rainfall acc. (in)";

constexpr NidsProductRow kProducts[] = {
    {16, kReflectivity, 0.54f, 124, F::Elevation, V::Max0, kElevation},
    {17, kReflectivity, 1.08f, 248, F::Elevation, V::Max0, kElevation},
    {18, kReflectivity, 2.16f, 248, F::Elevation, V::Max0, kElevation},
    {19, kReflectivity, 0.54f, 124, F::Elevation, V::Max0, kElevation},
    {20, kReflectivity, 1.08f, 248, F::Elevation, V::Max0, kElevation},
    {21, kReflectivity, 2.16f, 248, F::Elevation, V::Max0, kElevation},
    {22, kVelocity, 0.135f, 31, F::ElevationMinMax, V::MinMax0, kElevation},
    {23, kVelocity, 0.27f, 62, F::ElevationMinMax, V::MinMax0, kElevation},
    {24, kVelocity, 0.54f, 124, F::ElevationMinMax, V::MinMax0, kElevation},
    {25, kVelocity, 0.135f, 31, F::ElevationMinMax, V::MinMax0, kElevation},
    {26, kVelocity, 0.27f, 62, F::ElevationMinMax, V::MinMax0, kElevation},
    {27, kVelocity, 0.54f, 124, F::ElevationMinMax, V::MinMax0, kElevation},
    {28, kWidth, 0.135f, 31},
    {29, kWidth, 0.27f, 62},
    {30, kWidth, 0.54f, 124, F::Elevation},
    {32, "Digital hyb reflectivity (Dbz)", 0.54f, 124, F::Max, V::Max0, NIDS_PACKED, L::Tenths},
    {35, kComposite, 0.54f, 124},
    {36, kComposite, 2.16f, 248},
    {37, kComposite, 0.54f, 124},
    {38, kComposite, 2.16f, 248},
    {41, "Echo tops (1000 ft)", 2.16f, 124},
    {48, "VAD wind profile (knt)", 512, 1, F::Max, V::Max0, NIDS_HIDE_RANGE},
    {55, kRelativeVelocity, 0.27f, 27, F::ElevationMinMax, V::MinMax0, kRelative},
    {56, kRelativeVelocity, 0.54f, 124, F::ElevationMinMax, V::MinMax0, kRelative},
    {57, "Vert int liquid (kg/m^3)", 2.16f, 124},
    {63, nullptr, MISSING_F, 0, F::Max, V::Max0, NIDS_LAYER},
    {64, nullptr, MISSING_F, 0, F::Max, V::Max0, NIDS_LAYER},
    {65, "Layer 1 comp refl (max Dbz)", 2.16f, 124, F::Max, V::Max0, NIDS_LAYER},
    {66, "Layer 2 comp refl (max Dbz)", 2.16f, 124, F::Max, V::Max0, NIDS_LAYER},
    {67, "Comp refl APR (Dbz)", 2.16f, 248},
    {78, kRain1, 1.08f, 124, F::MaxTenths, V::Max1},
    {79, kRain3, 1.08f, 124, F::MaxTenths, V::Max1},
    {80, kRainTotal, 1.08f, 124, F::MaxTenths, V::Max1, NIDS_BEGIN_P5},
    {81, "Digital precip array (in)", 0.0476f, 124, F::MaxTenths, V::Max1, 0, L::Thousandths},
    {89, nullptr, MISSING_F, 0, F::Max, V::Max0, NIDS_LAYER},
    {90, "Layer 3 comp refl (max Dbz)", 2.16f, 124, F::Max, V::Max0, NIDS_LAYER},
    {94, kReflectivity, 0.54f, 248, F::Elevation, V::Max0, kPackedTilt, L::Tenths},
    {99, kVelocity, 0.135f, 124, F::ElevationMinMax, V::MinMax0, kPackedTilt, L::Speeds},
    {134, "Digital vert int liquid (kg/m^3)", 0.54f, 248, F::Max, V::Max0, NIDS_PACKED, L::Liquid},
    {135, "Enh Echo tops (1000 ft)", 0.54f, 186, F::Max, V::Max0, NIDS_PACKED, L::Masked},
    {138, "Digital storm precip (in)", 1.08f, 124, F::MaxHundredths, V::Max2,
     NIDS_PACKED | NIDS_BEGIN_P1, L::Hundredths},
    {141, "Mesocyclone detection", 0.54f, 124},
    {158, nullptr, MISSING_F, 0, F::ElevationTenths, V::MinMax1, kElevation},
    {159, "Digital diff refl (dBZ)", 0.135f, 162, F::ElevationTenths, V::MinMax1, kPackedTilt,
     L::Float},
    {161, "Digital correl coeff", 0.135f, 162, F::Elevation, V::MinMax1, kPackedTilt, L::Float},
    {163, "Digital spec diff phase (Deg/km)", 0.135f, 124, F::Elevation, V::Max0, kPackedTilt,
     L::Float},
    {165, "Digital hydro class", 0.135f, 162, F::Elevation, V::None, kPackedTilt, L::Float},
    {166, "Melting layer", 0.135f, 124},
    {169, "1 hr accum", 1.08f, 124, F::MaxTenths, V::Max1},
    {170, "Digital accum array (in)", 0.135f, 124, F::MaxTenths, V::Max1, kPackedSum, L::Float},
    {171, "Storm total accum", 1.08f, 124, F::MaxTenths, V::Max1, NIDS_BEGIN_P1 | NIDS_PER_CENT},
    {172, "Digital storm total accum (in)", 0.135f, 124, F::MaxTenths, V::Max1,
     kPackedSum | NIDS_BEGIN_P1, L::Float},
    {173, nullptr, MISSING_F, 0, F::MaxTenths, V::Max1, kPackedSum, L::Float},
    {174, "Digital 1 hr diff accum (in)", 0.135f, 124, F::MaxTenths, V::Max1, kPackedSum, L::Float},
    {175, "Digital storm total diff accum (in)", 0.135f, 124, F::Difference, V::MinMax2,
     kPackedSum | NIDS_BEGIN_P1, L::Float},
    {176, "Digital instant prec rate (in/hr)", 0.135f, 124, F::Max, V::Max0, NIDS_PACKED, L::Float},
    {177, "Hybrid hydro class", 0.135f, 124, F::Max, V::None, NIDS_PACKED, L::Float},
    {181, kReflectivity, 0.08f, 48, F::Elevation, V::Max0, kElevation},
    {182, kVelocity, 0.08f, 48, F::ElevationMinMax, V::MinMax0, kPackedTilt, L::Speeds},
    {186, kReflectivity, 0.16f, 224, F::Max, V::Max0, NIDS_PACKED, L::Airport},
    {220, kRain1, 1.08f, 124, F::MaxTenths, V::Max1},
    {221, kRain3, 1.08f, 124, F::MaxTenths, V::Max1},
    {222, kRainTotal, 1.08f, 124, F::MaxTenths, V::Max1, NIDS_BEGIN_P5},
};
constexpr NidsProductRow kNoProduct = {MISSING, nullptr, MISSING_F, 0};

constexpr bool before(const NidsProductRow &row, int code) { return row.code < code; }
static_assert(std::adjacent_find(std::begin(kProducts), std::end(kProducts),
                                 [](const NidsProductRow &a, const NidsProductRow &b) {
                                     return a.code >= b.code;
                                 }) == std::end(kProducts),
              "products are sought by their order");

constexpr char kMosaicBase[] = "Base reflectivity (Dbz)";
constexpr char kMosaicComposite[] = "Composite reflectivity (Dbz)";
constexpr char kWinter[] = "Winter reflectivity (Dbz)";
constexpr char kHour[] = "Sfc 1 hr precipitation (in)";
constexpr char kSince12[] = "Sfc precipitation since 12Z (in)";
constexpr char kDay[] = "Sfc 24 hr precipitation (in)";
constexpr char kLiquid[] = "Vert int liquid (kg/m^3)";

/* The first row that holds the code decides. */
constexpr NidsMosaicRow kMosaics[] = {
    {6, 6, "WARP Comp reflectivity (Dbz)", 4},
    {30, 30, kMosaicComposite, 4},
    {28, 65, kMosaicComposite, MISSING_F},
    {90, 90, kHour, 4},
    {91, 91, kHour, 8},
    {95, 95, "Echo tops (ft)", 4},
    {96, 96, "Echo tops (ft)", 8},
    {101, 101, kSince12, 4},
    {102, 102, kDay, 4},
    {103, 103, kMosaicComposite, 4},
    {104, 104, kMosaicComposite, MISSING_F},
    {105, 105, kSince12, 2},
    {106, 106, kDay, 2},
    {107, 107, kSince12, 8},
    {108, 108, kDay, 8},
    {137, 140, kMosaicBase, 2},
    {141, 141, kMosaicBase, 4},
    {142, 142, kMosaicBase, 8},
    {143, 144, kMosaicBase, MISSING_F},
    {148, 148, kLiquid, 4},
    {149, 149, kLiquid, 8},
    {180, 180, kMosaicBase, 2},
    {199, 199, kWinter, 1},
    {200, 200, kWinter, 2},
    {201, 201, nullptr, 4},
    {202, 202, nullptr, 8},
    {203, 203, "Reflectivity at Lowest Alt (Dbz)", 1},
    {209, 209, kLiquid, 1},
    {210, 210, "Echo tops-18dBZ (ft)", 1},
    {211, 211, kMosaicComposite, 1},
    {212, 212, "Echo tops-30dBZ (ft)", 1},
};
constexpr NidsMosaicRow kNoMosaic = {MISSING, MISSING, nullptr, MISSING_F};
} // namespace

const NidsProductRow &NIDS_product_row(int code) {
    const auto *row = std::lower_bound(std::begin(kProducts), std::end(kProducts), code, before);
    return row != std::end(kProducts) && row->code == code ? *row : kNoProduct;
}

const NidsMosaicRow &NIDS_mosaic_row(int code) {
    const auto *row =
        std::find_if(std::begin(kMosaics), std::end(kMosaics),
                     [code](const NidsMosaicRow &m) { return code >= m.first && code <= m.last; });
    return row != std::end(kMosaics) ? *row : kNoMosaic;
}
