#include "workbench/element_ops.h"

#include <algorithm>
#include <cctype>

#include "typ/curf_access.h"
#include "typ/extended_sections.h"
#include "typ/type_range.h"
#include "workbench/draworder_entries.h"
#include "workbench/element_rows.h"
#include "workbench/message_ids.h"
#include "workbench/row_ops.h"
#include "workbench/sort_rows.h"
#include "workbench/step_names.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

constexpr int k_max_point_side = 128;
constexpr int k_max_level = 256;
constexpr int64_t k_max_extra_id = 0xffff;
constexpr size_t k_extra_id_digits = 4;
constexpr int k_activities = 6;

const char* class_heading(int cls) {
    switch (cls) {
    case model::k_polygons: return "Polygon.";
    case model::k_lines:
    case model::k_active_lines: return "Line.";
    default: return "POI.";
    }
}

bool all_of(const std::string& t, const char* set) {
    return !t.empty() && t.find_first_not_of(set) == std::string::npos;
}

// The digits of a typed type: an "0x" in front and blanks go.
std::string typed_digits(std::string t) {
    t.erase(std::remove_if(t.begin(), t.end(), [](char c) { return c == ' ' || c == '\t'; }), t.end());
    if (t.size() > 1 && t[0] == '0' && (t[1] == 'x' || t[1] == 'X')) t.erase(0, 2);
    return t;
}

// The refusals of an extra point's id.
std::vector<std::string> check_id(const model::Store& s, const NewElementForm& f) {
    const std::string id = typed_digits(f.type);
    if (id.empty()) return {"ID?"};
    int64_t value = 0;
    if (f.hex) {
        if (!all_of(id, "ABCDEFabcdef0123456789")) return {"ID not valid"};
        const std::string significant = id.substr(std::min(id.find_first_not_of('0'), id.size()));
        if (significant.size() > k_extra_id_digits) return {"4 bytes only"};
        value = typ::hex_value(id);
    } else {
        if (!all_of(id, "0123456789")) return {"ID not valid"};
        if (id.size() > 6) return {"Too large"};
        value = std::stoll(id);
    }
    if (value > k_max_extra_id) return {"Too large"};
    if (value == 0) return {"ID not valid"};
    for (int32_t r = s.pt_n; r < s.pt_n + s.pt_nx; ++r)
        if (row_type_code(s, model::k_extra_points, r) == value) return {"ID " + f.type + " exists"};
    return {};
}

}  // namespace

std::string activity_of_index(int n) {
    if (n < 0 || n >= k_activities) return {};
    return typ::hex((n / 3) * 16 + n % 3 + 64);
}

std::string activity_name(const std::string& code) {
    const std::string name = typ::chkactivity(code);
    return name.empty() ? std::string("Walking") : name;
}

std::vector<std::string> check_form(const model::Store& s, const NewElementForm& f, const integration::Messages& msgs) {
    if (f.cls == model::k_extra_points) return check_id(s, f);
    const std::string digits = typed_digits(f.type);
    // Text that is no type number at all gets the same word as a type out of range.
    const bool no_number = (!digits.empty() && !all_of(digits, "ABCDEFabcdef0123456789")) || digits.size() > 5;
    std::vector<std::string> out = no_number ? std::vector<std::string>{"Invalid type."} : typ::chktype(digits, f.cls);
    if (!out.empty()) {
        out.back() += std::string("\r\n") + class_heading(f.cls);
        return out;
    }
    const int32_t code = type_code(digits);
    bool exists = false;
    if (f.cls == model::k_active_lines) {
        const std::string act = activity_of_index(f.activity);
        if (act.empty()) return {msgs.get_msg(m_please_select)};
        for (int32_t r = s.ln_n; r < s.ln_n + s.ln_nact && !exists; ++r)
            exists = s.ln_code[static_cast<size_t>(r)] == code && s.ln_act[static_cast<size_t>(r)] == act;
    } else {
        exists = TypeIndex(s, f.cls).has(code);
    }
    if (exists) return {msgs.get_msg(m_type_exists) + "\r\n" + class_heading(f.cls)};
    if (f.cls == model::k_polygons && (f.level < 0 || f.level >= k_max_level)) return {"Draworder < 256 "};
    if (f.cls == model::k_points &&
        (f.width < 1 || f.height < 1 || f.width > k_max_point_side || f.height > k_max_point_side))
        return {msgs.get_msg(m_bitmap_sizes)};
    return {};
}

