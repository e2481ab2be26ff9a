#include "decoders/rcm_reader.h"

#include "decoders/rcm_text.h"
#include "shell/message.h"
#include "shell/scanner.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr size_t kLine = 5000; // bytes; the rest of a longer line is a line of its own
constexpr size_t kLeast = 100; // bytes of a message: shorter ones go on in the next line
constexpr size_t kMostBetween = 64'000'000; // bytes in front of a message
constexpr size_t kBlockHead = 4;            // bytes
constexpr double kMetresPerFoot = 0.3048;

// ---- Lines ----

/* Reads the bytes of a line, all but its line feed.  False at the end of the file. */
bool read_line(FILE *file, std::string *line) {
    line->clear();
    int c = 0;
    while (line->size() < kLine && (c = getc(file)) != EOF && c != '\n')
        line->push_back(char(c));
    return c != EOF || !line->empty();
}

bool has_more(FILE *file) {
    const int c = getc(file);
    ungetc(c, file);
    return c != EOF && c != '\n';
}

/* Goes behind the line that begins a message. */
bool find_message(FILE *file, RcmReport *report) {
    std::string line;
    for (size_t passed = 0; read_line(file, &line); passed += line.size() + 1) {
        if (passed > kMostBetween) {
            MSG_print(MSG_WARN, "RCM_read: Too much without a message, the rest is not read\n");
            return false;
        }
        if (!line.starts_with("RCM"))
            continue;
        line.erase(line.find_last_not_of("\r ") + 1);
        snprintf(report->id, sizeof report->id, "%s",
                 line.c_str() + std::min<size_t>(3, line.size()));
        return true;
    }
    return false;
}

/* A line feed among the first bytes is one of them: it need not end a line. */
std::string read_bytes(FILE *file, const char *id) {
    std::string bytes, line;
    read_line(file, &bytes);
    while (bytes.size() < kLeast && read_line(file, &line))
        bytes += '\n' + line;
    if (bytes.size() >= kLine && has_more(file))
        MSG_print(MSG_WARN, "RCM_read: The message of %s is too long, its end is not read\n", id);
    return bytes;
}

// ---- Blocks ----

/* The types of a message's blocks, in their order. */
struct BlockType {
    unsigned char first, second;
};
constexpr BlockType kNumber = {1, 1}, kRadar = {1, 16}, kOther1 = {4, 16}, kOther2 = {1, 4},
                    kText = {5, 4};

bool is_block(std::string_view bytes, BlockType type) {
    return bytes.size() >= kBlockHead && static_cast<unsigned char>(bytes[2]) == type.first &&
           static_cast<unsigned char>(bytes[3]) == type.second;
}

/* Bytes of the block that stands first; what was sent of it. */
size_t block_size(std::string_view bytes) {
    const size_t halfwords = size_t(bytes[0] & 0x0f) << 8 | static_cast<unsigned char>(bytes[1]);
    return std::min(2 * halfwords, bytes.size());
}

/* Takes the block of a type off the front when it stands there, and gives what it holds.  A block
 * too short for its own head ends the message. */
bool take_block(std::string_view *bytes, BlockType type, std::string *content) {
    if (!is_block(*bytes, type))
        return false;
    const size_t size = block_size(*bytes);
    if (size < kBlockHead)
        *bytes = {};
    else
        *content = bytes->substr(kBlockHead, size - kBlockHead);
    bytes->remove_prefix(std::min(size, bytes->size()));
    return size >= kBlockHead;
}

void read_number(std::string content, RcmReport *report) {
    ScanText scan;
    int number;
    SCAN_init(&scan, content.data());
    if (scanp(&scan, "%3d", &number) == 1)
        report->number = number;
}

/* Place and time of the radar, in columns. */
void read_radar(std::string content, RcmReport *report) {
    ScanText scan;
    float latitude, longitude, feet;
    DateTime sent;
    sent.second = 0;
    SCAN_init(&scan, content.data());
    if (scanp(&scan, "%*2D%8F%10F%4F", &latitude, &longitude, &feet) != 4)
        return;
    report->latitude = latitude;
    report->longitude = longitude;
    report->height = float(double(feet) * kMetresPerFoot);
    SCAN_advance(&scan);
    if (scanp(&scan, "%4D%2D%2D%2D%2D", &sent.year, &sent.month, &sent.day, &sent.hour,
              &sent.minute) != 5)
        return;
    sent.year = RCM_full_year(sent.year);
    report->time = sent;
}

/* A message in blocks; one without a text has its head alone. */
int read_blocks(std::string_view bytes, RcmReport *report) {
    std::string content;
    if (take_block(&bytes, kNumber, &content))
        read_number(content, report);
    if (take_block(&bytes, kRadar, &content))
        read_radar(content, report);
    take_block(&bytes, kOther1, &content);
    take_block(&bytes, kOther2, &content);
    if (!take_block(&bytes, kText, &content))
        return 1;
    return RCM_read_text(content, 0, report);
}

/* Bytes of any kind may stand in front of the text. */
int read_plain(const std::string &bytes, RcmReport *report) {
    const size_t begin = bytes.find("1234");
    return RCM_read_text(bytes, begin == bytes.npos ? 0 : begin, report);
}

// ---- Listing ----

void print_marks(int level, const char *kind, const RcmMark *marks, int count) {
    for (int i = 0; i < count; i++)
        MSG_print(uint32_t(level), "%s%2s %3.0f,%3.0f\n", kind, marks[i].id, double(marks[i].col),
                  double(marks[i].row));
}

void print_storm(int level, const RcmStorm &storm) {
    MSG_print(uint32_t(level), "STRM: %2s %3.0f,%3.0f %3.3d-%3.3d %3d %d\n", storm.id,
              double(storm.col), double(storm.row), storm.direction, storm.speed, storm.top,
              storm.hail);
}

} // namespace

void RCM_clear(RcmReport *report) {
    *report = RcmReport{};
    memset(report->grid, 0xff, sizeof report->grid);
}

int RCM_read(FILE *file, RcmReport *report) {
    RCM_clear(report);
    if (!find_message(file, report))
        return -1;
    const std::string bytes = read_bytes(file, report->id);
    return is_block(bytes, kNumber) ? read_blocks(bytes, report) : read_plain(bytes, report);
}

void RCM_print(int level, const RcmReport *report) {
    const uint32_t at = uint32_t(level);
    DateTime shown = report->time; // formatting may change it
    std::string date;
    if (shown.year != MISSING)
        DT_format(&shown, &date);
    MSG_print(at, "ID: %s\n", report->id);
    MSG_print(at, "Num: %d\n", report->number);
    MSG_print(at, "Loc: %.3f %.3f\n", double(report->latitude), double(report->longitude));
    MSG_print(at, "Date: %s\n", date.c_str());
    if (report->status == RCM_NO_ECHOES)
        MSG_print(at, "Status: no echos\n");
    if (report->status == RCM_MAINTENANCE)
        MSG_print(at, "Status: out for maintenance\n");
    MSG_print(at, "Max Top: %d %3.0f,%3.0f\n", report->max_top, double(report->max_col),
              double(report->max_row));
    print_marks(level, "TVS:  ", report->tvs, report->tvs_count);
    print_marks(level, "MESO: ", report->meso, report->meso_count);
    for (int i = 0; i < report->storm_count; i++)
        print_storm(level, report->storms[i]);
}
