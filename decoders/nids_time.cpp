#include "decoders/nids_time.h"

namespace {
/* Takes off whole units while more than one is there.  What is left is 1 to unit, or not above 0
 * from the start. */
int split(int *count, int unit) {
    const int whole = *count > 0 ? (*count - 1) / unit : 0;
    *count -= whole * unit;
    return whole;
}
} // namespace

void NIDS_decode_time(int days, int seconds, DateTime *date) {
    DT_clear(date);
    date->year = 1970;
    for (int length = 365; days > length; length = 365 + DT_is_leap(date->year)) {
        days -= length;
        date->year++;
    }
    if (days < 1) {
        date->month = 1;
        date->day = days;
    } else
        DT_yday_to_date(date->year, days, &date->month, &date->day);
    date->hour = split(&seconds, 3600);
    date->minute = split(&seconds, 60);
    date->second = seconds;
}
