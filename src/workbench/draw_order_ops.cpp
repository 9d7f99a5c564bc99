#include "workbench/draw_order_ops.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>
#include <unordered_set>

#include "typ/curf_access.h"
#include "workbench/draw_order_model.h"
#include "workbench/message_ids.h"
#include "workbench/selection.h"

namespace korvex::workbench {

namespace {

constexpr int k_min_level_limit = 99;
constexpr int k_max_type = 0x1ff, k_max_subtype = 0x1f, k_first_extended = 0x100;
// The background polygon stays in the draw order without a polygon of its own.
constexpr const char* k_background = "004B";

bool is_digits(const std::string& t) {
    return !t.empty() && std::all_of(t.begin(), t.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); });
}

bool all_hex(const std::string& t) {
    return !t.empty() && std::all_of(t.begin(), t.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
}

std::string trimmed(const std::string& t) {
    const size_t a = t.find_first_not_of(" \t");
    if (a == std::string::npos) return {};
    return t.substr(a, t.find_last_not_of(" \t") - a + 1);
}

// Sets the level of what each target stands for in entries. A whole-type
// target keeps the first entry of its type and drops the others. A type the
// format cannot give a level is skipped with one message. Returns the
// number of targets that took the level.
int set_levels(const model::Store& s, platform::Prompt& ui, const integration::Messages& m,
               std::vector<DrawToken>& entries, const std::vector<LevelTarget>& targets,
               const std::vector<int>& levels) {
    int taken = 0;
    bool refused = false;
    // The entries of each code, found once: a selection of thousands must
    // not walk the list for every polygon.
    std::unordered_map<std::string, std::vector<size_t>> by_code;
    for (size_t k = 0; k < entries.size(); ++k) by_code[entries[k].code].push_back(k);
    for (size_t k = 0; k < targets.size(); ++k) {
        const LevelTarget& t = targets[k];
        const int level = levels[std::min(k, levels.size() - 1)];
        if (t.entry >= 0 && static_cast<size_t>(t.entry) < entries.size()) {
            bool can_have = true;
            typ::drw_code_of(entries[static_cast<size_t>(t.entry)].code, can_have);
            if (!can_have && level > 0) {
                refused = true;
                continue;
            }
            entries[static_cast<size_t>(t.entry)].level = level;
            ++taken;
            continue;
        }
        bool can_have = true;
        const std::string code = polygon_code(s, t.row, &can_have);
        if (code.empty()) continue;
        if (!can_have && level > 0) {
            refused = true;
            continue;
        }
        auto& of_code = by_code[code];
        for (size_t i = 0; i < of_code.size(); ++i) entries[of_code[i]].level = i == 0 ? level : -1;
        if (of_code.empty()) {
            of_code.push_back(entries.size());
            entries.push_back(DrawToken{code, level});
        }
        ++taken;
    }
    if (refused) ui.message(m.get_msg(m_no_subtype_levels));
    return taken;
}

}  // namespace

int level_limit(const model::Store& s) { return std::max<int>(k_min_level_limit, s.pg_n); }

std::vector<LevelTarget> get_mdrw(const Browser& b, const model::Store& s) {
    std::vector<LevelTarget> out;
    if (b.cls() != model::k_polygons) return out;
    std::unordered_set<int64_t> seen;
    auto add = [&](int cell) {
        if (cell < 0 || cell >= b.cell_count()) return;
        if (b.layer_view()) {
            if (static_cast<size_t>(cell) >= b.layers().cells.size()) return;
            const LayerCell& c = b.layers().cells[static_cast<size_t>(cell)];
            if (c.kind == LayerCellKind::blank || !seen.insert(c.entry).second) return;
            out.push_back(LevelTarget{c.row, c.entry});
            return;
        }
        const int32_t row = b.row_of(cell);
        if (row < 0 || row >= s.pg_n || !seen.insert(-1 - static_cast<int64_t>(row)).second) return;
        out.push_back(LevelTarget{row, -1});
    };
    for_each_cell(b.sel1(), add);
    for_each_cell(b.sel2(), add);
    if (out.empty()) add(b.current_cell());
    return out;
}

bool can_show_draworders(const model::Store& s, platform::Prompt& ui, const integration::Messages& m) {
    if (s.pg_n > 0 && s.drwlist.find_first_not_of(' ') != std::string::npos) return true;
    ui.message(m.get_msg(m_no_draworder));
    return false;
}

