#include "tools/samples/rcm_writer.h"

#include "tools/samples/bytes.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace {

constexpr size_t kLine = 70; // characters that a part of the text fills up

std::string put(const char *format, ...) __attribute__((format(printf, 1, 2)));
std::string put(const char *format, ...) {
    char text[200];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

void pad(std::string *text) { text->resize((text->size() / kLine + 1) * kLine, ' '); }

std::string box_name(int col, int row) {
    return {char('A' + row / 4), char('A' + col / 4), char('A' + col % 4 * 4 + row % 4)};
}
std::string box_name(float col, float row) { return box_name(int(col), int(row)); }

int box_of(const RcmReport &report, int col, int row) {
    const int value = report.grid[col][row];
    return value == 0xff ? 0 : value;
}

/* The boxes of a row up to a column, from the first of them on: digits, and letters that repeat. */
std::string run_of(const RcmReport &report, int first, int end, int row) {
    std::string out = box_name(first, row);
    for (int col = first, next; col < end; col = next) {
        const int value = box_of(report, col, row);
        for (next = col + 1; next < end && box_of(report, next, row) == value;)
            next++;
        out += char('0' + value);
        for (int left = next - col - 1; left > 0; left -= 26)
            out += char('A' + std::min(left, 26) - 1);
    }
    return out;
}

/* All boxes with a value, in runs with a comma between two. */
std::string boxes(const RcmReport &report) {
    std::string out;
    for (int row = 0; row < RCM_SIZE; row++)
        for (int col = 0, end; col < RCM_SIZE; col = end) {
            end = col + 1;
            if (box_of(report, col, row) == 0)
                continue;
            while (end < RCM_SIZE && box_of(report, end, row) != 0)
                end++;
            out += (out.empty() ? "" : ",") + run_of(report, col, end, row);
        }
    return out;
}

int count_boxes(const RcmReport &report) {
    int count = 0;
    for (int col = 0; col < RCM_SIZE; col++)
        for (int row = 0; row < RCM_SIZE; row++)
            count += box_of(report, col, row) != 0;
    return count;
}

std::string head_of(const RcmReport &report) {
    const DateTime &t = report.time;
    return put("%04d %02d%02d%02d%02d%02d ", report.number, t.day, t.month, t.year % 100, t.hour,
               t.minute);
}

std::string first_part(const RcmReport &report, bool edited) {
    std::string out = "/NEXRAA " + head_of(report) + (edited ? "EDITED" : "UNEDITED");
    out += report.status == RCM_NO_ECHOES     ? " RADNE"
           : report.status == RCM_MAINTENANCE ? " RADOM"
                                              : "";
    pad(&out);
    if (report.status == RCM_MAINTENANCE)
        return out + "/ENDAA ";
    out += put("/MD%s /SC    /NI%04d:", report.mode == RCM_CLEAR_AIR ? "CLAR" : "PCPN",
               count_boxes(report));
    pad(&out);
    out += boxes(report);
    pad(&out);
    if (report.max_top != MISSING)
        out += put("/MT%03d:%s ", report.max_top, box_name(report.max_col, report.max_row).c_str());
    out += put("/NCEN%02d: ", report.storm_count);
    for (int i = 0; i < report.storm_count; i++) {
        const RcmStorm &s = report.storms[i];
        out += put("%sC%s%s %03d%03d", i ? "," : "", s.id, box_name(s.col, s.row).c_str(),
                   s.direction, s.speed);
    }
    pad(&out);
    return out + "/ENDAA ";
}

std::string second_part(const RcmReport &report) {
    std::string out = "/NEXRBB " + head_of(report);
    for (int i = 0; i < report.echo_count; i++) {
        const RcmEcho &e = report.echoes[i];
        const char letter = e.level == 15 ? 'G' : char('A' + e.level / 2 - 1);
        out += put("%s%03d%c%03d%03d", i ? "," : "", e.number, letter, e.a, e.b);
    }
    pad(&out);
    return out + "/ENDBB ";
}

std::string marks(const char *head, const char *item, const RcmMark *marks, int count) {
    std::string out = put("/%s%02d: ", head, count);
    for (int i = 0; i < count; i++)
        out += put("%s%s%s%s", i ? "," : "", item, marks[i].id,
                   box_name(marks[i].col, marks[i].row).c_str());
    pad(&out);
    return out;
}

std::string third_part(const RcmReport &report) {
    std::string out = "/NEXRCC " + head_of(report);
    out += marks("NTVS", "TVS", report.tvs, report.tvs_count);
    out += marks("NMES", "M", report.meso, report.meso_count);
    out += put("/NCEN%02d: ", report.storm_count);
    for (int i = 0; i < report.storm_count; i++) {
        const RcmStorm &s = report.storms[i];
        out += put("%sC%s%s S%03dH%c", i ? "," : "", s.id, box_name(s.col, s.row).c_str(), s.top,
                   "UNPH"[s.hail + 1]);
    }
    pad(&out);
    return out + "/ENDCC ";
}

std::string opening(const RcmReport &report) {
    return put("SDUS44 KOUN %02d%02d%02d\r\r\nRCM%s\r\r\n", report.time.day, report.time.hour,
               report.time.minute, report.id);
}

std::string block(int first, int second, std::string content) {
    if (content.size() % 2)
        content += ' ';
    const int halfwords = int(content.size() + 4) / 2;
    return SMP_half(halfwords) + char(first) + char(second) + content;
}

} // namespace

std::string SMP_rcm_text(const RcmReport &report, bool edited) {
    std::string out = put("1234 ROBUU %04d ", report.number);
    pad(&out);
    out += first_part(report, edited);
    if (report.status != RCM_NORMAL)
        return out;
    pad(&out);
    return out + second_part(report) + third_part(report);
}

std::string SMP_rcm_plain(const RcmReport &report, const std::string &text) {
    return opening(report) + SMP_half(74) + std::string(118, '\0') + text + "\n";
}

/* The first block's length is a line feed. */
std::string SMP_rcm_framed(const RcmReport &report, const std::string &text) {
    const DateTime &t = report.time;
    const std::string radar = put("10%8.4f%10.4f%4.0f%04d%02d%02d%02d%02d", double(report.latitude),
                                  double(report.longitude), double(report.height) / 0.3048, t.year,
                                  t.month, t.day, t.hour, t.minute);
    return opening(report) + block(1, 1, put("%03d             ", report.number)) +
           block(1, 16, radar) + block(4, 16, "        ") + block(1, 4, "        ") +
           block(5, 4, text) + "\n";
}
