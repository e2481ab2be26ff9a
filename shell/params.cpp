#include "shell/params.h"

#include "shell/missing.h"

#include <array>
#include <cstddef>

namespace {
constexpr int kSlots = 30;

constexpr std::array<int64_t, kSlots> unwritten_slots() {
    std::array<int64_t, kSlots> slots{};
    slots.fill(MISSING);
    return slots;
}

struct ParState {
    std::array<int64_t, kSlots> slots = unwritten_slots();
};
constinit ParState par;

bool is_slot(int slot) { return slot >= 0 && slot < kSlots; }
} // namespace

int64_t PAR_get_long(int slot) { return is_slot(slot) ? par.slots[size_t(slot)] : 0; }

int64_t PAR_get(int slot) { return PAR_get_long(slot); }

int PAR_set_long(int slot, int64_t value) {
    if (!is_slot(slot))
        return -1;
    par.slots[size_t(slot)] = value;
    return 0;
}

int PAR_set(int slot, int32_t value) { return PAR_set_long(slot, value); }

void PAR_fill(int64_t value) { par.slots.fill(value); }

bool PAR_is_batch() { return PAR_get(PAR_BATCH) > 0; }

bool PAR_is_help() { return PAR_get(PAR_HELP) > 0; }