bool mlev(model::Store& s, platform::Prompt& ui, const integration::Messages& m, int curclass,
          const std::vector<LevelTarget>& targets, int level, History* history) {
    const auto step = open_step(history, "Draw Order", Scope::draw_order());
    if (s.pg_n <= 0) {
        ui.message(m.get_msg(m_no_data));
        return false;
    }
    if (targets.empty() || curclass != model::k_polygons || level < 0) return false;
    ui.status("Setting draworder to " + std::to_string(level));
    std::vector<DrawToken> entries = view_entries(s);
    if (set_levels(s, ui, m, entries, targets, {level}) == 0) return false;
    commit_entries(s, entries, &ui);
    return true;
}

bool insert_lower_layer(model::Store& s, platform::Prompt& ui, const integration::Messages& m, int layer,
                        const std::vector<LevelTarget>& targets, History* history) {
    const auto step = open_step(history, "Insert Lower Layer", Scope::draw_order());
    if (layer <= 0) {
        ui.message("Layer must be > 0 ");
        return false;
    }
    std::vector<DrawToken> entries = view_entries(s);
    for (DrawToken& e : entries)
        if (e.level >= layer) ++e.level;
    set_levels(s, ui, m, entries, targets, {layer});
    commit_entries(s, entries, &ui);
    return true;
}

bool drawsel_allowed(platform::Prompt& ui, const integration::Messages& m, int curclass,
                     const std::vector<LevelTarget>& targets) {
    if (curclass != model::k_polygons) {
        ui.message("Please Select Polygons");
        return false;
    }
    if (targets.empty()) {
        ui.message(m.get_msg(m_please_select) + m.get_msg(m_select_hint));
        return false;
    }
    return true;
}

bool drawsel(model::Store& s, platform::Prompt& ui, const integration::Messages& m, int curclass,
             const std::vector<LevelTarget>& targets, DrawselMode mode, int start, History* history) {
    const auto step = open_step(history, "Draw Order", Scope::draw_order());
    if (!drawsel_allowed(ui, m, curclass, targets)) return false;
    if (mode == DrawselMode::none || start < 1) {
        ui.message(m.get_msg(m_please_select) + "No draworder. ");
        return false;
    }
    // A polygon is given one level: its type keeps no other.
    std::vector<LevelTarget> whole;
    std::vector<int> levels;
    for (size_t k = 0; k < targets.size(); ++k) {
        if (targets[k].row < 0) continue;
        whole.push_back(LevelTarget{targets[k].row, -1});
        levels.push_back(mode == DrawselMode::each ? start + static_cast<int>(levels.size()) : start);
    }
    if (whole.empty()) {
        ui.message(m.get_msg(m_please_select) + m.get_msg(m_select_hint));
        return false;
    }
    std::vector<DrawToken> entries = view_entries(s);
    if (set_levels(s, ui, m, entries, whole, levels) == 0) return false;
    commit_entries(s, entries, &ui);
    return true;
}

bool edpol(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const EdpolRequest& r, History* history) {
    const auto step = open_step(history, r.edit_entry >= 0 ? "Edit Draw Order" : "Add Draw Order", Scope::draw_order());
    const std::string level_text = trimmed(r.level);
    if (!is_digits(level_text)) {
        ui.message(m.get_msg(m_invalid_draworder));
        return false;
    }
    const int level = level_text.size() > 6 ? -1 : std::stoi(level_text);
    if (level == 0) {
        ui.message("Draworder can't be 0.");
        return false;
    }
    if (level < 0 || level > level_limit(s)) {
        ui.message(m.get_msg(m_invalid_draworder));
        return false;
    }
    std::string type = trimmed(r.type), sub = trimmed(r.subtype);
    if (type.size() > 2 && type[0] == '0' && (type[1] == 'x' || type[1] == 'X')) type.erase(0, 2);
    if (sub.size() > 2 && sub[0] == '0' && (sub[1] == 'x' || sub[1] == 'X')) sub.erase(0, 2);
    if (type.empty()) type = "00";
    if (sub.empty()) sub = "00";
    if (!all_hex(type) || type.size() > 3 || typ::hex_value(type) > k_max_type) {
        ui.message(m.get_msg(m_invalid_type) + type);
        return false;
    }
    if (!all_hex(sub) || sub.size() > 2) {
        ui.message(m.get_msg(m_invalid_type) + sub);
        return false;
    }
    const auto t = static_cast<int>(typ::hex_value(type));
    const auto st = static_cast<int>(typ::hex_value(sub));
    if (st > k_max_subtype) {
        ui.message(m.get_msg(m_subtypes));
        return false;
    }
    if (t < k_first_extended && st > 0) {
        ui.message(m.get_msg(m_no_subtype_levels));
        return false;
    }
    const std::string code = t < k_first_extended ? "00" + typ::hex2(typ::hex(t))
                                                  : "1" + typ::hex2(typ::hex(t - k_first_extended)) + typ::hex2(typ::hex(st));
    const std::string shown = code_type_text(code);

    std::vector<DrawToken> entries = view_entries(s);
    const bool editing = r.edit_entry >= 0 && static_cast<size_t>(r.edit_entry) < entries.size();
    bool is_polygon = false;
    for (int32_t n = 0; n < s.pg_n && !is_polygon; ++n) is_polygon = polygon_code(s, n) == code;
    auto is_edited = [&](size_t k) { return editing && k == static_cast<size_t>(r.edit_entry); };
    for (size_t k = 0; k < entries.size(); ++k) {
        const DrawToken& e = entries[k];
        if (e.code != code || e.level <= 0 || is_edited(k)) continue;
        // The same pair, or a polygon that has a level while no second one is wanted.
        if (e.level == level || (is_polygon && !r.allow_duplicate)) {
            ui.message(shown + m.get_msg(m_has_draworder));
            return false;
        }
    }
    if (!is_polygon && !r.allow_duplicate) {
        bool replaced = false;
        for (size_t k = 0; k < entries.size(); ++k) {
            if (entries[k].code != code || entries[k].level <= 0 || is_edited(k)) continue;
            entries[k].level = -1;
            replaced = true;
        }
        if (replaced) ui.message(m.get_msg(m_replace_placeholder));
    }
    if (editing) {
        entries[static_cast<size_t>(r.edit_entry)] = DrawToken{code, level};
    } else {
        // A polygon of the no-level group takes the level in its own entry.
        bool placed = false;
        for (DrawToken& e : entries) {
            if (e.code == code && e.level == 0) {
                e.level = level;
                placed = true;
                break;
            }
        }
        if (!placed) entries.push_back(DrawToken{code, level});
    }
    commit_entries(s, entries, &ui);
    return true;
}

