#include "typ/header.h"

#include <algorithm>

#include "typ/curf_access.h"

namespace korvex::typ {

namespace {

std::string two(int v) {
    std::string t = std::to_string(v);
    return t.size() < 2 ? "0" + t : t;
}

}  // namespace

std::string created_line(Store& s) {
    // Day from 17, month from 16 plus one: files this program saves therefore
    // show day and month exchanged. Kept on purpose; see write_date.
    int year = curf_u16(s, hdr::year);
    if (year < 1900) year += 1900;
    const int month = curf_byte(s, hdr::month_or_day) + 1;
    const int day = curf_byte(s, hdr::day_or_month);
    const int hour = curf_byte(s, hdr::hour);
    const int minute = curf_byte(s, hdr::minute);
    return "Created  " + std::to_string(day) + "/" + std::to_string(month) + "/" + std::to_string(year) +
           " " + two(hour) + ":" + two(minute);
}

void write_date(Store& s, const platform::Stamp& now) {
    head(s, hdr::year, (now.year % 100) + 100);
    head(s, hdr::year + 1, 0);
    head(s, hdr::month_or_day, now.day);
    head(s, hdr::day_or_month, now.month);
    head(s, hdr::hour, now.hour);
    head(s, hdr::minute, now.minute);
    head(s, hdr::second, now.second);
}

std::string header_caption(int32_t len) {
    std::string h = lower(hex(len));
    if (h.size() < 2) h = "0" + h;
    return " " + h;
}

int32_t caption_value(const std::string& caption) {
    std::string digits;
    for (char c : caption)
        if (c != ' ') digits += c;
    if (digits.empty()) return 0;
    return static_cast<int32_t>(std::min<int64_t>(hex_value(digits), 0x7fffffff));
}

int32_t end_of_standard_data(Store& s) {
    int64_t end = 0;
    if (s.hdr_len > hdr::k_min) end = curf_u32(s, hdr::blk0);
    struct Next {
        int min_len;
        int field;
    };
    static constexpr Next nexts[] = {{111, 114}, {131, 130}, {147, 146}, {157, 156}, {165, 164}};
    for (const auto& n : nexts) {
        if (end != 0) break;
        if (s.hdr_len >= n.min_len) end = curf_u32(s, n.field);
    }
    if (end != 0) {
        s.walk.has_extended_data = true;
        s.walk.end_of_standard = static_cast<int32_t>(std::min<int64_t>(end, 0x7fffffff));
    } else {
        s.walk.end_of_standard = static_cast<int32_t>(s.curf.size());
    }
    return s.walk.end_of_standard;
}

bool get_blocks(Store& s, platform::Prompt& ui) {
    if (s.hdr_caption.empty()) s.hdr_caption = header_caption(s.opt.hdr_def < 91 ? 110 : s.opt.hdr_def);
    const int32_t wanted = caption_value(s.hdr_caption);
    if (s.hdr_len < wanted && !s.curf.empty()) {
        for (int64_t p = s.hdr_len; p < wanted; ++p) head(s, p, 0);
    }
    s.hdr_len = wanted;
    if (s.hdr_len < hdr::k_min) {
        ui.message("Select Header.");
        return false;
    }
    for (auto& b : s.blocks) b.clear();
    if (s.hdr_len == hdr::k_min) return true;
    for (int n = 0; n < 6; ++n) {
        if (n >= 2 && n <= 4 && s.hdr_len < 111) continue;
        if (n == 5 && s.hdr_len < 157) continue;
        const int64_t len = curf_u32(s, hdr::block_len[n]);
        if (len <= 0) continue;
        const int64_t off = curf_u32(s, hdr::block_ptr[n]);
        // Only bytes that exist are copied: a corrupt length must not make
        // us allocate what the file cannot hold.
        const auto size = static_cast<int64_t>(s.curf.size());
        if (off >= size) {
            note_overrun(s, off);
            continue;
        }
        const int64_t take = std::min(len, size - off);
        if (take < len) note_overrun(s, size);
        s.blocks[static_cast<size_t>(n)] = s.curf.substr(static_cast<size_t>(off), static_cast<size_t>(take));
    }
    return true;
}

bool choose_header_length(Store& s, platform::Prompt& ui, bool tofile) {
    int32_t wanted = caption_value(s.hdr_caption);
    if (wanted < s.hdr_len && tofile) {
        std::string warning;
        if (wanted < hdr::k_extra && s.pt_nx > 0) warning += "Your Extra Points will not be saved!\r\n";
        if (wanted < hdr::k_active && s.ln_nact > 0) warning += "Your Active Routing will not be saved!\r\n";
        if (!ui.yes_no(warning + "Important data may get lost.\r\nContinue anyway?\r\nHeader was changed!"))
            return false;
    } else if (s.ln_nact > 0) {
        wanted = hdr::k_active;
    }
    if (wanted > s.hdr_len && !s.curf.empty()) {
        if (static_cast<int64_t>(s.curf.size()) < wanted) s.curf.append(1000, '0');
        for (int64_t p = s.hdr_len; p < wanted; ++p) head(s, p, 0);
    }
    s.hdr_len = wanted;
    return true;
}

}  // namespace korvex::typ
