#include "workbench/unused_colours.h"

#include <algorithm>
#include <array>

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
    std::vector<std::string> keys;
    std::vector<bool> used;
    bool alpha = false;
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
        t.alpha = t.alpha || typ::contains_caseless(line.substr(cat), "alpha");
        cpp = static_cast<int>(t.keys.back().size());
    });
    t.used.assign(t.keys.size(), false);
    if (cpp < 1 || cpp > 2) return t;
    // Colour index by symbol code; the table is kept between calls and only
    // the entries set are cleared again.
    static thread_local std::vector<int16_t> index(65536, -1);
    auto code = [&](const char* p) {
        const auto a = static_cast<unsigned char>(p[0]);
        return cpp == 1 ? a : static_cast<int>(a << 8 | static_cast<unsigned char>(p[1]));
    };
    for (size_t k = 0; k < t.keys.size(); ++k)
        if (static_cast<int>(t.keys[k].size()) == cpp) index[static_cast<size_t>(code(t.keys[k].data()))] = static_cast<int16_t>(k);
    auto lookup = [&](const char* p) -> int { return index[static_cast<size_t>(code(p))]; };
    size_t at = 0;
    while (at < rows.size()) {
        size_t end = rows.find('\n', at);
        if (end == std::string::npos) end = rows.size();
        size_t stop = end;
        if (stop > at && rows[stop - 1] == '\r') --stop;
        for (size_t p = at; p + static_cast<size_t>(cpp) <= stop; p += static_cast<size_t>(cpp)) {
            const int k = lookup(rows.data() + p);
            if (k >= 0) t.used[static_cast<size_t>(k)] = true;
        }
        at = end + 1;
    }
    for (const std::string& key : t.keys)
        if (static_cast<int>(key.size()) == cpp) index[static_cast<size_t>(code(key.data()))] = -1;
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
        if (!t.used[k]) out.push_back(t.keys[k]);
    return out;
}

PointPlan plan_point(const model::Store& s, int32_t r) {
    PointPlan p;
    const auto i = static_cast<size_t>(r);
    if (typ::contains_caseless(s.pt_col[i], "alpha") || s.pt_typ[i].find("Night") != std::string::npos) return p;
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
    int at = b.head;
    for (int k = static_cast<int>(lines.size()) - 1; k >= 0; --k) {
        const std::string low = typ::lower(lines[static_cast<size_t>(k)]);
        if (low.rfind("linewidth=", 0) == 0 || low.find("lwidth(=") != std::string::npos ||
            low.rfind("borderwidth=", 0) == 0) {
            lines.erase(lines.begin() + k);
            if (k < at) --at;
        }
    }
    lines.insert(lines.begin() + at, {"LineWidth=" + std::to_string(height), "BorderWidth=0"});
}

