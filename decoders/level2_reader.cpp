#include "decoders/level2_reader.h"

#include "decoders/level2_stream.h"
#include "decoders/radar_spacing.h"
#include "files/file_name.h"
#include "plot/city.h"
#include "plot/levels.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>
#include <string>

namespace {
constexpr uint32_t kTrace = MSG_DEBUG_C;
constexpr uint32_t kTraceField = MSG_DEBUG_D;
constexpr int kOtherSize = 2420;    // bytes of a message of any type but 31, whatever it says
constexpr int kDataOffset = 16;     // pointers of a message count from here
constexpr int kPointersOffset = 48; // of message 31
constexpr int kMostPointers = 32;   // radars send up to ten
constexpr int kMomentCount = 3;     // Lev2Moment
constexpr float kBelow = -100.0f;   // below threshold, and where there is no gate
constexpr float kFolded = -90.0f;   // folded in range
constexpr float kSpacing = 0.54f;   // nautical miles of a domain, 1 km
constexpr float kMostRange = 1e6f;  // km of a domain

/* What a byte of a moment stands for: (byte - offset) / scale. */
struct Scaling {
    float scale = 0.0f; // 0 while none was sent
    float offset = 0.0f;
    bool operator==(const Scaling &) const = default;
};

/* What is known of the archive now open. */
struct Archive {
    int message_type = 0;            // of the message in hand
    int size = 0;                    // of it, bytes
    int pointers[kMomentCount] = {}; // in it
    Scaling scaling[kMomentCount];
    bool warned = false;
};

struct Reader {
    Archive archive;
    bool compressed = false;
    std::string name;
    Lev2Volume volume;
    std::optional<Scaling> tabled; // what values were worked out for
    float values[256] = {};        // of the bytes of the moment selected
};
Reader reader;
Lev2Window *const window = LEV2_gate_window();

// ---- Fields ----

enum class Wire { U8, S8, U16, S32, Ieee };

/* One field; one of the two places is set. */
struct Field {
    int at; // bytes
    Wire wire;
    int Lev2Radial::*as_int;
    float Lev2Radial::*as_float = nullptr; // the sent value over one number and times another
    float over = 1.0f, times = 1.0f;
};
constexpr Field scaled(int at, float Lev2Radial::*place, float over, float times = 1.0f) {
    return {at, Wire::U16, nullptr, place, over, times};
}
constexpr Field ieee(int at, float Lev2Radial::*place) { return {at, Wire::Ieee, nullptr, place}; }

constexpr int width(const Field &field) {
    switch (field.wire) {
    case Wire::U8:
    case Wire::S8:
        return 1;
    case Wire::U16:
        return 2;
    case Wire::S32:
    case Wire::Ieee:
        return 4;
    }
    return 0;
}

template <size_t N>
constexpr int end_of(const Field (&fields)[N]) {
    return fields[N - 1].at + width(fields[N - 1]);
}

template <size_t N>
constexpr bool in_order(const Field (&fields)[N]) {
    for (size_t i = 0; i + 1 < N; i++)
        if (fields[i].at + width(fields[i]) > fields[i + 1].at)
            return false;
    return true;
}

using R = Lev2Radial;
constexpr float kAngle = 0.043945312f; // degrees of an eighth of a count

/* From the message header, behind the prefix.  The size, at 0, is read by itself. */
constexpr Field kHeader[] = {
    {3, Wire::S8, &R::message_type}, {4, Wire::U16, &R::sequence},  {6, Wire::U16, &R::date},
    {8, Wire::S32, &R::time},        {12, Wire::U16, &R::segments}, {14, Wire::U16, &R::segment},
};
static_assert(end_of(kHeader) == LEV2_MESSAGE_HEADER);

/* Message 1, from the same place.  The ranges of the first gates are cut to whole kilometres. */
constexpr Field kMessage1[] = {
    {16, Wire::S32, &R::ray_time},
    {20, Wire::U16, &R::ray_date},
    scaled(22, &R::unambiguous_range, 10.0f),
    scaled(24, &R::azimuth, 8.0f, kAngle),
    {26, Wire::U16, &R::azimuth_number},
    {28, Wire::U16, &R::radial_status},
    scaled(30, &R::elevation, 8.0f, kAngle),
    {32, Wire::U16, &R::elevation_number},
    scaled(34, &R::ref_first, 1000.0f),
    scaled(36, &R::vel_first, 1000.0f),
    scaled(38, &R::ref_gate, 1000.0f),
    scaled(40, &R::vel_gate, 1000.0f),
    {42, Wire::U16, &R::ref_gates},
    {44, Wire::U16, &R::vel_gates},
    {46, Wire::U16, &R::sector},
    {52, Wire::U16, &R::ref_ptr},
    {54, Wire::U16, &R::vel_ptr},
    {56, Wire::U16, &R::spw_ptr},
    scaled(58, &R::velocity_resolution, 1.0f),
    {60, Wire::U16, &R::vcp},
    scaled(78, &R::nyquist, 100.0f),
    scaled(80, &R::attenuation, 1000.0f),
    scaled(82, &R::threshold, 10.0f),
};

/* Message 31, from the same place.  radar_id, at 16, and the code of the azimuth resolution, at 36,
 * are read by themselves. */
constexpr Field kMessage31[] = {
    {20, Wire::S32, &R::ray_time},       {24, Wire::U16, &R::ray_date},
    {26, Wire::U16, &R::azimuth_number}, ieee(28, &R::azimuth),
    {32, Wire::U8, &R::compression},     {34, Wire::U16, &R::radial_length},
    {37, Wire::U8, &R::radial_status},   {38, Wire::U8, &R::elevation_number},
    {39, Wire::U8, &R::sector},          ieee(40, &R::elevation),
    {44, Wire::U8, &R::spot_blanking},   {45, Wire::U8, &R::azimuth_indexing},
    {46, Wire::U16, &R::block_count},    {kPointersOffset, Wire::S32, &R::vol_ptr},
    {52, Wire::S32, &R::elv_ptr},        {56, Wire::S32, &R::rad_ptr},
    {60, Wire::S32, &R::ref_ptr},        {64, Wire::S32, &R::vel_ptr},
    {68, Wire::S32, &R::spw_ptr},
};
static_assert(in_order(kHeader) && in_order(kMessage1) && in_order(kMessage31));

/* Blocks of message 31, from their own start. */
constexpr Field kVolumeBlock[] = {
    ieee(8, &R::latitude),
    ieee(12, &R::longitude),
    {16, Wire::U16, &R::height},
    {40, Wire::U16, &R::vcp},
};
constexpr Field kElevationBlock[] = {scaled(6, &R::attenuation, 1000.0f)};
constexpr Field kRadialBlock[] = {scaled(16, &R::nyquist, 100.0f)};
constexpr Field kReflectivityBlock[] = {
    {8, Wire::U16, &R::ref_gates},
    scaled(10, &R::ref_first, 1000.0f),
    scaled(12, &R::ref_gate, 1000.0f),
};
constexpr Field kVelocityBlock[] = {
    {8, Wire::U16, &R::vel_gates},
    scaled(10, &R::vel_first, 1000.0f),
    scaled(12, &R::vel_gate, 1000.0f),
};
static_assert(in_order(kVolumeBlock));

/* Every block bears a name behind its first byte; that of a moment ends in gates. */
struct MomentRow {
    char name[4];
    int Lev2Radial::*pointer;
    std::span<const Field> fields;
};
constexpr MomentRow kMoments[] = {
    {"REF", &R::ref_ptr, kReflectivityBlock},
    {"VEL", &R::vel_ptr, kVelocityBlock},
    {"SW ", &R::spw_ptr, {}},
    {"ZDR", nullptr, {}},
    {"PHI", nullptr, {}},
    {"RHO", nullptr, {}},
    {"CFP", nullptr, {}},
};
constexpr int kNameEnd = 4;
constexpr int kScaleAt = 20, kOffsetAt = 24;
constexpr int kGatesAt = 28;
static_assert(end_of(kReflectivityBlock) <= kGatesAt && end_of(kVelocityBlock) <= kGatesAt);

uint32_t big_endian(const uint8_t *bytes, int count) {
    uint32_t value = 0;
    for (int i = 0; i < count; i++)
        value = value << 8 | bytes[i];
    return value;
}

float ieee_at(const uint8_t *bytes) { return std::bit_cast<float>(big_endian(bytes, 4)); }

/* False for a float that is no number. */
bool take_field(const uint8_t *bytes, const Field &field, Lev2Radial *radial) {
    const uint32_t raw = big_endian(bytes + field.at, width(field));
    if (field.wire == Wire::Ieee) {
        radial->*field.as_float = std::bit_cast<float>(raw);
        return std::isfinite(radial->*field.as_float);
    }
    if (field.as_float)
        radial->*field.as_float = float(raw) / field.over * field.times;
    else
        radial->*field.as_int = field.wire == Wire::S8 ? int8_t(raw) : int32_t(raw);
    return true;
}

bool take_fields(const uint8_t *bytes, std::span<const Field> fields, Lev2Radial *radial) {
    return std::ranges::all_of(
        fields, [&](const Field &field) { return take_field(bytes, field, radial); });
}

/* Fields that stand at an offset in the message.  False when they do not. */
template <size_t N>
bool read_fields(int offset, const Field (&fields)[N], Lev2Radial *radial) {
    const uint8_t *const bytes = LEV2_message_bytes(offset, end_of(fields));
    return bytes && take_fields(bytes, fields, radial);
}

// ---- Messages ----

bool read_head(Lev2Radial *radial) {
    Archive &archive = reader.archive;
    const uint8_t *const bytes = LEV2_message_bytes(0, LEV2_MESSAGE_HEADER);
    if (!bytes || !take_fields(bytes, kHeader, radial))
        return false;
    archive.message_type = radial->message_type;
    archive.size = radial->message_type == 31 ? 2 * int(big_endian(bytes, 2)) : kOtherSize;
    MSG_print(kTrace, "Block-type: %d size: %d seq: %d seg: %d nseg: %d\n", radial->message_type,
              archive.size, radial->sequence, radial->segment, radial->segments);
    return LEV2_set_message_size(archive.size);
}

bool read_message1(Lev2Radial *radial) {
    if (!read_fields(0, kMessage1, radial))
        return false;
    radial->azimuth_resolution = 1.0f;
    radial->ref_first = std::trunc(radial->ref_first);
    radial->vel_first = std::trunc(radial->vel_first);
    Scaling *const scaling = reader.archive.scaling;
    scaling[LEV2_REFLECTIVITY] = {2.0f, 66.0f};
    scaling[LEV2_VELOCITY] = {radial->velocity_resolution == 2.0f ? 2.0f : 1.0f, 129.0f};
    scaling[LEV2_SPECTRUM_WIDTH] = {2.0f, 129.0f};
    return std::max({radial->ref_ptr, radial->vel_ptr, radial->spw_ptr}) < kOtherSize - kDataOffset;
}

/* True when a block can begin where a pointer of the message leads to. */
bool is_inside(int pointer) {
    return pointer > 0 && pointer <= reader.archive.size - kDataOffset - kNameEnd;
}

/* Offset in the message; one outside of it for a pointer that leads nowhere. */
int offset_of(int pointer) { return is_inside(pointer) ? kDataOffset + pointer : -1; }

/* The row of the moment whose block lies there; -1 when it bears none of the names, or is not
 * there. */
int moment_at(int pointer) {
    if (!is_inside(pointer))
        return -1;
    const uint8_t *const bytes = LEV2_message_bytes(offset_of(pointer), kNameEnd);
    const auto *row = std::ranges::find_if(kMoments, [&](const MomentRow &moment) {
        return bytes && memcmp(bytes + 1, moment.name, 3) == 0;
    });
    return row == std::end(kMoments) ? -1 : int(row - kMoments);
}

/* Pointer to the block of that name, 0 without one. */
int find_block(int moment, int block_count) {
    for (int i = 0; i < std::min(block_count, kMostPointers); i++) {
        const uint8_t *const bytes = LEV2_message_bytes(kPointersOffset + 4 * i, 4);
        if (!bytes)
            return 0;
        const int pointer = int(big_endian(bytes, 4));
        if (moment_at(pointer) == moment)
            return pointer;
    }
    return 0;
}

/* The pointers to moments stand one after another, so where one was not measured the others, or
 * polarimetric ones, stand in its place. */
void settle_pointer(int moment, Lev2Radial *radial) {
    int &pointer = radial->*kMoments[moment].pointer;
    const int found = pointer == 0 ? -1 : moment_at(pointer);
    if (pointer == 0 || (found >= 0 && found != moment))
        pointer = find_block(moment, radial->block_count);
}

template <size_t N>
bool read_block(int pointer, const Field (&fields)[N], Lev2Radial *radial) {
    return pointer == 0 || read_fields(offset_of(pointer), fields, radial);
}

/* False when its bytes have no values, too. */
bool read_moment(int moment, Lev2Radial *radial) {
    const MomentRow &row = kMoments[moment];
    const int pointer = radial->*row.pointer;
    if (pointer == 0)
        return true;
    const uint8_t *const bytes =
        LEV2_message_bytes(offset_of(pointer), row.fields.empty() ? kNameEnd : kGatesAt);
    if (!bytes || !take_fields(bytes, row.fields, radial))
        return false;
    if (row.fields.empty())
        return true;
    const Scaling scaling = {ieee_at(bytes + kScaleAt), ieee_at(bytes + kOffsetAt)};
    reader.archive.scaling[moment] = scaling;
    return std::isfinite((2.0f - scaling.offset) / scaling.scale) &&
           std::isfinite((255.0f - scaling.offset) / scaling.scale);
}

bool read_message31(Lev2Radial *radial) {
    radial->ref_gates = radial->vel_gates = MISSING;
    radial->ref_first = radial->vel_first = MISSING_F;
    radial->ref_gate = radial->vel_gate = MISSING_F;
    const uint8_t *const bytes = LEV2_message_bytes(0, end_of(kMessage31));
    if (!bytes || !take_fields(bytes, kMessage31, radial))
        return false;
    memcpy(radial->radar_id, bytes + 16, 4);
    radial->azimuth_resolution = bytes[36] == 1 ? 0.5f : 1.0f;
    bool good = read_block(radial->vol_ptr, kVolumeBlock, radial) &&
                read_block(radial->elv_ptr, kElevationBlock, radial) &&
                read_block(radial->rad_ptr, kRadialBlock, radial);
    for (int moment = 0; good && moment < kMomentCount; moment++) {
        settle_pointer(moment, radial);
        good = read_moment(moment, radial);
    }
    return good;
}

bool read_data(Lev2Radial *radial) {
    if (radial->message_type != 1 && radial->message_type != 31)
        return true;
    if (radial->message_type == 1 ? !read_message1(radial) : !read_message31(radial))
        return false;
    for (int moment = 0; moment < kMomentCount; moment++)
        reader.archive.pointers[moment] = radial->*kMoments[moment].pointer;
    MSG_print(kTraceField, "Rad azimuth: %.2f\n", double(radial->azimuth));
    MSG_print(kTraceField, "Elev ang: %.2f\n", double(radial->elevation));
    return true;
}

/* A picture of a part of the data does not show that there were more. */
void warn_once() {
    if (!LEV2_stream_failed() || reader.archive.warned)
        return;
    MSG_print(MSG_WARN, "LEV2_read_header: Unable to read on in file:%s\n", reader.name.c_str());
    reader.archive.warned = true;
}

// ---- Volume ----

/* Old archives name no radar. */
void take_letters(const uint8_t letters[3], char radar[4]) {
    int n = 0;
    while (n < 3 && isalnum(letters[n])) {
        radar[n] = char(letters[n]);
        n++;
    }
    radar[n] = '\0';
    const char *name = n == 0 ? RES_get("identifier") : nullptr;
    if (name)
        snprintf(radar, 4, "%.3s", strlen(name) == 4 ? name + 1 : name);
}

/* Days count from 1 January 1970, which is day 1. */
void take_time(const uint8_t bytes[8], Lev2Volume *volume) {
    const int64_t seconds =
        (int64_t(big_endian(bytes, 4)) - 1) * 86400 + big_endian(bytes + 4, 4) / 1000;
    DT_from_seconds(&seconds, &volume->start_time);
    DateTime shown = volume->start_time; // formatting may change it
    std::string text;
    DT_format(&shown, &text);
    snprintf(volume->time_text, sizeof volume->time_text, "%s", text.c_str());
    constexpr int32_t DateTime::*kFields[] = {&DateTime::year, &DateTime::month, &DateTime::day,
                                              &DateTime::hour, &DateTime::minute};
    for (int32_t DateTime::*const field : kFields)
        if (volume->plot_time.*field == MISSING)
            volume->plot_time.*field = volume->start_time.*field;
}

/* Values of all bytes of a moment.  Without a scaling there are none. */
void tabulate(const Scaling &scaling) {
    float *const values = reader.values;
    values[0] = kBelow;
    values[1] = kFolded;
    for (int byte = 2; byte < 256; byte++)
        values[byte] =
            scaling.scale == 0.0f ? kBelow : (float(byte) - scaling.offset) / scaling.scale;
    reader.tabled = scaling;
}
} // namespace

