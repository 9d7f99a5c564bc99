#include "typ/encoder.h"

#include <cctype>

#include "platform/files.h"
#include "typ/curf_access.h"
#include "typ/draw_order.h"
#include "typ/extended_sections.h"
#include "typ/header.h"
#include "typ/line_record.h"
#include "typ/point_record.h"
#include "typ/polygon_record.h"

namespace korvex::typ {

namespace {

constexpr char k_magic[] = "GARMIN TYP";

void put_u16(Store& s, int64_t pos, int64_t value) {
    head(s, pos, static_cast<int>(value & 0xff));
    head(s, pos + 1, static_cast<int>((value >> 8) & 0xff));
}

int64_t to_number(const std::string& text) {
    int64_t v = 0;
    for (char c : text) {
        if (c == ' ') continue;
        if (c < '0' || c > '9') break;
        v = v * 10 + (c - '0');
        if (v > 0xffffff) break;
    }
    return v;
}

// The codepage checks of a save to disk; false ends the save.
bool codepage_allowed(Store& s, platform::Prompt& ui) {
    if (s.codepage <= 0 || s.codepage >= 65536) {
        ui.message("Unusual Codepage");
        return false;
    }
    if (s.codepage >= 1259 && s.codepage != 65001)
        return ui.yes_no_cancel("Unusual Codepage\r\n\r\nContinue?") == platform::Answer::yes;
    return true;
}

// The label blocks (2 to 5) that the header of the open file names but that were
// not read in full: only then are labels of extra points missing. A project
// from text, or a file without such blocks, lacks nothing: every extra point
// carries its own record, and blocks 0 and 1 are built from the rows.
bool label_blocks_lost(Store& s) {
    if (s.curf.size() < 2) return false;
    const int file_hdr_len = curf_u16(s, 0);
    for (int n = 2; n < 6; ++n) {
        if (hdr::block_len[n] + 4 > file_hdr_len || hdr::block_len[n] + 4 > static_cast<int64_t>(s.curf.size())) continue;
        const int64_t named = curf_u32(s, hdr::block_len[n]);
        if (named > 0 && static_cast<int64_t>(s.blocks[static_cast<size_t>(n)].size()) < named) return true;
    }
    return false;
}

// The copy of a map's TYP beside it, "_copy.typ" in place of ".typ", made
// once: an existing copy is the original and stays.
void keep_family_copy(const Store& s, platform::Prompt& ui) {
    std::string low = s.curfile;
    for (char& c : low) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (low.find("i0000") == std::string::npos || !low.ends_with(".typ")) return;
    const std::string copy = s.curfile.substr(0, s.curfile.size() - 4) + "_copy.typ";
    if (platform::file_exists(copy)) return;
    const auto old = platform::read_file(s.curfile);
    if (!old || !platform::write_file_atomic(copy, *old)) return;
    ui.message("\r\n\r\nCreated a copy:" + copy);
}

}  // namespace

bool save_typ(Store& s, platform::Prompt& ui, const platform::Clock& clock, bool tofile) {
    // 1.
    if (s.hdr_len < hdr::k_min) {
        ui.message("Select Header.");
        return false;
    }
    // 3. A map's own TYP ("i0000...") keeps what it was before its first save.
    if (tofile && s.from_family) {
        keep_family_copy(s, ui);
        s.from_family = false;
    }
    // 4.
    if (s.hdr_caption.empty()) s.hdr_caption = header_caption(s.opt.hdr_def < 91 ? 110 : s.opt.hdr_def);

    // The codepage is checked before anything changes, so a refusal leaves
    // the loaded file intact.
    if (tofile && !codepage_allowed(s, ui)) return false;

    // 5.
    const int32_t old_len = s.hdr_len;
    if (!choose_header_length(s, ui, tofile)) return false;

    // 6. Bytes 91 to the header's end are kept as they were; a grown header
    // without extra points starts clean but for the packing byte at 101.
    std::string kept;
    if (s.hdr_len > hdr::k_min) {
        const bool grown = s.hdr_len > old_len;
        kept.reserve(static_cast<size_t>(s.hdr_len - hdr::k_min));
        for (int64_t p = hdr::k_min; p < s.hdr_len; ++p) {
            const bool from_old = p < static_cast<int64_t>(s.curf.size());
            int byte = from_old ? static_cast<unsigned char>(s.curf[static_cast<size_t>(p)]) : 0;
            if (grown && s.pt_nx == 0 && p != hdr::blk0_packing) byte = 0;
            kept += static_cast<char>(byte);
        }
    }

    const bool labels_lost = s.pt_nx > 0 && tofile && label_blocks_lost(s);

    // 7. A fresh buffer of zeros, grown as the sections are written.
    const size_t estimate = s.curf.size() + 4096;
    s.curf.clear();
    s.curf.shrink_to_fit();
    s.curf.reserve(estimate);
    s.curf.assign(static_cast<size_t>(s.hdr_len), '\0');
    for (size_t k = 0; k < kept.size(); ++k) s.curf[hdr::k_min + k] = kept[k];

    // 8.
    s.loadrep.clear();
    s.walk.overrun_noted = false;

    // 9. The fixed header.
    head(s, 0, s.hdr_len & 0xff);
    head(s, 1, 0);
    for (int k = 0; k < 10; ++k) head(s, 2 + k, k_magic[k]);
    head(s, 12, 1);
    head(s, 13, 0);
    write_date(s, clock.now());
    put_u16(s, hdr::codepage, s.codepage);
    put_u16(s, hdr::fid, to_number(s.fid));
    put_u16(s, hdr::pid, to_number(s.pid));
    head(s, hdr::pt_recsize, s.pt_n > 0 ? 4 : 0);
    put_head4(s, static_cast<int64_t>(s.pt_n) * 4, hdr::pt_index_len);
    head(s, hdr::ln_recsize, s.ln_n > 0 ? 4 : 0);
    put_head4(s, static_cast<int64_t>(s.ln_n) * 4, hdr::ln_index_len);

    // 10, 11. Sections without gaps.
    int64_t at = save_polygons(s, s.hdr_len);
    at = save_polylines(s, at);
    at = save_pois(s, at);
    at = save_draworder(s, ui, at, tofile);

    // 12. Extended data.
    if (s.hdr_len > hdr::k_min) {
        if (s.pt_nx > 0) save_extra_points(s);
        if (s.hdr_len > hdr::k_extra) {
            head(s, hdr::unknown122, s.walk.byte122 == 0 ? 6 : s.walk.byte122);
            head(s, 126, 27);
            head(s, 142, 27);
            head(s, 138, 6);
            head(s, 154, 19);
        }
    }

    // 13. Labels of extra points that the file held but that could not be
    // read cannot be completed.
    if (labels_lost)
        ui.message("Cannot find data labels. Extra Points not saved correctly.");

    // 14. Blocks behind everything, each only where the header has its fields.
    for (int n = 0; n < 6; ++n) {
        const std::string& b = s.blocks[static_cast<size_t>(n)];
        if (b.empty()) continue;
        if (hdr::block_ptr[n] + 4 > s.hdr_len || hdr::block_len[n] + 4 > s.hdr_len) continue;
        put_head4(s, at, hdr::block_ptr[n]);
        put_head4(s, static_cast<int64_t>(b.size()), hdr::block_len[n]);
        if (static_cast<int64_t>(s.curf.size()) < at) s.curf.resize(static_cast<size_t>(at), '\0');
        s.curf.replace(static_cast<size_t>(at), std::min(b.size(), s.curf.size() - static_cast<size_t>(at)), b);
        at += static_cast<int64_t>(b.size());
    }

    // 15.
    s.curf.resize(static_cast<size_t>(at), '\0');
    if (at > k_max_typ_size) {
        ui.message("TYP file is too large to be saved.");
        return false;
    }
    s.extra_offset = static_cast<int32_t>(curf_u32(s, hdr::blk1));
    s.hdr_caption = header_caption(s.hdr_len);
    return true;
}

bool SaveFile(Store& s, platform::Prompt& ui, const std::string& path, platform::FileSystem& fs) {
    std::string error;
    if (!platform::write_file_atomic(path, s.curf, &error, fs)) {
        ui.message("Cannot save " + path + ": " + error);
        return false;
    }
    s.dirty = false;
    ui.message("File: \r\n" + path + "\r\n saved.");
    return true;
}

}  // namespace korvex::typ
