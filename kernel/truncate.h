/* Float to whole number, cut towards zero, for every float. */
#pragma once

/* Far beyond any device, and small enough that sums and halves of results still fit an int. */
constexpr int TRUNCATE_MAX = 1000000000;

/* Not a number gives 0. */
inline int gtrunc(double value) {
    if (value > TRUNCATE_MAX)
        return TRUNCATE_MAX;
    if (value < -TRUNCATE_MAX)
        return -TRUNCATE_MAX;
    return value == value ? int(value) : 0;
}
