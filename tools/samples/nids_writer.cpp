#include "tools/samples/nids_writer.h"

#include "tools/samples/bytes.h"

#include <cstdio>

namespace {
constexpr size_t kDescriptionEnd = 120; // bytes from the message header
constexpr int kPageRows = 4;            // storms on a page

/* Calls put(count, level) for each run of equal levels, at most longest cells. */
template <typename Put>
void each_run(const LevelRow &row, size_t longest, Put put) {
    for (size_t i = 0; i < row.size();) {
        size_t end = i + 1;
        while (end < row.size() && row[end] == row[i] && end - i < longest)
            end++;
        put(int(end - i), row[i]);
        i = end;
    }
}

std::string nibble_runs(const LevelRow &row) {
    std::string out;
    each_run(row, 15, [&](int count, int level) { out += char(count << 4 | level); });
    return out;
}

std::string pair_runs(const LevelRow &row) {
    std::string out;
    each_run(row, 255, [&](int count, int level) {
        out += char(count);
        out += char(level);
    });
    return out;
}

/* Filled up with a byte that stands for no cells. */
std::string even(std::string bytes) {
    if (bytes.size() % 2)
        bytes += '\0';
    return bytes;
}

std::string radial_head(int code, const SampleRadials &data) {
    const int bins = data.radials.empty() ? 0 : int(data.radials[0].size());
    return SMP_halves({code, data.first_bin, bins, 256, 280, data.scale, int(data.radials.size())});
}

std::string raster_head(unsigned code, size_t rows, int packing) {
    return SMP_halves({int(code), 0x8000, 0x00C0, 0, 0, 1, 0, 1, 0, int(rows), packing});
}

std::string items(unsigned code, const std::string &body) {
    return SMP_halves({int(code), int(body.size())}) + body;
}

std::string ends(const std::vector<SampleVector> &vectors) {
    std::string out;
    for (const SampleVector &v : vectors)
        out += SMP_halves({v.x1, v.y1, v.x2, v.y2});
    return out;
}

/* The words of one storm, each in a form that a scan for blanks takes apart. */
std::string storm_in_words(const SampleStorm &s) {
    const char *hail = s.posh >= 75 ? "POS" : s.posh >= 50 ? "PRO" : "NO";
    char text[100];
    snprintf(text, sizeof text, "   %-3s %3d %3d  %-4s %-4s %-3s  %2d %4.1f  %3.1f >%4.1f  %3d %3d",
             s.id.c_str(), s.azimuth, s.range, s.tvs ? "YES" : "NO", s.meso ? "YES" : "NO", hail,
             s.dbz, s.height, 3.5, s.top, s.direction, s.speed);
    return text;
}

/* The same in fixed columns: hail from 26 on, its size at 35, VIL at 42, motion at 62. */
std::string storm_in_columns(const SampleStorm &s) {
    char text[100];
    snprintf(text, sizeof text,
             "    %-2s  %3d/%3d %-4s %-4s  %3d/%3d/%5.2f   %3d %3d %4.1f  %4.1f  %3d/%3d  ",
             s.id.c_str(), s.azimuth, s.range, s.tvs ? "TVS" : "NONE", s.meso ? "MESO" : "NONE",
             s.posh, s.poh, s.hail_size, s.vil, s.dbz, s.height, s.top, s.direction, s.speed);
    return text;
}

/* Lines ten units apart, in a box. */
std::string table_page(const std::vector<std::string> &lines) {
    const int bottom = 1 + 10 * int(lines.size());
    std::string page = SMP_valued_vectors(4, {{0, 0, 511, 0}, {0, bottom, 511, bottom}});
    page += SMP_valued_vectors(4, {{0, 0, 0, bottom}, {511, 0, 511, bottom}});
    for (size_t i = 0; i < lines.size(); i++)
        page += SMP_text(8, 0, 0, 1 + 10 * int(i), lines[i]);
    return page;
}

std::string description(const SampleProduct &m, int symbology, int graphic) {
    std::string out = SMP_half(-1) + SMP_word(m.latitude) + SMP_word(m.longitude);
    out += SMP_halves({m.height, m.code, m.op_mode, 12, 100, 28, m.date}) + SMP_word(m.time);
    out += SMP_half(m.date) + SMP_word(m.time + 35);
    out += SMP_halves({m.p[1], m.p[2], m.elevation_number, m.p[3]});
    for (const int level : m.levels)
        out += SMP_half(level);
    for (int i = 4; i <= 10; i++)
        out += SMP_half(m.p[size_t(i)]);
    return out + SMP_half(0) + SMP_word(symbology) + SMP_word(graphic) + SMP_word(0);
}

std::string message(const SampleProduct &m, const std::string &blocks) {
    const int present = 2 + !m.symbology.empty() + !m.graphic.empty();
    // Offsets count halfwords.
    const int symbology = m.symbology.empty() ? 0 : int(kDescriptionEnd / 2);
    const int graphic = m.graphic.empty() ? 0 : int((kDescriptionEnd + m.symbology.size()) / 2);
    std::string out = SMP_halves({m.code, m.date}) + SMP_word(m.time + 35);
    out += SMP_word(int(kDescriptionEnd + blocks.size())) + SMP_halves({m.source, 0, present});
    return out + description(m, symbology, graphic) + blocks;
}

std::string name_lines(const std::string &name) {
    return "SDUS54 KOUN 202016\r\r\n" + name + "\r\r\n";
}
} // namespace