ElementOps::ElementOps(model::Store& s, platform::Prompt& ui, platform::Clipboard& clip,
                       const integration::Messages& msgs, const AppSettings& settings, ElementDialogs& dialogs,
                       OpsHost& host)
    : s_(s), ui_(ui), clip_(clip), msgs_(msgs), settings_(settings), dialogs_(dialogs), host_(host) {}

bool ElementOps::blocked() const { return host_.loading(); }

int32_t ElementOps::finish(int cls, int32_t row) {
    const int32_t placed = sort_types(s_, cls, row);
    host_.tables_changed(placed);
    return placed;
}

bool ElementOps::mdelete(const std::vector<int32_t>& rows) {
    if (blocked()) return false;
    const int cls = s_.curclass;
    if (cls < 0 || cls >= 5 || end_row(s_, cls) - first_row(s_, cls) < 1 || rows.empty()) return false;
    if (s_.opt.ask_reload_undo &&
        ui_.yes_no_cancel(msg(m_reload_to_undo) + "\r\n\r\n" + msg(m_continue)) != platform::Answer::yes)
        return false;
    const int32_t first = *std::min_element(rows.begin(), rows.end());
    auto step = open_step(history_, "Delete", Scope::rows_of(cls, {}));
    const std::vector<std::string> types = remove_elements(s_, cls, rows);
    if (types.empty()) return false;
    if (step) step->rename(step_name("Delete", static_cast<int64_t>(types.size()), cls));
    for (const std::string& t : types) host_.log_line(table_of(cls), "deleting:" + t);
    // The element behind the first one deleted takes its place.
    const int32_t end = end_row(s_, cls);
    host_.tables_changed(end > first_row(s_, cls) ? std::clamp(first, first_row(s_, cls), end - 1) : -1);
    return true;
}

bool ElementOps::cut(const std::vector<int32_t>& rows) {
    const int cls = s_.curclass;
    auto step = open_step(history_, "Cut", Scope::rows_of(cls, {}));
    const int32_t before = end_row(s_, cls) - first_row(s_, cls);
    if (!mcopy(rows) || !mdelete(rows)) return false;
    if (step) step->rename(step_name("Cut", before - (end_row(s_, cls) - first_row(s_, cls)), cls));
    return true;
}

int32_t ElementOps::renumbered(int cls, int32_t row, int32_t old_code) {
    if (row < first_row(s_, cls) || row >= end_row(s_, cls)) return row;
    const int32_t code = row_type_code(s_, cls, row);
    if (code == old_code) return row;
    const auto step = open_step(history_, "Renumber", Scope::row_of(cls, row));
    if (cls == model::k_polygons) {
        // Every layer of the old type goes over to the new one.
        const auto r = static_cast<size_t>(row);
        std::vector<int> levels = draworder_layers(s_)[old_code];
        if (levels.empty() && r < s_.pg_drw.size() && entry_level(s_.pg_drw[r]) >= 0) levels = {entry_level(s_.pg_drw[r])};
        bool shared = false;
        for (int32_t k = 0; k < s_.pg_n && !shared; ++k) shared = k != row && row_type_code(s_, cls, k) == old_code;
        bool can_have = true;
        drw_code(code, &can_have);
        if (!can_have && !levels.empty()) levels = {0};
        // The layers change their type at their places in the draw order.
        if (shared || !can_have || !rename_draworder(s_, old_code, code)) {
            if (!shared) {
                remove_draworder(s_.drwlist, old_code);
                remove_draworder(s_.walk.no_level_types, old_code);
            }
            std::vector<std::pair<int32_t, int>> pairs;
            for (const int level : levels) pairs.emplace_back(code, level);
            add_draworders(s_, pairs);
        }
        if (!levels.empty()) {
            if (s_.pg_drw.size() <= r) s_.pg_drw.resize(r + 1);
            s_.pg_drw[r] = drw_entry(code, levels);
        }
    }
    const int32_t placed = swap_types(s_, cls, row);
    host_.log_line(table_of(cls), msg(m_changed_type) + "0x" + five_digits(old_code) + msg(m_to) + "0x" + five_digits(code));
    host_.tables_changed(placed);
    return placed;
}

}  // namespace korvex::workbench
