#include "files/date_print.h"

#include "shell/message.h"

void DT_print(uint32_t level, const DateTime *date) {
    MSG_print(level, "%d/%d/%d %2.2d:%2.2d:%2.2d\n", date->year, date->month, date->day, date->hour,
              date->minute, date->second);
}