int LEV2_open_file(const char *name) {
    reader.archive = Archive{};
    reader.name = name;
    if (!LEV2_stream_open(name)) {
        MSG_print(MSG_ERROR, "LEV2_open_file: Unable to open file:%s\n", name);
        return 0;
    }
    if (CONT_get_bar() != -2)
        CONT_set_bar(1);
    return 1;
}

void LEV2_close_file() { LEV2_stream_close(); }

void LEV2_rewind() { LEV2_stream_rewind(); }

void LEV2_set_time(const DateTime *date) {
    if (date)
        reader.volume.plot_time = *date;
    else
        FILE_get_date(&reader.volume.plot_time);
}

void LEV2_set_compressed(int flag) { reader.compressed = flag != 0; }

int LEV2_read_volume(Lev2Volume *volume) {
    reader.archive = Archive{};
    uint8_t header[LEV2_VOLUME_HEADER];
    if (!LEV2_read_volume_header(header, reader.compressed)) {
        MSG_print(MSG_ERROR, "LEV2_read_volume: Unable to read file:%s\n", reader.name.c_str());
        return 0;
    }
    Lev2Volume found;
    found.plot_time = reader.volume.plot_time;
    take_letters(header + 21, found.radar);
    if (*found.radar)
        CTY_find_latlon("rad.cty", found.radar, &found.latitude, &found.longitude);
    take_time(header + 12, &found);
    reader.volume = found;
    *volume = found;
    return 1;
}

