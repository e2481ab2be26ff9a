#include "tools/samples/level2_writer.h"

#include <cmath>

namespace {
constexpr size_t kPrefix = 12;       // bytes in front of a message header
constexpr size_t kHeader = 16;       // bytes of it
constexpr size_t kFixed = 2420;      // bytes of every message but 31
constexpr int kDataHead1 = 100;      // of message 1, where the gates begin
constexpr int kMostPointers = 10;    // of message 31
constexpr float kLatitude = 35.333f; // degrees, of the radar at Twin Lakes
constexpr float kLongitude = -97.278f;
constexpr int kHeight = 389; // metres

std::string byte(int value) { return std::string(1, char(value)); }

std::string message_header(size_t bytes, int type, const SampleRay &ray) {
    return std::string(kPrefix, '\0') + SMP_half(int(bytes / 2)) + byte(0) + byte(type) +
           SMP_halves({ray.number, ray.date}) + SMP_word(ray.time) + SMP_halves({1, 1});
}

/* Angles of message 1: eighths of a unit of 180 / 4096 degrees. */
int coded_angle(double degrees) { return int(std::lround(degrees * 8.0 * 4096.0 / 180.0)); }

const SampleMoment *find_moment(const SampleRay &ray, const char *name) {
    for (const SampleMoment &moment : ray.moments)
        if (moment.name == name)
            return &moment;
    return nullptr;
}

int gates(const SampleMoment *moment) { return moment ? int(moment->gates.size()) : 0; }

std::string moment_block(const SampleMoment &m) {
    return "D" + m.name + std::string(4, '\0') +
           SMP_halves({int(m.gates.size()), m.first, m.spacing, 50, 20}) + byte(0) + byte(8) +
           SMP_ieee(m.scale) + SMP_ieee(m.offset) + m.gates + std::string(m.gates.size() % 2, '\0');
}

std::string volume_block(const SampleRay &ray) {
    return "RVOL" + SMP_halves({44, 0}) + SMP_ieee(kLatitude) + SMP_ieee(kLongitude) +
           SMP_halves({kHeight, 20}) + std::string(20, '\0') + SMP_halves({ray.vcp, 0});
}

std::string elevation_block() { return "RELV" + SMP_halves({12, -12}) + SMP_ieee(-44.0f); }

std::string radial_block() {
    return "RRAD" + SMP_halves({20, 4660}) + std::string(8, '\0') + SMP_halves({2650, 0});
}
} // namespace

std::string SMP_volume_header(const std::string &radar, int date, int time) {
    return "AR2V0006.001" + SMP_word(date) + SMP_word(time) + radar;
}

std::string SMP_message1(const SampleRay &ray) {
    const SampleMoment *ref = find_moment(ray, "REF");
    const SampleMoment *vel = find_moment(ray, "VEL");
    const SampleMoment none;
    const SampleMoment &r = ref ? *ref : none, &v = vel ? *vel : none;
    std::string out = message_header(kFixed, 1, ray) + SMP_word(ray.time);
    out += SMP_halves({ray.date, 4660, coded_angle(ray.azimuth), ray.number, ray.status});
    out += SMP_halves({coded_angle(ray.elevation), ray.elevation_number});
    out += SMP_halves({r.first, v.first, r.spacing, v.spacing, gates(ref), gates(vel), 1});
    out += SMP_word(0);
    out += SMP_halves({ref ? kDataHead1 : 0, vel ? kDataHead1 + gates(ref) : 0, 0});
    out += SMP_halves({v.scale == 2.0f ? 2 : 4, ray.vcp}) + std::string(16, '\0');
    out += SMP_halves({2650, 49, 0});
    out.resize(kPrefix + kHeader + kDataHead1, '\0');
    out += r.gates + v.gates;
    out.resize(kPrefix + kFixed, '\0');
    return out;
}

std::string SMP_message31(const SampleRay &ray) {
    std::vector<std::string> blocks = {volume_block(ray), elevation_block(), radial_block()};
    for (const SampleMoment &moment : ray.moments)
        blocks.push_back(moment_block(moment));
    size_t at = 32 + 4 * kMostPointers; // from behind the message header
    std::string pointers, body;
    for (int i = 0; i < kMostPointers; i++) {
        const bool there = size_t(i) < blocks.size();
        pointers += SMP_word(there ? int(at) : 0);
        if (there) {
            body += blocks[size_t(i)];
            at += blocks[size_t(i)].size();
        }
    }
    std::string head = ray.radar + SMP_word(ray.time) + SMP_halves({ray.date, ray.number});
    head += SMP_ieee(float(ray.azimuth)) + byte(0) + byte(0) + SMP_half(int(at));
    head += byte(2) + byte(ray.status) + byte(ray.elevation_number) + byte(1);
    head += SMP_ieee(float(ray.elevation)) + byte(0) + byte(100) + SMP_half(int(blocks.size()));
    return message_header(kHeader + at, 31, ray) + head + pointers + body;
}

std::string SMP_other_message(int type) {
    std::string out = message_header(kFixed, type, SampleRay{});
    out.resize(kPrefix + kFixed, '\0');
    return out;
}

std::string SMP_level2_block(const std::string &messages, bool negative) {
    const std::string packed = SMP_bzip2(messages);
    return SMP_word(negative ? -int(packed.size()) : int(packed.size())) + packed;
}
