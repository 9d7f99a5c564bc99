#include "workbench/selection.h"

#include <algorithm>
#include <unordered_set>

#include "workbench/browser.h"
#include "workbench/cell_label.h"

namespace korvex::workbench {

namespace {

constexpr uint8_t k_primary = 1, k_secondary = 2;
constexpr int k_multi_edit_max = 5;
constexpr int k_msg_not_same_height = 113, k_msg_only_five = 114, k_msg_not_two_colours = 213;
// Polygon schemes of two day colours and a bitmap, the line scheme of two
// colours (low three bits of the line's mode; the rest is the row count).
constexpr int k_pg_two_colours = 8, k_pg_two_colours_transparent = 14, k_ln_two_colours = 6;

std::string token(int cell) { return "," + std::to_string(cell) + ","; }

}  // namespace

bool list_has(const std::string& list, int cell) { return list.find(token(cell)) != std::string::npos; }

void list_add(std::string& list, int cell) {
    if (list_has(list, cell)) return;
    if (list.empty()) list = ",";
    list += std::to_string(cell) + ",";
}

void list_remove(std::string& list, int cell) {
    const size_t at = list.find(token(cell));
    if (at == std::string::npos) return;
    list.erase(at + 1, std::to_string(cell).size() + 1);
    if (list == ",") list.clear();
}

int list_count(const std::string& list) {
    int n = 0;
    for_each_cell(list, [&](int) { ++n; });
    return n;
}

Mark Browser::mark(int cell) const {
    if (cell < 0 || cell >= static_cast<int>(marks_.size())) return Mark::none;
    const uint8_t m = marks_[static_cast<size_t>(cell)];
    return (m & k_primary) ? Mark::primary : (m & k_secondary) ? Mark::secondary : Mark::none;
}

int32_t Browser::current_row() const { return row_of(current_); }

void Browser::set_current(int cell) { current_ = cell >= 0 && cell < cell_count() ? cell : -1; }

void Browser::no_multi() {
    sel1_.clear();
    sel2_.clear();
    std::fill(marks_.begin(), marks_.end(), 0);
    multi_ = false;
    building_ = false;
}

void Browser::select_all() {
    std::string list = ",";
    list.reserve(static_cast<size_t>(cell_count()) * 6 + 1);
    for (int k = 0; k < cell_count(); ++k) {
        list += std::to_string(k);
        list += ',';
        marks_[static_cast<size_t>(k)] |= k_primary;
    }
    sel1_ = cell_count() > 0 ? list : std::string();
    multi_ = true;
}

bool Browser::click(int cell, bool ctrl, bool shift, bool right) {
    if (cell < 0 || cell >= cell_count()) return false;
    const int before = current_;
    // Extra points are edited one at a time: a click only moves the current element.
    if (cls_ == model::k_extra_points) {
        current_ = cell;
        return current_ != before;
    }
    const auto at = static_cast<size_t>(cell);
    if (ctrl) {
        std::string& list = right ? sel2_ : sel1_;
        const uint8_t bit = right ? k_secondary : k_primary;
        if (marks_[at] & bit) {
            list_remove(list, cell);
            marks_[at] &= static_cast<uint8_t>(~bit);
        } else {
            list_add(list, cell);
            marks_[at] |= bit;
        }
        anchor_ = cell;
        return false;
    }
    if (shift) {
        // The range runs from the anchor in either direction and is listed
        // upward, so both directions give the same list.
        const int from = anchor_ >= 0 ? anchor_ : current_ >= 0 ? current_ : cell;
        const int lo = std::min(from, cell), hi = std::max(from, cell);
        for (size_t k = 0; k < marks_.size(); ++k) marks_[k] &= static_cast<uint8_t>(~k_primary);
        sel1_ = ",";
        for (int k = lo; k <= hi; ++k) {
            sel1_ += std::to_string(k) + ",";
            marks_[static_cast<size_t>(k)] |= k_primary;
            if (marks_[static_cast<size_t>(k)] & k_secondary) {
                list_remove(sel2_, k);
                marks_[static_cast<size_t>(k)] &= static_cast<uint8_t>(~k_secondary);
            }
        }
        return false;
    }
    // A right click in the draw-order view opens its menu without selecting.
    if (right && opt.draworder_view && cls_ == model::k_polygons) return false;
    no_multi();
    current_ = cell;
    anchor_ = cell;
    return current_ != before;
}

std::vector<int32_t> Browser::selected_rows() const {
    std::vector<int32_t> rows;
    std::unordered_set<int32_t> seen;
    for_each_cell(sel1_, [&](int cell) {
        const int32_t row = row_of(cell);
        if (row >= 0 && seen.insert(row).second) rows.push_back(row);
    });
    if (rows.empty() && current_row() >= 0) rows.push_back(current_row());
    return rows;
}

MenuFlags Browser::menu_flags(const model::Store& s) const {
    (void)s;
    MenuFlags m;
    const bool no_list = sel1_.empty() && sel2_.empty();
    m.create_copy = no_list && cls_ < model::k_active_lines;
    m.paste = cls_ != model::k_extra_points;
    m.search_poi_type = cls_ == model::k_points;
    // Style rules are made for one element or a selection of any class with a type.
    m.mkgmap_code = cls_ <= model::k_points;
    m.subtypes = cls_ < model::k_active_lines;
    const std::string number = cls_ == model::k_polygons                               ? opt.polygon_seed
                               : cls_ == model::k_lines || cls_ == model::k_active_lines ? opt.line_seed
                                                                                         : "00" + opt.point_seed;
    m.create_copy_caption = "Create Copy Next Type From 0x" + number + ")";
    return m;
}

DoubleClick Browser::double_click(const model::Store& s, int cell, bool ctrl, bool shift) const {
    DoubleClick d;
    if (building_ || ctrl || shift || row_of(cell) < 0) return d;
    const int selected = list_count(sel1_);
    if (selected > 1 && (cls_ == model::k_polygons || cls_ == model::k_lines)) {
        d.what = OpenWhat::refused;
        if (selected > k_multi_edit_max) {
            d.msg = k_msg_only_five;
            return d;
        }
        const std::vector<int32_t> rows = selected_rows();
        int height = -1;
        for (const int32_t row : rows) {
            const auto r = static_cast<size_t>(row);
            bool two = false;
            if (cls_ == model::k_polygons) {
                const int mode = r < s.pg_mode.size() ? s.pg_mode[r] : 0;
                two = mode == k_pg_two_colours || mode == k_pg_two_colours_transparent;
            } else {
                const int mode = r < s.ln_mode.size() ? s.ln_mode[r] : 0;
                two = (mode & 7) == k_ln_two_colours;
                if (two && height >= 0 && mode >> 3 != height) {
                    d.msg = k_msg_not_same_height;
                    return d;
                }
                height = mode >> 3;
            }
            if (!two) {
                d.msg = k_msg_not_two_colours;
                d.before = type_text(s, cls_, row);
                d.before.erase(std::min(d.before.size(), d.before.find(',')));
                return d;
            }
        }
        d.what = OpenWhat::multi_edit;
        d.rows = rows;
        return d;
    }
    d.row = row_of(cell);
    d.what = opt.edit_text_on_dblclick || cls_ == model::k_active_lines ? OpenWhat::text_editor : OpenWhat::icon_editor;
    return d;
}

}  // namespace korvex::workbench