std::string SMP_radials(const SampleRadials &data) {
    std::string out = radial_head(0xAF1F, data);
    int start = data.start;
    for (const LevelRow &radial : data.radials) {
        const std::string runs = even(nibble_runs(radial));
        out += SMP_halves({int(runs.size() / 2), start % 3600, data.delta}) + runs;
        start += data.delta;
    }
    return out;
}

std::string SMP_digital_radials(const SampleRadials &data) {
    std::string out = radial_head(0x10, data);
    int start = data.start;
    for (const LevelRow &radial : data.radials) {
        out += SMP_halves({int(radial.size()), start % 3600, data.delta});
        out.append(radial.begin(), radial.end());
        start += data.delta;
    }
    return out;
}

std::string SMP_raster(unsigned code, const std::vector<LevelRow> &rows) {
    std::string out = raster_head(code, rows.size(), 2);
    for (const LevelRow &row : rows) {
        const std::string runs = even(nibble_runs(row));
        out += SMP_half(int(runs.size())) + runs;
    }
    return out;
}

std::string SMP_packed_raster(const std::vector<LevelRow> &rows) {
    std::string out = raster_head(0xBA0F, rows.size(), 1);
    for (const LevelRow &row : rows) {
        const std::string runs = pair_runs(row);
        out += SMP_half(int(runs.size())) + runs;
    }
    return out;
}

std::string SMP_precip_array(const std::vector<LevelRow> &rows) {
    const int boxes = rows.empty() ? 0 : int(rows[0].size());
    std::string out = SMP_halves({0x11, 0, 0, boxes, int(rows.size())});
    for (const LevelRow &row : rows) {
        const std::string runs = pair_runs(row);
        out += SMP_half(int(runs.size())) + runs;
    }
    return out;
}

std::string SMP_vectors(const std::vector<SampleVector> &vectors) {
    return items(7, ends(vectors));
}

std::string SMP_valued_vectors(int value, const std::vector<SampleVector> &vectors) {
    return items(10, SMP_half(value) + ends(vectors));
}

std::string SMP_winds(const std::vector<SampleWind> &winds) {
    std::string body;
    for (const SampleWind &w : winds)
        body += SMP_halves({w.value, w.x, w.y, w.direction, w.speed});
    return items(4, body);
}

std::string SMP_text(unsigned code, int value, int i, int j, const std::string &text) {
    return items(code, SMP_halves({value, i, j}) + text);
}

std::string SMP_opaque(unsigned code, const std::string &bytes) { return items(code, bytes); }

std::string SMP_symbology(const std::vector<std::string> &layers) {
    std::string body;
    for (const std::string &layer : layers)
        body += SMP_half(-1) + SMP_word(int(layer.size())) + layer;
    return SMP_halves({-1, 1}) + SMP_word(int(body.size()) + 10) + SMP_half(int(layers.size())) +
           body;
}

std::string SMP_graphic(const std::vector<std::string> &pages) {
    std::string body;
    for (size_t i = 0; i < pages.size(); i++)
        body += SMP_halves({int(i) + 1, int(pages[i].size())}) + pages[i];
    return SMP_halves({-1, 2}) + SMP_word(int(body.size()) + 10) + SMP_half(int(pages.size())) +
           body;
}

std::vector<std::string> SMP_storm_pages(StormTable form, const std::vector<SampleStorm> &storms) {
    const bool words = form == StormTable::Words;
    const char *head =
        words ? " STM  AZ RAN  TVS  MESO HAIL DBZM HT  VLOW  TOP  FCST MVMT"
              : " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT ";
    std::vector<std::string> pages, lines;
    for (const SampleStorm &storm : storms) {
        if (lines.empty())
            lines.push_back(head);
        lines.push_back(words ? storm_in_words(storm) : storm_in_columns(storm));
        if (int(lines.size()) <= kPageRows)
            continue;
        pages.push_back(table_page(lines));
        lines.clear();
    }
    if (!lines.empty())
        pages.push_back(table_page(lines));
    return pages;
}

std::string SMP_message(const SampleProduct &product) {
    return message(product, product.symbology + product.graphic);
}

std::string SMP_bzip2_message(const SampleProduct &product) {
    const std::string blocks = product.symbology + product.graphic;
    SampleProduct packed = product;
    packed.p[8] = 1; // how it is packed, and the size before that
    packed.p[9] = int(blocks.size() >> 16);
    packed.p[10] = int(blocks.size() & 0xffff);
    return message(packed, SMP_bzip2(blocks));
}

std::string SMP_short_lead(const std::string &name) { return name_lines(name); }

std::string SMP_long_lead(const std::string &name) {
    return "\x01\r\r\n123 \r\r\n" + name_lines(name);
}

std::string SMP_trailer() { return "\r\r\n\x03"; }

std::string SMP_zlib_frames(const std::string &name, const std::string &message_bytes,
                            size_t frame) {
    // 24 bytes of circuit control, then the two lines of the lead once more.
    const std::string whole =
        SMP_halves({0x400C, 0}) + std::string(20, '\0') + name_lines(name) + message_bytes;
    std::string out;
    for (size_t at = 0; at < whole.size(); at += frame)
        out += SMP_zlib(whole.substr(at, frame));
    return out;
}
