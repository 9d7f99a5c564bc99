#include "typ/extended_sections.h"

#include <algorithm>

#include "typ/curf_access.h"
#include "typ/header.h"
#include "typ/line_record.h"
#include "typ/point_record.h"
#include "typ/sort_types.h"

namespace korvex::typ {

namespace {

constexpr int k_max_field = 4;       // widest offset or code field of block 0
constexpr int k_big_picture = 128;   // pictures wider or higher are reported

int64_t file_size(const Store& s) { return static_cast<int64_t>(s.curf.size()); }

// Little-endian value of width bytes at pos.
int64_t read_le(Store& s, int64_t pos, int width) {
    int64_t v = 0;
    for (int k = 0; k < width && k < k_max_field; ++k) v |= static_cast<int64_t>(curf_byte(s, pos + k)) << (8 * k);
    return v;
}

// Width of the offset field from the packing byte: the flag bits 128, 64 and
// 32 removed, the rest divided by 8 is the width less one (the writer stores
// (width - 1) * 8 plus a low part).
int offset_width(int packing, int recsize) {
    int p = packing;
    if (p >= 128) p -= 128;
    if (p >= 64) p -= 64;
    if (p >= 32) p -= 32;
    int w = p / 8 + 1;
    w = std::min(w, std::max(1, recsize - 1));
    return std::clamp(w, 1, k_max_field);
}

int byte_width(int64_t v) {
    int w = 1;
    while (w < k_max_field && (v >> (8 * w)) != 0) ++w;
    return w;
}

const char* const k_activity_names[2][3] = {
    {"Walking", "Hiking", "Mountaineering"},
    {"Cycling", "Tour Cycling", "Mountain Biking"},
};

}  // namespace

int32_t extra_point_count(Store& s) {
    if (s.hdr_len <= hdr::k_min || model::chkl(s, 3) == '0') return 0;
    const int recsize = curf_u16(s, hdr::blk0_recsize);
    if (recsize <= 0) return 0;
    const int64_t start = curf_u32(s, hdr::blk0);
    const int64_t length = curf_u32(s, hdr::blk0_len);
    // Never more records than the file holds behind the block's start.
    const int64_t room = std::max<int64_t>(0, file_size(s) - start);
    const int64_t count = std::min(length, room) / recsize;
    return static_cast<int32_t>(std::max<int64_t>(0, count));
}

int32_t active_line_count(Store& s) {
    if (s.hdr_len < hdr::act_index + 1 || model::chkl(s, 2) == '0') return 0;
    const int recsize = curf_byte(s, hdr::act_recsize);
    if (recsize <= 0) return 0;
    const int64_t start = curf_u24(s, hdr::act_index);
    const int64_t length = curf_u32(s, hdr::act_index_len);
    const int64_t room = std::max<int64_t>(0, file_size(s) - start);
    return static_cast<int32_t>(std::min(length, room) / recsize);
}

//   block 0: records of recsize bytes: offset into block 1 | point code
//   block 1: point records
void poiextra_read(Store& s) {
    const int32_t count = extra_point_count(s);
    s.pt_nx = count;
    if (count <= 0) return;
    const int64_t index = curf_u32(s, hdr::blk0);
    const int recsize = curf_u16(s, hdr::blk0_recsize);
    const int width = offset_width(curf_byte(s, hdr::blk0_packing), recsize);
    const int64_t data = curf_u32(s, hdr::blk1);
    const int64_t data_len = curf_u32(s, hdr::blk1_len);
    const int32_t first = s.pt_n;
    if (s.pt_typ.size() < static_cast<size_t>(first + count)) model::procredim(s, model::k_points, first + count);

    auto offset_of = [&](int32_t k) { return read_le(s, index + static_cast<int64_t>(k) * recsize, width); };
    for (int32_t k = 0; k < count; ++k) {
        const int64_t entry = index + static_cast<int64_t>(k) * recsize;
        const int64_t off = offset_of(k);
        const auto code = static_cast<int32_t>(read_le(s, entry + width, recsize - width));
        const int32_t n = first + k;
        const auto row = static_cast<size_t>(n);
        std::string digits = point_type_text(code).substr(2);
        while (digits.size() < 5) digits.insert(0, "0");
        s.pt_typ[row] = digits;

        const int64_t end = k + 1 < count ? offset_of(k + 1) : data_len;
        s.pt_len[row] = static_cast<int32_t>(std::clamp<int64_t>(end - off, 0, INT32_MAX));
        const int64_t pos = data + off;
        if (off >= data_len || pos >= file_size(s)) continue;  // no record behind it
        const int flag = curf_byte(s, pos);
        if (flag == 0) continue;
        const int w = curf_byte(s, pos + 1), h = curf_byte(s, pos + 2), mode = curf_byte(s, pos + 4);
        if (w > k_big_picture || h > k_big_picture)
            model::note_once(s, "dimensions >128 w=" + std::to_string(w) + " h=" + std::to_string(h));
        if (mode != 0 && mode != 16 && mode != 32) model::note_once(s, "Colour" + std::to_string(mode));
        poi_bmp(s, pos, n, flag, entry, code);
    }
}

//   index: recsize 3: offset (u8) | activity digit | activity digit
//          recsize 4+: offset (u16) | activity digit | activity digit
void polylinesactive(Store& s) {
    const int32_t count = active_line_count(s);
    s.ln_nact = count;
    if (count <= 0) return;
    const int64_t index = curf_u24(s, hdr::act_index);
    const int recsize = curf_byte(s, hdr::act_recsize);
    const int64_t data = curf_u32(s, hdr::ln_data);
    const int64_t data_end = data + curf_u32(s, hdr::ln_data_len);
    const int32_t first = s.ln_n;
    if (s.ln_txt.size() < static_cast<size_t>(first + count)) model::procredim(s, model::k_lines, first + count);

    auto offset_of = [&](int32_t k) -> int64_t {
        const int64_t entry = index + static_cast<int64_t>(k) * recsize;
        return recsize == 3 ? bit1(s, entry) : curf_u16(s, entry);
    };
    for (int32_t k = 0; k < count; ++k) {
        const int64_t entry = index + static_cast<int64_t>(k) * recsize;
        const int act_at = recsize == 3 ? 1 : 2;
        const int32_t n = first + k;
        const auto row = static_cast<size_t>(n);
        int64_t pos = data + offset_of(k);
        if (pos >= file_size(s)) pos = data;
        const int64_t next = k + 1 < count ? data + offset_of(k + 1) : data_end;
        const int64_t size = pos > next ? data_end - pos : next - pos;

        s.ln_act[row] = std::to_string(curf_byte(s, entry + act_at)) + std::to_string(curf_byte(s, entry + act_at + 1));
        // The index carries no type; active lines take the default one.
        s.ln_code[row] = 0x100;
        s.ln_pos[row] = static_cast<int32_t>(std::min<int64_t>(pos, INT32_MAX));
        s.ln_len[row] = static_cast<int32_t>(std::clamp<int64_t>(size, 0, INT32_MAX));
        const int flag = curf_byte(s, pos);
        s.ln_mode[row] = static_cast<uint8_t>(flag);
        const int rows = flag / 8;
        if (rows > 0 && flag != 6) line_bmp(s, pos, n, flag, s.ln_len[row]);
        else line_no_bmp(s, pos, n, flag, s.ln_len[row]);
    }
}

std::string fnblk0(const std::string& hextext, int width) {
    std::string digits = hextext;
    if (width < 1) width = 1;
    const auto want = static_cast<size_t>(2 * width);
    if (digits.size() < want) digits.insert(0, want - digits.size(), '0');
    else if (digits.size() > want) digits.erase(0, digits.size() - want);
    std::string bytes = hexasc(digits);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

void save_extra_points(Store& s) {
    if (s.pt_nx <= 0) return;
    std::string data;
    std::vector<int64_t> offsets;
    std::vector<int32_t> codes;
    for (int32_t k = 0; k < s.pt_nx; ++k) {
        const int32_t n = s.pt_n + k;
        if (static_cast<size_t>(n) >= s.pt_typ.size()) break;
        offsets.push_back(static_cast<int64_t>(data.size()));
        codes.push_back(row_code(s, model::k_points, n));
        data += encode_point_record(s, n);
    }
    int64_t max_off = 0;
    int32_t max_code = 0;
    for (size_t k = 0; k < offsets.size(); ++k) {
        max_off = std::max(max_off, offsets[k]);
        max_code = std::max(max_code, codes[k]);
    }
    const int w_off = byte_width(max_off);
    const int w_code = std::max(2, byte_width(max_code));
    const int recsize = w_off + w_code;

    std::string index;
    for (size_t k = 0; k < offsets.size(); ++k)
        index += fnblk0(hex(offsets[k]), w_off) + fnblk0(hex(codes[k]), w_code);
    s.blocks[0] = index;
    s.blocks[1] = data;

    int packing = (w_off - 1) * 8;
    switch (w_off) {
        case 1: packing += 7; break;
        case 2: packing += recsize == 4 ? 7 : 6; break;
        case 3: packing += 3; break;
        default: packing += 2; break;
    }
    if (s.hdr_len > hdr::blk0_packing) {
        head(s, hdr::blk0_recsize, recsize & 0xff);
        head(s, hdr::blk0_recsize + 1, (recsize >> 8) & 0xff);
        head(s, hdr::blk0_packing, packing);
    }
}

std::string chkactivity(const std::string& code) {
    if (code.size() != 2) return {};
    const int group = code[0] - '4', entry = code[1] - '0';
    if (group < 0 || group > 1 || entry < 0 || entry > 2) return {};
    return k_activity_names[group][entry];
}

void noactive(Store& s) {
    for (size_t r = static_cast<size_t>(std::max(0, s.ln_n)); r < s.ln_act.size(); ++r) s.ln_act[r].clear();
    s.ln_nact = 0;
    s.walk.active_possible = false;
    if (s.curclass == model::k_active_lines) s.curclass = model::k_lines;
}

}  // namespace korvex::typ