Lev2Volume *LEV2_volume() { return &reader.volume; }

int LEV2_read_header(Lev2Radial *radial) {
    std::ranges::fill(reader.archive.pointers, 0);
    if (!LEV2_begin_message()) {
        warn_once();
        return 0;
    }
    if (read_head(radial) && read_data(radial))
        return 1;
    LEV2_stream_fail();
    warn_once();
    return 0;
}

void LEV2_next_message() { LEV2_end_message(); }

int LEV2_select_moment(int moment) {
    const Archive &archive = reader.archive;
    if (moment < 0 || moment >= kMomentCount)
        return 0;
    // A spectrum width is read for reflectivity's pointer, and from the start of the area.
    const bool width = moment == LEV2_SPECTRUM_WIDTH;
    const int pointer = archive.pointers[width ? int(LEV2_REFLECTIVITY) : moment];
    if (pointer == 0)
        return 0;
    if (archive.scaling[moment] != reader.tabled)
        tabulate(archive.scaling[moment]);
    if (width)
        LEV2_seek_area(pointer + kGatesAt);
    else
        LEV2_seek_gates(kDataOffset + pointer + (archive.message_type == 31 ? kGatesAt : 0));
    return 1;
}

float LEV2_next_gate() {
    if (window->next == window->end && !LEV2_more_gates())
        return kBelow;
    return reader.values[*window->next++];
}

void LEV2_domain(float latitude, float longitude, float range, Domain *domain) {
    const float km = range > 0.0f ? std::min(range, kMostRange) : 0.0f;
    DOM_init(domain);
    domain->proj = PROJ_POLAR;
    domain->plat = domain->clat = latitude;
    domain->plon = domain->clon = longitude;
    domain->nx = int(3.0f * km + 1.0f);
    domain->ny = int(2.0f * km + 1.0f);
    domain->dx = domain->dy = RADAR_spacing(latitude, longitude, kSpacing);
}

void LEV2_reset() {
    LEV2_stream_reset();
    reader = Reader{};
}