std::vector<RedundantItem> redundant_entries(const model::Store& s) {
    std::unordered_set<std::string> polygons;
    for (int32_t n = 0; n < s.pg_n; ++n) polygons.insert(polygon_code(s, n));
    std::vector<RedundantItem> out;
    const std::vector<DrawToken> entries = view_entries(s);
    for (size_t k = 0; k < entries.size(); ++k) {
        const DrawToken& e = entries[k];
        if (e.level <= 0 || e.code == k_background || polygons.count(e.code)) continue;
        out.push_back(RedundantItem{static_cast<int32_t>(k), e.code + " (d" + std::to_string(e.level) + ")"});
    }
    return out;
}

std::vector<RedundantItem> target_entries(const model::Store& s, const std::vector<LevelTarget>& targets) {
    const std::vector<DrawToken> entries = view_entries(s);
    std::vector<RedundantItem> out;
    std::unordered_set<int32_t> seen;
    auto add = [&](size_t k) {
        if (entries[k].level <= 0 || !seen.insert(static_cast<int32_t>(k)).second) return;
        out.push_back(RedundantItem{static_cast<int32_t>(k),
                                    entries[k].code + " (d" + std::to_string(entries[k].level) + ")"});
    };
    for (const LevelTarget& t : targets) {
        if (t.entry >= 0 && static_cast<size_t>(t.entry) < entries.size()) {
            add(static_cast<size_t>(t.entry));
            continue;
        }
        const std::string code = polygon_code(s, t.row);
        for (size_t k = 0; k < entries.size(); ++k)
            if (!code.empty() && entries[k].code == code) add(k);
    }
    return out;
}

std::vector<RedundantItem> redund(const model::Store& s, platform::Prompt& ui, const integration::Messages& m,
                                  int mode, const std::vector<LevelTarget>& targets) {
    std::vector<RedundantItem> items = mode == 0 ? redundant_entries(s) : target_entries(s, targets);
    if (items.empty()) ui.message(m.get_msg(m_none_found));
    return items;
}

bool remove_entries(model::Store& s, platform::Prompt& ui, const integration::Messages& m,
                    const std::vector<int32_t>& ticked, History* history) {
    const auto step = open_step(history, "Remove Draw Orders", Scope::draw_order());
    std::vector<DrawToken> entries = view_entries(s);
    int removed = 0;
    for (int32_t k : ticked) {
        if (k < 0 || static_cast<size_t>(k) >= entries.size() || entries[static_cast<size_t>(k)].level <= 0) continue;
        entries[static_cast<size_t>(k)].level = -1;
        ++removed;
    }
    if (removed == 0) {
        ui.message(m.get_msg(m_not_found));
        return false;
    }
    commit_entries(s, entries, &ui);
    return true;
}

bool check_duplicates(model::Store& s, platform::Prompt& ui, History* history) {
    const auto step = open_step(history, "Remove Draw Order Duplicates", Scope::draw_order());
    if (typ::find_duplicates(s, ui, false).empty()) return false;
    refresh_levels(s);
    return true;
}

}  // namespace korvex::workbench
