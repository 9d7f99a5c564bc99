#include "workbench/unused_colours.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "workbench/cell_label.h"
#include "workbench/element_rows.h"
#include "workbench/line_check.h"
#include "workbench/picture_block.h"
#include "workbench/report_file.h"

namespace korvex::workbench {

namespace {

constexpr const char* k_class_names[] = {"Polygons", "Lines", "Points"};

// The colour lines of a polygon or line column by their role digit.
struct RoleColours {
    std::array<std::string, 4> value;  // "" when the role has no line
    int count = 0;
    bool none = false;
    bool has(int k) const { return !value[static_cast<size_t>(k)].empty(); }
};

RoleColours role_colours(const std::string& col) {
    RoleColours c;
    typ::for_each_line(col, [&](std::string_view line) {
        const ColourLineParts p = colour_parts(std::string(line), 1);
        if (p.value.empty() || p.key.size() != 1 || p.key[0] < '0' || p.key[0] > '3') return;
        c.value[static_cast<size_t>(p.key[0] - '0')] = p.value;
        ++c.count;
        c.none = c.none || p.value == "none";
    });
    return c;
}

// What a polygon or line needs: the keys no pixel uses, or a pair of equal
// colours; and, when it can be drawn plainly, the plain colours.
struct PairPlan {
    std::vector<std::string> unused;
    bool same = false;
    std::string day, night;  // the plain colours of the repair ("" night: none)
    bool any() const { return same || !unused.empty(); }
};

PairPlan plan_pairs(const std::string& col, const std::string& rows) {
    PairPlan p;
    const RoleColours c = role_colours(col);
    // A night colour without its pair has a transparent partner the table
    // does not name: no plain form draws that.
    if (c.count == 0 || c.has(2) != c.has(3)) return p;
    const bool night = c.has(3);
    const bool bitmap = !rows.empty();
    auto plain = [&](int k) {
        p.day = c.value[static_cast<size_t>(k)];
        p.night = night ? c.value[static_cast<size_t>(k + 2)] : "";
        if (p.night == p.day) p.night.clear();
    };
    if (c.has(1) && !c.none && c.value[0] == c.value[1] && (!night || c.value[2] == c.value[3])) {
        // Only what the repair can draw plainly is waste.
        if (bitmap || c.count == 2) {
            p.same = true;
            plain(0);
        }
        return p;
    }
    if (!bitmap) return p;
    const bool zero = rows.find('0') != std::string::npos;
    const bool one = rows.find('1') != std::string::npos;
    if (zero == one || !c.has(1)) return p;
    const int used = zero ? 0 : 1;
    if (c.value[static_cast<size_t>(used)] == "none" || (night && c.value[static_cast<size_t>(used + 2)] == "none"))
        return p;
    for (int k = 0; k < 4; ++k)
        if (c.has(k) && k % 2 != used) p.unused.push_back(std::to_string(k));
    plain(used);
    return p;
}

// The day and the night tables of a point: their keys in order and which
// of them the rows use.
struct PointTable {
    std::vector<std::string_view> keys;  // into the colour lines read
    std::vector<bool> used;
};

PointTable point_table(std::string_view col, const std::string& rows) {
    PointTable t;
    int cpp = 0;
    typ::for_each_line(col, [&](std::string_view line) {
        const size_t open = line.find('"');
        if (open == std::string_view::npos) return;
        const size_t cat = line.find(" c ", open + 1);
        if (cat == std::string_view::npos) return;
        t.keys.emplace_back(line.substr(open + 1, cat - open - 1));
        cpp = static_cast<int>(t.keys.back().size());
    });
    t.used.assign(t.keys.size(), false);
    if (cpp < 1 || cpp > 2) return t;
    // The scan is most of every check of a large file: one store a symbol
    // into a table of symbol codes stamped with this call's number, read
    // back for the keys only (no clearing, no lookup in the loop).
    static thread_local std::vector<uint32_t> seen(65536, 0);
    static thread_local uint32_t stamp = 0;
    if (++stamp == 0) {
        std::fill(seen.begin(), seen.end(), 0);
        stamp = 1;
    }
    const uint32_t now = stamp;
    auto code = [&](const unsigned char* p) { return cpp == 1 ? p[0] : static_cast<unsigned>(p[0] << 8 | p[1]); };
    const auto* data = reinterpret_cast<const unsigned char*>(rows.data());
    const size_t size = rows.size();
    if (cpp == 1) {
        // No key is a line end, so the rows need no splitting.
        for (size_t p = 0; p < size; ++p) seen[data[p]] = now;
    } else {
        size_t at = 0;
        while (at < size) {
            const void* nl = std::memchr(data + at, '\n', size - at);
            const size_t end = nl ? static_cast<size_t>(static_cast<const unsigned char*>(nl) - data) : size;
            size_t stop = end;
            if (stop > at && data[stop - 1] == '\r') --stop;
            for (size_t p = at; p + 2 <= stop; p += 2) seen[static_cast<size_t>(data[p] << 8 | data[p + 1])] = now;
            at = end + 1;
        }
    }
    // From the last key back: a key given twice is used at its last line
    // only, as the rewrite keeps the last; the earlier twin reads unused.
    for (size_t k = t.keys.size(); k-- > 0;) {
        const std::string_view key = t.keys[k];
        if (static_cast<int>(key.size()) != cpp) continue;
        uint32_t& mark = seen[code(reinterpret_cast<const unsigned char*>(key.data()))];
        t.used[k] = mark == now;
        mark = 0;
    }
    return t;
}

// The day colour lines and the night ones of pt_col.
std::pair<std::string_view, std::string_view> day_night(const std::string& col) {
    const size_t night = typ::find_caseless(col, "nightxpm");
    if (night == std::string::npos) return {col, {}};
    return {std::string_view(col).substr(0, night), std::string_view(col).substr(night)};
}

struct PointPlan {
    std::vector<std::string> day_unused, night_unused;
    bool any() const { return !day_unused.empty() || !night_unused.empty(); }
};

std::vector<std::string> unused_keys(const PointTable& t) {
    std::vector<std::string> out;
    if (std::none_of(t.used.begin(), t.used.end(), [](bool u) { return u; })) return out;
    for (size_t k = 0; k < t.keys.size(); ++k)
        if (!t.used[k]) out.emplace_back(t.keys[k]);
    return out;
}

// Whether a colour table names an opacity ("alpha"). Searched by its "lpha":
// a table is mostly hex digits, among which an "a" anchors in vain.
bool mentions_alpha(std::string_view col) {
    for (size_t p = typ::find_caseless(col, "lpha"); p != std::string_view::npos; p = typ::find_caseless(col, "lpha", p + 1))
        if (p > 0 && (col[p - 1] | 0x20) == 'a') return true;
    return false;
}

PointPlan plan_point(const model::Store& s, int32_t r) {
    PointPlan p;
    const auto i = static_cast<size_t>(r);
    if (mentions_alpha(s.pt_col[i]) || s.pt_typ[i].find("Night") != std::string::npos) return p;
    const auto [day, night] = day_night(s.pt_col[i]);
    p.day_unused = unused_keys(point_table(day, s.pt_bmp[i]));
    if (!night.empty() && !s.pt_nbmp[i].empty()) p.night_unused = unused_keys(point_table(night, s.pt_nbmp[i]));
    return p;
}

int32_t table_end(const model::Store& s, int cls) {
    switch (cls) {
    case model::k_polygons: return s.pg_n;
    case model::k_lines: return s.ln_n + s.ln_nact;
    default: return s.pt_n + s.pt_nx;
    }
}

// The class a store row is shown in: active lines and extra points have
// classes of their own.
int view_class(const model::Store& s, int cls, int32_t r) {
    if (cls == model::k_lines && r >= s.ln_n) return model::k_active_lines;
    if (cls == model::k_points && r >= s.pt_n) return model::k_extra_points;
    return cls;
}

std::string finding_type(const model::Store& s, int cls, int32_t r) {
    std::string t = type_text(s, view_class(s, cls, r), r);
    const size_t comma = t.find(',');
    if (comma != std::string::npos) t.resize(comma);
    return t;
}

bool line_has_bitmap(const model::Store& s, int32_t r) { return s.ln_mode[static_cast<size_t>(r)] >= 8; }

const std::string& pair_rows(const model::Store& s, int cls, int32_t r) {
    static const std::string none;
    const auto i = static_cast<size_t>(r);
    if (cls == model::k_polygons) return s.pg_bmp[i];
    return line_has_bitmap(s, r) ? s.ln_bmp[i] : none;
}

PairPlan plan_pair_row(const model::Store& s, int cls, int32_t r) {
    const auto i = static_cast<size_t>(r);
    PairPlan p = plan_pairs(cls == model::k_polygons ? s.pg_col[i] : s.ln_col[i], pair_rows(s, cls, r));
    // A plain line keeps its border: its pair is line and border, not a
    // pattern, so equal colours there are no waste this repair can take.
    if (cls == model::k_lines && !line_has_bitmap(s, r)) p.same = false;
    return p;
}

// Replaces the picture of a polygon or line section by a plain one.
void make_plain(std::vector<std::string>& lines, const PictureBlock& b, const PairPlan& p, int cls, int height) {
    std::vector<std::string> pic;
    pic.push_back(head_line(b.key, 0, 0, p.night.empty() ? 1 : 2, 0, ""));
    pic.push_back("\"0 c " + p.day + "\"");
    if (!p.night.empty()) pic.push_back("\"1 c " + p.night + "\"");
    const auto first = lines.begin() + b.head;
    lines.erase(first, lines.begin() + b.first_row + b.row_lines);
    lines.insert(lines.begin() + b.head, pic.begin(), pic.end());
    if (cls != model::k_lines) return;
    // The rows become a line as high as they were, without a border.
    set_line_widths(lines, b.head, height, 0);
}

// Drops the unused colours of one point picture and writes its rows in the
// symbols of the smaller table.
void shrink_point_picture(std::vector<std::string>& lines, const PictureBlock& b, const std::vector<std::string>& unused) {
    if (b.head < 0 || unused.empty()) return;
    std::vector<std::string> kept;
    std::vector<std::string> old_keys;
    bool none = false;
    // The keys to drop, as a sorted list: a point may drop hundreds of its colours.
    std::vector<std::string_view> drop(unused.begin(), unused.end());
    std::sort(drop.begin(), drop.end());
    for (int k = 0; k < b.colour_lines; ++k) {
        const std::string& line = lines[static_cast<size_t>(b.first_colour + k)];
        const ColourLineParts c = colour_parts(line, b.cpp);
        if (std::binary_search(drop.begin(), drop.end(), std::string_view(c.key))) continue;
        kept.push_back(line);
        old_keys.push_back(c.key);
        none = none || c.value == "none";
    }
    const int n = static_cast<int>(kept.size());
    const int cpp = n < model::cpp_limit ? 1 : 2;
    // New symbol by old symbol code: an index into syms, kept between calls
    // (a table of 65536 strings a point would cost more than the rewrite).
    static thread_local std::vector<int16_t> to(65536, -1);
    auto code = [](std::string_view key) {
        return key.size() == 1 ? static_cast<unsigned char>(key[0])
                               : static_cast<int>(static_cast<unsigned char>(key[0]) << 8 | static_cast<unsigned char>(key[1]));
    };
    std::vector<std::string> syms(static_cast<size_t>(n));
    for (int k = 0; k < n; ++k) {
        syms[static_cast<size_t>(k)] = canonical_symbol(k, n);
        std::string& line = kept[static_cast<size_t>(k)];
        const size_t open = line.find('"');
        line.replace(open + 1, old_keys[static_cast<size_t>(k)].size(), syms[static_cast<size_t>(k)]);
        to[static_cast<size_t>(code(old_keys[static_cast<size_t>(k)]))] = static_cast<int16_t>(k);
    }
    std::vector<std::string> rows;
    rows.reserve(static_cast<size_t>(b.row_lines));
    const auto step = static_cast<size_t>(std::clamp(b.cpp, 1, 2));
    for (int k = 0; k < b.row_lines; ++k) {
        const std::string& quoted_row = lines[static_cast<size_t>(b.first_row + k)];
        const size_t open_q = quoted_row.find('"');
        const size_t close_q = open_q == std::string::npos ? std::string::npos : quoted_row.find('"', open_q + 1);
        const std::string_view row = open_q == std::string::npos ? std::string_view(quoted_row)
                                     : std::string_view(quoted_row).substr(open_q + 1, close_q == std::string::npos ? std::string::npos : close_q - open_q - 1);
        std::string out = "\"";
        out.reserve(row.size() + 2);
        for (size_t p = 0; p + step <= row.size(); p += step) {
            const int16_t to_k = to[static_cast<size_t>(code(row.substr(p, step)))];
            if (to_k >= 0) out += syms[static_cast<size_t>(to_k)];
        }
        out += '"';
        rows.push_back(std::move(out));
    }
    for (const std::string& key : old_keys) to[static_cast<size_t>(code(key))] = -1;
    std::string behind = b.behind;
    const size_t mode = typ::find_caseless(behind, "colormode=16");
    if (!none && mode != std::string::npos) behind.replace(mode, 12, "Colormode=0");
    std::vector<std::string> pic;
    pic.push_back(head_line(b.key, b.width, b.height, n, cpp, behind));
    pic.insert(pic.end(), kept.begin(), kept.end());
    pic.insert(pic.end(), rows.begin(), rows.end());
    lines.erase(lines.begin() + b.head, lines.begin() + b.first_row + b.row_lines);
    lines.insert(lines.begin() + b.head, pic.begin(), pic.end());
}

// The element as a section, with view class and its row from 1.
std::string row_section(model::Store& s, int cls, int32_t r) {
    const int vc = view_class(s, cls, r);
    int32_t n = r + 1;
    if (vc == model::k_active_lines) n -= s.ln_n;
    if (vc == model::k_extra_points) n -= s.pt_n;
    return text::create_textfile(s, n, vc);
}

bool redun_row(model::Store& s, platform::Prompt& ui, int cls, int32_t r, const PointPlan* planned = nullptr) {
    const int vc = view_class(s, cls, r);
    if (cls == model::k_points) {
        const PointPlan p = planned ? *planned : plan_point(s, r);
        if (!p.any()) return false;
        std::vector<std::string> lines = section_lines(row_section(s, cls, r));
        const PictureBlock day = find_picture(lines, {"dayxpm=", "xpm="});
        if (day.head < 0) return false;
        shrink_point_picture(lines, day, p.day_unused);
        // The day picture keeps its head line where it was.
        const PictureBlock night = find_picture(lines, {"nightxpm="}, day.head + 1);
        shrink_point_picture(lines, night, p.night_unused);
        parse_into(s, ui, vc, r, joined_section(lines));
        return true;
    }
    const PairPlan p = plan_pair_row(s, cls, r);
    if (!p.any() || p.day.empty()) return false;
    std::vector<std::string> lines = section_lines(row_section(s, cls, r));
    const PictureBlock b = find_picture(lines, {"xpm="});
    if (b.head < 0) return false;
    make_plain(lines, b, p, cls, b.row_lines);
    parse_into(s, ui, vc, r, joined_section(lines));
    return true;
}

// The check of one class; plans, when given, keeps each point's plan for the
// repair that may follow, so the pictures are scanned once.
ColourCheck unused_in_class(const model::Store& s, int cls, std::vector<PointPlan>* plans, bool findings = true,
                            bool lines = true) {
    ColourCheck out;
    if (cls < model::k_polygons || cls > model::k_points) return out;
    const int32_t end = table_end(s, cls);
    if (plans && cls == model::k_points) plans->assign(static_cast<size_t>(end), PointPlan{});
    for (int32_t r = 0; r < end; ++r) {
        std::vector<std::string> keys;
        bool same = false;
        if (cls == model::k_points) {
            PointPlan p = plan_point(s, r);
            keys = plans ? p.day_unused : std::move(p.day_unused);
            for (const std::string& k : p.night_unused) keys.push_back("night " + k);
            if (plans) (*plans)[static_cast<size_t>(r)] = std::move(p);
        } else {
            const PairPlan p = plan_pair_row(s, cls, r);
            same = p.same;
            keys = p.unused;
        }
        if (!same && keys.empty()) continue;
        const std::string type = finding_type(s, cls, r);
        const std::string number = std::to_string(r + 1);
        if (same) {
            if (lines) out.lines += number + " " + type + " 1 (same colour)\r\n";
            if (findings) out.findings.push_back({cls, type, "unused-colours", "1 (same colour)"});
        }
        if (lines)
            for (const std::string& k : keys) out.lines.append(number).append(" ").append(type).append(" ").append(k).append("\r\n");
        // One finding an element, naming every key: a point of 255 colours may
        // leave hundreds unused, and a pipeline wants the element, not each key.
        if (findings && !keys.empty()) {
            std::string message = "unused";
            for (const std::string& k : keys) message.append(" ").append(k);
            out.findings.push_back({cls, type, "unused-colours", std::move(message)});
        }
    }
    return out;
}

std::string report_of(const ColourCheck& c, int cls) {
    if (c.empty()) return {};
    return std::string("UNUSED COLOURS: ") + k_class_names[cls] + "\r\n" + c.lines;
}

int32_t redun_class(model::Store& s, int cls, const std::vector<PointPlan>* plans) {
    if (cls < model::k_polygons || cls > model::k_points) return 0;
    platform::QuietPrompt quiet;
    int32_t changed = 0;
    const int32_t end = table_end(s, cls);
    const bool planned = plans && cls == model::k_points && plans->size() == static_cast<size_t>(end);
    for (int32_t r = 0; r < end; ++r)
        if (redun_row(s, quiet, cls, r, planned ? &(*plans)[static_cast<size_t>(r)] : nullptr)) ++changed;
    return changed;
}

}  // namespace

ColourCheck unused_colour_check(const model::Store& s, int cls) { return unused_in_class(s, cls, nullptr); }

Findings unused_colour_findings(const model::Store& s, int cls) {
    return std::move(unused_in_class(s, cls, nullptr, true, false).findings);
}

std::string checkcols(const model::Store& s, int cls) { return report_of(unused_colour_check(s, cls), cls); }

int32_t redun(model::Store& s, int cls) { return redun_class(s, cls, nullptr); }

bool fix_unused_colours(model::Store& s, platform::Prompt& ui, const std::string& data_folder, bool draworder_view) {
    if (draworder_view) {
        ui.message("Change to Polygons.");
        return false;
    }
    std::string report;
    bool any = false;
    std::vector<PointPlan> plans;
    for (int cls = model::k_polygons; cls <= model::k_points; ++cls) {
        const std::string part = report_of(unused_in_class(s, cls, &plans, false), cls);
        any = any || !part.empty();
        report += "chc" + std::to_string(cls) + "\r\n" + part;
    }
    if (!any) {
        ui.message("No unused colours found.");
        return false;
    }
    show_report(ui, data_folder, "system/bin/colorcheck.txt", "Fix Unused Colours", report);
    if (!ui.yes_no("Remove unused colours?")) return false;
    int32_t changed = 0;
    for (int cls = model::k_polygons; cls <= model::k_points; ++cls) changed += redun_class(s, cls, &plans);
    if (changed == 0) return false;
    s.dirty = true;
    ui.message("Unused colours have been removed.");
    return true;
}

std::string finchk_text(const model::Store& s, const std::string& fixed_types) {
    std::string out;
    const std::pair<int, const char*> classes[] = {{model::k_points, "Found Points with unused colours."},
                                                   {model::k_polygons, "Found Polygons with unused colours."},
                                                   {model::k_lines, "Found Lines with unused colours."}};
    for (const auto& [cls, words] : classes)
        if (table_end(s, cls) > 0 && !unused_colour_check(s, cls).empty()) out += std::string(words) + "\r\n";
    if (!out.empty()) out += "Go Tools -->Fix Unused Colours\r\n";
    if (!convertible_lines(s).empty()) out += "Found Lines which could be converted to non-bitmap\r\nTools --> Check Lines ...\r\n";
    if (!out.empty()) out += "Cancel message in Preference --> Elements.";
    if (!fixed_types.empty()) {
        if (!out.empty()) out += "\r\n";
        out += "Fixed Pois with xpm and bmp not matching. Please Check txt file:\r\n" + fixed_types;
    }
    return out;
}

}  // namespace korvex::workbench
