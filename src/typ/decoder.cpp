#include "typ/decoder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/files.h"
#include "typ/curf_access.h"
#include "typ/draw_order.h"
#include "typ/extended_sections.h"
#include "typ/header.h"
#include "typ/line_record.h"
#include "typ/point_record.h"
#include "typ/polygon_record.h"
#include "typ/type_names.h"

namespace korvex::typ {

namespace {

constexpr int64_t k_large_file = 70000001;

// Index entries of a class: where they start, how wide, how many.
struct Index {
    int64_t start = 0;
    int recsize = 0;
    int32_t count = 0;
};

// Line and point counts round to nearest with ties to even; polygons truncate.
int64_t round_even(double v) { return static_cast<int64_t>(std::nearbyint(v)); }

// A corrupt header may claim any count. Only entries that start inside the
// file are real, so the tables never grow beyond what the file can hold. An
// entry holds at least a type and one byte of offset, so a record size below
// three cannot fit more entries into the file.
int32_t clamp_count(Store& s, int64_t count, int64_t start, int recsize, const char* what) {
    if (count <= 0 || recsize <= 0) return 0;
    const auto size = static_cast<int64_t>(s.curf.size());
    const int64_t step = std::max(recsize, 3);
    const int64_t room = start >= size || start < 0 ? 0 : (size - start + step - 1) / step;
    if (count > room) {
        model::note_once(s, std::string(what) + " index runs past the end of the file: " +
                                std::to_string(count) + " entries claimed, " + std::to_string(room) + " read");
        count = room;
    }
    return static_cast<int32_t>(std::min<int64_t>(count, 0x7fffffff));
}

// The offset field of an index record, by record size. Records of 6 bytes
// and more carry 4-byte offsets: we write them for data beyond 16 MB, which
// 3 bytes cannot address.
int64_t offset_field(Store& s, int64_t entry, int recsize) {
    if (recsize == 3) return bit1(s, entry + 2);
    if (recsize == 4) return curf_u16(s, entry + 2);
    if (recsize >= 6) return curf_u32(s, entry + 2);
    return curf_u24(s, entry + 2);
}

int32_t to_i32(int64_t v) { return static_cast<int32_t>(std::clamp<int64_t>(v, -0x7fffffff, 0x7fffffff)); }

void decode_polygons(Store& s, platform::Prompt& ui, const Index& ix) {
    const int64_t data = curf_u32(s, hdr::pg_data);
    if (data == 0) return;
    const int32_t count = ix.count;
    for (int32_t n = 0; n < count; ++n) {
        if (n > 0 && (s.pg_pos[static_cast<size_t>(n - 1)] % 10) == 1)
            ui.progress(10 + static_cast<int>(25LL * n / count));
        const int64_t entry = ix.start + static_cast<int64_t>(n) * ix.recsize;
        const int64_t dblk = offset_field(s, entry, ix.recsize);
        const int64_t pos = data + dblk;
        s.pg_pos[static_cast<size_t>(n)] = to_i32(pos);
        const int flag = curf_byte(s, pos);
        const std::string seen = hex2(hex(flag));
        if (s.walk.flags_seen.find(seen + " ") == std::string::npos) s.walk.flags_seen += seen + " ";
        switch (flag & 15) {
            case 6:
                polygon_no_bmp(s, pos, dblk, n, flag);
                s.pg_txt[static_cast<size_t>(n)] += "[end]\r\n";
                break;
            case 7:
            case 8:
            case 9:
            case 11:
            case 13:
            case 14:
            case 15: polygon_bmp(s, pos, dblk, n, flag); break;
            default:
                model::note_once(s, std::to_string(n) + " &" + hex(pos) + "  " + s.walk.flags_seen + " Pgn type?: ");
                break;
        }
    }
}

void decode_lines(Store& s, const Index& ix) {
    const int64_t data = curf_u32(s, hdr::ln_data);
    const int64_t data_len = curf_u32(s, hdr::ln_data_len);
    const auto size = static_cast<int64_t>(s.curf.size());
    const int32_t count = ix.count;
    std::vector<int64_t> pos(static_cast<size_t>(count));
    std::vector<int64_t> next(static_cast<size_t>(count));
    for (int32_t n = 0; n < count; ++n) {
        const int64_t entry = ix.start + static_cast<int64_t>(n) * ix.recsize;
        int64_t p = data + offset_field(s, entry, ix.recsize);
        if (p > size) p = data;
        pos[static_cast<size_t>(n)] = p;
    }
    // Where each record ends: the next entry's record, or the end of the
    // data. A zero offset in a 4-byte index repeats the value before it.
    for (int32_t n = 0; n < count; ++n) {
        const auto r = static_cast<size_t>(n);
        if (n + 1 == count) {
            next[r] = data + data_len;
            break;
        }
        const int64_t field = offset_field(s, ix.start + static_cast<int64_t>(n + 1) * ix.recsize, ix.recsize);
        next[r] = ix.recsize == 4 && field == 0 && n > 0 ? next[r - 1] : data + field;
    }
    for (int32_t n = 0; n < count; ++n) {
        const auto r = static_cast<size_t>(n);
        const int64_t entry = ix.start + static_cast<int64_t>(n) * ix.recsize;
        const int code = curf_u16(s, entry);
        int32_t recsize = 0;
        // The last two records are left for their decoders to size.
        if (n < count - 2) recsize = to_i32(std::llabs(pos[r + 1] - pos[r]));
        s.ln_code[r] = ((code >> 5) << 8) | (code & 31);
        s.ln_pos[r] = to_i32(pos[r]);
        s.ln_len[r] = to_i32(std::llabs(next[r] - pos[r]));
        const int flag = curf_byte(s, pos[r]);
        s.ln_mode[r] = static_cast<uint8_t>(flag);
        const int rows = flag / 8;
        if (rows != 0 && flag != 6 && flag != 0)
            line_bmp(s, pos[r], n, flag, recsize);
        else
            line_no_bmp(s, pos[r], n, flag, recsize);
    }
}

void decode_points(Store& s, platform::Prompt& ui, const Index& ix) {
    const int64_t data = curf_u32(s, hdr::pt_data);
    const int64_t data_len = curf_u32(s, hdr::pt_data_len);
    const int32_t count = ix.count;
    const int64_t end = s.walk.end_of_standard;
    // Sizes come from the offset fields of neighbouring entries; a 1-byte
    // read stands for any record size other than 4 and 5.
    auto field_of = [&](int32_t n) -> int64_t {
        const int64_t entry = ix.start + static_cast<int64_t>(n) * ix.recsize;
        if (ix.recsize == 4) return curf_u16(s, entry + 2);
        if (ix.recsize == 5) return curf_u24(s, entry + 2);
        if (ix.recsize >= 6) return curf_u32(s, entry + 2);
        return curf_byte(s, entry + 2);
    };
    for (int32_t n = 0; n < count; ++n) {
        int64_t size;
        if (n + 1 < count) {
            size = std::llabs(field_of(n + 1) - field_of(n));
        } else {
            const int64_t entry = ix.start + static_cast<int64_t>(n) * ix.recsize;
            if (entry <= end - 4)
                size = data_len - curf_u16(s, entry + 2);
            else
                size = end - (static_cast<int64_t>(n) * ix.recsize + 2);
        }
        s.pt_len[static_cast<size_t>(n)] = to_i32(size);
        if (n % 10 == 4) ui.progress(60 + static_cast<int>(10LL * n / count));
    }
    for (int32_t n = 0; n < count; ++n) {
        if (n % 20 == 1) ui.progress(75 + static_cast<int>(21LL * n / count));
        const int64_t entry = ix.start + static_cast<int64_t>(n) * ix.recsize;
        const int64_t field = offset_field(s, entry, ix.recsize);
        const int code = curf_u16(s, entry);
        const int64_t pos = data + field;
        const int flag = curf_byte(s, pos);
        if (flag > 0) {
            poi_bmp(s, pos, n, flag, entry, code);
            continue;
        }
        // A record of flag 0 is skipped; the element keeps its type.
        std::string digits = point_type_text(code);
        if (digits.size() > 2) digits = digits.substr(2);
        while (digits.size() < 5) digits.insert(digits.begin(), '0');
        s.pt_typ[static_cast<size_t>(n)] = digits;
    }
}

}  // namespace

std::string polygon_type_text(int32_t code) {
    if (code < 8192) return "0x" + hex2(hex(code / 32)) + hex2(hex(code % 32));
    if (code == 8192) return "0x10000";
    return "0x" + hex(code / 32) + hex2(hex(code % 32));
}

std::string garmin_comment(const Store& s, const std::string& type_text, int cls) {
    if (!s.opt.show_garmin_types) return {};
    return ";" + fnbd(type_text, cls) + "\r\n";
}

bool getcurf(const Store& s) {
    // A drive letter on Windows, a separator anywhere else.
    return !s.curfile.empty() && s.curfile != "untitled.typ" &&
           s.curfile.find_first_of(":/\\") != std::string::npos;
}

std::string loadbinary(Store& s, platform::Prompt& ui, const std::string& path) {
    if (path.empty()) return {};
    if (!platform::file_exists(path)) {
        ui.message(path + " doesn't exist");
        return {};
    }
    noactive(s);
    std::string error;
    auto data = platform::read_file(path, &error);
    if (!data) {
        ui.message(path + ": " + error);
        return {};
    }
    return std::move(*data);
}

void chk_typ(Store& s, platform::Prompt& ui) {
    // 1. Reset the walk.
    s.pg_n = s.ln_n = s.pt_n = 0;
    s.pt_nx = s.ln_nact = 0;
    s.pg_nnight = s.pt_nnight = 0;
    s.drwlist.clear();
    s.walk = model::WalkState{};
    for (auto& b : s.blocks) b.clear();

    // 2. Header length: one byte; the byte at 1 is never read.
    s.hdr_len = curf_byte(s, 0);
    s.hdr_caption = header_caption(s.hdr_len);
    s.walk.active_possible = s.hdr_len >= hdr::k_active;

    // 3.
    if (s.hdr_len > hdr::k_min) s.walk.byte122 = static_cast<uint8_t>(curf_byte(s, hdr::unknown122));
    end_of_standard_data(s);

    // 4.
    s.created = created_line(s);
    s.fid = std::to_string(curf_u16(s, hdr::fid));
    s.pid = std::to_string(curf_u16(s, hdr::pid));
    s.codepage = curf_u16(s, hdr::codepage);

    // 5. The values of the walk.
    Index pg, ln, pt;
    const int64_t pg_data = curf_u32(s, hdr::pg_data);
    const int64_t pg_len = curf_u32(s, hdr::pg_data_len);
    pg.start = pg_data + pg_len;
    pg.recsize = curf_byte(s, hdr::pg_recsize);
    ln.start = curf_u32(s, hdr::ln_data) + curf_u32(s, hdr::ln_data_len);
    ln.recsize = curf_byte(s, hdr::ln_recsize);
    pt.start = model::chkl(s, 3) == '1' ? curf_u32(s, hdr::pt_index) : 0;
    pt.recsize = curf_byte(s, hdr::pt_recsize);
    if (model::chkl(s, 1) == '1' && pg.recsize > 0)
        pg.count = clamp_count(s, curf_u32(s, hdr::pg_index_len) / pg.recsize, pg.start, pg.recsize, "Polygon");
    if (model::chkl(s, 2) == '1' && ln.recsize > 0)
        ln.count = clamp_count(s, round_even(static_cast<double>(curf_u32(s, hdr::ln_index_len)) / ln.recsize),
                               ln.start, ln.recsize, "Line");
    if (model::chkl(s, 3) == '1' && pt.recsize > 0)
        pt.count = clamp_count(s, round_even(static_cast<double>(curf_u32(s, hdr::pt_index_len)) / pt.recsize),
                               pt.start, pt.recsize, "Point");
    const int32_t extra = extra_point_count(s);
    const int32_t active = model::chkl(s, 2) == '1' ? active_line_count(s) : 0;

    if (curf_u32(s, hdr::pg_index) != pg.start) model::note_once(s, "Bytes Not identical!!!");
    model::procredim(s, model::k_polygons, pg.count + 1);

    // 6. Type texts of the polygons.
    for (int32_t n = 0; n < pg.count; ++n)
        s.pg_typ[static_cast<size_t>(n)] = polygon_type_text(curf_u16(s, pg.start + static_cast<int64_t>(n) * pg.recsize));
    s.pg_n = pg.count;

    // 7. Draw order.
    const int64_t drw_off = curf_u32(s, hdr::drw);
    const int64_t drw_len = curf_u32(s, hdr::drw_len);
    if (model::chkl(s, 1) == '1' && drw_len > 0) read_draworder(s, drw_off, drw_len, curf_byte(s, hdr::drw_recsize));

    // 8, 9. Levels and sizes of the polygons, then the records.
    ui.progress(10);
    if (pg.count > 0) {
        int64_t sum = 0;
        assign_levels(s);
        for (int32_t n = 0; n < pg.count; ++n) {
            int64_t size;
            const int64_t entry = pg.start + static_cast<int64_t>(n) * pg.recsize;
            if (n + 1 < pg.count) {
                // A 3-byte index takes the u16 branch too, reading into the
                // next record: only the "more than 27 bytes" test depends on it.
                if (pg.recsize < 5)
                    size = std::llabs(curf_u16(s, entry + 2) - curf_u16(s, entry + pg.recsize + 2));
                else
                    size = std::llabs(curf_u24(s, entry + 2) - curf_u24(s, entry + pg.recsize + 2));
                sum += size;
            } else {
                size = pg_len - sum;
            }
            s.pg_len[static_cast<size_t>(n)] = to_i32(size);
        }
        decode_polygons(s, ui, pg);
    }

    // 10. Lines.
    model::procredim(s, model::k_lines, ln.count + active);
    s.ln_n = ln.count;
    if (ln.count > 0) decode_lines(s, ln);

    // 11. Points.
    ui.progress(60);
    model::procredim(s, model::k_points, pt.count + extra);
    s.pt_n = pt.count;
    if (pt.count > 0) decode_points(s, ui, pt);

    // 12, 14. Extended sections.
    if (extra > 0) poiextra_read(s);
    if (active > 0) polylinesactive(s);

    // 15.
    get_blocks(s, ui);

    // 16.
    if (s.pg_n == 0 && s.ln_n == 0 && s.pt_n == 0 && s.hdr_len >= 1 && s.pt_nx == 0 && s.ln_nact == 0) {
        std::string msg;
        if (s.hdr_len == hdr::k_extra_edit) msg += "Click Tools --> Extra Data";
        msg += "\r\nTYP file contains no visual elements.";
        if (!s.drwlist.empty()) msg += "\r\nExcept draworders.";
        ui.message(msg);
    }

    // 17.
    if (!s.walk.bad_language.empty())
        ui.message("Found wrongly parsed unicode,ie language 0x" + s.walk.bad_language);

    // 18.
    if (s.opt.complete_draworder) complete_draworder(s);
    s.pg_ni = s.pg_n;
    ui.progress(100);
}

void open_typ_bytes(Store& s, platform::Prompt& ui, std::string bytes, const std::string& path) {
    if (static_cast<int64_t>(bytes.size()) >= k_large_file)
        ui.message("Caution! TYP file is too large and may cause unexpected results.\r\nMake a backup first!");
    noactive(s);
    s.curf = std::move(bytes);
    s.curfile = path;
    chk_typ(s, ui);
    s.dirty = false;
}

bool loadfile(Store& s, platform::Prompt& ui, const std::string& path) {
    model::newproject(s);
    std::string data = loadbinary(s, ui, path);
    if (data.empty()) return false;
    open_typ_bytes(s, ui, std::move(data), path);
    return true;
}

}  // namespace korvex::typ