// Drops the unused colours of one point picture and writes its rows in the
// symbols of the smaller table.
void shrink_point_picture(std::vector<std::string>& lines, const PictureBlock& b, const std::vector<std::string>& unused) {
    if (b.head < 0 || unused.empty()) return;
    std::vector<std::string> kept;
    std::vector<std::string> old_keys;
    bool none = false;
    for (int k = 0; k < b.colour_lines; ++k) {
        const std::string& line = lines[static_cast<size_t>(b.first_colour + k)];
        const ColourLineParts c = colour_parts(line, b.cpp);
        if (std::find(unused.begin(), unused.end(), c.key) != unused.end()) continue;
        kept.push_back(line);
        old_keys.push_back(c.key);
        none = none || c.value == "none";
    }
    const int n = static_cast<int>(kept.size());
    const int cpp = n < model::cpp_limit ? 1 : 2;
    std::vector<std::string> to(65536);
    auto code = [](std::string_view key) {
        return key.size() == 1 ? static_cast<unsigned char>(key[0])
                               : static_cast<int>(static_cast<unsigned char>(key[0]) << 8 | static_cast<unsigned char>(key[1]));
    };
    for (int k = 0; k < n; ++k) {
        const std::string sym = canonical_symbol(k, n);
        std::string& line = kept[static_cast<size_t>(k)];
        const size_t open = line.find('"');
        line = line.substr(0, open + 1) + sym + line.substr(open + 1 + old_keys[static_cast<size_t>(k)].size());
        to[static_cast<size_t>(code(old_keys[static_cast<size_t>(k)]))] = sym;
    }
    std::vector<std::string> rows;
    const auto step = static_cast<size_t>(std::clamp(b.cpp, 1, 2));
    for (int k = 0; k < b.row_lines; ++k) {
        const std::string row = unquoted(lines[static_cast<size_t>(b.first_row + k)]);
        std::string out = "\"";
        out.reserve(row.size() + 2);
        for (size_t p = 0; p + step <= row.size(); p += step)
            out += to[static_cast<size_t>(code(std::string_view(row).substr(p, step)))];
        rows.push_back(out + "\"");
    }
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

bool redun_row(model::Store& s, platform::Prompt& ui, int cls, int32_t r) {
    const int vc = view_class(s, cls, r);
    if (cls == model::k_points) {
        const PointPlan p = plan_point(s, r);
        if (!p.any()) return false;
        std::vector<std::string> lines = section_lines(row_section(s, cls, r));
        const PictureBlock day = find_picture(lines, {"dayxpm=", "xpm="});
        if (day.head < 0) return false;
        shrink_point_picture(lines, day, p.day_unused);
        const PictureBlock night = find_picture(lines, {"nightxpm="}, find_picture(lines, {"dayxpm=", "xpm="}).head + 1);
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

}  // namespace

ColourCheck unused_colour_check(const model::Store& s, int cls) {
    ColourCheck out;
    if (cls < model::k_polygons || cls > model::k_points) return out;
    const int32_t end = table_end(s, cls);
    for (int32_t r = 0; r < end; ++r) {
        std::vector<std::string> keys;
        bool same = false;
        if (cls == model::k_points) {
            const PointPlan p = plan_point(s, r);
            keys = p.day_unused;
            for (const std::string& k : p.night_unused) keys.push_back("night " + k);
        } else {
            const PairPlan p = plan_pair_row(s, cls, r);
            same = p.same;
            keys = p.unused;
        }
        if (!same && keys.empty()) continue;
        const std::string type = finding_type(s, cls, r);
        const std::string number = std::to_string(r + 1);
        if (same) {
            const std::string line = number + " " + type + " 1 (same colour)";
            out.lines += line + "\r\n";
            out.findings.push_back({cls, type, "unused-colours", "1 (same colour)"});
        }
        for (const std::string& k : keys) {
            out.lines += number + " " + type + " " + k + "\r\n";
            out.findings.push_back({cls, type, "unused-colours", "unused colour " + k});
        }
    }
    return out;
}

std::string checkcols(const model::Store& s, int cls) {
    const ColourCheck c = unused_colour_check(s, cls);
    if (c.empty()) return {};
    return std::string("UNUSED COLOURS: ") + k_class_names[cls] + "\r\n" + c.lines;
}

int32_t redun(model::Store& s, int cls) {
    if (cls < model::k_polygons || cls > model::k_points) return 0;
    platform::QuietPrompt quiet;
    int32_t changed = 0;
    const int32_t end = table_end(s, cls);
    for (int32_t r = 0; r < end; ++r)
        if (redun_row(s, quiet, cls, r)) ++changed;
    return changed;
}

bool fix_unused_colours(model::Store& s, platform::Prompt& ui, const std::string& data_folder, bool draworder_view) {
    if (draworder_view) {
        ui.message("Change to Polygons.");
        return false;
    }
    std::string report;
    bool any = false;
    for (int cls = model::k_polygons; cls <= model::k_points; ++cls) {
        const std::string part = checkcols(s, cls);
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
    for (int cls = model::k_polygons; cls <= model::k_points; ++cls) changed += redun(s, cls);
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
